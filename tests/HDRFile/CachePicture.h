// A small float cache file to write pictures from.
#pragma once

#include "tests/support/TempFolder.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace LS::Tests {

/// Random radiances over many magnitudes, in the merge's units, and the file that holds them.
struct CachePicture {
    CachePicture(std::int32_t nPictureWidth, std::int32_t nPictureHeight)
        : nWidth(nPictureWidth), nHeight(nPictureHeight)
    {
        std::mt19937 random(7);
        std::uniform_real_distribution<float> fMagnitude(-3, 6);
        vfStored.resize(3 * static_cast<std::size_t>(nWidth) * static_cast<std::size_t>(nHeight));
        for (float& fValue : vfStored)
            fValue = std::pow(10.0F, fMagnitude(random));
        Store();
    }

    void Store() const { WriteElements(sPath, vfStored); }

    /// What a writer makes of a stored float before it encodes it.
    float Scaled(std::size_t i) const { return static_cast<float>(vfStored[i] * 0.001); }

    std::string File(const char* szName) const { return folder.File(szName); }

    std::int32_t nWidth;
    std::int32_t nHeight;
    std::vector<float> vfStored;
    TempFolder folder;
    std::string sPath = folder.File("cache.tmp");
};

} // namespace LS::Tests
