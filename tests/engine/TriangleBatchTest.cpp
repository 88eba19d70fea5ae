// Adding triangles in a batch must leave the scene the one-at-a-time calls leave:
// the same handles, walk, points, colours and groups, refused triangles included.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "engine/Engine.h"
#include "engine/TriangleBatch.h"
#include "engine/WorldFormat.h"

namespace {

using engine::Engine;
using engine::Handle;
using engine::Point3;
using engine::Rgb;

struct Case {
    std::vector<Point3> corners;
    std::vector<Rgb> colours;
};

Case mixedTriangles() {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    Case c;
    auto add = [&](Point3 a, Point3 b, Point3 d, Rgb colour) {
        c.corners.insert(c.corners.end(), {a, b, d});
        c.colours.push_back(colour);
    };
    for (int i = 0; i < 50; ++i) {
        const double x = i * 3.0;
        add({x, 0, 0}, {x + 2, 0, 0}, {x, 2, 1}, Rgb{i, 255 - i, 7});
        if (i % 7 == 0) add({x, 0, 0}, {x + 1, 0, 0}, {x + 2, 0, 0}, Rgb{1, 2, 3});  // a line
        if (i % 11 == 0) add({x, nan, 0}, {x + 1, 0, 0}, {x, 1, 0}, Rgb{4, 5, 6});
        if (i % 13 == 0) add({x, 0, 0}, {x, 0, 0}, {x, 0, 0}, Rgb{7, 8, 9});  // one point
    }
    add({0, 0, 0}, {1, 0, 0}, {0, 1, 0}, Rgb{300, -4, 128});  // channels out of range
    return c;
}

std::string encoded(const Engine& e) {
    std::string out;
    EXPECT_TRUE(engine::encodeWorld(e, engine::WorldFormat::Text, out).ok);
    return out;
}

// What the scene went through before the batch: a few freed slots; more freed
// slots than are kept back before reuse; a hole in the point array large enough
// for new polygons to be built in.
enum class Before { FewFreed, ManyFreed, PointHole };

void prepare(Engine& e, Before before) {
    const int freed = before == Before::ManyFreed ? 1500 : 3;
    for (int k = 0; k < freed; ++k) {
        const Handle h = e.polygon_create();
        e.polygon_add_point(h, Point3{double(k), 0, 0});
        e.polygon_delete(h);
    }
    if (before == Before::PointHole) {
        Handle big[2];
        for (Handle& h : big) {
            h = e.polygon_create();
            for (int k = 0; k < 40000; ++k) e.polygon_add_point(h, Point3{double(k), 1, 0});
        }
        for (Handle h : big) e.polygon_delete(h);
    }
}

TEST(TriangleBatch, LeavesTheSceneOfOneAtATimeCalls) {
    const Case c = mixedTriangles();
    const std::size_t n = c.colours.size();
    for (Before before : {Before::FewFreed, Before::ManyFreed, Before::PointHole})
    for (bool withGroup : {true, false}) {
        SCOPED_TRACE(int(before) * 2 + withGroup);
        Engine single, batch;
        single.engine_load_world("", "", "", 4);
        batch.engine_load_world("", "", "", 4);
        for (Engine* e : {&single, &batch}) prepare(*e, before);
        // Making room first must change nothing the scene shows.
        engine::triangles_reserve(batch, n);
        const Handle g1 = withGroup ? single.group_create("G") : 0;
        const Handle g2 = withGroup ? batch.group_create("G") : 0;

        std::vector<Handle> expected(n);
        for (std::size_t i = 0; i < n; ++i) {
            const Handle h = single.polygon_create();
            for (int k = 0; k < 3; ++k) single.polygon_add_point(h, c.corners[3 * i + k]);
            if (single.engine_add_polygon(h) != 0) {
                single.polygon_delete(h);
                continue;
            }
            single.polygon_set_color_fill(h, c.colours[i]);
            single.polygon_set_group(h, g1);
            expected[i] = h;
        }

        std::vector<std::uint8_t> ok(n);
        std::vector<Handle> made(n);
        engine::triangles_acceptable(c.corners.data(), n, ok.data());
        // In two pieces, as a reader hands them over.
        const std::size_t half = n / 2;
        engine::triangles_add(batch, c.corners.data(), c.colours.data(), ok.data(), half, g2,
                              made.data());
        engine::triangles_add(batch, &c.corners[3 * half], &c.colours[half], &ok[half], n - half,
                              g2, &made[half]);

        EXPECT_EQ(made, expected);
        // The points took the same places too (their handles tell).
        for (std::size_t i = 0; i < n; ++i)
            if (made[i])
                EXPECT_EQ(batch.polygon_get_first_point(made[i]),
                          single.polygon_get_first_point(expected[i]));
        EXPECT_EQ(batch.polygon_count(), single.polygon_count());
        EXPECT_EQ(encoded(batch), encoded(single));
        EXPECT_LT(batch.polygon_count(), n);  // the refused ones really were refused
    }
}

}  // namespace
