// The order of a series, and what makes a series impossible to merge.
#include "image/SeriesChecks.h"

#include "Util/Paths.h"

#include <array>
#include <cfloat>
#include <cstdio>
#include <unordered_map>

namespace {

/// Both values as one text, which is what tells two exposures apart.
std::string ExposureText(const ExposureSetting& exposure)
{
    constexpr std::size_t LONGEST = 2 * (sizeof("-.000000") + FLT_MAX_10_EXP + 1);
    std::array<char, LONGEST> szText{};
    std::snprintf(szText.data(), szText.size(), "%f%f", static_cast<double>(exposure.exposureTime),
                  static_cast<double>(exposure.fNumber));
    return szText.data();
}

} // namespace

bool FileNameLess(const std::wstring& sPath1, const std::wstring& sPath2)
{
    return LS::Util::FileNameFromPath(sPath1) < LS::Util::FileNameFromPath(sPath2);
}

std::optional<IndexPair> FindEqualExposures(std::span<const ExposureSetting> exposures)
{
    // The answer is the lowest image that has an equal, with the first of its equals. Meeting the images in
    // order, that equal is the first one to bring up an earlier image, so a later one never replaces it.
    std::unordered_map<std::string, std::size_t> firstWith;
    std::optional<IndexPair> found;
    for (std::size_t j = 0; j < exposures.size(); ++j) {
        const std::size_t i = firstWith.try_emplace(ExposureText(exposures[j]), j).first->second;
        if (i != j && (!found || i < found->first))
            found = {i, j};
    }
    return found;
}

std::optional<IndexPair> FindDifferentSizes(std::span<const PixelSize> sizes)
{
    for (std::size_t j = 1; j < sizes.size(); ++j)
        if (sizes[j].width != sizes[0].width || sizes[j].height != sizes[0].height)
            return IndexPair{0, j};
    return std::nullopt;
}
