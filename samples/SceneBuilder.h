// Shorthand for placing objects.
#pragma once

#include "samples/Materials.h"
#include "samples/Shapes.h"

#include <span>
#include <utility>
#include <vector>

namespace LS::Samples {

/// Collects objects. Places are given in `base`, so a piece of furniture can be built around its own
/// origin and turned as a whole.
class SceneBuilder {
public:
    explicit SceneBuilder(std::vector<Object>* objects, const Frame& base = {});

    /// A builder for the same list whose base is `local` within this one's.
    SceneBuilder At(const Frame& local) const { return SceneBuilder(m_objects, Placed(local)); }

    /// Axis-parallel box (in the base) from one corner to the other.
    Object& Box(const Vec3& low, const Vec3& high, Material material, std::uint32_t variant = 0);
    Object& Rounded(const Vec3& low, const Vec3& high, double rounding, Material material,
                    std::uint32_t variant = 0);
    /// Box around `centre`, turned as in Frame::Turned.
    Object& TurnedBox(const Vec3& centre, const Vec3& half, double yaw, double pitch, Material material,
                      std::uint32_t variant = 0);
    Object& Ellipsoid(const Vec3& centre, const Vec3& half, Material material, std::uint32_t variant = 0);
    /// Ellipsoid whose y axis points from a to b.
    Object& Leaf(const Vec3& a, const Vec3& b, double width, double thickness, Material material,
                 std::uint32_t variant);
    /// Round rod from a to b.
    Object& Rod(const Vec3& a, const Vec3& b, double radiusA, double radiusB, Material material);
    /// Solid of revolution about the vertical through `foot`; the profile gives (radius, height) upwards.
    void Lathe(const Vec3& foot, std::span<const std::pair<double, double>> profile, Caps caps,
               Material material, bool castsShadow = true);

private:
    Frame Placed(const Frame& local) const;
    Object& Add(ShapeKind kind, const Frame& local, const Vec3& half, Material material,
                std::uint32_t variant);

    std::vector<Object>* m_objects; // the caller's
    Frame m_base;
};

} // namespace LS::Samples
