// The order of a series, and what makes a series impossible to merge.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>

/// Orders paths by their file names alone, by code point, so that upper case sorts first.
bool FileNameLess(const std::wstring& sPath1, const std::wstring& sPath2);

struct ExposureSetting {
    float exposureTime; ///< seconds
    float fNumber;
};

struct PixelSize {
    std::int32_t width;
    std::int32_t height;
};

using IndexPair = std::pair<std::size_t, std::size_t>; ///< the earlier image first

/// The first two images that share both shutter time and aperture, to the six decimals of "%f".
std::optional<IndexPair> FindEqualExposures(std::span<const ExposureSetting> exposures);

/// The first image that has another size than the first one, with it.
std::optional<IndexPair> FindDifferentSizes(std::span<const PixelSize> sizes);
