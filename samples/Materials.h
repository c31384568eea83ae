// What the surfaces of the sample scene look like.
#pragma once

#include "samples/Shapes.h"

namespace LS::Samples {

enum class Material : std::uint8_t {
    // the room
    Wallpaper,
    Ceiling,
    Parquet,
    Rug,
    WhitePaint,
    Curtain,
    Walnut,
    Book,
    Picture,
    PictureMount,
    GiltFrame,
    Velvet,
    Cushion,
    Brass,
    LampShade,
    Filament,
    ClearBulb,
    Glass,
    ColourChart,
    ChartCard,
    Fruit,
    Porcelain,
    Petal,
    Leaf,
    Terracotta,
    CatFur,
    // the street
    Facade,
    Roof,
    Paving,
    Kerb,
    Foliage,
    Trunk,
    Awning,
    IronPost,
    GlintBall
};

/// How one point of a surface treats light.
struct Surface {
    Colour albedo;             ///< diffuse reflectance, 0..1
    Colour emission;           ///< radiance that it gives off by itself
    double translucency = 0.0; ///< share of the albedo that also passes light from the back
    double mirror = 0.0;       ///< specular reflectance at normal incidence; 0 for a matt surface
    double roughness = 0.0;    ///< spread of the reflection, as the tangent of an angle
    Colour mirrorTint{1, 1, 1};
};

/// @param hit     where a ray met the object
/// @param toEye   unit vector back along the ray; a few glowing surfaces depend on it
Surface SurfaceAt(const Hit& hit, const Vec3& toEye);

} // namespace LS::Samples
