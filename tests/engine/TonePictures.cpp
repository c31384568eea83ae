// Synthetic radiance, seeded.
#include "tests/engine/TonePictures.h"

#include "Util/Paths.h"
#include "engine/CacheFolder.h"
#include "engine/TMORoutine.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <random>

namespace LS::Tests {

namespace {

Picture Painted(std::int32_t nWidth, std::int32_t nHeight,
                const std::function<float(std::int32_t x, std::int32_t y, int nChannel)>& paint)
{
    Picture picture{nWidth, nHeight, {}};
    for (std::int32_t y = 0; y < nHeight; ++y)
        for (std::int32_t x = 0; x < nWidth; ++x)
            for (int c = 0; c < 3; ++c)
                picture.vfPixels.push_back(paint(x, y, c));
    return picture;
}

/// One file for all pictures, since some disks take long over new ones.
std::wstring CachedPicture(const Picture& picture)
{
    CreateCacheFolder();
    std::wstring sFile = CacheFolder() + L"picture.tmp";
    WriteElements(Util::NarrowPath(sFile), picture.vfPixels);
    return sFile;
}

Bytes Copied(const Util::PixelBuffer& pPixels, const Picture& picture)
{
    return pPixels ? Bytes(pPixels.get(), pPixels.get() + picture.vfPixels.size()) : Bytes();
}

} // namespace

Picture RandomPicture(std::int32_t nWidth, std::int32_t nHeight)
{
    std::mt19937 random(static_cast<unsigned>(nWidth * 1000 + nHeight));
    std::uniform_real_distribution<float> decades(-4, 4);
    return Painted(nWidth, nHeight, [&](auto, auto, auto) {
        return random() % 8 == 0 ? 0.0F : std::pow(10.0F, decades(random));
    });
}

Picture SmoothPicture(std::int32_t nWidth, std::int32_t nHeight)
{
    return Painted(nWidth, nHeight, [&](std::int32_t x, std::int32_t y, int c) {
        return 2.0F + static_cast<float>(x + 2 * y + c) / static_cast<float>(nWidth + nHeight);
    });
}

Picture ContrastyPicture(std::int32_t nWidth, std::int32_t nHeight)
{
    return Painted(nWidth, nHeight, [](std::int32_t x, std::int32_t y, int c) {
        return (x * 7 + y * 5) % 11 == 0 ? 4000.0F : 0.05F * static_cast<float>(1 + c + (x + y) % 5);
    });
}

Picture Scaled(Picture picture, float fFactor)
{
    for (float& fValue : picture.vfPixels)
        fValue *= fFactor;
    return picture;
}

Bytes MapScaledImage(const Picture& picture, float fExposure, float fGamma)
{
    return Copied(ToneMapScaledImage(picture.vfPixels.data(), picture.nWidth, picture.nHeight, fExposure,
                                     fGamma, nullptr),
                  picture);
}

Bytes MapCacheInMemory(const Picture& picture, float fExposure, float fGamma)
{
    return Copied(ToneMapCacheInMemory(CachedPicture(picture), picture.nWidth, picture.nHeight, fExposure,
                                       fGamma, nullptr),
                  picture);
}

Bytes MapCacheByRows(const Picture& picture, float fExposure, float fGamma)
{
    return Copied(ToneMapCacheByRows(CachedPicture(picture), picture.nWidth, picture.nHeight, fExposure,
                                     fGamma, nullptr),
                  picture);
}

} // namespace LS::Tests
