// The facts of the sample series: enough to compute its pictures again, and to judge a merge of them.
//
// A pixel of a frame is
//
//     Response(channel, kSensorConstant x radiance x seconds / (f-number x f-number))
//
// with TrueRadiance() of SceneRadiance.h and Response() of CameraResponse.h, give or take sensor noise and
// JPEG compression.
#pragma once

#include <array>

namespace LS::Samples {

inline constexpr int kSampleWidth = 1500;
inline constexpr int kSampleHeight = 1000;

/// Aperture and sensitivity of all frames.
inline constexpr double kSampleFNumber = 8.0;
inline constexpr int kSampleIso = 100;

/// Exposure per unit of radiance, second and inverse squared f-number. It is chosen so that an exposure of
/// 1 gives a middle grey, and that the shortest frame just holds the lamp's filament.
inline constexpr double kSensorConstant = 12.0;

struct SampleExposure {
    const char* fileName;
    unsigned numerator; ///< numerator and denominator of the time in seconds, as Exif tells it
    unsigned denominator;
    int biasHalves; ///< exposure bias in half stops, relative to the middle frame

    constexpr double Seconds() const { return static_cast<double>(numerator) / denominator; }
};

/// From the shortest to the longest, a stop and a half apart but for the rounding that cameras use.
inline constexpr std::array<SampleExposure, 9> kSampleExposures{{
    {"room_01.jpg", 1, 1000, -12},
    {"room_02.jpg", 1, 350, -9},
    {"room_03.jpg", 1, 125, -6},
    {"room_04.jpg", 1, 45, -3},
    {"room_05.jpg", 1, 15, 0},
    {"room_06.jpg", 1, 6, 3},
    {"room_07.jpg", 1, 2, 6},
    {"room_08.jpg", 3, 2, 9},
    {"room_09.jpg", 4, 1, 12},
}};

/// What the sensor of a frame takes in from a radiance.
constexpr double SensorExposure(double radiance, const SampleExposure& frame)
{
    return kSensorConstant * radiance * frame.Seconds() / (kSampleFNumber * kSampleFNumber);
}

} // namespace LS::Samples
