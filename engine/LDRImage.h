// One exposure of a series in memory, as response recovery reads it.
#pragma once

#include <cstdint>
#include <vector>

/// A decimated photograph in three colour planes, with its exposure.
class LDRImage {
public:
    /// 8-bit values of one colour, row by row from the top.
    using Plane = std::vector<unsigned char>;

    /// @param vPlanes  red, green, blue, each of nWidth x nHeight values (asserted)
    /// @param fShutter seconds   @param fStop  the f-number
    /// @param fGain    in thirds of a natural logarithm   @param fND  in natural logarithms
    LDRImage(std::vector<Plane> vPlanes, std::int32_t nWidth, std::int32_t nHeight, float fShutter,
             float fStop, float fGain, float fND);
    LDRImage(const LDRImage&) = delete;
    LDRImage& operator=(const LDRImage&) = delete;
    virtual ~LDRImage() = default;

    /// log(512 t / N^2) + fGain / 3 - fND. Not finite for settings that no photograph has.
    float fLogExposure;
    std::vector<Plane> ppPlanes;
    std::int32_t nWidth;
    std::int32_t nHeight;
    std::int32_t nChannels = 3;
    float fShutter, fStop, fGain, fND;
};
