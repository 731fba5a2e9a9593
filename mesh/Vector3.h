#pragma once

#include <cmath>

namespace meridyn::mesh {

/// A point or a direction; z is 0 in two dimensions.
struct Vector3 {
    double x = 0.0, y = 0.0, z = 0.0;

    Vector3& operator+=(const Vector3& b)
    {
        x += b.x;
        y += b.y;
        z += b.z;
        return *this;
    }
};

inline Vector3 operator+(Vector3 a, const Vector3& b)
{
    return a += b;
}

inline Vector3 operator*(double s, const Vector3& a)
{
    return {s * a.x, s * a.y, s * a.z};
}

inline Vector3 operator-(const Vector3& a, const Vector3& b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

inline double dot(const Vector3& a, const Vector3& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

inline Vector3 cross(const Vector3& a, const Vector3& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

inline double length(const Vector3& a)
{
    return std::hypot(a.x, a.y, a.z);
}

inline bool isFinite(const Vector3& a)
{
    return std::isfinite(a.x) && std::isfinite(a.y) && std::isfinite(a.z);
}

} // namespace meridyn::mesh
