// Light that reaches a place after one or more bounces.
#include "samples/IrradianceVolume.h"

#include "samples/Materials.h"
#include "samples/SceneModel.h"

#include <numbers>
#include <utility>

namespace LS::Samples {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr int kNodesX = 15;
constexpr int kNodesY = 9;
constexpr int kNodesZ = 20;
constexpr int kNodes = kNodesX * kNodesY * kNodesZ;
constexpr std::uint32_t kRays = 64;
constexpr int kBounces = 3;

// Nodes keep a hand's breadth from walls, floor and ceiling.
constexpr Vec3 kLow{0.08, 0.08, kRoomFront + 0.08};
constexpr Vec3 kHigh{kRoomWidth - 0.08, kRoomHeight - 0.08, kRoomBack - 0.02};

int NodeIndex(int x, int y, int z)
{
    return (z * kNodesY + y) * kNodesX + x;
}

double GridPlace(double v, double low, double high, int nodes)
{
    return std::clamp((v - low) / (high - low) * (nodes - 1), 0.0, nodes - 1.001);
}

} // namespace

Vec3 IrradianceVolume::NodePosition(int index)
{
    const int x = index % kNodesX;
    const int y = index / kNodesX % kNodesY;
    const int z = index / (kNodesX * kNodesY);
    const auto share = [](int i, int nodes) { return static_cast<double>(i) / (nodes - 1); };
    return {Mix(kLow.x, kHigh.x, share(x, kNodesX)), Mix(kLow.y, kHigh.y, share(y, kNodesY)),
            Mix(kLow.z, kHigh.z, share(z, kNodesZ))};
}

std::vector<IrradianceVolume::Bounce> IrradianceVolume::Explore(const RoomLight& room, int index,
                                                                double* inside)
{
    std::vector<Bounce> bounces;
    bounces.reserve(kRays);
    const Vec3 origin = NodePosition(index);
    for (std::uint32_t i = 0; i < kRays; ++i) {
        const SampleId id{Hash(static_cast<std::uint32_t>(index), 0x51edU), i, 0};
        const Ray ray{origin, SphereDirection(id.Point(SampleUse::Pixel))};
        const Hit hit = room.objects.Nearest(ray);
        if (hit.object == nullptr) // out of the window, which is counted as direct light
            continue;
        const Vec3 normal = hit.object->frame.DirectionToWorld(hit.localNormal);
        if (Dot(normal, ray.direction) > 0.0 && hit.object->kind != ShapeKind::Frustum) {
            *inside += 1.0 / kRays;
            continue;
        }
        const Surface surface = SurfaceAt(hit, -ray.direction);
        const Vec3 facing = Dot(normal, ray.direction) < 0.0 ? normal : -normal;
        const Vec3 point = ray.At(hit.t) + facing * 1e-3;
        const Colour direct =
            surface.albedo * DirectIrradiance(room.casters, room.window, point, facing, id) / kPi;
        bounces.push_back({ray.direction, point, facing, surface.albedo, direct});
    }
    return bounces;
}

void IrradianceVolume::Gather(const std::vector<std::vector<Bounce>>& bounces)
{
    std::vector<Node> next = m_nodes;
    for (std::size_t n = 0; n < next.size(); ++n) {
        next[n].irradiance = {};
        for (const Bounce& b : bounces[n]) {
            const Colour radiance = b.direct + b.albedo * Irradiance(b.point, b.normal) / kPi;
            const Colour share = radiance * (4.0 * kPi / kRays);
            next[n].irradiance[b.direction.x > 0.0 ? 0 : 1] += share * std::abs(b.direction.x);
            next[n].irradiance[b.direction.y > 0.0 ? 2 : 3] += share * std::abs(b.direction.y);
            next[n].irradiance[b.direction.z > 0.0 ? 4 : 5] += share * std::abs(b.direction.z);
        }
    }
    m_nodes.swap(next);
}

// A tent over the neighbours takes out what noise is left.
void IrradianceVolume::Smooth()
{
    const std::vector<Node> before = m_nodes;
    const auto at = [](int v, int limit) { return std::clamp(v, 0, limit - 1); };
    for (int n = 0; n < kNodes; ++n) {
        const int x = n % kNodesX;
        const int y = n / kNodesX % kNodesY;
        const int z = n / (kNodesX * kNodesY);
        Cube sum{};
        double total = 0.0;
        for (int d = 0; d < 27; ++d) {
            const int dx = d % 3 - 1;
            const int dy = d / 3 % 3 - 1;
            const int dz = d / 9 - 1;
            const Node& from = before[static_cast<std::size_t>(
                NodeIndex(at(x + dx, kNodesX), at(y + dy, kNodesY), at(z + dz, kNodesZ)))];
            const double weight = from.weight * (2 - std::abs(dx)) * (2 - std::abs(dy)) * (2 - std::abs(dz));
            total += weight;
            for (std::size_t side = 0; side < sum.size(); ++side)
                sum[side] += from.irradiance[side] * weight;
        }
        if (total > 0.0)
            for (std::size_t side = 0; side < sum.size(); ++side)
                m_nodes[static_cast<std::size_t>(n)].irradiance[side] = sum[side] / total;
    }
}

IrradianceVolume::IrradianceVolume(const RoomLight& room) : m_nodes(static_cast<std::size_t>(kNodes))
{
    std::vector<std::vector<Bounce>> bounces;
    bounces.reserve(m_nodes.size());
    for (int n = 0; n < kNodes; ++n) {
        double inside = 0.0;
        bounces.push_back(Explore(room, n, &inside));
        m_nodes[static_cast<std::size_t>(n)].weight = inside < 0.2 ? 1.0 : 0.0;
    }
    for (int bounce = 0; bounce < kBounces; ++bounce) {
        Gather(bounces);
        Smooth();
    }
}

Colour IrradianceVolume::Irradiance(const Vec3& point, const Vec3& normal) const
{
    const Vec3 away = point + normal * 0.12;
    const double x = GridPlace(away.x, kLow.x, kHigh.x, kNodesX);
    const double y = GridPlace(away.y, kLow.y, kHigh.y, kNodesY);
    const double z = GridPlace(away.z, kLow.z, kHigh.z, kNodesZ);
    const int ix = static_cast<int>(x);
    const int iy = static_cast<int>(y);
    const int iz = static_cast<int>(z);
    const std::array<std::pair<std::size_t, double>, 3> sides{
        {{normal.x > 0.0 ? 0 : 1, normal.x * normal.x},
         {normal.y > 0.0 ? 2 : 3, normal.y * normal.y},
         {normal.z > 0.0 ? 4 : 5, normal.z * normal.z}}};
    Colour sum;
    double total = 0.0;
    for (int corner = 0; corner < 8; ++corner) {
        const int cx = corner & 1;
        const int cy = (corner >> 1) & 1;
        const int cz = corner >> 2;
        const Node& node = m_nodes[static_cast<std::size_t>(NodeIndex(ix + cx, iy + cy, iz + cz))];
        const double weight = (cx != 0 ? x - ix : 1.0 - x + ix) * (cy != 0 ? y - iy : 1.0 - y + iy) *
                              (cz != 0 ? z - iz : 1.0 - z + iz) * (node.weight + 1e-6);
        total += weight;
        for (const auto& [side, share] : sides)
            sum += node.irradiance[side] * (weight * share);
    }
    return sum / total;
}

} // namespace LS::Samples
