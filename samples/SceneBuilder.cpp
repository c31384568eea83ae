// Shorthand for placing objects.
#include "samples/SceneBuilder.h"

namespace LS::Samples {

SceneBuilder::SceneBuilder(std::vector<Object>* objects, const Frame& base) : m_objects(objects), m_base(base)
{
}

Frame SceneBuilder::Placed(const Frame& local) const
{
    return {m_base.PointToWorld(local.origin), m_base.DirectionToWorld(local.x),
            m_base.DirectionToWorld(local.y), m_base.DirectionToWorld(local.z)};
}

Object& SceneBuilder::Add(ShapeKind kind, const Frame& local, const Vec3& half, Material material,
                          std::uint32_t variant)
{
    Object object;
    object.kind = kind;
    object.material = material;
    object.variant = variant;
    object.frame = Placed(local);
    object.half = half;
    return m_objects->emplace_back(object);
}

Object& SceneBuilder::Box(const Vec3& low, const Vec3& high, Material material, std::uint32_t variant)
{
    return Add(ShapeKind::Box, Frame{(low + high) * 0.5}, (high - low) * 0.5, material, variant);
}

Object& SceneBuilder::Rounded(const Vec3& low, const Vec3& high, double rounding, Material material,
                              std::uint32_t variant)
{
    Object& object = Box(low, high, material, variant);
    object.kind = ShapeKind::RoundedBox;
    object.rounding = rounding;
    return object;
}

Object& SceneBuilder::TurnedBox(const Vec3& centre, const Vec3& half, double yaw, double pitch,
                                Material material, std::uint32_t variant)
{
    return Add(ShapeKind::Box, Frame::Turned(centre, yaw, pitch), half, material, variant);
}

Object& SceneBuilder::Ellipsoid(const Vec3& centre, const Vec3& half, Material material,
                                std::uint32_t variant)
{
    return Add(ShapeKind::Ellipsoid, Frame{centre}, half, material, variant);
}

Object& SceneBuilder::Leaf(const Vec3& a, const Vec3& b, double width, double thickness, Material material,
                           std::uint32_t variant)
{
    return Add(ShapeKind::Ellipsoid, Frame::Along(a, b), {width, 0.5 * Length(b - a), thickness}, material,
               variant);
}

Object& SceneBuilder::Rod(const Vec3& a, const Vec3& b, double radiusA, double radiusB, Material material)
{
    const double half = 0.5 * Length(b - a);
    Object& object = Add(ShapeKind::Frustum, Frame::Along(a, b), {radiusA, half, radiusB}, material, 0);
    object.tiltBottom = object.tiltTop = (radiusB - radiusA) / (2.0 * half);
    return object;
}

void SceneBuilder::Lathe(const Vec3& foot, std::span<const std::pair<double, double>> profile, Caps caps,
                         Material material, bool castsShadow)
{
    const auto tilt = [&](std::size_t i) {
        const std::size_t a = i > 0 ? i - 1 : i;
        const std::size_t b = std::min(i + 1, profile.size() - 1);
        return (profile[b].first - profile[a].first) / (profile[b].second - profile[a].second);
    };
    for (std::size_t i = 0; i + 1 < profile.size(); ++i) {
        const auto [radius, height] = profile[i];
        const auto [nextRadius, nextHeight] = profile[i + 1];
        Object& ring = Rod(foot + Vec3{0.0, height, 0.0}, foot + Vec3{0.0, nextHeight, 0.0}, radius,
                           nextRadius, material);
        const bool isTop = i + 2 == profile.size();
        ring.caps = caps == Caps::Both && isTop    ? Caps::Both
                    : caps != Caps::None && i == 0 ? Caps::Bottom
                                                   : Caps::None;
        ring.castsShadow = castsShadow;
        ring.tiltBottom = tilt(i);
        ring.tiltTop = tilt(i + 1);
    }
}

} // namespace LS::Samples
