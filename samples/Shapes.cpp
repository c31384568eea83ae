// Ray intersection with the solids of Shapes.h, and the tree over them.
#include "samples/Shapes.h"

#include <utility>

namespace LS::Samples {
namespace {

// Nearer hits count as the surface that the ray starts from. A tenth of a millimetre.
constexpr double kStart = 1e-4;

// By value, unlike std::min and std::max: this becomes a single instruction in the hot loop.
double Smaller(double a, double b)
{
    return a < b ? a : b;
}
double Larger(double a, double b)
{
    return a > b ? a : b;
}

struct Span {
    double near = 0.0;
    double far = 0.0;
    int nearAxis = 0;
    int farAxis = 0;
};

double Part(const Vec3& v, int axis)
{
    return axis == 0 ? v.x : axis == 1 ? v.y : v.z;
}

bool SlabSpan(const Ray& local, const Vec3& half, Span* span)
{
    span->near = -1e30;
    span->far = 1e30;
    for (int axis = 0; axis < 3; ++axis) {
        const double inverse = 1.0 / Part(local.direction, axis);
        const double middle = -Part(local.origin, axis) * inverse;
        const double extent = Part(half, axis) * std::abs(inverse);
        if (middle - extent > span->near) {
            span->near = middle - extent;
            span->nearAxis = axis;
        }
        if (middle + extent < span->far) {
            span->far = middle + extent;
            span->farAxis = axis;
        }
    }
    return span->near <= span->far && span->far > kStart;
}

Vec3 AxisNormal(const Vec3& p, int axis)
{
    const double sign = std::copysign(1.0, Part(p, axis));
    return {axis == 0 ? sign : 0.0, axis == 1 ? sign : 0.0, axis == 2 ? sign : 0.0};
}

bool Accept(double t, const Object& object, const Vec3& local, const Vec3& normal, Hit* hit)
{
    *hit = {t, &object, local, normal};
    return true;
}

bool HitBox(const Object& object, const Ray& local, Hit* hit)
{
    Span span;
    if (!SlabSpan(local, object.half, &span))
        return false;
    const bool outside = span.near > kStart;
    const double t = outside ? span.near : span.far;
    if (t >= hit->t)
        return false;
    const Vec3 p = local.At(t);
    return Accept(t, object, p, AxisNormal(p, outside ? span.nearAxis : span.farAxis), hit);
}

Vec3 Positive(const Vec3& v)
{
    return {std::max(v.x, 0.0), std::max(v.y, 0.0), std::max(v.z, 0.0)};
}

// Sphere tracing inside the bounding box: the distance to a rounded box is exact outside of it.
bool HitRoundedBox(const Object& object, const Ray& local, Hit* hit)
{
    Span span;
    if (!SlabSpan(local, object.half, &span))
        return false;
    const double r = object.rounding;
    const Vec3 core = object.half - Vec3{r, r, r};
    double t = std::max(span.near, kStart);
    for (int step = 0; step < 48 && t < std::min(span.far, hit->t); ++step) {
        const Vec3 p = local.At(t);
        const Vec3 q = Positive({std::abs(p.x) - core.x, std::abs(p.y) - core.y, std::abs(p.z) - core.z});
        const double outside = Length(q);
        if (outside - r < 5e-5) {
            const Vec3 normal = outside > 1e-9 ? q / outside : Vec3{0.0, 1.0, 0.0};
            return Dot(local.direction, Vec3{std::copysign(normal.x, p.x), std::copysign(normal.y, p.y),
                                             std::copysign(normal.z, p.z)}) < 0.0 &&
                   Accept(t, object, p,
                          {std::copysign(normal.x, p.x), std::copysign(normal.y, p.y),
                           std::copysign(normal.z, p.z)},
                          hit);
        }
        t += outside - r;
    }
    return false;
}

Vec3 Divided(const Vec3& a, const Vec3& b)
{
    return {a.x / b.x, a.y / b.y, a.z / b.z};
}

bool HitEllipsoid(const Object& object, const Ray& local, Hit* hit)
{
    const Vec3 o = Divided(local.origin, object.half);
    const Vec3 d = Divided(local.direction, object.half);
    const double a = Dot(d, d);
    const double b = Dot(o, d);
    const double root = b * b - a * (Dot(o, o) - 1.0);
    if (root < 0.0)
        return false;
    const double s = std::sqrt(root);
    const double t = (-b - s) / a > kStart ? (-b - s) / a : (-b + s) / a;
    if (t <= kStart || t >= hit->t)
        return false;
    const Vec3 p = local.At(t);
    return Accept(t, object, p, Normalized(Divided(Divided(p, object.half), object.half)), hit);
}

bool HitCap(const Object& object, const Ray& local, double height, double radius, Hit* hit)
{
    const double t = (height - local.origin.y) / local.direction.y;
    if (!(t > kStart && t < hit->t))
        return false;
    const Vec3 p = local.At(t);
    return p.x * p.x + p.z * p.z <= radius * radius &&
           Accept(t, object, p, {0.0, std::copysign(1.0, height), 0.0}, hit);
}

bool HitMantle(const Object& object, const Ray& local, double t, Hit* hit)
{
    const Vec3 p = local.At(t);
    if (!(t > kStart && t < hit->t) || std::abs(p.y) > object.half.y)
        return false;
    const double radius = std::sqrt(p.x * p.x + p.z * p.z);
    const double tilt = Mix(object.tiltBottom, object.tiltTop, 0.5 + 0.5 * p.y / object.half.y);
    return radius > 0.0 && Accept(t, object, p, Normalized({p.x / radius, -tilt, p.z / radius}), hit);
}

bool HitFrustum(const Object& object, const Ray& local, Hit* hit)
{
    const Vec3& o = local.origin;
    const Vec3& d = local.direction;
    const double slope = (object.half.z - object.half.x) / (2.0 * object.half.y);
    const double radius = 0.5 * (object.half.x + object.half.z) + slope * o.y;
    const double a = d.x * d.x + d.z * d.z - slope * slope * d.y * d.y;
    const double b = o.x * d.x + o.z * d.z - slope * d.y * radius;
    const double c = o.x * o.x + o.z * o.z - radius * radius;
    const double root = b * b - a * c;
    bool found = false;
    if (root >= 0.0 && a != 0.0) {
        const double s = std::sqrt(root);
        found = HitMantle(object, local, (-b - s) / a, hit);
        found = HitMantle(object, local, (-b + s) / a, hit) || found;
    }
    if (object.caps != Caps::None)
        found = HitCap(object, local, -object.half.y, object.half.x, hit) || found;
    if (object.caps == Caps::Both)
        found = HitCap(object, local, object.half.y, object.half.z, hit) || found;
    return found;
}

} // namespace

Frame Frame::Turned(const Vec3& origin, double yaw, double pitch)
{
    const double cy = std::cos(yaw);
    const double sy = std::sin(yaw);
    const double cp = std::cos(pitch);
    const double sp = std::sin(pitch);
    return {origin, {cy, 0.0, -sy}, {sy * sp, cp, cy * sp}, {sy * cp, -sp, cy * cp}};
}

Frame Frame::Along(const Vec3& a, const Vec3& b)
{
    const Vec3 y = Normalized(b - a);
    const Vec3 aside = std::abs(y.x) < 0.9 ? Vec3{1.0, 0.0, 0.0} : Vec3{0.0, 0.0, 1.0};
    const Vec3 z = Normalized(Cross(aside, y));
    return {(a + b) * 0.5, Cross(y, z), y, z};
}

bool Intersect(const Object& object, const Ray& ray, Hit* hit)
{
    const Ray local{object.frame.PointToLocal(ray.origin), object.frame.DirectionToLocal(ray.direction)};
    switch (object.kind) {
    case ShapeKind::Box:
        return HitBox(object, local, hit);
    case ShapeKind::RoundedBox:
        return HitRoundedBox(object, local, hit);
    case ShapeKind::Ellipsoid:
        return HitEllipsoid(object, local, hit);
    case ShapeKind::Frustum:
        return HitFrustum(object, local, hit);
    }
    return false;
}

void ObjectTree::Bounds::Include(const Bounds& o)
{
    Vec3& low = corners[0];
    Vec3& high = corners[1];
    low = {std::min(low.x, o.corners[0].x), std::min(low.y, o.corners[0].y), std::min(low.z, o.corners[0].z)};
    high = {std::max(high.x, o.corners[1].x), std::max(high.y, o.corners[1].y),
            std::max(high.z, o.corners[1].z)};
}

double ObjectTree::Bounds::Area() const
{
    const Vec3 d = corners[1] - corners[0];
    return d.x * d.y + d.y * d.z + d.z * d.x;
}

ObjectTree::Bounds ObjectTree::BoundsOf(const Object& object)
{
    Vec3 half = object.half;
    if (object.kind == ShapeKind::Frustum)
        half.x = half.z = std::max(half.x, half.z);
    const Frame& f = object.frame;
    const Vec3 reach{std::abs(f.x.x) * half.x + std::abs(f.y.x) * half.y + std::abs(f.z.x) * half.z,
                     std::abs(f.x.y) * half.x + std::abs(f.y.y) * half.y + std::abs(f.z.y) * half.z,
                     std::abs(f.x.z) * half.x + std::abs(f.y.z) * half.y + std::abs(f.z.z) * half.z};
    return {{f.origin - reach, f.origin + reach}};
}

ObjectTree::ObjectTree(std::vector<Object> objects) : m_objects(std::move(objects))
{
    m_nodes.reserve(2 * m_objects.size());
    Build(0, static_cast<std::uint32_t>(m_objects.size()));
}

void ObjectTree::Build(std::uint32_t first, std::uint32_t count)
{
    const std::size_t index = m_nodes.size();
    m_nodes.emplace_back();
    for (std::uint32_t i = first; i < first + count; ++i)
        m_nodes[index].bounds.Include(BoundsOf(m_objects[i]));
    int axis = 0;
    const std::uint32_t left = count > 1 ? SplitPoint(first, count, &axis) : 0;
    if (left == 0) {
        m_nodes[index].first = first;
        m_nodes[index].count = static_cast<std::uint16_t>(count);
        return;
    }
    Build(first, left);
    m_nodes[index].first = static_cast<std::uint32_t>(m_nodes.size());
    m_nodes[index].axis = static_cast<std::uint16_t>(axis);
    Build(first + left, count - left);
}

// Surface area heuristic, sweeping all cuts along all axes. Leaves the objects sorted along the best axis.
// @return how many objects go left, or 0 if a leaf is cheaper
std::uint32_t ObjectTree::SplitPoint(std::uint32_t first, std::uint32_t count, int* axis)
{
    const auto begin = m_objects.begin() + first;
    const auto end = begin + count;
    const auto sortAlong = [&](int along) {
        std::stable_sort(begin, end, [along](const Object& a, const Object& b) {
            return Part(a.frame.origin, along) < Part(b.frame.origin, along);
        });
    };
    Bounds whole;
    for (auto object = begin; object != end; ++object)
        whole.Include(BoundsOf(*object));
    double bestCost = (count - 0.5) * whole.Area();
    std::uint32_t best = 0;
    *axis = 2;
    std::vector<double> rightArea(count);
    for (int a = 0; a < 3; ++a) {
        sortAlong(a);
        Bounds right;
        for (std::uint32_t i = count - 1; i > 0; --i) {
            right.Include(BoundsOf(begin[i]));
            rightArea[i] = right.Area();
        }
        Bounds left;
        for (std::uint32_t i = 1; i < count; ++i) {
            left.Include(BoundsOf(begin[i - 1]));
            const double cost = left.Area() * i + rightArea[i] * (count - i);
            if (cost < bestCost) {
                bestCost = cost;
                best = i;
                *axis = a;
            }
        }
    }
    sortAlong(*axis);
    return best;
}

// Calls visit(object) for the objects of every leaf that the ray enters before tMax, until it gives true.
template <typename Visit> void ObjectTree::Walk(const Ray& ray, const double& tMax, Visit visit) const
{
    const Vec3& d = ray.direction;
    const Vec3 inverse{1.0 / d.x, 1.0 / d.y, 1.0 / d.z};
    const Vec3 start = ray.origin * inverse;
    // Which corner the ray meets first, by axis: looked up, not decided, at every node.
    const std::array<std::size_t, 3> near{d.x < 0.0, d.y < 0.0, d.z < 0.0};
    const auto enters = [&](const Bounds& b) {
        const Vec3 first{b.corners[near[0]].x, b.corners[near[1]].y, b.corners[near[2]].z};
        const Vec3 last{b.corners[1 - near[0]].x, b.corners[1 - near[1]].y, b.corners[1 - near[2]].z};
        const Vec3 in = first * inverse - start;
        const Vec3 out = last * inverse - start;
        return Larger(Larger(in.x, in.y), Larger(in.z, 0.0)) <=
               Smaller(Smaller(out.x, out.y), Smaller(out.z, tMax));
    };
    std::array<std::uint32_t, 64> stack{};
    std::size_t depth = 1;
    while (depth > 0) {
        const std::uint32_t index = stack[--depth];
        const Node& node = m_nodes[index];
        if (!enters(node.bounds))
            continue;
        if (node.count == 0) {
            // The nearer child is taken first, so that it may hide the other one.
            const bool swapped = near[node.axis] != 0;
            stack[depth++] = swapped ? index + 1 : node.first;
            stack[depth++] = swapped ? node.first : index + 1;
            continue;
        }
        for (std::uint32_t i = node.first; i < node.first + node.count; ++i)
            if (visit(m_objects[i]))
                return;
    }
}

Hit ObjectTree::Nearest(const Ray& ray, double limit) const
{
    Hit hit;
    hit.t = limit;
    Walk(ray, hit.t, [&](const Object& object) {
        Intersect(object, ray, &hit);
        return false;
    });
    return hit;
}

bool ObjectTree::Blocked(const Ray& ray, double distance) const
{
    Hit hit;
    hit.t = distance;
    bool blocked = false;
    Walk(ray, distance, [&](const Object& object) {
        blocked = Intersect(object, ray, &hit);
        return blocked;
    });
    return blocked;
}

} // namespace LS::Samples
