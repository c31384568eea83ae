// UTF-8 and wide text, in a form that depends on no locale.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace LS::Util {

/// Whether all bytes belong to characters. Overlong forms and surrogates are no UTF-8.
bool IsUtf8(std::string_view sText);

/// UTF-8 of a wide text. What is no character, such as a surrogate, becomes U+FFFD.
std::string ToUtf8(std::wstring_view sText);

/// The wide form of a UTF-8 text. Each byte that belongs to no character becomes U+FFFD.
std::wstring FromUtf8(std::string_view sText);

struct DecodedCharacter {
    unsigned nCode;
    std::size_t nBytes; ///< 0 where the text is no UTF-8
};

/// The character at the start of a text that isn't empty.
DecodedCharacter DecodeUtf8(std::string_view sText);

/// Encodes any code up to U+10FFFF, surrogates too.
void AppendUtf8(std::string& sBytes, unsigned nCode);

} // namespace LS::Util
