// Light that reaches a place after one or more bounces, from a coarse grid over the room.
#pragma once

#include "samples/SceneLight.h"

#include <array>
#include <vector>

namespace LS::Samples {

/// What the light of the room depends on; all of it belongs to the caller.
struct RoomLight {
    const ObjectTree& objects;
    const ObjectTree& casters; ///< those of them that throw shadows
    const WindowLight& window;
};

/// Indirect irradiance at the nodes of a grid, for the six axis directions each (an "ambient cube").
///
/// Bounced light changes slowly, so a node every 32 cm is enough; what happens in between (corners, the
/// underside of things) is the business of short occlusion rays at the place itself.
/// J. Mitchell, G. McTaggart and C. Green, "Shading in Valve's Source Engine", SIGGRAPH 2006 course.
class IrradianceVolume {
public:
    /// Follows light through the room; takes a few tenths of a second.
    IrradianceVolume(const RoomLight& room);

    /// @param normal  unit length
    Colour Irradiance(const Vec3& point, const Vec3& normal) const;

private:
    using Cube = std::array<Colour, 6>; // +x, -x, +y, -y, +z, -z

    struct Node {
        Cube irradiance;
        double weight = 0.0; ///< 0 inside of furniture, where a node sees nothing true
    };

    /// What a ray from a node has met: enough to light it again with every further bounce.
    struct Bounce {
        Vec3 direction;
        Vec3 point;
        Vec3 normal;
        Colour albedo;
        Colour direct; ///< radiance after the first bounce
    };

    static Vec3 NodePosition(int index);
    static std::vector<Bounce> Explore(const RoomLight& room, int index, double* inside);
    void Gather(const std::vector<std::vector<Bounce>>& bounces);
    void Smooth();

    std::vector<Node> m_nodes;
};

} // namespace LS::Samples
