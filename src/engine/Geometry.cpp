#include "engine/Geometry.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace engine::geom {

namespace {
constexpr double kRelTolerance = 1e-12;
constexpr double kPlaneTolerance = 1e-9;

double extentOf(const Point3* p, std::size_t n) {
    if (n == 0) return 0;
    Point3 lo = p[0], hi = p[0];
    for (std::size_t i = 1; i < n; ++i)
        for (int k = 0; k < 3; ++k) {
            lo[k] = std::min(lo[k], p[i][k]);
            hi[k] = std::max(hi[k], p[i][k]);
        }
    return length(hi - lo);
}

// Tolerance for "on the plane": relative to the size and the distance from the origin.
double planeTolerance(const Point3* p, std::size_t n, const Plane& plane) {
    double mag = std::abs(plane.d);
    for (std::size_t i = 0; i < n; ++i)
        mag = std::max({mag, std::abs(p[i].x), std::abs(p[i].y), std::abs(p[i].z)});
    return kPlaneTolerance * std::max(1.0, std::max(mag * 1e-3, extentOf(p, n)));
}
}  // namespace

Point3 frontAreaVector(const Point3* p, std::size_t n) {
    Point3 sum{0, 0, 0};
    if (n < 3) return sum;
    const Point3 o = p[0];
    Point3 prev = p[1] - o;
    for (std::size_t i = 2; i < n; ++i) {
        const Point3 cur = p[i] - o;
        sum = sum + cross(cur, prev);
        prev = cur;
    }
    return sum;
}

double degenerateTolerance(const Point3* p, std::size_t n) {
    const double e = extentOf(p, n);
    return kRelTolerance * e * e;
}

bool planeOf(const Point3* p, std::size_t n, Plane& plane) {
    if (n < 3 || !allFinite(p, n)) return false;
    const Point3 a = frontAreaVector(p, n);
    const double len = length(a);
    if (!(len > degenerateTolerance(p, n)) || !std::isfinite(len)) return false;
    plane.n = Point3{a.x / len, a.y / len, a.z / len};
    plane.d = -dot(plane.n, mean(p, n));
    return true;
}

double area(const Point3* p, std::size_t n) { return 0.5 * length(frontAreaVector(p, n)); }

std::size_t distinctCount(const Point3* p, std::size_t n) {
    if (n <= 16) {
        std::size_t distinct = 0;
        for (std::size_t i = 0; i < n; ++i) {
            bool seen = false;
            for (std::size_t j = 0; j < i && !seen; ++j) seen = p[i] == p[j];
            distinct += !seen;
        }
        return distinct;
    }
    std::vector<Point3> s(p, p + n);
    auto less = [](const Point3& a, const Point3& b) {
        return a.x != b.x ? a.x < b.x : (a.y != b.y ? a.y < b.y : a.z < b.z);
    };
    std::sort(s.begin(), s.end(), less);
    return static_cast<std::size_t>(std::unique(s.begin(), s.end()) - s.begin());
}

namespace {
bool threeDistinct(const Point3* p, std::size_t n) {
    std::size_t second = 0;
    for (std::size_t i = 1; i < n; ++i) {
        if (!second) {
            if (!(p[i] == p[0])) second = i;
        } else if (!(p[i] == p[0]) && !(p[i] == p[second])) {
            return true;
        }
    }
    return false;
}
}  // namespace

bool allFinite(const Point3* p, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i)
        if (!p[i].finite()) return false;
    return true;
}

bool acceptable(const Point3* p, std::size_t n) {
    if (n < 3 || !allFinite(p, n)) return false;
    if (!threeDistinct(p, n)) return false;
    const double a = length(frontAreaVector(p, n));
    return a > degenerateTolerance(p, n);
}

Point3 mean(const Point3* p, std::size_t n) {
    Point3 s{0, 0, 0};
    if (n == 0) return s;
    for (std::size_t i = 0; i < n; ++i) s = s + p[i];
    return Point3{s.x / double(n), s.y / double(n), s.z / double(n)};
}

Point3 boxCentre(const Point3* p, std::size_t n) {
    if (n == 0) return {};
    Point3 lo = p[0], hi = p[0];
    for (std::size_t i = 1; i < n; ++i)
        for (int k = 0; k < 3; ++k) {
            lo[k] = std::min(lo[k], p[i][k]);
            hi[k] = std::max(hi[k], p[i][k]);
        }
    return (lo + hi) * 0.5;
}

bool isConvex(const Point3* p, std::size_t n) {
    if (n < 3) return false;
    const Point3 nrm = frontAreaVector(p, n);
    if (!(length(nrm) > degenerateTolerance(p, n))) return false;
    int sign = 0;
    double turning = 0;
    for (std::size_t i = 0; i < n; ++i) {
        const Point3 a = p[(i + n - 1) % n], b = p[i], c = p[(i + 1) % n];
        const Point3 e1 = b - a, e2 = c - b;
        const double s = dot(cross(e2, e1), nrm);  // clockwise turns are positive
        const double l1 = length(e1), l2 = length(e2);
        if (l1 == 0 || l2 == 0) continue;
        if (std::abs(s) > kRelTolerance * l1 * l2) {
            const int sg = s > 0 ? 1 : -1;
            if (sign == 0) sign = sg;
            if (sg != sign) return false;
        }
        turning += std::acos(std::clamp(dot(e1, e2) / (l1 * l2), -1.0, 1.0));
    }
    // A star turns the same way at every corner but goes round more than once.
    return turning < 2 * std::numbers::pi + 1e-6;
}

bool allOnOnePlane(const Point3* p, std::size_t n) {
    Plane pl;
    if (!planeOf(p, n, pl)) return false;
    const double tol = planeTolerance(p, n, pl);
    for (std::size_t i = 0; i < n; ++i)
        if (std::abs(dot(pl.n, p[i]) + pl.d) > tol) return false;
    return true;
}

std::size_t redundantCount(const Point3* p, std::size_t n) {
    if (n < 3) return 0;
    std::size_t count = 0;
    const double tol = 1e-9 * std::max(1.0, extentOf(p, n));
    for (std::size_t i = 0; i < n; ++i) {
        const Point3 a = p[(i + n - 1) % n], b = p[i], c = p[(i + 1) % n];
        if (b == a) {
            ++count;
            continue;
        }
        const Point3 ac = c - a;
        const double len = length(ac);
        if (len == 0) continue;
        const double off = length(cross(b - a, ac)) / len;
        const double along = dot(b - a, ac) / (len * len);
        if (off <= tol && along > 0 && along < 1) ++count;
    }
    return count;
}

bool containsProjected(const Point3* p, std::size_t n, Point3 normal, Point3 q) {
    if (n < 3) return false;
    const double ax = std::abs(normal.x), ay = std::abs(normal.y), az = std::abs(normal.z);
    int u = 0, v = 1;  // drop z
    if (ax >= ay && ax >= az) {
        u = 1;
        v = 2;
    } else if (ay >= az) {
        u = 2;
        v = 0;
    }
    const double qu = q[u], qv = q[v];
    bool inside = false;
    for (std::size_t i = 0, j = n - 1; i < n; j = i++) {
        const double iu = p[i][u], iv = p[i][v], ju = p[j][u], jv = p[j][v];
        if ((iv > qv) != (jv > qv)) {
            const double cu = ju + (qv - jv) * (iu - ju) / (iv - jv);
            if (qu < cu) inside = !inside;
        }
    }
    return inside;
}

bool rayHit(const Point3* p, std::size_t n, Point3 o, Point3 d, double tMin, double tMax, double& t,
            bool& front) {
    if (n < 3) return false;
    const Point3 a = frontAreaVector(p, n);
    const double denom = dot(a, d);
    if (denom == 0 || !std::isfinite(denom)) return false;
    const double tt = dot(a, p[0] - o) / denom;
    if (!(tt >= tMin && tt <= tMax)) return false;
    if (!containsProjected(p, n, a, o + d * tt)) return false;
    t = tt;
    front = denom < 0;
    return true;
}

SplitResult split(const Point3* p, std::size_t n, const Plane& plane) {
    SplitResult r;
    if (n < 3) return r;
    const double tol = planeTolerance(p, n, plane);
    std::vector<double> dist(n);
    std::vector<int> side(n);
    bool anyFront = false, anyBack = false;
    for (std::size_t i = 0; i < n; ++i) {
        dist[i] = dot(plane.n, p[i]) + plane.d;
        side[i] = dist[i] > tol ? 1 : (dist[i] < -tol ? -1 : 0);
        anyFront |= side[i] > 0;
        anyBack |= side[i] < 0;
    }
    if (!anyFront || !anyBack) return r;
    r.cut = true;
    for (std::size_t i = 0; i < n; ++i) {
        const std::size_t j = (i + 1) % n;
        if (side[i] >= 0) r.front.push_back(p[i]);
        if (side[i] <= 0) r.back.push_back(p[i]);
        if (side[i] * side[j] < 0) {
            const double s = dist[i] / (dist[i] - dist[j]);
            const Point3 q = p[i] + (p[j] - p[i]) * s;
            r.front.push_back(q);
            r.back.push_back(q);
        }
    }
    return r;
}

Point3 rotateAboutAxis(Point3 v, Point3 centre, int axis, double degrees) {
    const double a = degrees * std::numbers::pi / 180.0;
    const double c = std::cos(a), s = std::sin(a);
    const Point3 r = v - centre;
    Point3 out = r;
    switch (axis) {
        case 0:
            out.y = c * r.y - s * r.z;
            out.z = s * r.y + c * r.z;
            break;
        case 1:
            out.z = c * r.z - s * r.x;
            out.x = s * r.z + c * r.x;
            break;
        default:
            out.x = c * r.x - s * r.y;
            out.y = s * r.x + c * r.y;
            break;
    }
    return out + centre;
}

}  // namespace engine::geom
