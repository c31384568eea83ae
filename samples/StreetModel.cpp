// The street before the window.
#include "samples/SceneModel.h"

#include "samples/Sampling.h"
#include "samples/SceneBuilder.h"

#include <array>

namespace LS::Samples {
namespace {

// Street coordinates: x across to the right, y up from the paving, z along, away from the window.
constexpr double kStreetYaw = -0.2014;
constexpr Vec3 kStreetOrigin{1.52, -1.35, 5.9};
constexpr double kLeftFronts = -3.4;
constexpr double kRightFronts = 4.0;

double Random(std::uint32_t a, std::uint32_t b)
{
    return UnitFromBits(Hash(a, b));
}

struct House {
    double start;
    double end;
    double eaves;
    std::uint32_t look;
};

void BuildHouse(SceneBuilder& street, const House& house, double front, double away)
{
    const double back = front + 8.0 * away;
    const double low = std::min(front, back);
    const double high = std::max(front, back);
    street.Box({low, 0.0, house.start}, {high, house.eaves, house.end}, Material::Facade, house.look);
    // a cornice below the eaves, and a roof pitched towards the street
    street.Box({std::min(front, front - 0.35 * away), house.eaves - 0.25, house.start},
               {std::max(front, front - 0.35 * away), house.eaves, house.end}, Material::Kerb);
    SceneBuilder roof(street.At(Frame{{front - 0.45 * away, house.eaves, 0.0},
                                      {0.82 * away, 0.57, 0.0},
                                      {-0.57 * away, 0.82, 0.0},
                                      {0.0, 0.0, 1.0}}));
    roof.Box({0.0, -0.05, house.start - 0.05}, {5.0, 0.12, house.end + 0.05}, Material::Roof);
    for (int i = 0; i < 2; ++i) {
        const double z = Mix(house.start, house.end, 0.3 + 0.45 * i);
        const double x = front + 2.6 * away;
        street.Box({x - 0.35, house.eaves, z - 0.5}, {x + 0.35, house.eaves + 3.0, z + 0.4}, Material::Trunk);
    }
}

void BuildHouses(SceneBuilder& street)
{
    constexpr std::array<House, 7> right{{{10.0, 20.0, 8.9, 3},
                                          {20.0, 31.0, 8.2, 4},
                                          {31.0, 39.5, 9.6, 2},
                                          {39.5, 51.0, 8.6, 1},
                                          {51.0, 62.0, 9.9, 0},
                                          {62.0, 76.0, 8.4, 7},
                                          {76.0, 96.0, 9.2, 6}}};
    constexpr std::array<House, 5> left{{{19.0, 28.0, 7.2, 5},
                                         {28.0, 40.0, 6.6, 6},
                                         {40.0, 52.0, 7.8, 3},
                                         {52.0, 70.0, 7.0, 1},
                                         {70.0, 96.0, 8.0, 2}}};
    for (const House& house : right)
        BuildHouse(street, house, kRightFronts, 1.0);
    for (const House& house : left)
        BuildHouse(street, house, kLeftFronts, -1.0);
}

void BuildGround(SceneBuilder& street)
{
    street.Box({-60.0, -1.0, -5.0}, {60.0, 0.0, 400.0}, Material::Paving);
    street.Box({kLeftFronts, 0.0, 2.0}, {kLeftFronts + 1.0, 0.13, 100.0}, Material::Kerb);
    street.Box({kRightFronts - 1.1, 0.0, 2.0}, {kRightFronts, 0.13, 100.0}, Material::Kerb);
}

void BuildTree(SceneBuilder& street, const Vec3& foot, double height, std::uint32_t seed)
{
    street.Rod(foot, foot + Vec3{0.0, 0.75 * height, 0.0}, 0.16, 0.07, Material::Trunk);
    for (std::uint32_t i = 0; i < 26; ++i) {
        const Vec3 d = SphereDirection({Random(seed + i, 1), Random(seed + i, 2)});
        const double spread = 0.30 * height * std::cbrt(Random(seed + i, 3));
        const double r = height * (0.075 + 0.06 * Random(seed + i, 4));
        street.Ellipsoid(foot + Vec3{0.0, 0.70 * height, 0.0} + d * spread, {r, r * 0.85, r},
                         Material::Foliage, seed);
    }
}

void BuildFurniture(SceneBuilder& street)
{
    for (const double z : {22.0, 33.0, 47.0}) {
        const double x = kRightFronts - 1.25;
        street.Rod({x, 0.0, z}, {x, 3.3, z}, 0.07, 0.04, Material::IronPost);
        street.Ellipsoid({x, 3.5, z}, {0.20, 0.22, 0.20}, Material::GlintBall);
        street.Rod({x, 3.7, z}, {x, 3.95, z}, 0.10, 0.01, Material::IronPost);
    }
    for (const double z : {23.5, 35.0, 54.0})
        street.TurnedBox({kRightFronts - 0.65, 2.75, z}, {0.75, 0.03, 1.7}, 0.0, 0.0, Material::Awning);
    BuildTree(street, {kLeftFronts + 0.7, 0.0, 33.0}, 6.2, 501);
    BuildTree(street, {kLeftFronts + 0.6, 0.0, 44.0}, 6.8, 601);
    BuildTree(street, {kRightFronts - 0.8, 0.0, 60.0}, 6.5, 701);
    BuildTree(street, {-9.0, 0.0, 120.0}, 14.0, 801);
    BuildTree(street, {9.0, 0.0, 125.0}, 13.0, 901);
}

void BuildChurch(SceneBuilder& street)
{
    // turned, so that one of its sides is in the sun
    street.TurnedBox({0.5, 8.5, 153.5}, {3.4, 8.5, 3.4}, 0.75, 0.0, Material::Kerb);
    street.TurnedBox({0.5, 13.0, 153.5}, {0.7, 1.6, 3.45}, 0.75, 0.0, Material::IronPost);
    street.TurnedBox({0.5, 13.0, 153.5}, {3.45, 1.6, 0.7}, 0.75, 0.0, Material::IronPost);
    street.Rod({0.5, 17.0, 153.5}, {0.5, 19.0, 153.5}, 4.6, 2.2, Material::Roof);
    street.Rod({0.5, 19.0, 153.5}, {0.5, 28.0, 153.5}, 2.2, 0.05, Material::Roof);
}

} // namespace

std::vector<Object> StreetObjects()
{
    std::vector<Object> objects;
    SceneBuilder street(&objects, Frame::Turned(kStreetOrigin, kStreetYaw));
    BuildGround(street);
    BuildHouses(street);
    BuildFurniture(street);
    BuildChurch(street);
    return objects;
}

} // namespace LS::Samples
