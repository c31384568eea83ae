// The camera, and the light that each of its rays brings back.
#include "samples/SceneRadiance.h"

#include "samples/IrradianceVolume.h"
#include "samples/Materials.h"
#include "samples/SceneLight.h"
#include "samples/SceneModel.h"

#include <numbers>
#include <optional>

namespace LS::Samples {
namespace {

constexpr double kPi = std::numbers::pi;

std::vector<Object> ShadowCasters(std::vector<Object> objects)
{
    std::erase_if(objects, [](const Object& o) { return !o.castsShadow; });
    return objects;
}

/// Everything that doesn't change from pixel to pixel.
struct World {
    ObjectTree room{RoomObjects()};
    ObjectTree casters{ShadowCasters(RoomObjects())};
    ObjectTree street{StreetObjects()};
    WindowLight window{street};
    IrradianceVolume bounced{{room, casters, window}};
};

const World& TheWorld()
{
    static const World world;
    return world;
}

Colour Trace(const World& world, const Ray& ray, const SampleId& id);

// C. Schlick, "An Inexpensive BRDF Model for Physically-based Rendering", 1994.
double Fresnel(double atNormal, double cosine)
{
    const double c = 1.0 - std::clamp(cosine, 0.0, 1.0);
    return atNormal + (1.0 - atNormal) * c * c * c * c * c;
}

Vec3 Mirrored(const Vec3& direction, const Vec3& normal)
{
    return direction - normal * (2.0 * Dot(direction, normal));
}

std::optional<Vec3> Refracted(const Vec3& direction, const Vec3& normal, double ratio)
{
    const double cosine = -Dot(direction, normal);
    const double rest = 1.0 - ratio * ratio * (1.0 - cosine * cosine);
    if (rest < 0.0)
        return std::nullopt;
    return direction * ratio + normal * (ratio * cosine - std::sqrt(rest));
}

SampleId Deeper(SampleId id)
{
    ++id.depth;
    return id;
}

// The vase is taken as full of water: one refraction at each side of it.
Colour ThroughGlass(const World& world, const Ray& ray, const Hit& hit, const Vec3& normal,
                    const SampleId& id)
{
    constexpr double kIndex = 1.36;
    const bool entering = Dot(ray.direction, normal) < 0.0;
    const Vec3 facing = entering ? normal : -normal;
    const Vec3 point = ray.At(hit.t);
    const double reflectance = Fresnel(0.025, -Dot(ray.direction, facing));
    const auto passed = Refracted(ray.direction, facing, entering ? 1.0 / kIndex : kIndex);
    if (!passed)
        return Trace(world, {point, Mirrored(ray.direction, facing)}, Deeper(id));
    const Colour tint{0.93, 0.965, 0.95};
    Colour radiance = Trace(world, {point, Normalized(*passed)}, Deeper(id)) * tint * (1.0 - reflectance);
    if (entering)
        radiance +=
            Trace(world, {point, Mirrored(ray.direction, facing)}, {id.seed, id.index, id.depth + 3}) *
            reflectance;
    return radiance;
}

// A thin bulb: hardly bends light, glows a little, and mirrors the room at its rim.
Colour ThroughBulb(const World& world, const Ray& ray, const Hit& hit, const Vec3& normal, const SampleId& id)
{
    const double cosine = std::abs(Dot(ray.direction, normal));
    const double rim = Fresnel(0.04, cosine);
    const Colour glow = kPendantIntensity * (0.7 + 4.0 * rim);
    if (id.depth > 0) // a rough reflection would find the thin filament too seldom
        return kPendantIntensity * 60.0;
    const Ray onward{ray.At(hit.t), ray.direction};
    return Trace(world, onward, id) * (1.0 - rim) + glow;
}

// How open the surroundings are: 1 without anything near, less in corners and under furniture.
double Openness(const World& world, const Vec3& point, const Vec3& normal, const SampleId& id)
{
    constexpr double kReach = 0.60;
    const Ray ray{point, CosineDirection(normal, id.Point(SampleUse::Ambient))};
    return world.room.Nearest(ray, kReach).t / kReach;
}

Colour Irradiance(const World& world, const Vec3& point, const Vec3& normal, const SampleId& id)
{
    const Colour direct = DirectIrradiance(world.casters, world.window, point, normal, id);
    const double open = id.depth == 0 ? Openness(world, point, normal, id) : 0.8;
    return direct + world.bounced.Irradiance(point, normal) * open;
}

// A wide lobe finds a small bright light with one sample in many: a limit keeps that from being speckle.
Colour Dimmed(const Colour& radiance, double limit)
{
    const double luminance = Luminance(radiance);
    return luminance > limit ? radiance * (limit / luminance) : radiance;
}

Colour Reflection(const World& world, const Ray& ray, const Vec3& point, const Vec3& normal,
                  const Surface& surface, const SampleId& id)
{
    const Sample2 s = id.Point(SampleUse::Gloss);
    Vec3 tangent;
    Vec3 bitangent;
    Basis(normal, &tangent, &bitangent);
    // A facet of the surface. Its slope is bounded, so that a bright light has an edge, not a speckled tail.
    const double slope = surface.roughness * std::sqrt(s.u);
    const Vec3 facet = Normalized(normal + tangent * (slope * std::cos(2.0 * kPi * s.v)) +
                                  bitangent * (slope * std::sin(2.0 * kPi * s.v)));
    Vec3 direction = Mirrored(ray.direction, facet);
    if (Dot(direction, normal) < 0.0)
        direction = Mirrored(direction, normal);
    // Rough surfaces mirror less at grazing angles than Fresnel's law for a smooth one says.
    const double fresnel = Fresnel(surface.mirror, -Dot(ray.direction, facet));
    const double share = Mix(fresnel, surface.mirror, std::min(1.0, 2.5 * surface.roughness));
    const Colour mirrored = Trace(world, {point, direction}, Deeper(id));
    return Dimmed(mirrored, 60.0 / (surface.roughness * surface.roughness)) * surface.mirrorTint * share;
}

Colour Shade(const World& world, const Ray& ray, const Hit& hit, const Vec3& outward, const SampleId& id)
{
    const Surface surface = SurfaceAt(hit, -ray.direction);
    const Vec3 normal = Dot(outward, ray.direction) < 0.0 ? outward : -outward;
    const Vec3 point = ray.At(hit.t) + normal * 2e-4;
    Colour radiance = surface.emission;
    if (surface.albedo.y > 0.0)
        radiance += surface.albedo * Irradiance(world, point, normal, id) / kPi;
    if (surface.translucency > 0.0) {
        const Vec3 behind = ray.At(hit.t) - normal * 2e-4;
        radiance += surface.albedo * Irradiance(world, behind, -normal, id) * (surface.translucency / kPi);
    }
    if (surface.mirror > 0.0 && id.depth == 0)
        radiance += Reflection(world, ray, point, normal, surface, id);
    return radiance;
}

Colour Trace(const World& world, const Ray& ray, const SampleId& id)
{
    constexpr std::uint32_t kDeepest = 6;
    const Hit hit = world.room.Nearest(ray);
    if (hit.object == nullptr)
        return StreetRadiance(world.street, ray);
    const Vec3 normal = hit.object->frame.DirectionToWorld(hit.localNormal);
    if (hit.object->material == Material::Glass && id.depth < kDeepest)
        return ThroughGlass(world, ray, hit, normal, id);
    if (hit.object->material == Material::ClearBulb)
        return ThroughBulb(world, ray, hit, normal, id);
    return Shade(world, ray, hit, normal, id);
}

// A level camera with a shifted lens: verticals stay parallel, and the picture shows more floor than
// ceiling. Coordinates in pixels, not necessarily whole ones.
Ray CameraRay(double x, double y)
{
    constexpr Vec3 kEye{2.52, 1.40, 0.0};
    constexpr double kHalfWidth = 0.643; // 28 mm on 36 mm of film
    constexpr double kHorizon = 0.43;    // height of the horizon below the upper edge, in picture heights
    constexpr double kYaw = -0.035;
    const double scale = 2.0 * kHalfWidth / kSampleWidth;
    const double right = (x - 0.5 * kSampleWidth) * scale;
    const double up = (kHorizon * kSampleHeight - y) * scale;
    const double c = std::cos(kYaw);
    const double s = std::sin(kYaw);
    return {kEye, Normalized({right * c + s, up, c - right * s})};
}

// Offset for a pixel filter shaped like a tent, which is what a good lens and sensor come to.
double Tent(double u)
{
    return u < 0.5 ? std::sqrt(2.0 * u) - 1.0 : 1.0 - std::sqrt(2.0 - 2.0 * u);
}

class PixelMean {
public:
    void Add(const Colour& c)
    {
        const double y = Luminance(c);
        m_sum += c;
        m_luminance += y;
        m_squares += y * y;
        ++m_count;
    }

    Colour Mean() const { return m_sum / m_count; }

    /// Whether the scatter of the samples leaves the mean in doubt. The limit of 10 % is what as many
    /// independent samples would have; well-spread ones are closer to the truth by far.
    bool IsUncertain() const
    {
        const double mean = m_luminance / m_count;
        const double variance = m_squares / m_count - mean * mean;
        return variance > 0.10 * 0.10 * mean * mean * m_count;
    }

private:
    Colour m_sum;
    double m_luminance = 0.0;
    double m_squares = 0.0;
    int m_count = 0;
};

} // namespace

Radiance TrueRadiance(int x, int y)
{
    constexpr std::uint32_t kFew = 24; // fewer can miss a narrow view of the window altogether
    constexpr std::uint32_t kStep = 8;
    constexpr std::uint32_t kMany = 48;
    const World& world = TheWorld();
    const std::uint32_t seed = Hash(x, y, 0x5eedU);
    PixelMean pixel;
    for (std::uint32_t i = 0; i < kMany; ++i) {
        if (i >= kFew && i % kStep == 0 && !pixel.IsUncertain())
            break;
        const SampleId id{seed, i, 0};
        const Sample2 s = id.Point(SampleUse::Pixel);
        pixel.Add(Trace(world, CameraRay(x + 0.5 + Tent(s.u), y + 0.5 + Tent(s.v)), id));
    }
    const Colour mean = pixel.Mean();
    return {mean.x, mean.y, mean.z};
}

} // namespace LS::Samples
