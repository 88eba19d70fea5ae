#pragma once
// Plain value types shared by the engine and everything above it.

#include <array>
#include <cmath>
#include <cstdint>

namespace engine {

// 32-bit handle; 0 is none. The top 4 bits tell the kind of object so that one
// call (entity_get_name) can take a polygon or a group.
using Handle = std::uint32_t;
constexpr Handle kNoHandle = 0;

enum class Kind : std::uint32_t {
    None = 0,
    Polygon = 1,
    Group = 2,
    Point = 3,
    Light = 4,
    Camera = 5,
    Bitmap = 6,
    Font = 7,
    Line = 8,
};

constexpr unsigned kKindShift = 28;
constexpr Handle kIndexMask = (Handle(1) << kKindShift) - 1;

constexpr Handle makeHandle(Kind k, std::uint32_t index) {
    return (static_cast<Handle>(k) << kKindShift) | ((index + 1) & kIndexMask);
}
constexpr Kind handleKind(Handle h) { return static_cast<Kind>(h >> kKindShift); }
// Index of a handle of the expected kind; -1 for 0 or another kind.
constexpr std::int64_t handleIndex(Handle h, Kind k) {
    if (h == 0 || handleKind(h) != k || (h & kIndexMask) == 0) return -1;
    return static_cast<std::int64_t>(h & kIndexMask) - 1;
}

struct Point3 {
    double x = 0, y = 0, z = 0;
    double& operator[](int i) { return i == 0 ? x : (i == 1 ? y : z); }
    double operator[](int i) const { return i == 0 ? x : (i == 1 ? y : z); }
    friend Point3 operator+(Point3 a, Point3 b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
    friend Point3 operator-(Point3 a, Point3 b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
    friend Point3 operator*(Point3 a, double s) { return {a.x * s, a.y * s, a.z * s}; }
    friend Point3 operator*(double s, Point3 a) { return {a.x * s, a.y * s, a.z * s}; }
    friend bool operator==(Point3 a, Point3 b) { return a.x == b.x && a.y == b.y && a.z == b.z; }
    bool finite() const { return std::isfinite(x) && std::isfinite(y) && std::isfinite(z); }
};

inline double dot(Point3 a, Point3 b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
inline Point3 cross(Point3 a, Point3 b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double length(Point3 a) { return std::sqrt(dot(a, a)); }

struct Rgb {
    int r = 0, g = 0, b = 0;
    friend bool operator==(Rgb a, Rgb b) { return a.r == b.r && a.g == b.g && a.b == b.b; }
};

// a*x + b*y + c*z + d = 0 with (a, b, c) the unit normal out of the front.
struct Plane {
    Point3 n;
    double d = 0;
};

// A scene point as the builders hand it over: position, bitmap coordinates, brightness.
struct ScenePoint {
    double x = 0, y = 0, z = 0, bx = 0, by = 0, brightness = 100;
};

}  // namespace engine
