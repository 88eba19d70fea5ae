#pragma once
// Camera matrices in double precision. The scene is drawn relative to the eye:
// a point's offset from the eye is formed in double before it becomes a float,
// so coordinates of millions of units keep their small differences.

#include <array>

#include "engine/Engine.h"

namespace render {

// Column-major 4x4, as OpenGL takes it.
struct Mat4 {
    std::array<double, 16> m{};
    double& at(int row, int col) { return m[col * 4 + row]; }
    double at(int row, int col) const { return m[col * 4 + row]; }
    static Mat4 identity();
    friend Mat4 operator*(const Mat4& a, const Mat4& b);
    std::array<float, 16> toFloat() const;
};

Mat4 translation(engine::Point3 t);

// World offsets from the eye to eye space (x right, y up, looking down -z).
// The up vector need not be orthogonal to the direction; a degenerate pair
// (zero length, or up along the direction) falls back to a usable frame.
Mat4 viewRotation(engine::Point3 direction, engine::Point3 up);

// The depth range convention of the projection.
enum class DepthMode {
    Standard,  // near -> -1, far -> +1 (OpenGL default)
    Reversed,  // near -> 1, far -> 0 with a [0, 1] clip range: even precision in a float buffer
};

// Perspective of the engine's camera: the tangent of half the horizontal field
// of view is 0.5 * zoom / 24, the vertical one follows from the window's aspect.
// farPlane may be infinite.
Mat4 projection(double zoom, int width, int height, double nearPlane, double farPlane,
                DepthMode mode);

// Near and far planes of a frame: the camera's cut-off, and the fog depth when
// fog is on (else none: an infinite far plane), kept in an order the projection
// can use.
struct DepthRange {
    double nearPlane = 1, farPlane = 4.0e6;
};
DepthRange depthRangeOf(const engine::CameraState& cam, const engine::FogState& fog);

// Where a world point lands in a window (pixels from the top left), by the same
// matrices the renderer draws with; false behind the eye.
bool projectToWindow(const engine::CameraState& cam, int width, int height, engine::Point3 p,
                     double& x, double& y);

}  // namespace render
