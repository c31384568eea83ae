// The lights of the sample scene, and how much of them arrives at a place.
//
// Radiance is in candela per square metre, roughly: an evening sun on the street, two incandescent bulbs.
// The colours are relative to a white between the two, as a photographer would balance such a room.
#pragma once

#include "samples/Sampling.h"
#include "samples/Shapes.h"

#include <array>

namespace LS::Samples {

/// Towards the sun; unit length.
inline constexpr Vec3 kSunDirection{-0.50136, 0.62169, 0.60164};
/// Irradiance of a surface that faces the sun.
inline constexpr Colour kSunIrradiance{36000.0, 30200.0, 21900.0};

/// The bulbs' intensity, equal in all directions.
inline constexpr Colour kPendantIntensity{400.0, 262.0, 124.0};
inline constexpr Colour kLampIntensity{520.0, 330.0, 148.0};
inline constexpr Colour kShadeRadiance{2400.0, 1420.0, 560.0};
inline constexpr Colour kFilamentRadiance{72000.0, 46000.0, 20000.0};

/// Radiance of the sky. @param direction  unit length; below the horizon it counts as level
Colour SkyRadiance(const Vec3& direction);

/// What a ray meets that leaves the room through the window: houses, paving, sky, in a light haze.
Colour StreetRadiance(const ObjectTree& street, const Ray& ray);

/// StreetRadiance from the middle of the window, averaged over patches of directions and interpolated:
/// smooth enough that a few samples of the window light a room without noise.
class WindowLight {
public:
    explicit WindowLight(const ObjectTree& street);

    /// @param direction  unit length, out of the window (z above 0)
    Colour Radiance(const Vec3& direction) const;

private:
    static constexpr int kCells = 10;
    std::array<Colour, kCells * kCells> m_cells;
};

/// Irradiance straight from window, sun and lamps, one sample of each.
/// @param casters  what can throw a shadow in the room
/// @param normal   unit length, on the side that is asked for
Colour DirectIrradiance(const ObjectTree& casters, const WindowLight& window, const Vec3& point,
                        const Vec3& normal, const SampleId& id);

} // namespace LS::Samples
