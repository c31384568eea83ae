// Messages out of bytes.
#include "app/IpcWire.h"
#include "app/AppIpc.h"

#include <gtest/gtest.h>

#include <string>

namespace {

/// "code:format:data" for each message, and how it ends. The bytes come in pieces of a size.
std::string Messages(const std::string& sBytes, std::size_t nPiece)
{
    std::string sResult;
    IpcReader reader;
    for (std::size_t n = 0; n < sBytes.size(); n += nPiece) {
        reader.Append(std::string_view(sBytes).substr(n, nPiece));
        IpcMessage message;
        for (;;) {
            const IpcReader::Result result = reader.Next(message);
            if (result == IpcReader::Result::Broken)
                return sResult + "broken";
            if (result == IpcReader::Result::Incomplete)
                break;
            sResult += std::to_string(static_cast<int>(message.code)) + ":" +
                       std::to_string(message.nFormat) + ":" + message.sData + " ";
        }
    }
    return sResult;
}

} // namespace

TEST(IpcWire, Messages)
{
    using namespace std::string_literals;
    const struct {
        const char* name;
        std::string bytes, messages;
    } cases[] = {
        {"connect", "\x0a\x08\0\0\0only-one"s, "10:0:only-one "},
        {"one after the other", "\x0a\x01\0\0\0t\x01\x01\x01\0\0\0d\x0b"s, "10:0:t 1:1:d 11:0: "},
        {"half a topic", "\x0a\x08\0\0\0only"s, ""},
        {"unknown code", "\x07\0\0"s, "broken"},
        {"topic at the limit", "\x0a\0\x04\0\0"s + std::string(1024, 't'),
         "10:0:" + std::string(1024, 't') + " "},
        {"topic beyond it", "\x0a\x01\x04\0\0"s, "broken"},
        {"data beyond the limit", "\x01\x11\x01\0\x10\0"s, "broken"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(c.messages, Messages(c.bytes, 1));
        EXPECT_EQ(c.messages, Messages(c.bytes, 1000));
    }
    const std::string sLargest(MAX_IPC_DATA, 'd');
    EXPECT_EQ("1:17:" + sLargest + " ",
              Messages(EncodeIpcMessage({IpcCode::Execute, wxIPC_UTF8TEXT, sLargest}), 4096));
}

TEST(IpcWire, TextOfData)
{
    using namespace std::string_literals;
    const auto Wide = [](const std::wstring& sText) {
        return std::string(reinterpret_cast<const char*>(sText.data()), sText.size() * sizeof(wchar_t));
    };
    const struct {
        const char* name;
        std::string data;
        int format;
        const wchar_t* text; ///< null: none
    } cases[] = {
        {"with its NUL", "x|\xc3\xa9\0"s, wxIPC_UTF8TEXT, L"x|\u00e9"},
        {"without", "x|\xc3\xa9", wxIPC_UTF8TEXT, L"x|\u00e9"},
        {"a NUL alone", std::string(1, '\0'), wxIPC_UTF8TEXT, L""},
        {"no UTF-8", "\xff\xfe", wxIPC_UTF8TEXT, L""},
        {"wide with its NUL", Wide(L"\u5c71|\0"s), wxIPC_UNICODETEXT, L"\u5c71|"},
        {"half a wide character", "x|abc", wxIPC_UNICODETEXT, nullptr},
        {"two bytes a character", "x|ab", wxIPC_UTF16TEXT, nullptr},
        {"a bitmap", "x|a", wxIPC_BITMAP, nullptr},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const auto text = TextOfIpcData(c.data.data(), c.data.size(), static_cast<wxIPCFormat>(c.format));
        ASSERT_EQ(c.text != nullptr, text.has_value());
        EXPECT_EQ(wxString(c.text ? c.text : L""), text.value_or(""));
    }
    EXPECT_EQ("", TextOfIpcData(nullptr, 0, wxIPC_UTF8TEXT));
    EXPECT_FALSE(TextOfIpcData(nullptr, 4, wxIPC_UTF8TEXT));
}
