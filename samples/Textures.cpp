// The patterned surfaces of the sample scene.
#include "samples/Textures.h"

#include "samples/Noise.h"
#include "samples/Sampling.h"

#include <array>
#include <numbers>

namespace LS::Samples {
namespace {

constexpr double kPi = std::numbers::pi;

double Fraction(double v)
{
    return v - std::floor(v);
}
int Floor(double v)
{
    return static_cast<int>(std::floor(v));
}
double Random(std::uint32_t a, std::uint32_t b = 0)
{
    return UnitFromBits(Hash(a, b));
}

// 1 between low and high, with edges `soft` wide
double Band(double v, double low, double high, double soft)
{
    return Smoothstep(low - soft, low + soft, v) * (1.0 - Smoothstep(high - soft, high + soft, v));
}

double FromSrgb(int v)
{
    const double s = v / 255.0;
    return s <= 0.04045 ? s / 12.92 : std::pow((s + 0.055) / 1.055, 2.4);
}

Colour Srgb(int r, int g, int b)
{
    return {FromSrgb(r), FromSrgb(g), FromSrgb(b)};
}

} // namespace

Colour WallpaperColour(double along, double height)
{
    // A drop repeat: every other column is shifted by half a motif.
    const double column = along / 0.26;
    const double shift = (Floor(column) & 1) != 0 ? 0.5 : 0.0;
    const double u = Fraction(column) * 2.0 - 1.0;
    const double v = Fraction(height / 0.40 + shift) * 2.0 - 1.0;
    const double outline =
        std::abs(u) - 0.62 * std::cos(0.5 * kPi * v) * (1.0 - 0.25 * std::cos(2.0 * kPi * v));
    const double radius = std::hypot(u * 1.25, v * 1.1);
    const double petals = radius - 0.30 - 0.13 * std::cos(6.0 * std::atan2(v, u));
    double motif = Band(outline, -0.07, 0.03, 0.025);
    motif = std::max(motif, 1.0 - Smoothstep(-0.02, 0.03, petals));
    motif *= 1.0 - 0.8 * (1.0 - Smoothstep(0.06, 0.10, radius));
    const Colour ground{0.030, 0.085, 0.082};
    const Colour figure{0.075, 0.150, 0.128};
    const double paper = 0.92 + 0.16 * Noise(along * 60.0, height * 60.0, 3);
    return Mix(ground, figure, motif) * paper;
}

Colour WoodColour(double along, double across, std::uint32_t board, const Colour& dark, const Colour& light)
{
    const double offset = 37.0 * Random(board, 11);
    const double wave = Fractal(along * 1.5 + offset, across * 9.0 + offset, 3, 21);
    const double rings = 0.5 + 0.5 * std::sin(2.0 * kPi * (across * 22.0 + wave * 5.0 + offset));
    const double pores = Fractal(along * 12.0 + offset, across * 260.0, 2, 31);
    const double share = 0.20 + 0.40 * rings + 0.55 * (pores - 0.5) + 0.35 * (Random(board, 17) - 0.3);
    return Mix(dark, light, std::clamp(share, 0.0, 1.0));
}

Colour ParquetColour(double x, double z)
{
    constexpr int kRatio = 5; // a block is five times as long as it is wide
    constexpr double kWidth = 0.092;
    const double u = (x + z) * std::numbers::sqrt2 / 2.0 / kWidth;
    const double v = (x - z) * std::numbers::sqrt2 / 2.0 / kWidth + 100.0;
    const int i = Floor(u);
    const int j = Floor(v);
    const int k = (((i - j) % (2 * kRatio)) + 2 * kRatio) % (2 * kRatio);
    const bool lying = k < kRatio;
    const int cell = lying ? k : 2 * kRatio - 1 - k;
    const double along = cell + Fraction(lying ? u : v);
    const double across = Fraction(lying ? v : u);
    const auto board = lying ? Hash(i - k, j, 1) : Hash(i, j - cell, 2);
    const double edge = std::min({along, kRatio - along, across, 1.0 - across});
    const double gap = Smoothstep(0.005, 0.045, edge);
    const Colour wood =
        WoodColour(along * kWidth, across * kWidth, board, {0.085, 0.040, 0.018}, {0.30, 0.165, 0.078});
    return wood * (0.70 + 0.45 * Random(board, 5)) * Mix(0.25, 1.0, gap);
}

namespace {

// Fields within fields, all of them symmetric: what an oriental rug is at a distance.
double Diamond(double u, double v, double repeatU, double repeatV)
{
    return std::abs(Fraction(u * repeatU) - 0.5) + std::abs(Fraction(v * repeatV) - 0.5);
}

Colour RugField(double u, double v)
{
    const Colour red{0.24, 0.030, 0.024};
    const Colour blue{0.022, 0.040, 0.105};
    const Colour cream{0.48, 0.39, 0.25};
    const Colour gold{0.36, 0.20, 0.055};
    const double r = std::hypot(u * 1.25, v);
    const double star = r - 0.46 - 0.055 * std::cos(16.0 * std::atan2(v, u * 1.25));
    Colour field = Mix(red, blue, 0.9 * (1.0 - Smoothstep(0.20, 0.23, Diamond(u, v, 5.0, 3.5))));
    field = Mix(field, gold, 1.0 - Smoothstep(0.07, 0.10, Diamond(u, v, 5.0, 3.5)));
    field = Mix(field, cream, Band(star, -0.035, 0.03, 0.008));
    field = Mix(field, blue, 1.0 - Smoothstep(-0.045, -0.035, star));
    const double rose = r - 0.26 - 0.05 * std::cos(8.0 * std::atan2(v, u * 1.25));
    field = Mix(field, gold, Band(rose, -0.02, 0.02, 0.008));
    field = Mix(field, red, 1.0 - Smoothstep(-0.03, -0.02, rose));
    return Mix(field, cream, 1.0 - Smoothstep(0.085, 0.10, r + 0.02 * std::cos(8.0 * std::atan2(v, u))));
}

} // namespace

Colour RugColour(double u, double v)
{
    const Colour red{0.20, 0.028, 0.022};
    const Colour blue{0.022, 0.038, 0.095};
    const Colour cream{0.46, 0.37, 0.24};
    const double edge = std::min((1.0 - std::abs(u)) * 1.25, 1.0 - std::abs(v));
    const double run = std::abs(u) * 1.25 > std::abs(v) + 0.25 ? v * 9.0 : u * 11.0;
    Colour colour = RugField(u / 0.8, v / 0.76);
    if (edge < 0.20) {
        const double leaf = std::abs(edge - 0.115) / 0.065 + std::abs(Fraction(run) - 0.5) * 1.9;
        colour = Mix(blue, cream, 1.0 - Smoothstep(0.55, 0.65, leaf));
        colour = Mix(colour, red, 1.0 - Smoothstep(0.28, 0.36, leaf));
        colour = Mix(colour, cream, Band(edge, 0.172, 0.186, 0.003) + Band(edge, 0.036, 0.050, 0.003));
        colour = edge < 0.034 ? red : colour;
    }
    return colour * (0.80 + 0.40 * Noise(u * 240.0, v * 190.0, 8));
}

Colour PaintingColour(double u, double v, std::uint32_t which)
{
    const bool evening = (which & 1U) != 0;
    const double brush = Fractal(u * 26.0, v * 14.0, 3, which + 50) - 0.5;
    const Colour high = evening ? Colour{0.20, 0.24, 0.42} : Colour{0.22, 0.38, 0.58};
    const Colour low = evening ? Colour{0.78, 0.44, 0.20} : Colour{0.72, 0.70, 0.58};
    Colour colour = Mix(low, high, Smoothstep(0.35, 1.0, v + 0.15 * brush));
    const double glow = std::hypot(u - 0.66, (v - 0.57) * 0.8);
    colour = Mix(colour, {0.88, 0.74, 0.45}, 1.0 - Smoothstep(0.03, 0.20, glow));
    for (std::uint32_t ridge = 0; ridge < 3; ++ridge) {
        const double height =
            0.56 - 0.11 * ridge +
            (0.20 - 0.03 * ridge) * (Fractal(u * (2.2 + ridge), 0.7 * which, 4, which + ridge) - 0.5);
        const Colour hill = Mix(Colour{0.20, 0.25, 0.32}, Colour{0.055, 0.085, 0.035}, ridge / 2.0);
        colour = Mix(colour, hill * (1.0 + 0.9 * brush), 1.0 - Smoothstep(height - 0.008, height + 0.008, v));
    }
    const double shore = 0.24 + 0.03 * (Noise(u * 5.0, which, 9) - 0.5);
    const Colour water = Mix(low, high, 0.3 + 1.2 * brush) * 0.55;
    colour = Mix(colour, water, 1.0 - Smoothstep(shore - 0.01, shore + 0.01, v));
    return colour * (1.0 + 0.35 * brush);
}

Colour ChartColour(double u, double v)
{
    // Usual colours of such charts: skin, sky, leaf ..., primaries, and six greys. 8-bit sRGB.
    static const std::array<Colour, 24> patches{
        Srgb(115, 82, 68),   Srgb(194, 150, 130), Srgb(98, 122, 157),  Srgb(87, 108, 67),
        Srgb(133, 128, 177), Srgb(103, 189, 170), Srgb(214, 126, 44),  Srgb(80, 91, 166),
        Srgb(193, 90, 99),   Srgb(94, 60, 108),   Srgb(157, 188, 64),  Srgb(224, 163, 46),
        Srgb(56, 61, 150),   Srgb(70, 148, 73),   Srgb(175, 54, 60),   Srgb(231, 199, 31),
        Srgb(187, 86, 149),  Srgb(8, 133, 161),   Srgb(243, 243, 242), Srgb(200, 200, 200),
        Srgb(160, 160, 160), Srgb(122, 122, 121), Srgb(85, 85, 85),    Srgb(52, 52, 52)};
    const double x = (u - 0.5) * 1.06 * 6.0 + 3.0;
    const double y = (v - 0.5) * 1.09 * 4.0 + 2.0;
    const double inside = std::min({Fraction(x), 1.0 - Fraction(x), Fraction(y), 1.0 - Fraction(y)});
    if (x < 0.0 || x >= 6.0 || y < 0.0 || y >= 4.0 || inside < 0.07)
        return {0.018, 0.018, 0.018};
    return patches[static_cast<std::size_t>(Floor(y)) * 6 + static_cast<std::size_t>(Floor(x))];
}

Colour BookColour(double u, double v, std::uint32_t book)
{
    static constexpr std::array<Colour, 9> cloths{{{0.16, 0.025, 0.020},
                                                   {0.028, 0.060, 0.040},
                                                   {0.022, 0.034, 0.085},
                                                   {0.24, 0.150, 0.060},
                                                   {0.080, 0.038, 0.020},
                                                   {0.38, 0.310, 0.20},
                                                   {0.030, 0.028, 0.030},
                                                   {0.20, 0.075, 0.024},
                                                   {0.060, 0.110, 0.120}}};
    const Colour cloth = cloths[Hash(book, 1U) % cloths.size()];
    const Colour print = Random(book, 2) < 0.7 ? Colour{0.52, 0.36, 0.12} : Colour{0.55, 0.50, 0.40};
    const double height = std::abs(v);
    double lettering = Band(height, 0.82, 0.855, 0.006) + Band(height, 0.70, 0.715, 0.005);
    if (Random(book, 3) < 0.75) {
        const double word = Noise(v * 22.0, Random(book, 4) * 90.0, 6);
        lettering += Band(v, 0.05, 0.60, 0.01) * (std::abs(u) < 0.38 ? Smoothstep(0.50, 0.60, word) : 0.0);
    }
    const double wear = 0.75 + 0.5 * Fractal(u * 3.0 + 9.0 * Random(book, 5), v * 14.0, 3, 14);
    return Mix(cloth, print, std::min(lettering, 1.0)) * wear;
}

namespace {

Colour PlasterColour(std::uint32_t house)
{
    static constexpr std::array<Colour, 8> plasters{{{0.66, 0.47, 0.24},
                                                     {0.62, 0.55, 0.43},
                                                     {0.60, 0.34, 0.22},
                                                     {0.52, 0.54, 0.50},
                                                     {0.70, 0.58, 0.36},
                                                     {0.50, 0.36, 0.27},
                                                     {0.68, 0.62, 0.54},
                                                     {0.58, 0.42, 0.32}}};
    return plasters[house % plasters.size()];
}

// A window with frame, bars, panes, sill and a pair of shutters; x and y in metres from its middle.
// @return false outside of all of them
bool FacadeWindow(double x, double y, std::uint32_t which, Colour* colour)
{
    const double w = std::abs(x);
    if (w < 0.78 && y > -1.06 && y < -0.94) {
        *colour = {0.62, 0.58, 0.52};
        return true;
    }
    if (std::abs(y) > 0.94 || w > 1.10)
        return false;
    if (w > 0.58) {
        const Colour paint = Hash(which, 7U) % 3 == 0 ? Colour{0.10, 0.20, 0.17} : Colour{0.13, 0.22, 0.27};
        *colour = paint * (Fraction(y * 11.0) < 0.45 ? 0.62 : 1.0);
        return Random(which, 8) < 0.86;
    }
    const bool bar = w > 0.50 || w < 0.035 || std::abs(y) > 0.86 || std::abs(y - 0.30) < 0.03;
    const Colour pane = Mix(Colour{0.025, 0.030, 0.038}, Colour{0.16, 0.19, 0.22}, Random(which, 9));
    *colour = bar ? Colour{0.70, 0.68, 0.64} : pane;
    return true;
}

Colour GroundFloor(double u, double v, std::uint32_t house)
{
    const double bay = Fraction(u / 3.1) * 3.1 - 1.55;
    const bool door = Floor(u / 3.1) % 3 == 1;
    const double half = door ? 0.62 : 1.08;
    const double x = std::abs(bay);
    const Colour stone = Colour{0.48, 0.44, 0.38} * (Fraction(v * 2.2) < 0.06 ? 0.6 : 1.0);
    if (x > half + 0.14 || v > 2.75 || (!door && v < 0.55))
        return stone;
    if (x > half || v > 2.62)
        return {0.60, 0.56, 0.50};
    if (door)
        return Colour{0.11, 0.055, 0.028} *
               (std::abs(x - 0.30) < 0.20 && Fraction(v * 0.9) < 0.8 ? 1.3 : 0.9);
    return Hash(house, Floor(u / 3.1)) % 2 == 0 ? Colour{0.05, 0.05, 0.055} : Colour{0.20, 0.16, 0.11};
}

} // namespace

Colour FacadeColour(double u, double v, std::uint32_t house)
{
    constexpr double kStorey = 3.15;
    if (v < 3.3)
        return GroundFloor(u, v, house);
    const Colour plaster = PlasterColour(house) * (0.86 + 0.28 * Fractal(u * 0.7, v * 0.7, 4, house));
    if (Fraction((v - 3.3) / kStorey) < 0.05)
        return Mix(plaster, {0.70, 0.66, 0.58}, 0.7);
    const double bay = 2.55 + 0.3 * Random(house, 21);
    const int column = Floor(u / bay);
    const int storey = Floor((v - 3.3) / kStorey);
    const double x = u - (column + 0.5) * bay;
    const double y = v - 3.3 - (storey + 0.5) * kStorey;
    Colour colour;
    return FacadeWindow(x, y, Hash(house, column, storey), &colour) ? colour : plaster;
}

Colour PavingColour(double u, double v)
{
    const double row = v / 0.16;
    const double x = u / 0.22 + ((Floor(row) & 1) != 0 ? 0.5 : 0.0);
    const double edge = std::min({Fraction(x), 1.0 - Fraction(x), Fraction(row), 1.0 - Fraction(row)});
    const double stone = 0.30 + 0.16 * UnitFromBits(Hash(Floor(x), Floor(row)));
    return Colour{1.0, 0.95, 0.87} * (stone * Mix(0.55, 1.0, Smoothstep(0.02, 0.12, edge)));
}

} // namespace LS::Samples
