// What the surfaces of the sample scene look like.
#include "samples/Materials.h"

#include "samples/Noise.h"
#include "samples/Sampling.h"
#include "samples/SceneLight.h"
#include "samples/Textures.h"

#include <array>

namespace LS::Samples {
namespace {

constexpr Colour kWalnutDark{0.060, 0.028, 0.014};
constexpr Colour kWalnutLight{0.185, 0.092, 0.043};

Surface Matt(const Colour& albedo)
{
    Surface s;
    s.albedo = albedo;
    return s;
}

Surface Glossy(const Colour& albedo, double mirror, double roughness)
{
    Surface s = Matt(albedo);
    s.mirror = mirror;
    s.roughness = roughness;
    return s;
}

Surface Walnut(const Hit& hit)
{
    // The grain follows the longest side of the piece.
    const Vec3& h = hit.object->half;
    const Vec3& p = hit.local;
    const bool upright = h.y > h.x && h.y > h.z;
    const bool deep = !upright && h.z > h.x;
    const double along = upright ? p.y : deep ? p.z : p.x;
    const double across = (upright ? p.x + 0.7 * p.z : deep ? p.x + 0.7 * p.y : p.z + 0.7 * p.y);
    return Glossy(WoodColour(along, across, hit.object->variant, kWalnutDark, kWalnutLight), 0.04, 0.10);
}

Surface Wallpaper(const Hit& hit, const Vec3& world)
{
    const bool facesSide = std::abs(hit.localNormal.x) > 0.5;
    return Matt(WallpaperColour(facesSide ? world.z : world.x, world.y));
}

Surface Rug(const Hit& hit)
{
    return Matt(RugColour(hit.local.x / hit.object->half.x, hit.local.z / hit.object->half.z));
}

Surface Book(const Hit& hit)
{
    const Vec3& h = hit.object->half;
    if (std::abs(hit.localNormal.y) > 0.5) // the cut pages
        return Matt(Colour{0.52, 0.46, 0.34} * (0.8 + 0.2 * Noise(hit.local.x * 900.0, 0.0, 5)));
    return Matt(BookColour(hit.local.x / h.x, hit.local.y / h.y, hit.object->variant));
}

Surface Picture(const Hit& hit)
{
    const Vec3& h = hit.object->half;
    const double u = 0.5 + 0.5 * hit.local.x / h.x;
    const double v = 0.5 + 0.5 * hit.local.y / h.y;
    return Matt(PaintingColour(u, v, hit.object->variant));
}

Surface Chart(const Hit& hit)
{
    const Vec3& h = hit.object->half;
    return Matt(ChartColour(0.5 + 0.5 * hit.local.x / h.x, 0.5 - 0.5 * hit.local.y / h.y));
}

Surface Velvet(const Hit& hit, const Vec3& world, const Vec3& toEye)
{
    // The pile scatters light sideways, which brightens grazing views.
    const Vec3 normal = hit.object->frame.DirectionToWorld(hit.localNormal);
    const double rim = 1.0 - std::abs(Dot(normal, toEye));
    const double crush = 0.85 + 0.3 * Noise(world * 14.0, 71);
    const double weave = 0.92 + 0.16 * Noise(world * 260.0, 72);
    return Matt(Colour{0.33, 0.115, 0.022} * ((0.72 + 0.9 * rim * rim) * crush * weave));
}

Surface Cushion(const Hit& hit)
{
    const double stripe = 0.5 + 0.5 * std::sin(hit.local.x * 110.0);
    static constexpr std::array<Colour, 2> cloths{{{0.46, 0.41, 0.32}, {0.10, 0.19, 0.24}}};
    const Colour cloth = cloths[hit.object->variant % cloths.size()];
    return Matt(cloth * (0.82 + 0.18 * Smoothstep(0.3, 0.7, stripe)));
}

Surface Curtain(const Vec3& world)
{
    Surface s = Matt(Colour{0.50, 0.45, 0.36} * (0.88 + 0.24 * Noise(world.x * 400.0, world.y * 60.0, 17)));
    s.translucency = 0.45;
    return s;
}

Surface LampShade(const Hit& hit)
{
    // Brightest at the height of the bulb, with the weave of the cloth.
    const double up = hit.local.y / hit.object->half.y;
    const double weave = 0.93 + 0.14 * Noise(std::atan2(hit.local.z, hit.local.x) * 70.0, up * 60.0, 23);
    Surface s = Matt({0.45, 0.38, 0.28});
    s.emission = kShadeRadiance * ((0.55 + 0.45 * std::exp(-1.6 * (up + 0.15) * (up + 0.15))) * weave);
    return s;
}

Surface Fruit(const Hit& hit)
{
    static constexpr std::array<Colour, 3> skins{
        {{0.58, 0.20, 0.025}, {0.42, 0.045, 0.025}, {0.34, 0.36, 0.045}}};
    const Colour skin = skins[hit.object->variant % skins.size()];
    const double mottle = Noise(hit.local * 55.0, hit.object->variant);
    return Glossy(Mix(skin, skin * 0.65 + Colour{0.05, 0.04, 0.0}, mottle), 0.035, 0.12);
}

Surface Petal(const Hit& hit)
{
    static constexpr std::array<Colour, 3> petals{
        {{0.62, 0.06, 0.075}, {0.68, 0.40, 0.05}, {0.66, 0.50, 0.46}}};
    const double streak =
        0.8 + 0.4 * Noise(std::atan2(hit.local.z, hit.local.x) * 9.0, hit.local.y * 30.0, 31);
    Surface s = Matt(petals[hit.object->variant % petals.size()] * streak);
    s.translucency = 0.4;
    return s;
}

Surface Leaf(const Hit& hit)
{
    const double vein = 0.8 + 0.4 * Noise(hit.local.x * 120.0, hit.local.y * 16.0, hit.object->variant);
    Surface s = Matt(Colour{0.070, 0.140, 0.036} * vein);
    s.translucency = 0.4;
    return s;
}

Surface Facade(const Hit& hit)
{
    // Houses stand on the street with their fronts along their local z axis.
    const double v = hit.local.y + hit.object->half.y;
    const bool front = std::abs(hit.localNormal.x) > 0.5;
    return Matt(FacadeColour((front ? hit.local.z : hit.local.x) + 40.0, v, hit.object->variant));
}

Surface Roof(const Vec3& world)
{
    const double tile = Noise(world * 4.0, 91) * 0.5 + Noise(world * 1.1, 92) * 0.5;
    return Matt(Mix(Colour{0.24, 0.085, 0.045}, Colour{0.36, 0.17, 0.10}, tile));
}

Surface Foliage(const Vec3& world, std::uint32_t variant)
{
    const double leaves = Noise(world * 5.0, variant) * 0.6 + Noise(world * 13.0, variant + 1) * 0.4;
    const double gaps = Smoothstep(0.30, 0.55, leaves);
    Surface s = Matt(Mix(Colour{0.018, 0.030, 0.010}, Colour{0.17, 0.23, 0.050}, gaps));
    s.translucency = 0.35;
    return s;
}

Surface Metal(const Colour& tint, double mirror, double roughness)
{
    Surface s = Glossy(tint * 0.12, mirror, roughness);
    s.mirrorTint = tint;
    return s;
}

Surface Glowing(const Colour& radiance)
{
    Surface s;
    s.emission = radiance;
    return s;
}

Surface RoomSurface(const Hit& hit, const Vec3& world, const Vec3& toEye)
{
    switch (hit.object->material) {
    case Material::Wallpaper:
        return Wallpaper(hit, world);
    case Material::Parquet:
        return Glossy(ParquetColour(world.x, world.z), 0.045, 0.045);
    case Material::Rug:
        return Rug(hit);
    case Material::Curtain:
        return Curtain(world);
    case Material::Walnut:
        return Walnut(hit);
    case Material::Book:
        return Book(hit);
    case Material::Picture:
        return Picture(hit);
    case Material::Velvet:
        return Velvet(hit, world, toEye);
    case Material::Cushion:
        return Cushion(hit);
    case Material::LampShade:
        return LampShade(hit);
    case Material::ColourChart:
        return Chart(hit);
    case Material::Fruit:
        return Fruit(hit);
    case Material::Petal:
        return Petal(hit);
    case Material::Leaf:
        return Leaf(hit);
    default:
        return Matt({0.5, 0.5, 0.5});
    }
}

Surface StreetSurface(const Hit& hit, const Vec3& world)
{
    switch (hit.object->material) {
    case Material::Facade:
        return Facade(hit);
    case Material::Roof:
        return Roof(world);
    case Material::Paving:
        return Matt(PavingColour(hit.local.x, hit.local.z));
    case Material::Foliage:
        return Foliage(world, hit.object->variant);
    case Material::Awning:
        return Matt(std::fmod(hit.local.z + 40.0, 0.6) < 0.3 ? Colour{0.55, 0.10, 0.07}
                                                             : Colour{0.72, 0.68, 0.60});
    default:
        return Matt({0.4, 0.4, 0.4});
    }
}

} // namespace

Surface SurfaceAt(const Hit& hit, const Vec3& toEye)
{
    const Vec3 world = hit.object->frame.PointToWorld(hit.local);
    switch (hit.object->material) {
    case Material::Ceiling:
        return Matt({0.52, 0.50, 0.46});
    case Material::WhitePaint:
        return Matt({0.56, 0.54, 0.49});
    case Material::PictureMount:
        return Matt({0.62, 0.60, 0.54});
    case Material::GiltFrame:
        return Glossy({0.34, 0.21, 0.07}, 0.10, 0.22);
    case Material::Brass:
        return Metal({0.80, 0.56, 0.24}, 0.65, 0.12);
    case Material::Filament:
        return Glowing(kFilamentRadiance);
    case Material::ChartCard:
        return Matt({0.018, 0.018, 0.018});
    case Material::Porcelain:
        return Glossy({0.68, 0.68, 0.66}, 0.045, 0.03);
    case Material::Terracotta:
        return Matt(Colour{0.34, 0.135, 0.065} * (0.85 + 0.3 * Noise(world * 40.0, 61)));
    case Material::CatFur:
        return Matt(Colour{0.055, 0.045, 0.040} * (0.7 + 0.6 * Noise(world * 90.0, 62)));
    case Material::Kerb:
        return Matt({0.46, 0.44, 0.40});
    case Material::Trunk:
        return Matt({0.10, 0.075, 0.050});
    case Material::IronPost:
        return Matt({0.03, 0.04, 0.035});
    case Material::GlintBall:
        return Metal({0.85, 0.80, 0.70}, 0.5, 0.0);
    default:
        return hit.object->material < Material::Facade ? RoomSurface(hit, world, toEye)
                                                       : StreetSurface(hit, world);
    }
}

} // namespace LS::Samples
