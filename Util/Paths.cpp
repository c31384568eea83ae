// Path arithmetic and conversion that depends on no locale.
#include "Util/Paths.h"

#include "Util/Utf8.h"

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
        const DecodedCharacter decoded = DecodeUtf8(sPath);
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
