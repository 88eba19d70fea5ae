// Angle functions, rounding and the dip / dip direction conventions.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "builders/Geometry.h"

using builders::P_subDipAndDipDirection;
using engine::Point3;

namespace {

constexpr double kTight = 1e-9;

TEST(InverseTrig, OutOfRangeArgumentsGiveTheEndsWithoutError) {
    EXPECT_EQ(builders::ACosDeg(1.0000001), 0.0);
    EXPECT_DOUBLE_EQ(builders::ASinDeg(-2), -90.0);
    EXPECT_DOUBLE_EQ(builders::ASinDeg(1), 90.0);
    EXPECT_EQ(builders::ACosRad(1), 0.0);
    // pi/2 + pi/2 of the literal constant: the literal pi itself
    EXPECT_EQ(builders::ACosRad(-1), 3.14159265358979);
    EXPECT_EQ(builders::ACosRad(-7), 3.14159265358979);
}

TEST(InverseTrig, InsideTheRangeMatchesTheTextbookAngles) {
    EXPECT_NEAR(builders::ACosDeg(0.5), 60.0, kTight);
    EXPECT_NEAR(builders::ACosDeg(-0.5), 120.0, kTight);
    EXPECT_NEAR(builders::ASinDeg(0.5), 30.0, kTight);
    EXPECT_NEAR(builders::ASinDeg(-std::sqrt(0.5)), -45.0, kTight);
    EXPECT_EQ(builders::ACosRad(0), 1.570796326794895);
    EXPECT_TRUE(std::isnan(builders::ACosRad(std::numeric_limits<double>::quiet_NaN())));
}

TEST(RoundHalfEven1, TiesGoToTheEvenDigitOfTheDecimalValue) {
    // 0.35 is 0.34999999999999997... in binary: the written decimal decides.
    EXPECT_EQ(builders::roundHalfEven1(0.25), 0.2);
    EXPECT_EQ(builders::roundHalfEven1(0.35), 0.4);
    EXPECT_EQ(builders::roundHalfEven1(0.15), 0.2);
    EXPECT_EQ(builders::roundHalfEven1(0.05), 0.0);
    EXPECT_EQ(builders::roundHalfEven1(-0.25), -0.2);
    EXPECT_EQ(builders::roundHalfEven1(-0.35), -0.4);
    EXPECT_EQ(builders::roundHalfEven1(123456.65), 123456.6);
    EXPECT_EQ(builders::roundHalfEven1(123456.75), 123456.8);
}

TEST(RoundHalfEven1, NonTiesCarriesAndSigns) {
    EXPECT_EQ(builders::roundHalfEven1(0.2500001), 0.3);
    EXPECT_EQ(builders::roundHalfEven1(0.26), 0.3);
    EXPECT_EQ(builders::roundHalfEven1(0.24), 0.2);
    EXPECT_EQ(builders::roundHalfEven1(2.5), 2.5);
    EXPECT_EQ(builders::roundHalfEven1(7), 7.0);
    // 9.9 and a half: the 9 is odd, so up, carrying through every digit
    EXPECT_EQ(builders::roundHalfEven1(9.95), 10.0);
    EXPECT_EQ(builders::roundHalfEven1(359.95), 360.0);
    EXPECT_EQ(builders::roundHalfEven1(44.99999999999999), 45.0);
    double z = builders::roundHalfEven1(-0.04);
    EXPECT_EQ(z, 0.0);
    EXPECT_FALSE(std::signbit(z));
    EXPECT_EQ(builders::roundHalfEven1(1e-100), 0.0);
    EXPECT_TRUE(std::isnan(builders::roundHalfEven1(std::nan(""))));
}

TEST(LineVerticalAngle, SignFollowsTheRiseAndVerticalGivesZero) {
    Point3 a{5, 5, 5};
    EXPECT_NEAR(builders::P_fncLineVerticalAngle(a, a + Point3{1, 0, 1}), 45.0, kTight);
    EXPECT_NEAR(builders::P_fncLineVerticalAngle(a, a + Point3{0, 1, -1}), -45.0, kTight);
    // horizontal part sqrt(3) of length 2: cos = sqrt(3)/2, 30 degrees
    EXPECT_NEAR(builders::P_fncLineVerticalAngle(a, a + Point3{std::sqrt(3.0), 0, 1}), 30.0,
                kTight);
    EXPECT_EQ(builders::P_fncLineVerticalAngle(a, a + Point3{0, 0, 7}), 0.0);
    EXPECT_EQ(builders::P_fncLineVerticalAngle(a, a + Point3{0, 0, -7}), 0.0);
    EXPECT_EQ(builders::P_fncLineVerticalAngle(a, a), 0.0);
}

struct DipResult {
    double dip, dd;
};

DipResult dipOf(Point3 v, bool flip, bool plane, float north,
                std::optional<bool> fullCircle = std::nullopt) {
    DipResult r{-1, -1};
    P_subDipAndDipDirection(fullCircle, flip, plane, v, r.dip, r.dd, north);
    return r;
}

// Horizontal lines in the four quadrants. Azimuth clockwise from north:
// north 0 is +x with azimuths towards -y, north 0.5 is +y with azimuths towards +x.
TEST(DipAndDipDirection, NorthAlongXWithoutFlipIsTheAzimuth) {
    EXPECT_EQ(dipOf({1, -1, 0}, false, false, 0.0f).dd, 45.0);
    EXPECT_EQ(dipOf({-1, -1, 0}, false, false, 0.0f).dd, 135.0);
    EXPECT_EQ(dipOf({-1, 1, 0}, false, false, 0.0f).dd, 225.0);
    EXPECT_EQ(dipOf({1, 1, 0}, false, false, 0.0f).dd, 315.0);
    // (sqrt 3, -1): 30 degrees from +x towards -y
    EXPECT_EQ(dipOf({std::sqrt(3.0), -1, 0}, false, false, 0.0f).dd, 30.0);
}

TEST(DipAndDipDirection, NorthAlongXWithFlipIsTurnedByHalfACircle) {
    // (1,-1): -atan(-1) = 45, y < 0 and below 180: +180
    EXPECT_EQ(dipOf({1, -1, 0}, true, false, 0.0f).dd, 225.0);
    // (-1,-1): -45 -> 315, y < 0 and 180 or more: unchanged
    EXPECT_EQ(dipOf({-1, -1, 0}, true, false, 0.0f).dd, 315.0);
    // (-1,1): 45, y > 0 and below 180: unchanged
    EXPECT_EQ(dipOf({-1, 1, 0}, true, false, 0.0f).dd, 45.0);
    // (1,1): -45 -> 315, y > 0 and 180 or more: -180
    EXPECT_EQ(dipOf({1, 1, 0}, true, false, 0.0f).dd, 135.0);
}

TEST(DipAndDipDirection, NorthAlongYIsTheAzimuthWithOrWithoutFlip) {
    for (bool flip : {false, true}) {
        SCOPED_TRACE(flip);
        // (1,1): -45 + 90 = 45, x > 0
        EXPECT_EQ(dipOf({1, 1, 0}, flip, false, 0.5f).dd, 45.0);
        // (1,-1): 45 + 90 = 135, x > 0
        EXPECT_EQ(dipOf({1, -1, 0}, flip, false, 0.5f).dd, 135.0);
        // (-1,-1): -45 + 90 = 45, x < 0 and below 180: +180
        EXPECT_EQ(dipOf({-1, -1, 0}, flip, false, 0.5f).dd, 225.0);
        // (-1,1): 45 + 90 = 135, x < 0: +180
        EXPECT_EQ(dipOf({-1, 1, 0}, flip, false, 0.5f).dd, 315.0);
        // (sqrt 3, 1): 60 degrees from +y towards +x
        EXPECT_EQ(dipOf({std::sqrt(3.0), 1, 0}, flip, false, 0.5f).dd, 60.0);
    }
}

TEST(DipAndDipDirection, LineDipIsASignedPlungeAndZeroPartsAreReplaced) {
    Point3 v{1, 0, 1};
    double dip = 0, dd = 0;
    P_subDipAndDipDirection(true, false, false, v, dip, dd, 0.5f);
    EXPECT_EQ(dip, 45.0);
    EXPECT_EQ(dd, 90.0);  // +x is east when north is +y
    EXPECT_EQ(v.x, 1.0);
    EXPECT_EQ(v.y, 1E-100);
    // a line going down: negative
    EXPECT_EQ(dipOf({1, 1, -std::sqrt(2.0)}, false, false, 0.5f).dip, -45.0);
}

TEST(DipAndDipDirection, HorizontalPlaneHasDipZero) {
    Point3 n{0, 0, 1};
    double dip = -1, dd = -1;
    P_subDipAndDipDirection(std::nullopt, true, true, n, dip, dd, 0.0f);
    EXPECT_EQ(n.x, 1E-100);
    EXPECT_EQ(n.y, 1E-100);
    EXPECT_EQ(n.z, 1.0);
    EXPECT_EQ(dip, 0.0);
    // x = y: -45 -> 315; flip with y > 0 and 180 or more: 135
    EXPECT_EQ(dd, 135.0);
}

TEST(DipAndDipDirection, DownwardNormalGivesTheDipOfItsOpposite) {
    // dip = 90 - asin(1/sqrt 3) = 54.7356...
    for (bool flip : {false, true}) {
        for (float north : {0.0f, 0.5f}) {
            SCOPED_TRACE(testing::Message() << flip << " " << north);
            EXPECT_EQ(dipOf({1, 1, -1}, flip, true, north).dip, 54.7);
            EXPECT_EQ(dipOf({-1, -1, 1}, flip, true, north).dip, 54.7);
            EXPECT_EQ(dipOf({0.2, -0.5, -3}, flip, true, north).dip,
                      dipOf({-0.2, 0.5, 3}, flip, true, north).dip);
        }
    }
}

TEST(DipAndDipDirection, PlaneDirectionsUnderBothSenses) {
    // Without flip the direction is that of the upward normal's horizontal part,
    // whichever way the normal was given: (-1,-1) is 225 with north +y.
    EXPECT_EQ(dipOf({1, 1, -1}, false, true, 0.5f).dd, 225.0);
    EXPECT_EQ(dipOf({-1, -1, 1}, false, true, 0.5f).dd, 225.0);
    // With flip: (1,1,-1) is first 45, turned to 225 for pointing down, then
    // x > 0 and 180 or more takes 180 off again: 45.
    EXPECT_EQ(dipOf({1, 1, -1}, true, true, 0.5f).dd, 45.0);
    EXPECT_EQ(dipOf({-1, -1, 1}, true, true, 0.5f).dd, 225.0);
    // north along x, flip: (1,-1,1) is 45, y < 0 below 180: 225
    EXPECT_EQ(dipOf({1, -1, 1}, true, true, 0.0f).dd, 225.0);
}

TEST(DipAndDipDirection, ExactlyHalfACircleCountsAsTheUpperHalf) {
    // (1,0,-1), north along x: y becomes 1E-100, dd = -5.7E-99 wraps to exactly
    // 360 and so to 0; pointing down turns it to 180 exactly. With flip, y > 0
    // and "180 or more" takes it back to 0; without flip x > 0 leaves 180.
    EXPECT_EQ(dipOf({1, 0, -1}, true, true, 0.0f).dd, 0.0);
    EXPECT_EQ(dipOf({1, 0, -1}, false, true, 0.0f).dd, 180.0);
    EXPECT_EQ(dipOf({1, 0, -1}, false, true, 0.0f).dip, 45.0);
    // its upward twin: south (-x) without flip
    EXPECT_EQ(dipOf({-1, 0, 1}, false, true, 0.0f).dd, 180.0);
}

TEST(DipAndDipDirection, HalfCircleFoldsOnlyWhenAskedFalse) {
    EXPECT_EQ(dipOf({-1, -1, 0}, false, false, 0.5f, false).dd, 45.0);
    EXPECT_EQ(dipOf({-1, -1, 0}, false, false, 0.5f, true).dd, 225.0);
    EXPECT_EQ(dipOf({-1, -1, 0}, false, false, 0.5f).dd, 225.0);
    EXPECT_EQ(dipOf({1, -1, 0}, false, false, 0.5f, false).dd, 135.0);
}

TEST(DipAndDipDirection, DueNorthAlongYShowsTheLiteralPi) {
    // x becomes 1E-100, atan(1E100) is the true pi/2, and 180 over the literal pi
    // (a little short of pi) makes it 90.00000000000009: dd = -9E-14 + 90 - 90,
    // wrapped to 359.99999999999991. Without flip x > 0 leaves it: 360.0 after
    // rounding; with flip "x > 0 and 180 or more" takes 180 off: 180.0.
    EXPECT_EQ(dipOf({0, 1, 0}, false, false, 0.5f).dd, 360.0);
    EXPECT_EQ(dipOf({0, 1, 0}, true, false, 0.5f).dd, 180.0);
    // Along the x north the same overshoot lands on 270 exactly: west.
    EXPECT_EQ(dipOf({0, 1, 0}, false, false, 0.0f).dd, 270.0);
    EXPECT_EQ(dipOf({1, 0, 0}, false, false, 0.0f).dd, 0.0);
}

TEST(DipAndDipDirection, ResultsAreRoundedToOneDecimal) {
    // atan(0.1) = 5.7105931...: dd = 90 - 5.7106 = 84.2894 -> 84.3
    auto r = dipOf({1, 0.1, 0}, false, false, 0.5f);
    EXPECT_EQ(r.dd, 84.3);
    EXPECT_EQ(r.dip, 0.0);
}

TEST(PoleFunctions, ClampTheArgumentInPlace) {
    double dip = 120;
    EXPECT_EQ(builders::P_fncDipToPolePlunge(dip), 0.0);
    EXPECT_EQ(dip, 90.0);
    dip = -10;
    EXPECT_EQ(builders::P_fncDipToPolePlunge(dip), 90.0);
    EXPECT_EQ(dip, 0.0);
    dip = 30;
    EXPECT_EQ(builders::P_fncDipToPolePlunge(dip), 60.0);
    EXPECT_EQ(dip, 30.0);

    double dd = 200;
    EXPECT_EQ(builders::P_fncDipDirToPoleTrend(dd), 20.0);
    dd = 90;
    EXPECT_EQ(builders::P_fncDipDirToPoleTrend(dd), 270.0);
    dd = 180;
    EXPECT_EQ(builders::P_fncDipDirToPoleTrend(dd), 360.0);  // only above 360 wraps
    dd = -5;
    EXPECT_EQ(builders::P_fncDipDirToPoleTrend(dd), 180.0);
    EXPECT_EQ(dd, 0.0);
    dd = 400;
    EXPECT_EQ(builders::P_fncDipDirToPoleTrend(dd), 180.0);
    EXPECT_EQ(dd, 360.0);
}

TEST(TrendPlungeEnd, NudgesExactValuesInTheCallersVariables) {
    Point3 end;
    double trend = 45, plunge = 90;
    builders::P_subTrendPlungeEnd({0, 0, 0}, 1, trend, plunge, end, 0.5f);
    EXPECT_EQ(trend, 44.9999);
    EXPECT_EQ(plunge, 89.9999);
    trend = 0;
    plunge = 45;
    builders::P_subTrendPlungeEnd({0, 0, 0}, 1, trend, plunge, end, 0.5f);
    EXPECT_EQ(trend, 0.0001);
    EXPECT_EQ(plunge, 44.9999);
    trend = 30;
    plunge = 10;
    builders::P_subTrendPlungeEnd({0, 0, 0}, 1, trend, plunge, end, 0.5f);
    EXPECT_EQ(trend, 30.0);
    EXPECT_EQ(plunge, 10.0);
}

TEST(TrendPlungeEnd, DirectionFollowsTheNorthAxisAndPlungeRunsDown) {
    Point3 start{1, 2, 3}, end;
    double trend = 90, plunge = 0;
    builders::P_subTrendPlungeEnd(start, 10, trend, plunge, end, 0.5f);  // east is +x
    EXPECT_NEAR(end.x, 11, 1e-9);
    EXPECT_NEAR(end.y, 2, 1e-9);
    EXPECT_NEAR(end.z, 3, 1e-9);
    builders::P_subTrendPlungeEnd(start, 10, trend, plunge, end, 0.0f);  // east is -y
    EXPECT_NEAR(end.x, 1, 1e-9);
    EXPECT_NEAR(end.y, -8, 1e-9);
    // trend 180 (south, -x with north along x), plunge 30 down:
    // horizontal 10 cos 30 = 8.6603, vertical -5
    trend = 180;
    plunge = 30;
    builders::P_subTrendPlungeEnd(start, 10, trend, plunge, end, 0.0f);
    EXPECT_NEAR(end.x, 1 - 8.660254037844, 1e-9);
    EXPECT_NEAR(end.y, 2, 1e-9);
    EXPECT_NEAR(end.z, -2, 1e-9);
    // trend 0 is nudged to 0.0001: north with north along y, a hair east
    trend = 0;
    plunge = 0;
    builders::P_subTrendPlungeEnd({0, 0, 0}, 10, trend, plunge, end, 0.5f);
    EXPECT_NEAR(end.y, 10, 1e-6);
    EXPECT_GT(end.x, 0);
}

TEST(ProjectPointOnLine, FootOfThePerpendicular) {
    Point3 a{0, 0, 0}, b{10, 0, 0};
    Point3 p{3, 4, 5};
    builders::P_subProjectPointOnLine(a, b, p);
    EXPECT_NEAR(p.x, 3, 1e-9);
    EXPECT_NEAR(p.y, 0, 1e-9);
    EXPECT_NEAR(p.z, 0, 1e-9);
    p = {15, 1, 0};  // beyond b
    builders::P_subProjectPointOnLine(a, b, p);
    EXPECT_NEAR(p.x, 15, 1e-9);
    p = {-2, 3, 0};  // behind a
    builders::P_subProjectPointOnLine(a, b, p);
    EXPECT_NEAR(p.x, -2, 1e-9);
    EXPECT_NEAR(p.y, 0, 1e-9);
    // slanted line through (1,1,1) along (1,1,0): (3,1,1) lands at (2,2,1)
    p = {3, 1, 1};
    builders::P_subProjectPointOnLine({1, 1, 1}, {4, 4, 1}, p);
    EXPECT_NEAR(p.x, 2, 1e-9);
    EXPECT_NEAR(p.y, 2, 1e-9);
    EXPECT_NEAR(p.z, 1, 1e-9);
}

TEST(ProjectPointOnLine, DegenerateInputsStayFinite) {
    Point3 p{0, 0, 0};
    builders::P_subProjectPointOnLine({0, 0, 0}, {1, 0, 0}, p);  // p on a
    EXPECT_TRUE(p.finite());
    EXPECT_NEAR(p.x, 0, 1e-9);
    p = {5, 5, 5};
    builders::P_subProjectPointOnLine({1, 2, 3}, {1, 2, 3}, p);  // no line
    EXPECT_TRUE(p.finite());
    EXPECT_EQ(p, (Point3{1, 2, 3}));
}

TEST(ArrayCopies, CopyNegateAndGrow) {
    std::vector<double> dst{9};
    builders::P_subCopyPoint(dst, {1, 2, 3});
    EXPECT_EQ(dst, (std::vector<double>{1, 2, 3}));
    std::vector<double> longer{7, 7, 7, 7};
    builders::P_subNegatePoint(longer, {1, -2, 3});
    EXPECT_EQ(longer, (std::vector<double>{-1, 2, -3, 7}));
    std::vector<std::int32_t> c;
    builders::P_subCopyColour(c, {255, 0, 17});
    EXPECT_EQ(c, (std::vector<std::int32_t>{255, 0, 17}));
    Point3 q;
    builders::P_subNegatePoint(q, {1, 2, -3});
    EXPECT_EQ(q, (Point3{-1, -2, 3}));
}

}  // namespace
