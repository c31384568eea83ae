// The lights of the sample scene.
#include "samples/SceneLight.h"

#include "samples/Materials.h"
#include "samples/Noise.h"
#include "samples/SceneModel.h"

#include <numbers>

namespace LS::Samples {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kWindowPlane = kRoomBack + kWallDepth;

// Half the angle that the sun fills, widened a little for the air around it.
constexpr double kSunSpread = 0.006;

// Saves the shadow ray in most of the room.
bool SunMayEnterTo(const Vec3& point)
{
    constexpr double kMargin = 0.06; // the sun's spread over the depth of the room
    const double t = (kWindowPlane - point.z) / kSunDirection.z;
    const double x = point.x + t * kSunDirection.x;
    const double y = point.y + t * kSunDirection.y;
    return x > kWindowLeft - kMargin && x < kWindowRight + kMargin && y > kWindowSill - kMargin &&
           y < kWindowTop + kMargin;
}

Vec3 Spread(const Vec3& direction, double radius, const Sample2& s)
{
    Vec3 tangent;
    Vec3 bitangent;
    Basis(direction, &tangent, &bitangent);
    const double r = radius * std::sqrt(s.u);
    const double a = 2.0 * kPi * s.v;
    return Normalized(direction + tangent * (r * std::cos(a)) + bitangent * (r * std::sin(a)));
}

Colour FromSun(const ObjectTree& casters, const Vec3& point, const Vec3& normal, const SampleId& id)
{
    if (Dot(normal, kSunDirection) < -kSunSpread || !SunMayEnterTo(point))
        return {};
    const Vec3 direction = Spread(kSunDirection, kSunSpread, id.Point(SampleUse::Sun));
    const double cosine = Dot(normal, direction);
    if (cosine <= 0.0 || casters.Blocked({point, direction}, 1e9))
        return {};
    return kSunIrradiance * cosine;
}

bool FacesWindow(const Vec3& point, const Vec3& normal)
{
    const Vec3 nearest{normal.x > 0.0 ? kWindowRight : kWindowLeft, normal.y > 0.0 ? kWindowTop : kWindowSill,
                       kWindowPlane};
    return Dot(nearest - point, normal) > 0.0;
}

Colour FromWindow(const ObjectTree& casters, const WindowLight& window, const Vec3& point, const Vec3& normal,
                  const SampleId& id)
{
    if (!FacesWindow(point, normal))
        return {};
    const Sample2 s = id.Point(SampleUse::Window);
    const Vec3 target{Mix(kWindowLeft, kWindowRight, s.u), Mix(kWindowSill, kWindowTop, s.v), kWindowPlane};
    const Vec3 way = target - point;
    const double distance = Length(way);
    const Vec3 direction = way / distance;
    const double cosines = Dot(normal, direction) * direction.z;
    if (cosines <= 0.0 || direction.z <= 0.0 || casters.Blocked({point, direction}, distance))
        return {};
    constexpr double kArea = (kWindowRight - kWindowLeft) * (kWindowTop - kWindowSill);
    return window.Radiance(direction) * (cosines * kArea / std::max(distance * distance, 0.01));
}

Colour FromBulb(const ObjectTree& casters, const Vec3& bulb, double radius, const Colour& intensity,
                const Vec3& point, const Vec3& normal, SampleUse use, const SampleId& id)
{
    if (Dot(bulb - point, normal) < -radius)
        return {};
    // A slanted square stands for the wires; a penumbra doesn't tell it from them.
    const Sample2 s = id.Point(use);
    const Vec3 offset{2.0 * s.u - 1.0, 2.0 * s.v - 1.0, 1.0 - 2.0 * s.u};
    const Vec3 way = bulb + offset * radius - point;
    const double distance = Length(way);
    const Vec3 direction = way / distance;
    const double cosine = Dot(normal, direction);
    if (cosine <= 0.0 || casters.Blocked({point, direction}, distance))
        return {};
    // Not closer than the glass: the socket would burn otherwise.
    return intensity * (cosine / std::max(distance * distance, 0.004));
}

// Between the two cones of light that leave the shade, its cloth hides the bulb. Cut generously.
bool ShadeHidesBulb(const Vec3& point)
{
    const double across = std::hypot(point.x - kLampBulb.x, point.z - kLampBulb.z);
    const double up = point.y - kLampBulb.y;
    return across > 0.25 && up > -0.45 * across && up < 0.85 * across;
}

// The cloth of the lamp shade, as the half of a cylinder that faces the point.
Colour FromShade(const ObjectTree& casters, const Vec3& point, const Vec3& normal, const SampleId& id)
{
    if (Dot(kLampBulb - point, normal) < -0.25)
        return {};
    const Sample2 s = id.Point(SampleUse::LampShade);
    constexpr double kRadius = 0.21; // just outside the widest part, so the shade doesn't shadow itself
    constexpr double kMeanRadius = 0.165;
    const Vec3 apart{point.x - kLampBulb.x, 0.0, point.z - kLampBulb.z};
    const Vec3 towards = apart / std::max(Length(apart), 1e-6);
    // Angles are drawn by their cosine, so the limb, which gives little light, gets few samples.
    const double sine = 1.98 * s.u - 0.99;
    const double lean = std::sqrt(1.0 - sine * sine);
    const Vec3 outward = towards * lean + Vec3{-towards.z, 0.0, towards.x} * sine;
    const Vec3 way = kLampBulb + outward * kRadius + Vec3{0.0, kShadeHeight * (s.v - 0.5), 0.0} - point;
    const double distance = Length(way);
    const Vec3 direction = way / distance;
    const double cosine = Dot(normal, direction);
    const double lampCosine = -Dot(outward, direction);
    if (cosine <= 0.0 || lampCosine <= 0.0 || casters.Blocked({point, direction}, distance))
        return {};
    const double area = 2.0 * kMeanRadius * kShadeHeight / lean;
    return kShadeRadiance * (0.85 * cosine * lampCosine * area / std::max(distance * distance, 0.01));
}

// Seen at a distance, the sky and the sun-lit side of the street.
constexpr Colour kHaze{2100.0, 1750.0, 1500.0};
constexpr double kHazeLength = 300.0;

Colour StreetSkylight(const Vec3& normal)
{
    const double up = 0.5 + 0.5 * normal.y;
    return Mix(Colour{1300.0, 1080.0, 800.0}, Colour{2600.0, 3050.0, 3800.0}, up);
}

Colour StreetSurfaceRadiance(const ObjectTree& street, const Ray& ray, const Hit& hit)
{
    const Surface surface = SurfaceAt(hit, -ray.direction);
    Vec3 normal = hit.object->frame.DirectionToWorld(hit.localNormal);
    normal = Dot(normal, ray.direction) < 0.0 ? normal : -normal;
    const Vec3 point = ray.At(hit.t);
    const double cosine = Dot(normal, kSunDirection);
    const double wrapped = cosine > 0.0 ? cosine : -cosine * surface.translucency;
    Colour light = StreetSkylight(normal);
    if (wrapped > 0.0 && !street.Blocked({point + normal * 0.01, kSunDirection}, 1e9))
        light += kSunIrradiance * wrapped;
    Colour radiance = surface.albedo * light / kPi;
    if (surface.mirror > 0.0) {
        // Polished metal: the sky, and a glint where it mirrors the sun.
        const Vec3 mirrored = ray.direction - normal * (2.0 * Dot(ray.direction, normal));
        const double off = 1.0 - Dot(mirrored, kSunDirection);
        radiance += surface.mirrorTint * SkyRadiance(mirrored) * surface.mirror;
        radiance += kSunIrradiance * (2.0 * std::exp(-off / 0.03));
    }
    return radiance;
}

} // namespace

Colour SkyRadiance(const Vec3& direction)
{
    const double up = std::max(direction.y, 0.0);
    const Colour clear =
        Mix(Colour{4000.0, 4150.0, 4150.0}, Colour{720.0, 1350.0, 2700.0}, 1.0 - std::exp(-5.0 * up));
    const double towardsSun = std::max(0.0, Dot(direction, kSunDirection));
    const Colour glow = Colour{2200.0, 1700.0, 1000.0} * std::pow(towardsSun, 6.0);
    // Flat clouds on a plane overhead.
    const double plane = 1.0 / (up + 0.09);
    const double cover = Fractal(direction.x * plane * 1.1 + 3.0, direction.z * plane * 0.8, 5, 77);
    const double cloud = Smoothstep(0.50, 0.78, cover) * Smoothstep(0.0, 0.10, up);
    return Mix(clear, {7400.0, 6900.0, 6200.0}, cloud) + glow;
}

Colour StreetRadiance(const ObjectTree& street, const Ray& ray)
{
    const Hit hit = street.Nearest(ray);
    if (hit.object == nullptr)
        return SkyRadiance(ray.direction);
    const double clear = std::exp(-hit.t / kHazeLength);
    return Mix(kHaze, StreetSurfaceRadiance(street, ray, hit), clear);
}

WindowLight::WindowLight(const ObjectTree& street)
{
    const Vec3 middle{0.5 * (kWindowLeft + kWindowRight), 0.5 * (kWindowSill + kWindowTop), kWindowPlane};
    constexpr std::uint32_t kSamples = 64;
    for (int cell = 0; cell < kCells * kCells; ++cell) {
        Colour sum;
        for (std::uint32_t i = 0; i < kSamples; ++i) {
            const Sample2 s = ScrambledSobol(i, Hash(static_cast<std::uint32_t>(cell)));
            const int row = cell / kCells;
            const double x = 2.0 * (cell % kCells + s.u) / kCells - 1.0;
            const double y = 2.0 * (row + s.v) / kCells - 1.0;
            const double z = std::sqrt(std::max(0.01, 1.0 - x * x - y * y));
            sum += StreetRadiance(street, {middle, Normalized({x, y, z})});
        }
        m_cells[static_cast<std::size_t>(cell)] = sum / kSamples;
    }
}

Colour WindowLight::Radiance(const Vec3& direction) const
{
    const double x = std::clamp((direction.x + 1.0) * 0.5 * kCells - 0.5, 0.0, kCells - 1.001);
    const double y = std::clamp((direction.y + 1.0) * 0.5 * kCells - 0.5, 0.0, kCells - 1.001);
    const auto ix = static_cast<std::size_t>(x);
    const auto iy = static_cast<std::size_t>(y);
    const double fx = x - static_cast<double>(ix);
    const double fy = y - static_cast<double>(iy);
    const Colour* row = &m_cells[iy * kCells + ix];
    return Mix(Mix(row[0], row[1], fx), Mix(row[kCells], row[kCells + 1], fx), fy);
}

Colour DirectIrradiance(const ObjectTree& casters, const WindowLight& window, const Vec3& point,
                        const Vec3& normal, const SampleId& id)
{
    Colour sum =
        FromSun(casters, point, normal, id) + FromWindow(casters, window, point, normal, id) +
        FromBulb(casters, kPendant, 0.030, kPendantIntensity, point, normal, SampleUse::Pendant, id) +
        FromShade(casters, point, normal, id);
    if (!ShadeHidesBulb(point))
        sum += FromBulb(casters, kLampBulb, 0.025, kLampIntensity, point, normal, SampleUse::LampBulb, id);
    return sum;
}

} // namespace LS::Samples
