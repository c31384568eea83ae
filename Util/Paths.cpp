// Path arithmetic and conversion that depends on no locale.
#include "Util/Paths.h"

#include <cstddef>
#include <filesystem>
#include <system_error>

namespace LS::Util {

namespace {

constexpr wchar_t SEPARATOR = L'/';
constexpr unsigned ESCAPE = 0xDC00; // a lone low surrogate is no character, so it can carry a raw byte
constexpr unsigned REPLACEMENT = 0xFFFD;

bool IsEscapedByte(unsigned nCode)
{
    return nCode >= ESCAPE + 0x80 && nCode <= ESCAPE + 0xFF;
}

void AppendUtf8(std::string& sBytes, unsigned nCode)
{
    const auto put = [&sBytes](unsigned nByte) { sBytes.push_back(static_cast<char>(nByte)); };
    if (nCode < 0x80) {
        put(nCode);
    } else if (nCode < 0x800) {
        put(0xC0 | (nCode >> 6));
        put(0x80 | (nCode & 0x3F));
    } else if (nCode < 0x10000) {
        put(0xE0 | (nCode >> 12));
        put(0x80 | ((nCode >> 6) & 0x3F));
        put(0x80 | (nCode & 0x3F));
    } else {
        put(0xF0 | (nCode >> 18));
        put(0x80 | ((nCode >> 12) & 0x3F));
        put(0x80 | ((nCode >> 6) & 0x3F));
        put(0x80 | (nCode & 0x3F));
    }
}

struct Decoded {
    unsigned nCode;
    std::size_t nBytes; // 0 where the text is no UTF-8
};

/// The character at the start of a text that isn't empty. Overlong forms and surrogates are no UTF-8.
Decoded DecodeUtf8(std::string_view sText)
{
    const auto byte = [sText](std::size_t i) { return static_cast<unsigned char>(sText[i]); };
    const unsigned nLead = byte(0);
    if (nLead < 0x80)
        return {nLead, 1};

    const std::size_t nBytes = nLead >= 0xF0 ? 4 : nLead >= 0xE0 ? 3 : 2;
    if (nLead < 0xC2 || nLead > 0xF4 || sText.size() < nBytes)
        return {0, 0};
    unsigned nCode = nLead & (0xFFU >> (nBytes + 1));
    for (std::size_t i = 1; i < nBytes; ++i) {
        if ((byte(i) & 0xC0) != 0x80)
            return {0, 0};
        nCode = (nCode << 6) | (byte(i) & 0x3F);
    }
    const unsigned nSmallest = nBytes == 2 ? 0x80 : nBytes == 3 ? 0x800 : 0x10000;
    const bool bSurrogate = nCode >= 0xD800 && nCode <= 0xDFFF;
    if (nCode < nSmallest || bSurrogate || nCode > 0x10FFFF)
        return {0, 0};
    return {nCode, nBytes};
}

} // namespace

std::string NarrowPath(std::wstring_view sPath)
{
    std::string sBytes;
    sBytes.reserve(sPath.size());
    for (const wchar_t c : sPath) {
        const auto nCode =
            static_cast<unsigned>(c); // NOLINT(bugprone-signed-char-misuse): wchar_t is no char
        if (IsEscapedByte(nCode))
            sBytes.push_back(static_cast<char>(nCode - ESCAPE));
        else
            AppendUtf8(sBytes, nCode > 0x10FFFF ? REPLACEMENT : nCode);
    }
    return sBytes;
}

std::wstring WidePath(std::string_view sPath)
{
    std::wstring sWide;
    sWide.reserve(sPath.size());
    while (!sPath.empty()) {
        const Decoded decoded = DecodeUtf8(sPath);
        if (decoded.nBytes == 0) {
            sWide.push_back(static_cast<wchar_t>(ESCAPE + static_cast<unsigned char>(sPath.front())));
            sPath.remove_prefix(1);
        } else {
            sWide.push_back(static_cast<wchar_t>(decoded.nCode));
            sPath.remove_prefix(decoded.nBytes);
        }
    }
    return sWide;
}

std::wstring JoinPath(std::wstring_view sFolder, std::wstring_view sName)
{
    std::wstring sPath(sFolder);
    if (!sPath.empty() && sPath.back() != SEPARATOR)
        sPath.push_back(SEPARATOR);
    return sPath.append(sName);
}

std::wstring FileNameFromPath(std::wstring_view sPath)
{
    const std::size_t nAt = sPath.rfind(SEPARATOR);
    return std::wstring(nAt == std::wstring_view::npos ? sPath : sPath.substr(nAt + 1));
}

std::wstring FolderFromPath(std::wstring_view sPath)
{
    const std::size_t nAt = sPath.rfind(SEPARATOR);
    if (nAt == std::wstring_view::npos)
        return {};
    return std::wstring(sPath.substr(0, nAt == 0 ? 1 : nAt));
}

std::wstring ProgramFolder()
{
    std::error_code error;
    const std::filesystem::path executable = std::filesystem::read_symlink("/proc/self/exe", error);
    return FolderFromPath(WidePath(executable.native()));
}

} // namespace LS::Util
