// Strict decoding and encoding of UTF-8.
#include "Util/Utf8.h"

namespace LS::Util {

namespace {

constexpr unsigned REPLACEMENT = 0xFFFD;

bool IsSurrogate(unsigned nCode)
{
    return nCode >= 0xD800 && nCode <= 0xDFFF;
}

} // namespace

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

DecodedCharacter DecodeUtf8(std::string_view sText)
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
    if (nCode < nSmallest || IsSurrogate(nCode) || nCode > 0x10FFFF)
        return {0, 0};
    return {nCode, nBytes};
}

bool IsUtf8(std::string_view sText)
{
    while (!sText.empty()) {
        const std::size_t nBytes = DecodeUtf8(sText).nBytes;
        if (nBytes == 0)
            return false;
        sText.remove_prefix(nBytes);
    }
    return true;
}

std::string ToUtf8(std::wstring_view sText)
{
    std::string sBytes;
    sBytes.reserve(sText.size());
    for (const wchar_t c : sText) {
        const auto nCode = static_cast<char32_t>(c);
        AppendUtf8(sBytes, IsSurrogate(nCode) || nCode > 0x10FFFF ? REPLACEMENT : nCode);
    }
    return sBytes;
}

std::wstring FromUtf8(std::string_view sText)
{
    std::wstring sWide;
    sWide.reserve(sText.size());
    while (!sText.empty()) {
        const auto [nCode, nBytes] = DecodeUtf8(sText);
        sWide.push_back(static_cast<wchar_t>(nBytes == 0 ? REPLACEMENT : nCode));
        sText.remove_prefix(nBytes == 0 ? 1 : nBytes);
    }
    return sWide;
}

} // namespace LS::Util
