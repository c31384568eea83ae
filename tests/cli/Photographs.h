// Small photographs with Exif data, made at run time.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace LS::Tests {

struct Photograph {
    double brightness = 1;                            ///< of a picture that holds every level
    std::optional<std::string> exposureTime = "1/60"; ///< as Exif has it, "n/d"; absent: no tag
    std::optional<std::string> fNumber = "8/1";
    int width = 32;
    int height = 24;
    std::optional<std::string> taken = std::nullopt; ///< "2009:03:07 14:05:03", or with a fraction behind "."
    std::string camera = "One";
};

void WritePhotograph(const std::string& sPath, const Photograph& photograph);

/// Photographs a.jpg, b.jpg, c.jpg of one scene, two stops apart. @return their paths
std::vector<std::string> WriteSeries(const std::string& sFolder, int nWidth = 32, int nHeight = 24);

} // namespace LS::Tests
