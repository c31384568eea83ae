// What takes bytes from outside, each as one function for a fuzzer and for the tests.
#pragma once

#include <cstddef>
#include <cstdint>

namespace LS::Fuzz {

/// Hands some bytes to one part of the program. What must hold for any input is checked, and ends the
/// process.
/// @return 0
using Target = int (*)(const std::uint8_t* pData, std::size_t nBytes);

int FuzzDecode(const std::uint8_t* pData, std::size_t nBytes);       ///< a picture: JPEG, PNG or TIFF
int FuzzExif(const std::uint8_t* pData, std::size_t nBytes);         ///< a photograph's tags
int FuzzSettings(const std::uint8_t* pData, std::size_t nBytes);     ///< a settings or language file
int FuzzFileArgument(const std::uint8_t* pData, std::size_t nBytes); ///< a second start's message
int FuzzCurve(const std::uint8_t* pData, std::size_t nBytes);        ///< a curve file
int FuzzNumber(const std::uint8_t* pData, std::size_t nBytes);       ///< the text of a cell or an option

/// To be called once before the targets.
void PrepareTargets();

struct NamedTarget {
    const char* szName;
    Target run;
};

constexpr NamedTarget TARGETS[] = {
    {"FuzzDecode", FuzzDecode},     {"FuzzExif", FuzzExif},
    {"FuzzSettings", FuzzSettings}, {"FuzzFileArgument", FuzzFileArgument},
    {"FuzzCurve", FuzzCurve},       {"FuzzNumber", FuzzNumber},
};

} // namespace LS::Fuzz
