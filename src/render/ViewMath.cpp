#include "render/ViewMath.h"

#include <algorithm>
#include <cmath>

namespace render {

using engine::Point3;

Mat4 Mat4::identity() {
    Mat4 r;
    for (int i = 0; i < 4; ++i) r.at(i, i) = 1;
    return r;
}

Mat4 operator*(const Mat4& a, const Mat4& b) {
    Mat4 r;
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j) {
            double s = 0;
            for (int k = 0; k < 4; ++k) s += a.at(i, k) * b.at(k, j);
            r.at(i, j) = s;
        }
    return r;
}

std::array<float, 16> Mat4::toFloat() const {
    std::array<float, 16> f{};
    for (int i = 0; i < 16; ++i) f[i] = static_cast<float>(m[i]);
    return f;
}

Mat4 translation(Point3 t) {
    Mat4 r = Mat4::identity();
    r.at(0, 3) = t.x;
    r.at(1, 3) = t.y;
    r.at(2, 3) = t.z;
    return r;
}

namespace {
Point3 normalised(Point3 v) {
    double l = engine::length(v);
    return (l > 0 && std::isfinite(l)) ? v * (1.0 / l) : Point3{0, 0, 0};
}
}  // namespace

Mat4 viewRotation(Point3 direction, Point3 up) {
    Point3 f = normalised(direction);
    if (engine::length(f) == 0) f = {1, 0, 0};
    Point3 s = normalised(engine::cross(f, up));
    if (engine::length(s) == 0) {
        // Up along the line of sight: any perpendicular will do, prefer north.
        s = normalised(engine::cross(f, Point3{0, 1, 0}));
        if (engine::length(s) == 0) s = normalised(engine::cross(f, Point3{1, 0, 0}));
    }
    Point3 u = engine::cross(s, f);
    Mat4 r = Mat4::identity();
    r.at(0, 0) = s.x, r.at(0, 1) = s.y, r.at(0, 2) = s.z;
    r.at(1, 0) = u.x, r.at(1, 1) = u.y, r.at(1, 2) = u.z;
    r.at(2, 0) = -f.x, r.at(2, 1) = -f.y, r.at(2, 2) = -f.z;
    return r;
}

Mat4 projection(double zoom, int width, int height, double n, double f, DepthMode mode) {
    if (!(zoom > 0) || !std::isfinite(zoom)) zoom = 24;
    width = std::max(width, 1);
    height = std::max(height, 1);
    const double tanX = 0.5 * zoom / 24.0;
    const double tanY = tanX * static_cast<double>(height) / width;
    Mat4 p;
    p.at(0, 0) = 1.0 / tanX;
    p.at(1, 1) = 1.0 / tanY;
    p.at(3, 2) = -1;
    if (std::isinf(f)) {
        // No far plane: the limits of the finite forms as f grows.
        p.at(2, 2) = mode == DepthMode::Reversed ? 0 : -1;
        p.at(2, 3) = mode == DepthMode::Reversed ? n : -2 * n;
    } else if (mode == DepthMode::Reversed) {
        // depth = n (f - d) / (d (f - n)) for eye distance d: 1 at the near plane, 0 at the far.
        p.at(2, 2) = n / (f - n);
        p.at(2, 3) = n * f / (f - n);
    } else {
        p.at(2, 2) = -(f + n) / (f - n);
        p.at(2, 3) = -2 * f * n / (f - n);
    }
    return p;
}

DepthRange depthRangeOf(const engine::CameraState& cam, const engine::FogState& fog) {
    DepthRange r;
    r.nearPlane = cam.distanceFromEye;
    if (!(r.nearPlane > 0) || !std::isfinite(r.nearPlane)) r.nearPlane = 1;
    // Without fog nothing is cut off behind, as picking sees it.
    r.farPlane = fog.on ? fog.farDepth : HUGE_VAL;
    if (std::isnan(r.farPlane) || r.farPlane <= r.nearPlane * 1.0001)
        r.farPlane = std::max(r.nearPlane * 2, r.nearPlane + 1);
    return r;
}

bool projectToWindow(const engine::CameraState& cam, int width, int height, Point3 p, double& x,
                     double& y) {
    const Mat4 v = viewRotation(cam.direction, cam.up);
    const Point3 d = p - cam.location;
    double e[3];
    for (int i = 0; i < 3; ++i) e[i] = v.at(i, 0) * d.x + v.at(i, 1) * d.y + v.at(i, 2) * d.z;
    if (e[2] >= 0) return false;
    const Mat4 pr = projection(cam.zoom, width, height, 1, 2, DepthMode::Standard);
    const double w = -e[2];
    const double nx = pr.at(0, 0) * e[0] / w;
    const double ny = pr.at(1, 1) * e[1] / w;
    x = (nx + 1) * 0.5 * std::max(width, 1);
    y = (1 - ny) * 0.5 * std::max(height, 1);
    return true;
}

}  // namespace render
