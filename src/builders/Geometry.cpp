#include "builders/Geometry.h"

#include <charconv>
#include <cmath>
#include <string>

#include "core/AppContext.h"
#include "core/GroupPolygons.h"
#include "engine/Engine.h"

namespace builders {

using engine::Point3;

double roundHalfEven1(double x) {
    if (!std::isfinite(x)) return x;
    // Shortest text that reads back to x, in plain positional form.
    char buf[512];
    auto res = std::to_chars(buf, buf + sizeof buf, x, std::chars_format::fixed);
    if (res.ec != std::errc()) return x;
    std::string s(buf, res.ptr);
    bool negative = false;
    if (!s.empty() && s[0] == '-') {
        negative = true;
        s.erase(0, 1);
    }
    auto dot = s.find('.');
    if (dot == std::string::npos || s.size() - dot - 1 <= 1) return x == 0 ? 0.0 : x;

    // digits holds the value in tenths; rest the decimals after the first.
    std::string digits = s.substr(0, dot) + s[dot + 1];
    std::string rest = s.substr(dot + 2);
    bool up;
    if (rest[0] > '5') {
        up = true;
    } else if (rest[0] < '5') {
        up = false;
    } else {
        bool beyondHalf = rest.find_first_not_of('0', 1) != std::string::npos;
        up = beyondHalf || ((digits.back() - '0') % 2 == 1);
    }
    if (up) {
        int i = static_cast<int>(digits.size()) - 1;
        while (i >= 0) {
            if (digits[i] == '9') {
                digits[i] = '0';
                --i;
            } else {
                ++digits[i];
                break;
            }
        }
        if (i < 0) digits.insert(digits.begin(), '1');
    }
    std::string out = digits.substr(0, digits.size() - 1) + "." + digits.back();
    double r = 0;
    std::from_chars(out.data(), out.data() + out.size(), r);
    if (negative) r = -r;
    return r == 0 ? 0.0 : r;
}

void P_subCopyPoint(std::vector<double>& destination, const std::vector<double>& source) {
    if (destination.size() < source.size()) destination.resize(source.size());
    for (std::size_t i = 0; i < source.size(); ++i) destination[i] = source[i];
}

void P_subCopyPoint(Point3& destination, const Point3& source) { destination = source; }

void P_subNegatePoint(std::vector<double>& destination, const std::vector<double>& source) {
    if (destination.size() < source.size()) destination.resize(source.size());
    for (std::size_t i = 0; i < source.size(); ++i) destination[i] = -source[i];
}

void P_subNegatePoint(Point3& destination, const Point3& source) {
    destination = {-source.x, -source.y, -source.z};
}

void P_subCopyColour(std::vector<std::int32_t>& destination,
                     const std::vector<std::int32_t>& source) {
    if (destination.size() < source.size()) destination.resize(source.size());
    for (std::size_t i = 0; i < source.size(); ++i) destination[i] = source[i];
}

void P_subCopyColour(engine::Rgb& destination, const engine::Rgb& source) { destination = source; }

double P_fncLineVerticalAngle(const Point3& a, const Point3& b) {
    Point3 d = b - a;
    double len = nonZero(engine::length(d));
    double r = std::sqrt(d.x * d.x + d.y * d.y) / len;
    double angle = r == 0 ? 0.0 : ACosDeg(r);
    if (b.z - a.z < 0 && angle != 0) angle = -angle;
    return angle;
}

void P_subDipAndDipDirection(std::optional<bool> bolFullCircle, bool bolFlipSense, bool bolPlane,
                             Point3& dblVector, double& dblDip, double& dblDipDirection,
                             float sngNorthAxis) {
    if (dblVector.x == 0) dblVector.x = kDivZero;
    if (dblVector.y == 0) dblVector.y = kDivZero;
    const double x = dblVector.x, y = dblVector.y, z = dblVector.z;
    const bool northAlongX = sngNorthAxis == 0.0f;

    double dd = -std::atan(y / x) * 180 / kPi + static_cast<double>(sngNorthAxis) * 180;
    if (dd < 0) dd = 360 + dd;
    if (dd == 360) dd = 0;
    if (dd > 360) dd = dd - 360;

    double p = ASinDeg(z / nonZero(std::sqrt(x * x + y * y + z * z)));
    double dip;
    if (!bolPlane) {
        dip = p;
    } else {
        dip = 90 - p;
        if (dip > 90) {
            // The normal points down: read the plane from its upper side.
            dip = 180 - dip;
            if (dd > 180 && dd <= 360) {
                dd = dd - 180;
            } else if (dd >= 0 && dd <= 180) {
                dd = dd + 180;
            }
        }
    }

    // A plain arctangent knows half a circle: the signs put the other half back.
    if (bolFlipSense) {
        double s = northAlongX ? y : x;
        if (s > 0) {
            if (dd >= 180) dd = dd - 180;
        } else if (s < 0) {
            if (dd < 180) dd = dd + 180;
        }
    } else if (x < 0) {
        dd = dd < 180 ? dd + 180 : dd - 180;
    }

    if (bolFullCircle.has_value() && !*bolFullCircle && dd > 180) dd = dd - 180;

    dblDip = roundHalfEven1(dip);
    dblDipDirection = roundHalfEven1(dd);
}

void P_subDipAndDipDirection(const core::AppContext& ctx, std::optional<bool> bolFullCircle,
                             bool bolFlipSense, bool bolPlane, Point3& dblVector, double& dblDip,
                             double& dblDipDirection) {
    P_subDipAndDipDirection(bolFullCircle, bolFlipSense, bolPlane, dblVector, dblDip,
                            dblDipDirection, ctx.state.sngNorthAxis);
}

double P_fncDipToPolePlunge(double& dblDip) {
    if (dblDip < 0) dblDip = 0;
    if (dblDip > 90) dblDip = 90;
    double r = 90 - dblDip;
    if (r < 0) r = 0;
    if (r > 90) r = 90;
    return r;
}

double P_fncDipDirToPoleTrend(double& dblDipDirection) {
    if (dblDipDirection < 0) dblDipDirection = 0;
    if (dblDipDirection > 360) dblDipDirection = 360;
    double r = dblDipDirection + 180;
    if (r > 360) r = r - 360;
    if (r < 0) r = r + 360;
    return r;
}

void P_subTrendPlungeEnd(const Point3& start, double length, double& trend, double& plunge,
                         Point3& end, float sngNorthAxis) {
    // Exact values here make the direction tests of the callers fall on a boundary.
    if (trend == 0) trend = 0.0001;
    if (trend == 45) trend = 44.9999;
    if (plunge == 45) plunge = 44.9999;
    if (plunge == 90) plunge = 89.9999;

    const double pl = plunge * kDegree;
    const double tr = trend * kDegree;
    const double h = std::cos(pl) * length;
    const double z = -std::sin(pl) * length;
    double x, y;
    if (sngNorthAxis == 0.0f) {
        x = h * std::cos(tr);
        y = -h * std::sin(tr);
    } else {
        x = h * std::cos(tr - kPi / 2);
        y = -h * std::sin(tr - kPi / 2);
    }
    end = Point3{start.x + x, start.y + y, start.z + z};
}

void P_subTrendPlungeEnd(const core::AppContext& ctx, const Point3& start, double length,
                         double& trend, double& plunge, Point3& end) {
    P_subTrendPlungeEnd(start, length, trend, plunge, end, ctx.state.sngNorthAxis);
}

void P_subProjectPointOnLine(const Point3& a, const Point3& b, Point3& p) {
    Point3 u = p - a;
    double m = nonZero(engine::length(u));
    Point3 w = b - a;
    w = w * (1.0 / nonZero(engine::length(w)));
    double angle = ACosRad(engine::dot(w, u) / (m * nonZero(engine::length(w))));
    p = a + w * (std::cos(angle) * m);
}

namespace {

// The first n points of a polygon; fewer when it has fewer.
int firstPoints(const engine::Engine& eng, engine::Handle hPolygon, Point3* out, int n) {
    int k = 0;
    for (engine::Handle pt = eng.polygon_get_first_point(hPolygon); pt != 0 && k < n;
         pt = eng.point_get_next_point(pt)) {
        if (eng.point_get_xyz(pt, out[k]) != 0) break;
        ++k;
    }
    return k;
}

}  // namespace

double P_fncPolygonCornerArea(const engine::Engine& eng, engine::Handle hPolygon) {
    Point3 p[3];
    if (firstPoints(eng, hPolygon, p, 3) < 3) return 0;
    return engine::Engine::math_get_distance(p[0], p[1]) *
           engine::Engine::math_get_distance(p[1], p[2]) * 0.5;
}

double P_fncPolygonCornerRadius(const engine::Engine& eng, engine::Handle hPolygon) {
    Point3 p[1];
    if (firstPoints(eng, hPolygon, p, 1) < 1) return 0;
    return engine::Engine::math_get_distance(eng.polygon_get_center(hPolygon), p[0]) * 0.1;
}

double P_fncGroupVolume(const engine::Engine& eng, engine::Handle hGroup) {
    const Point3 c = eng.group_get_center_of_mass(hGroup) * 0.1;
    double volume = 0;
    core::forEachGroupPolygon(eng, hGroup, [&](engine::Handle h) {
        Point3 p[3];
        if (firstPoints(eng, h, p, 3) < 3) return true;
        for (auto& q : p) q = q * 0.1;
        double base = engine::Engine::math_get_distance(p[0], p[1]);
        double height = engine::Engine::math_get_distance_between_point_and_line(p[2], p[0], p[1]);
        double area = base * 0.5 * height;
        engine::Plane plane;  // stays zero for a degenerate polygon: it adds nothing
        eng.polygon_get_plane(h, plane);
        double distance =
            std::fabs(engine::dot(plane.n, c) + plane.d * 0.1) / nonZero(engine::length(plane.n));
        volume += (1.0 / 3.0) * area * distance;
        return true;
    });
    return volume;
}

}  // namespace builders
