// Builds files by hand, piece by piece.
#pragma once

#include "tests/support/TempFolder.h"

#include <cstddef>
#include <initializer_list>
#include <string_view>

namespace LS::Tests {

inline Bytes BytesOf(std::string_view sText)
{
    return {sText.begin(), sText.end()};
}

/// The lowest 32 bits, the low byte first.
inline Bytes LittleEndian(std::size_t nNumber)
{
    Bytes bytes;
    for (const int nShift : {0, 8, 16, 24})
        bytes.push_back(static_cast<unsigned char>(nNumber >> nShift));
    return bytes;
}

/// The lowest 32 bits, the high byte first.
inline Bytes BigEndian(std::size_t nNumber)
{
    const Bytes bytes = LittleEndian(nNumber);
    return {bytes.rbegin(), bytes.rend()};
}

inline void Append(Bytes& bytes, const Bytes& piece)
{
    bytes.insert(bytes.end(), piece.begin(), piece.end());
}

inline Bytes Joined(std::initializer_list<Bytes> pieces)
{
    Bytes all;
    for (const Bytes& piece : pieces)
        Append(all, piece);
    return all;
}

/// A chunk of a RIFF file, or such a file as a whole.
inline Bytes RiffChunk(std::string_view sName, const Bytes& content)
{
    return Joined({BytesOf(sName), LittleEndian(content.size()), content, Bytes(content.size() % 2)});
}

} // namespace LS::Tests
