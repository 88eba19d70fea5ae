// Seismic PPV: the formula and the event reader at values worked out by hand, the
// record a hit writes, and the indexed evaluation against the walk over every
// polygon on a random model.

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "AnalysisTestUtil.h"
#include "analysis/Ppv.h"
#include "analysis/PpvRun.h"
#include "core/LenientNumber.h"
#include "forms/Frm30ImportPPV.h"

namespace {

using analysis::CoordConvention;
using analysis::PpvPath;
using analysis::PpvRun;
using analysistest::AnalysisTest;
using engine::Handle;
using engine::Point3;

TEST(PpvFormula, WorkedExamples) {
    // exp(0.7326 * 2 + 0.0821 - ln 100) = exp(1.5473 - 4.6052)
    EXPECT_NEAR(analysis::ppvAt(0.7326f, 0.0821f, 2, 100), 0.047, 1e-4);
    // With no constants the PPV is 1 / D.
    EXPECT_DOUBLE_EQ(analysis::ppvAt(0, 0, 5, 4), 0.25);
    EXPECT_FALSE(std::isfinite(analysis::ppvAt(0, 0, 1, 0)));
    // Ten scene units are a metre.
    EXPECT_DOUBLE_EQ(analysis::ppvDistance({0, 0, 0}, {30, 40, 0}), 5);
    // Reach: exp(0) / 0.5 = 2 metres; no reach for a threshold of 0 or less.
    EXPECT_DOUBLE_EQ(*analysis::ppvReach(0, 0, 3, 0.5), 2);
    EXPECT_FALSE(analysis::ppvReach(0, 0, 3, 0).has_value());
    EXPECT_FALSE(analysis::ppvReach(0, 0, 3, -1).has_value());
}

TEST(PpvReader, FieldsSignsSwapAndOffset) {
    std::string norm;
    auto e = analysis::readPpvEventLine("20060629 132944 87333 56893 -1222 1.2\r", {}, norm);
    ASSERT_TRUE(e);
    EXPECT_EQ(e->position, (Point3{873330, 568930, -12220}));
    EXPECT_DOUBLE_EQ(e->ml, 1.2);
    EXPECT_EQ(norm, "20060629\t132944\t87333\t56893\t-1222\t1.2");

    // Signs follow the file's order; the swap moves the values afterwards.
    CoordConvention c;
    c.sign[0] = -1;
    c.sign[2] = -1;
    c.swapXY = true;
    e = analysis::readPpvEventLine("d,t,10,20,30,0.5", c, norm);
    ASSERT_TRUE(e);
    EXPECT_EQ(e->position, (Point3{200, -100, -300}));

    // A leading separator adds 1 to every value, read from the same fields.
    e = analysis::readPpvEventLine(" 20060629 132944 99 -1 -1 1", {}, norm);
    ASSERT_TRUE(e);
    EXPECT_EQ(e->position, (Point3{1329450, 1000, 0}));
    EXPECT_DOUBLE_EQ(e->ml, 0);
}

TEST(PpvReader, RefusesWhatIsNoNumber) {
    std::string norm;
    for (const char* bad : {"d t 1 2 3", "d t x 2 3 1", "d t 1 2 3 1.5.2", "", "d t 1 2 3 nan",
                            "d t 1 2 inf 1", "d t 1e400 2 3 1", "d t 1e308 2 3 1"})
        EXPECT_FALSE(analysis::readPpvEventLine(bad, {}, norm)) << bad;
    EXPECT_EQ(analysis::strictNumber(" +2.5e1 "), 25.0);
    EXPECT_EQ(analysis::strictNumber("-.5"), -0.5);
    EXPECT_FALSE(analysis::strictNumber("-"));
    EXPECT_FALSE(analysis::strictNumber("12abc"));
}

TEST(PpvRecord, HitsAddUp) {
    std::string name;
    double cum = 0;
    ASSERT_TRUE(analysis::ppvRecordAfterHit(analysis::kPpvStartRecord, 0.25, name, cum));
    EXPECT_EQ(name, "CM_PPVel\t0.25\t0.25\t1");
    ASSERT_TRUE(analysis::ppvRecordAfterHit(name, 0.125, name, cum));
    EXPECT_EQ(name, "CM_PPVel\t0.375\t0.25\t2");
    EXPECT_DOUBLE_EQ(cum, 0.375);
    // Line ends in an old record read as separators; the hit count stays in 16 bits.
    ASSERT_TRUE(analysis::ppvRecordAfterHit("CM_PPVel\r\n1\r\n2\r\n3", 3, name, cum));
    EXPECT_EQ(name, "CM_PPVel\t4\t3\t4");
    EXPECT_FALSE(analysis::ppvRecordAfterHit("CM_PPVel\t1\t1\t32767", 1, name, cum));
}

TEST(PpvMarker, RadiusAndColour) {
    EXPECT_DOUBLE_EQ(analysis::eventMarkerRadius(0, 10, 3), 100);
    EXPECT_DOUBLE_EQ(analysis::eventMarkerRadius(8, 10, 1), 8 * std::exp(1.0) * 10);
    EXPECT_EQ(analysis::magnitudeColour(-0.1), (engine::Rgb{7, 121, 248}));
    EXPECT_EQ(analysis::magnitudeColour(0), (engine::Rgb{7, 248, 7}));
    EXPECT_EQ(analysis::magnitudeColour(0.5), (engine::Rgb{248, 121, 7}));
    EXPECT_EQ(analysis::magnitudeColour(1), (engine::Rgb{248, 7, 7}));
}

struct PpvFormTest : AnalysisTest {};

TEST_F(PpvFormTest, ThresholdAndMinimumMoveTheLimits) {
    forms::Frm30ImportPPV& f = forms::importPpvForm(ctx);
    f.ensureLoaded();
    EXPECT_EQ(f.text("cboPPVMin"), "0.030");
    ASSERT_TRUE(f.setFromUser("cboPPVThreshold", "0.05"));
    EXPECT_EQ(f.text("cboPPVMin"), "0.05");
    EXPECT_EQ(f.text("cboPPVMax"), "0.2");
    ASSERT_TRUE(f.setFromUser("cboPPVMin", "0.04"));
    EXPECT_EQ(f.text("cboPPVMax"), "0.16");
    EXPECT_EQ(f.text("cboPPVThreshold"), "0.05");

    // A maximum below the minimum keeps the form up; equal limits pass.
    f.setShown(true);
    f.setText("cboPPVMax", "0.01");
    f.click("cmdAccept");
    EXPECT_TRUE(f.shown());
    auto boxes = records("msgbox");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0]["text"], "The Max Value cannot be less than the Min Value");
    EXPECT_EQ(boxes[0]["title"], "Error in selection");
    f.setText("cboPPVMax", "0.04");
    f.click("cmdAccept");
    EXPECT_FALSE(f.shown());
}

// The same random model in two windows, one evaluated through the index and the
// other by the walk; every name and colour must agree.
struct RandomModel {
    explicit RandomModel(unsigned seed) : ctx(ui) {
        ctx.engine.engine_load_world("", "", "", 4);
        std::mt19937 rng(seed);
        std::uniform_real_distribution<double> pos(-20000, 20000), off(-50, 50);
        engine::Engine& e = ctx.engine;
        const Handle g = e.group_create("Model");
        for (int k = 0; k < 3000; ++k) {
            Point3 c{pos(rng), pos(rng), pos(rng) * 0.1};
            // Every tenth polygon shares the centre of the one before: ties.
            if (k % 10 == 9) c = last;
            last = c;
            const Handle p = e.polygon_create();
            e.polygon_add_point(p, Point3{c.x + 40, c.y, c.z});
            e.polygon_add_point(p, Point3{c.x - 20, c.y + 35, c.z});
            e.polygon_add_point(p, Point3{c.x - 20, c.y - 35, c.z});
            e.engine_add_polygon(p);
            e.polygon_set_group(p, g);
            e.polygon_set_name(p, "PR_old");
            if (k % 17 == 0) e.polygon_disable(p);
            centres.push_back(e.polygon_get_center(p));
        }
    }
    ui::ScriptedUi ui;
    core::AppContext ctx;
    Point3 last;
    std::vector<Point3> centres;
};

TEST(PpvPaths, IndexedAgreesWithTheWalkOnARandomModel) {
    RandomModel a(7), b(7);
    analysis::PpvSettings s;
    s.bolLoadEvents = true;
    s.dblThreshold = 0.03;
    const Handle ga = a.ctx.engine.group_create(analysis::kDamagingEventsGroup);
    const Handle gb = b.ctx.engine.group_create(analysis::kDamagingEventsGroup);
    PpvRun fast(a.ctx, s, ga, PpvPath::Indexed), walk(b.ctx, s, gb, PpvPath::PlainWalk);
    fast.resetRecords();
    walk.resetRecords();

    std::mt19937 rng(11);
    std::uniform_real_distribution<double> pos(-2000, 2000), ml(-1, 3);
    std::vector<std::string> lines;
    for (int k = 0; k < 300; ++k) {
        char buf[160];
        std::snprintf(buf, sizeof buf, "20060629 132944 %.3f %.3f %.3f %.2f", pos(rng), pos(rng),
                      pos(rng) * 0.1, ml(rng));
        lines.emplace_back(buf);
    }
    lines.emplace_back("20060629 132944 1 2 x 1");  // no number
    // An event on a polygon centre (metres in the file): no logarithm.
    const Point3 c = a.centres[5];
    lines.push_back("d t " + core::numberText(c.x / 10) + " " + core::numberText(c.y / 10) + " " +
                    core::numberText(c.z / 10) + " 1");
    lines.emplace_back("d t 1e305 0 0 1");  // the squares pass a double

    int faults = 0;
    for (const std::string& l : lines) {
        const auto of = fast.line(l), ow = walk.line(l);
        ASSERT_EQ(static_cast<int>(of), static_cast<int>(ow)) << l;
        if (of == PpvRun::Outcome::Fault) ++faults;
    }
    EXPECT_GE(faults, 2);
    EXPECT_GT(walk.eventsPassed(), 20);
    EXPECT_GT(walk.polygonsHit(), 100);
    EXPECT_EQ(fast.eventsPassed(), walk.eventsPassed());
    EXPECT_EQ(fast.polygonsHit(), walk.polygonsHit());

    engine::Engine &ea = a.ctx.engine, &eb = b.ctx.engine;
    long compared = 0, hitPolygons = 0;
    for (Handle pa = ea.polygon_get_first_polygon(), pb = eb.polygon_get_first_polygon();
         pa != 0 || pb != 0; pa = ea.polygon_get_next(pa), pb = eb.polygon_get_next(pb)) {
        ASSERT_TRUE(pa != 0 && pb != 0);
        ASSERT_EQ(ea.entity_get_name(pa), eb.entity_get_name(pb));
        ASSERT_EQ(ea.polygon_get_color(pa), eb.polygon_get_color(pb));
        ASSERT_EQ(ea.polygon_is_disabled(pa), eb.polygon_is_disabled(pb));
        if (!ea.polygon_is_disabled(pa) && ea.entity_get_name(pa).rfind("CM_PPVel\t0\t", 0) != 0)
            ++hitPolygons;
        ++compared;
    }
    EXPECT_GT(compared, 3000);
    EXPECT_GT(hitPolygons, 20);
}

}  // namespace
