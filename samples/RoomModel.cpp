// The furnished room.
#include "samples/SceneModel.h"

#include "samples/Sampling.h"
#include "samples/SceneBuilder.h"

#include <array>
#include <numbers>

namespace LS::Samples {
namespace {

double Random(std::uint32_t a, std::uint32_t b)
{
    return UnitFromBits(Hash(a, b));
}

constexpr double kWallTop = kRoomHeight + 0.2;

// Nothing in the room lies behind these, so no shadow ray needs to know them.
void BuildShell(SceneBuilder& room)
{
    constexpr double w = kRoomWidth;
    constexpr double outer = kRoomBack + kWallDepth;
    room.Box({-0.3, -0.2, kRoomFront - 0.2}, {w + 0.3, 0.0, outer}, Material::Parquet);
    room.Box({-0.3, kRoomHeight, kRoomFront - 0.2}, {w + 0.3, kWallTop, outer}, Material::Ceiling);
    room.Box({-0.3, -0.2, kRoomFront - 0.2}, {0.0, kWallTop, outer}, Material::Wallpaper);
    room.Box({w, -0.2, kRoomFront - 0.2}, {w + 0.3, kWallTop, outer}, Material::Wallpaper);
    room.Box({-0.3, -0.2, kRoomFront - 0.3}, {w + 0.3, kWallTop, kRoomFront}, Material::Wallpaper);
}

void BuildBackWall(SceneBuilder& room)
{
    constexpr double w = kRoomWidth;
    constexpr double outer = kRoomBack + kWallDepth;
    room.Box({-0.3, -0.2, kRoomBack}, {kWindowLeft, kWallTop, outer}, Material::Wallpaper);
    room.Box({kWindowRight, -0.2, kRoomBack}, {w + 0.3, kWallTop, outer}, Material::Wallpaper);
    room.Box({kWindowLeft, -0.2, kRoomBack}, {kWindowRight, kWindowSill, outer}, Material::Wallpaper);
    room.Box({kWindowLeft, kWindowTop, kRoomBack}, {kWindowRight, kWallTop, outer}, Material::Wallpaper);
}

void BuildMouldings(SceneBuilder& room)
{
    constexpr double w = kRoomWidth;
    constexpr double b = kRoomBack;
    constexpr double h = kRoomHeight;
    const auto along = [&](double low, double high, double depth) {
        room.Box({0.0, low, b - depth}, {w, high, b}, Material::WhitePaint);
        room.Box({0.0, low, kRoomFront}, {depth, high, b}, Material::WhitePaint);
        room.Box({w - depth, low, kRoomFront}, {w, high, b}, Material::WhitePaint);
    };
    along(0.0, 0.13, 0.018); // baseboard
    along(0.13, 0.15, 0.010);
    along(h - 0.05, h, 0.10); // crown
    along(h - 0.09, h - 0.05, 0.06);
    along(h - 0.12, h - 0.09, 0.025);
    along(h - 0.44, h - 0.42, 0.020); // picture rail
}

void BuildWindow(SceneBuilder& room)
{
    constexpr double z0 = kRoomBack + 0.15;
    constexpr double z1 = kRoomBack + 0.20;
    constexpr double l = kWindowLeft;
    constexpr double r = kWindowRight;
    constexpr double s = kWindowSill;
    constexpr double t = kWindowTop;
    constexpr double middle = 0.5 * (l + r);
    constexpr double transom = 1.80;
    const auto bar = [&](double x0, double x1, double y0, double y1, double depth) {
        room.Box({x0, y0, z0 - depth}, {x1, y1, z1}, Material::WhitePaint);
    };
    bar(l, l + 0.055, s, t, 0.02);
    bar(r - 0.055, r, s, t, 0.02);
    bar(l, r, s, s + 0.06, 0.02);
    bar(l, r, t - 0.055, t, 0.02);
    bar(middle - 0.035, middle + 0.035, s, t, 0.015);
    bar(l, r, transom - 0.03, transom + 0.03, 0.015);
    for (const double x : {0.5 * (l + middle), 0.5 * (middle + r)})
        bar(x - 0.011, x + 0.011, s, t, -0.01);
    bar(l, r, 1.19, 1.212, -0.01);
    // casing around the opening, sill board and its apron
    room.Box({l - 0.10, s, kRoomBack - 0.022}, {l, t + 0.10, kRoomBack}, Material::WhitePaint);
    room.Box({r, s, kRoomBack - 0.022}, {r + 0.10, t + 0.10, kRoomBack}, Material::WhitePaint);
    room.Box({l, t, kRoomBack - 0.022}, {r, t + 0.10, kRoomBack}, Material::WhitePaint);
    room.Rounded({l - 0.14, s - 0.035, kRoomBack - 0.16}, {r + 0.14, s, z0}, 0.012, Material::WhitePaint);
    room.Box({l - 0.10, s - 0.12, kRoomBack - 0.02}, {r + 0.10, s - 0.035, kRoomBack}, Material::WhitePaint);
    // the reveal is painted, not papered
    room.Box({l, s, kRoomBack}, {l + 0.004, t, kRoomBack + kWallDepth}, Material::WhitePaint);
    room.Box({r - 0.004, s, kRoomBack}, {r, t, kRoomBack + kWallDepth}, Material::WhitePaint);
    room.Box({l, t - 0.004, kRoomBack}, {r, t, kRoomBack + kWallDepth}, Material::WhitePaint);
}

// A row of upright folds, gathered to their middle height by `waist`.
void BuildCurtain(SceneBuilder& room, double from, double to, std::uint32_t seed)
{
    constexpr double z = kRoomBack - 0.13;
    const double step = 0.052;
    const int folds = static_cast<int>((to - from) / step);
    for (int i = 0; i <= folds; ++i) {
        const auto id = seed + static_cast<std::uint32_t>(i);
        const double x = from + i * step;
        const double depth = z + ((i & 1) != 0 ? 0.022 : -0.022) + 0.02 * (Random(id, 2) - 0.5);
        const double radius = 0.036 + 0.010 * Random(id, 3);
        const double sway = 0.05 * (Random(id, 4) - 0.5);
        Object& fold = room.Rod({x + sway, 0.03, depth}, {x, 2.50, depth}, radius * 1.08, radius * 0.72,
                                Material::Curtain);
        fold.caps = Caps::None;
    }
}

void BuildCurtains(SceneBuilder& room)
{
    room.Rod({0.18, 2.53, kRoomBack - 0.13}, {2.86, 2.53, kRoomBack - 0.13}, 0.014, 0.014, Material::Brass);
    for (const double x : {0.17, 2.87})
        room.Ellipsoid({x, 2.53, kRoomBack - 0.13}, {0.03, 0.03, 0.03}, Material::Brass);
    BuildCurtain(room, 0.27, 0.74, 100);
    BuildCurtain(room, 2.34, 2.74, 200);
}

void BuildBench(SceneBuilder& room)
{
    room.Box({0.66, 0.0, 5.02}, {2.38, 0.36, 5.38}, Material::WhitePaint);
    for (int i = 0; i < 3; ++i) // raised panels
        room.Box({0.72 + 0.56 * i, 0.07, 5.008}, {1.20 + 0.56 * i, 0.30, 5.02}, Material::WhitePaint);
    room.Rounded({0.66, 0.36, 5.00}, {2.38, 0.45, 5.39}, 0.035, Material::Cushion, 0);
    SceneBuilder pillow(room.At(Frame::Turned({0.98, 0.59, 5.22}, 0.35, -0.35)));
    pillow.Rounded({-0.19, -0.16, -0.06}, {0.19, 0.16, 0.06}, 0.058, Material::Cushion, 1);
}

// A cat that watches the street: seen from behind, against the light.
void BuildCat(SceneBuilder& room)
{
    SceneBuilder cat(room.At(Frame::Turned({2.03, kWindowSill, kRoomBack - 0.04}, 0.35)));
    cat.Ellipsoid({0.0, 0.085, 0.0}, {0.088, 0.090, 0.105}, Material::CatFur);
    cat.Ellipsoid({0.0, 0.165, 0.028}, {0.066, 0.115, 0.072}, Material::CatFur);
    cat.Ellipsoid({0.0, 0.285, 0.050}, {0.056, 0.050, 0.056}, Material::CatFur);
    for (const double side : {-1.0, 1.0}) {
        cat.Rod({0.030 * side, 0.312, 0.05}, {0.043 * side, 0.368, 0.052}, 0.021, 0.002, Material::CatFur);
        cat.Ellipsoid({0.062 * side, 0.045, 0.01}, {0.045, 0.050, 0.085}, Material::CatFur);
    }
    const std::array<Vec3, 5> tail{{{0.03, 0.025, -0.09},
                                    {0.10, 0.018, -0.13},
                                    {0.16, -0.02, -0.145},
                                    {0.19, -0.10, -0.15},
                                    {0.175, -0.17, -0.152}}};
    for (std::size_t i = 0; i + 1 < tail.size(); ++i) {
        cat.Rod(tail[i], tail[i + 1], 0.017, 0.016, Material::CatFur);
        cat.Ellipsoid(tail[i + 1], {0.016, 0.016, 0.016}, Material::CatFur);
    }
}

void BuildShelf(SceneBuilder& room, double left, double right, double y, double height, std::uint32_t seed)
{
    constexpr double back = kRoomBack - 0.03;
    double x = left + 0.01;
    for (std::uint32_t book = seed; x < right - 0.02; ++book) {
        const double width = 0.018 + 0.034 * Random(book, 1);
        if (Random(book, 2) < 0.06) {
            x += 0.05 + 0.08 * Random(book, 3); // a book is out
            continue;
        }
        const double depth = 0.17 + 0.06 * Random(book, 5);
        const double tall = height * (0.66 + 0.26 * Random(book, 4));
        if (x + width > right - 0.005)
            break;
        room.Box({x, y, back - depth}, {x + width - 0.0015, y + tall, back - 0.02}, Material::Book, book);
        x += width;
    }
}

void BuildBookcase(SceneBuilder& room)
{
    constexpr double l = 3.42;
    constexpr double r = 4.56;
    constexpr double front = 5.10;
    constexpr double back = kRoomBack;
    constexpr double top = 2.20;
    room.Box({l, 0.0, front}, {l + 0.03, top, back}, Material::Walnut, 1);
    room.Box({r - 0.03, 0.0, front}, {r, top, back}, Material::Walnut, 2);
    room.Box({l, 0.0, back - 0.02}, {r, top, back}, Material::Walnut, 3);
    room.Box({l - 0.03, top, front - 0.03}, {r + 0.03, top + 0.04, back}, Material::Walnut, 4);
    room.Box({l, 0.0, front + 0.02}, {r, 0.09, back}, Material::Walnut, 5);
    constexpr std::array<double, 6> shelves{0.09, 0.53, 0.90, 1.24, 1.57, 1.89};
    for (std::uint32_t i = 0; i < shelves.size(); ++i) {
        room.Box({l, shelves[i], front + 0.01}, {r, shelves[i] + 0.022, back}, Material::Walnut, 6 + i);
        const double above = i + 1 < shelves.size() ? shelves[i + 1] : top;
        const double y = shelves[i] + 0.0225;
        const double end = i == 3 ? r - 0.36 : r - 0.03;
        BuildShelf(room, i == 5 ? l + 0.40 : l + 0.03, end, y, above - y, 1000 + 100 * i);
    }
    // a jar and a globe in the gaps
    constexpr std::array<std::pair<double, double>, 8> jar{{{0.045, 0.0},
                                                            {0.075, 0.04},
                                                            {0.088, 0.09},
                                                            {0.080, 0.14},
                                                            {0.055, 0.175},
                                                            {0.040, 0.19},
                                                            {0.044, 0.205},
                                                            {0.046, 0.21}}};
    room.Lathe({l + 0.20, shelves[5] + 0.022, 5.24}, jar, Caps::Both, Material::Porcelain);
    room.Ellipsoid({r - 0.19, shelves[3] + 0.16, 5.24}, {0.105, 0.105, 0.105}, Material::Picture, 3);
    room.Rod({r - 0.19, shelves[3] + 0.022, 5.24}, {r - 0.19, shelves[3] + 0.06, 5.24}, 0.07, 0.02,
             Material::Brass);
}

void BuildPicture(SceneBuilder wall, double w, double h, std::uint32_t which)
{
    constexpr double f = 0.035;
    wall.Box({-w, -h, -0.012}, {w, h, 0.0}, Material::PictureMount);
    wall.Box({-w * 0.80, -h * 0.76, -0.0125}, {w * 0.80, h * 0.76, -0.005}, Material::Picture, which);
    wall.Box({-w - f, h, -0.03}, {w + f, h + f, 0.0}, Material::GiltFrame);
    wall.Box({-w - f, -h - f, -0.03}, {w + f, -h, 0.0}, Material::GiltFrame);
    wall.Box({-w - f, -h, -0.03}, {-w, h, 0.0}, Material::GiltFrame);
    wall.Box({w, -h, -0.03}, {w + f, h, 0.0}, Material::GiltFrame);
}

void BuildPictures(SceneBuilder& room)
{
    BuildPicture(room.At(Frame{{3.06, 1.62, kRoomBack}}), 0.24, 0.31, 1);
    const double turn = 0.5 * std::numbers::pi;
    BuildPicture(room.At(Frame::Turned({kRoomWidth, 1.62, 4.72}, turn)), 0.21, 0.27, 2);
    BuildPicture(room.At(Frame::Turned({kRoomWidth, 1.62, 3.95}, turn)), 0.30, 0.22, 4);
    BuildPicture(room.At(Frame::Turned({0.0, 1.66, 4.60}, -turn)), 0.22, 0.30, 6);
}

void BuildArmchair(const SceneBuilder& room)
{
    SceneBuilder chair(room.At(Frame::Turned({3.42, 0.012, 3.72}, 0.42)));
    constexpr auto velvet = Material::Velvet;
    chair.Rounded({-0.36, 0.17, -0.36}, {0.36, 0.34, 0.36}, 0.04, velvet);
    chair.Rounded({-0.27, 0.32, -0.40}, {0.27, 0.48, 0.26}, 0.065, velvet);
    for (const double side : {-1.0, 1.0}) {
        const double x = 0.345 * side;
        chair.Rounded({x - 0.075, 0.17, -0.37}, {x + 0.075, 0.55, 0.36}, 0.05, velvet);
        chair.Rod({x, 0.57, -0.37}, {x, 0.57, 0.34}, 0.085, 0.085, velvet);
        for (const double z : {-0.31, 0.31})
            chair.Rod({0.30 * side, 0.0, z}, {0.30 * side, 0.18, z}, 0.016, 0.028, Material::Walnut);
    }
    SceneBuilder back(chair.At(Frame::Turned({0.0, 0.30, 0.30}, 0.0, 0.20)));
    back.Rounded({-0.36, 0.0, -0.09}, {0.36, 0.66, 0.09}, 0.075, velvet);
    back.Rounded({-0.26, 0.12, -0.17}, {0.26, 0.58, -0.03}, 0.065, velvet);
    SceneBuilder pillow(chair.At(Frame::Turned({-0.10, 0.63, 0.07}, 0.25, 0.32)));
    pillow.Rounded({-0.20, -0.16, -0.065}, {0.20, 0.16, 0.065}, 0.062, Material::Cushion, 1);
}

void BuildFloorLamp(SceneBuilder& room)
{
    const Vec3 foot{kLampBulb.x, 0.012, kLampBulb.z};
    room.Rod(foot, foot + Vec3{0.0, 0.025, 0.0}, 0.15, 0.13, Material::Brass);
    room.Rod(foot, kLampBulb - Vec3{0.0, 0.06, 0.0}, 0.011, 0.011, Material::Brass);
    room.Ellipsoid(kLampBulb, {0.03, 0.04, 0.03}, Material::LampShade).castsShadow = false;
    const Vec3 half{0.0, 0.5 * kShadeHeight, 0.0};
    room.Rod(kLampBulb - half, kLampBulb + half, 0.205, 0.125, Material::LampShade).caps = Caps::None;
}

void BuildPendant(SceneBuilder& room)
{
    const Vec3& p = kPendant;
    room.Rod(p + Vec3{0.0, 0.14, 0.0}, {p.x, kRoomHeight, p.z}, 0.004, 0.004, Material::ChartCard);
    room.Rod(p + Vec3{0.0, 0.065, 0.0}, p + Vec3{0.0, 0.14, 0.0}, 0.022, 0.018, Material::Brass);
    room.Rod({p.x, kRoomHeight - 0.03, p.z}, {p.x, kRoomHeight, p.z}, 0.05, 0.06, Material::Brass);
    std::vector<std::pair<double, double>> bulb; // a sphere that narrows into the neck
    for (int i = 0; i <= 24; ++i) {
        const double y = -0.0985 + 0.166 * i / 24;
        const double sphere = std::sqrt(std::max(0.0, 0.052 * 0.052 - (y + 0.047) * (y + 0.047)));
        const double neck = 0.021 + 0.031 * (1.0 - Smoothstep(-0.060, 0.085, y));
        bulb.emplace_back(std::max(y > -0.047 ? neck : sphere, 0.003), y);
    }
    room.Lathe(p, bulb, Caps::None, Material::ClearBulb, false);
    // eight upright loops of filament around the middle
    constexpr int kStrands = 8;
    for (int i = 0; i < kStrands; ++i) {
        const double a = 2.0 * std::numbers::pi * (i + 0.3) / kStrands;
        const double b = 2.0 * std::numbers::pi * (i + 0.8) / kStrands;
        const Vec3 low = p + Vec3{0.016 * std::cos(a), -0.055, 0.016 * std::sin(a)};
        const Vec3 high = p + Vec3{0.022 * std::cos(b), 0.030, 0.022 * std::sin(b)};
        room.Rod(low, high, 0.0012, 0.0012, Material::Filament).castsShadow = false;
    }
}

void BuildTable(SceneBuilder& room)
{
    room.Rounded({0.98, 0.715, 2.50}, {2.10, 0.75, 3.20}, 0.012, Material::Walnut, 40);
    room.Box({1.03, 0.63, 2.55}, {2.05, 0.715, 3.15}, Material::Walnut, 41);
    for (const double x : {1.05, 2.03})
        for (const double z : {2.57, 3.13})
            room.Rod({x, 0.0, z}, {x, 0.64, z}, 0.018, 0.030, Material::Walnut);
}

void BuildFlowers(SceneBuilder& room, const Vec3& vase)
{
    constexpr std::array<std::pair<double, double>, 11> glass{{{0.052, 0.0},
                                                               {0.058, 0.010},
                                                               {0.066, 0.040},
                                                               {0.071, 0.080},
                                                               {0.068, 0.120},
                                                               {0.056, 0.155},
                                                               {0.044, 0.180},
                                                               {0.040, 0.200},
                                                               {0.044, 0.220},
                                                               {0.052, 0.236},
                                                               {0.056, 0.242}}};
    room.Lathe(vase, glass, Caps::Both, Material::Glass, false);
    for (std::uint32_t i = 0; i < 9; ++i) {
        const double turn = 2.4 * i; // the golden angle spreads them
        const double reach = 0.05 + 0.16 * std::sqrt((i + 0.5) / 9.0);
        const double height = 0.47 - 0.75 * reach + 0.10 * Random(i, 5);
        const Vec3 out{std::cos(turn), 0.0, std::sin(turn)};
        const Vec3 base = vase + out * -0.020 + Vec3{0.0, 0.03, 0.0};
        const Vec3 neck = vase + out * 0.030 + Vec3{0.0, 0.24, 0.0};
        const Vec3 head = vase + out * reach + Vec3{0.0, height, 0.0};
        room.Rod(base, neck, 0.0032, 0.0032, Material::Leaf);
        room.Rod(neck, head, 0.0032, 0.0028, Material::Leaf);
        const Vec3 tip = head + Normalized(head - neck) * 0.062;
        room.Leaf(head - Normalized(head - neck) * 0.006, tip, 0.025, 0.025, Material::Petal, i);
        const Vec3 side{-out.z, 0.0, out.x};
        for (const double s : {-1.0, 1.0})
            room.Leaf(head, tip + side * (0.016 * s) + Vec3{0.0, 0.008, 0.0}, 0.017, 0.011, Material::Petal,
                      i);
        const Vec3 leafTip =
            vase + out * (reach + 0.06) + side * 0.05 + Vec3{0.0, 0.30 + 0.05 * Random(i, 6), 0.0};
        room.Leaf(neck - Vec3{0.0, 0.02, 0.0}, leafTip, 0.019, 0.004, Material::Leaf, i);
    }
}

void BuildStillLife(SceneBuilder& room)
{
    constexpr double top = 0.75;
    SceneBuilder books(room.At(Frame::Turned({1.24, top, 3.07}, 0.12)));
    books.Box({-0.16, 0.0, -0.11}, {0.16, 0.035, 0.11}, Material::Book, 7);
    books.Box({-0.14, 0.035, -0.10}, {0.13, 0.075, 0.10}, Material::Book, 12);
    // the colour chart leans against them
    SceneBuilder chart(room.At(Frame::Turned({1.25, top + 0.119, 2.90}, -0.32, 0.24)));
    chart.Box({-0.180, -0.122, -0.003}, {0.180, 0.122, 0.003}, Material::ChartCard);
    chart.Box({-0.172, -0.114, -0.0036}, {0.172, 0.114, -0.002}, Material::ColourChart);
    BuildFlowers(room, {1.86, top, 3.06});
    constexpr std::array<std::pair<double, double>, 8> bowl{{{0.050, 0.0},
                                                             {0.046, 0.012},
                                                             {0.062, 0.022},
                                                             {0.090, 0.036},
                                                             {0.112, 0.055},
                                                             {0.124, 0.075},
                                                             {0.130, 0.088},
                                                             {0.131, 0.092}}};
    const Vec3 foot{1.69, top, 2.72};
    room.Lathe(foot, bowl, Caps::Bottom, Material::Porcelain);
    constexpr std::array<Vec3, 5> fruit{{{-0.045, 0.085, 0.03},
                                         {0.050, 0.082, 0.035},
                                         {0.0, 0.080, -0.055},
                                         {0.005, 0.135, 0.015},
                                         {-0.075, 0.088, -0.035}}};
    for (std::uint32_t i = 0; i < fruit.size(); ++i)
        room.Ellipsoid(foot + fruit[i], {0.042, 0.040, 0.042}, Material::Fruit, i);
}

void BuildSideTable(SceneBuilder& room)
{
    const Vec3 c{2.72, 0.0, 4.30};
    room.Rod(c + Vec3{0.0, 0.50, 0.0}, c + Vec3{0.0, 0.525, 0.0}, 0.25, 0.25, Material::Walnut);
    room.Rod(c + Vec3{0.0, 0.03, 0.0}, c + Vec3{0.0, 0.50, 0.0}, 0.022, 0.018, Material::Walnut);
    room.Rod(c + Vec3{0.0, 0.012, 0.0}, c + Vec3{0.0, 0.035, 0.0}, 0.17, 0.10, Material::Walnut);
    constexpr std::array<std::pair<double, double>, 6> cup{
        {{0.022, 0.0}, {0.034, 0.012}, {0.041, 0.030}, {0.044, 0.050}, {0.046, 0.062}, {0.047, 0.066}}};
    const Vec3 saucer = c + Vec3{-0.07, 0.525, -0.08};
    room.Rod(saucer, saucer + Vec3{0.0, 0.012, 0.0}, 0.045, 0.078, Material::Porcelain);
    room.Lathe(saucer + Vec3{0.0, 0.010, 0.0}, cup, Caps::Bottom, Material::Porcelain);
    SceneBuilder book(room.At(Frame::Turned(c + Vec3{0.09, 0.525, 0.02}, 0.5)));
    book.Box({-0.07, 0.0, -0.10}, {0.07, 0.022, 0.10}, Material::Book, 2);
}

void BuildPlant(SceneBuilder& room)
{
    constexpr std::array<std::pair<double, double>, 5> pot{
        {{0.105, 0.0}, {0.135, 0.14}, {0.155, 0.27}, {0.165, 0.275}, {0.165, 0.32}}};
    const Vec3 foot{0.34, 0.0, 4.52};
    room.Lathe(foot, pot, Caps::Bottom, Material::Terracotta);
    room.Rod(foot + Vec3{0.0, 0.26, 0.0}, foot + Vec3{0.0, 0.28, 0.0}, 0.15, 0.15, Material::ChartCard);
    for (std::uint32_t i = 0; i < 22; ++i) {
        const double turn = 2.39996 * i;
        const double rise = 0.42 + 0.95 * i / 22.0;
        const double reach = 0.36 - 0.010 * i + 0.05 * Random(i, 41);
        const Vec3 out{std::cos(turn), 0.0, std::sin(turn)};
        const Vec3 joint = foot + out * (0.35 * reach) + Vec3{0.0, rise + 0.10, 0.0};
        const Vec3 tip = foot + out * reach + Vec3{0.0, rise + 0.02 + 0.18 * Random(i, 42), 0.0};
        room.Rod(foot + out * 0.03 + Vec3{0.0, 0.28, 0.0}, joint, 0.006, 0.003, Material::Leaf);
        room.Leaf(joint, tip + out * 0.05, 0.062, 0.005, Material::Leaf, i);
    }
}

} // namespace

std::vector<Object> RoomObjects()
{
    std::vector<Object> objects;
    SceneBuilder room(&objects);
    BuildShell(room);
    BuildMouldings(room); // too shallow to throw shadows worth a ray
    for (Object& object : objects)
        object.castsShadow = false;
    BuildBackWall(room);
    BuildWindow(room);
    BuildCurtains(room);
    BuildBench(room);
    BuildCat(room);
    BuildBookcase(room);
    BuildPictures(room);
    room.Box({1.75, 0.0, 2.75}, {4.15, 0.012, 4.75}, Material::Rug);
    BuildArmchair(room);
    BuildFloorLamp(room);
    BuildPendant(room);
    BuildTable(room);
    BuildStillLife(room);
    BuildSideTable(room);
    BuildPlant(room);
    return objects;
}

} // namespace LS::Samples
