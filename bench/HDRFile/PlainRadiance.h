// The Radiance writer at its plainest, to measure against.
#pragma once

#include <cstdint>
#include <string>

namespace LS::Bench {

/// Writes what WriteRadianceFile writes, by the definition of the format: streams and stdio with their usual
/// buffers, frexp for each pixel, one search from run to run, and one write for each packet.
void WritePlainRadiance(const std::string& sSource, const std::string& sPicture, std::int32_t nWidth,
                        std::int32_t nHeight);

} // namespace LS::Bench
