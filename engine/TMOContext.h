// The tone mapper of whole images in memory.
#pragma once

#include "Util/LargeBuffer.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>

class DisplayBytes;
class ProgbarSetter;

/// A float image in planes.
struct HDRImage {
    /// Allocates the planes and leaves their pixels open.
    HDRImage(std::int32_t nImageWidth, std::int32_t nImageHeight);
    virtual ~HDRImage() = default;
    HDRImage(const HDRImage&) = delete;
    HDRImage& operator=(const HDRImage&) = delete;

    std::size_t Pixels() const
    {
        return static_cast<std::size_t>(nWidth) * static_cast<std::size_t>(nHeight);
    }

    /// Takes interleaved R, G, B into the planes.
    /// @param nFirst  where in the planes the first of these pixels goes
    void Split(const float* pfPixels, std::size_t nPixels, std::size_t nFirst);

    std::int32_t nChannels = 3;
    std::int32_t nWidth;
    std::int32_t nHeight;
    std::array<LS::Util::LargeBuffer<float>, 3> ppfPlanes; ///< row-major, R, G, B
};

/// Three planes of bytes, R, G, B, of the image's size.
struct BytePlanes {
    explicit BytePlanes(std::size_t nPixels);

    LS::Util::LargeBuffer<unsigned char> pBytes; ///< one after the other
    std::array<unsigned char*, 3> apPlanes;      ///< where each begins
};

/// Turns a float image into bytes, rewriting its planes in place.
///
/// The stages go by their order in Run: the planes hold R, G, B, after Statistics Y, x, y, and from ToRGB on
/// R, G, B again.
struct TMOContext {
    /// @param pImage  not owned; may be null, then only Run may be called, and gives null
    TMOContext(HDRImage* pSource, float fStops, float fDisplayGamma, float fToneBias);

    /// All stages. Polls the cancel flag after each band of the compression and after each later stage.
    /// @return null after a cancel, or without an image or its planes
    /// @throws std::domain_error if the image is so dark that its mean luminance is 0
    std::unique_ptr<BytePlanes> Run(ProgbarSetter* pProgress);

    /// R, G, B to Y, x, y; gives the brightest luminance and the mean logarithm.
    void Statistics(float* pfMax, float* pfLogAverage);
    void ToRGB();
    void Gamma();
    void Clamp();
    std::unique_ptr<BytePlanes> ToBytes() const;

    HDRImage* pImage;
    std::int32_t nWidth;  ///< -1 without an image
    std::int32_t nHeight; ///< -1 without an image
    float fExposure;      ///< stops
    float fGamma;         ///< of the display, above 0.2
    float fBias;

private:
    using GoOn = std::function<bool(std::int32_t nPercent)>; ///< reports a position; false ends the work

    bool HasPlanes() const;
    std::unique_ptr<BytePlanes> ToBytesByStages(const GoOn& goOn);
    std::unique_ptr<BytePlanes> ToBytesAtOnce(const DisplayBytes& displayBytes, const GoOn& goOn);
    bool Compress(float fMax, float fLogAverage, ProgbarSetter* pProgress);
    std::span<float> Plane(std::size_t nChannel) const;
};
