// Solids that rays can hit, and a tree over many of them.
#pragma once

#include "samples/Vec3.h"

#include <array>
#include <cstdint>
#include <limits>
#include <vector>

namespace LS::Samples {

enum class Material : std::uint8_t; // see Materials.h

struct Ray {
    Vec3 origin;
    Vec3 direction; ///< unit length

    Vec3 At(double t) const { return origin + direction * t; }
};

/// Place and orientation of a shape: an origin and three unit axes in world coordinates.
struct Frame {
    Vec3 origin;
    Vec3 x{1.0, 0.0, 0.0};
    Vec3 y{0.0, 1.0, 0.0};
    Vec3 z{0.0, 0.0, 1.0};

    Vec3 DirectionToLocal(const Vec3& d) const { return {Dot(d, x), Dot(d, y), Dot(d, z)}; }
    Vec3 PointToLocal(const Vec3& p) const { return DirectionToLocal(p - origin); }
    Vec3 DirectionToWorld(const Vec3& d) const { return x * d.x + y * d.y + z * d.z; }
    Vec3 PointToWorld(const Vec3& p) const { return origin + DirectionToWorld(p); }

    /// Turned about the vertical by `yaw`, after leaning back by `pitch` about its own x axis; radians.
    static Frame Turned(const Vec3& origin, double yaw, double pitch = 0.0);
    /// Midway between two points, its y axis pointing from a to b.
    static Frame Along(const Vec3& a, const Vec3& b);
};

enum class ShapeKind : std::uint8_t {
    Box,        ///< -half..half
    RoundedBox, ///< the same with edges of radius `rounding`
    Ellipsoid,  ///< half axes `half`
    Frustum     ///< round about y, -half.y..half.y, radius half.x at the bottom and half.z at the top
};

enum class Caps : std::uint8_t { None, Bottom, Both };

struct Object {
    ShapeKind kind = ShapeKind::Box;
    Material material{};
    Caps caps = Caps::Both;
    bool castsShadow = true;
    std::uint32_t variant = 0; ///< lets objects of one material differ
    Frame frame;
    Vec3 half;
    double rounding = 0.0;
    double tiltBottom = 0.0; ///< change of a frustum's radius per height, for the normal at its bottom
    double tiltTop = 0.0;    ///< and at its top; neighbours that share them look like one smooth surface
};

struct Hit {
    double t = std::numeric_limits<double>::infinity();
    const Object* object = nullptr;
    Vec3 local;       ///< the point in the object's frame
    Vec3 localNormal; ///< unit length, out of the solid
};

/// The nearest intersection beyond a small offset and nearer than hit->t. @return true if hit was updated
bool Intersect(const Object& object, const Ray& ray, Hit* hit);

/// A bounding volume tree. Immutable once built, so any number of threads may ask it.
class ObjectTree {
public:
    explicit ObjectTree(std::vector<Object> objects);
    ObjectTree(const ObjectTree&) = delete; // hits point to the objects
    ObjectTree& operator=(const ObjectTree&) = delete;

    /// @param limit  farther objects don't count
    Hit Nearest(const Ray& ray, double limit = std::numeric_limits<double>::infinity()) const;

    /// Whether any object lies between the origin and `distance`.
    bool Blocked(const Ray& ray, double distance) const;

private:
    struct Bounds {
        std::array<Vec3, 2> corners{Vec3{1e30, 1e30, 1e30}, Vec3{-1e30, -1e30, -1e30}}; ///< low and high
        void Include(const Bounds& o);
        double Area() const;
    };
    struct Node {
        Bounds bounds;
        std::uint32_t first = 0; ///< of its objects, or the index of its second child
        std::uint16_t count = 0; ///< 0 for an inner node, whose first child is the next node
        std::uint16_t axis = 0;  ///< along which the second child lies behind the first
    };

    static Bounds BoundsOf(const Object& object);
    void Build(std::uint32_t first, std::uint32_t count);
    std::uint32_t SplitPoint(std::uint32_t first, std::uint32_t count, int* axis);
    template <typename Visit> void Walk(const Ray& ray, const double& tMax, Visit visit) const;

    std::vector<Object> m_objects;
    std::vector<Node> m_nodes;
};

} // namespace LS::Samples
