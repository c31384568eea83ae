// Which XML texts are safe to hand to the XML library.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace LS::Xml {

constexpr std::size_t MAX_DOCUMENT_BYTES = std::size_t{1} << 20;
constexpr int MAX_LEVELS = 100; // the library calls itself once a level; the root is the first

/// Within one element. The library compares each attribute with all before it, so that a megabyte of them
/// would take minutes.
constexpr int MAX_ATTRIBUTES = 1000;

/// Looks at a text before the XML library sees it, in one pass and without building anything.
///
/// The library reads past the end of unterminated things and takes a malformed character reference as far as
/// the next semicolon, markup included. Whatever would make it see other tags than this check counts is
/// refused, so that the limits hold for both. What passes needn't be well-formed in other ways.
/// @return why the text is refused; empty if it isn't
std::string RefusalReason(std::string_view sText);

} // namespace LS::Xml
