// Three doubles: a point, a direction or a linear RGB colour of the sample scene.
#pragma once

#include <algorithm>
#include <cmath>

namespace LS::Samples {

struct Vec3 {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    constexpr Vec3& operator+=(const Vec3& o)
    {
        x += o.x;
        y += o.y;
        z += o.z;
        return *this;
    }
};

/// Linear RGB in the axes x, y, z: radiance, irradiance or reflectance.
using Colour = Vec3;

constexpr Vec3 operator+(const Vec3& a, const Vec3& b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
constexpr Vec3 operator-(const Vec3& a, const Vec3& b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
constexpr Vec3 operator-(const Vec3& a)
{
    return {-a.x, -a.y, -a.z};
}
constexpr Vec3 operator*(const Vec3& a, double s)
{
    return {a.x * s, a.y * s, a.z * s};
}
constexpr Vec3 operator*(double s, const Vec3& a)
{
    return a * s;
}
constexpr Vec3 operator*(const Vec3& a, const Vec3& b)
{
    return {a.x * b.x, a.y * b.y, a.z * b.z};
}
constexpr Vec3 operator/(const Vec3& a, double s)
{
    return a * (1.0 / s);
}

constexpr double Dot(const Vec3& a, const Vec3& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

constexpr Vec3 Cross(const Vec3& a, const Vec3& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

inline double Length(const Vec3& a)
{
    return std::sqrt(Dot(a, a));
}
inline Vec3 Normalized(const Vec3& a)
{
    return a / Length(a);
}

constexpr Vec3 Mix(const Vec3& a, const Vec3& b, double share)
{
    return a * (1.0 - share) + b * share;
}
constexpr double Mix(double a, double b, double share)
{
    return a * (1.0 - share) + b * share;
}

/// 0 below `low`, 1 above `high`, with a smooth cubic between them.
constexpr double Smoothstep(double low, double high, double v)
{
    const double t = std::clamp((v - low) / (high - low), 0.0, 1.0);
    return t * t * (3.0 - 2.0 * t);
}

/// Rec. 709 luminance.
constexpr double Luminance(const Colour& c)
{
    return 0.2126 * c.x + 0.7152 * c.y + 0.0722 * c.z;
}

} // namespace LS::Samples
