// call, polygon, dump, window, clock and the events of the render window.

#include <cmath>
#include <fstream>

#include "ScriptFixture.h"

namespace {

using nlohmann::json;
using scripttest::ScriptResult;
using scripttest::ScriptTest;

// Procedures of the kinds `call` must handle, defined here so that their
// results are known without the rest of the program.
void testProcedures(core::AppContext& ctx) {
    using core::ParamKind;
    using core::Value;
    core::Procedure clamp;  // dip clamped in place to 0..90, returns the pole plunge
    clamp.name = "TestClampDip";
    clamp.params = {ParamKind::Number};
    clamp.changesArgs = true;
    clamp.body = [](core::AppContext&, std::vector<Value>& a) {
        double d = std::clamp(a[0].number(), 0.0, 90.0);
        a[0] = Value(d);
        return Value(90.0 - d);
    };
    ctx.procedures.add(clamp);

    core::Procedure swap;  // no return value: only the arguments are shown
    swap.name = "TestSwap";
    swap.params = {ParamKind::Point, ParamKind::Point};
    swap.changesArgs = true;
    swap.body = [](core::AppContext&, std::vector<Value>& a) {
        std::swap(a[0], a[1]);
        return Value();
    };
    ctx.procedures.add(swap);

    core::Procedure kinds;  // every plain kind back as text
    kinds.name = "p_subKinds";
    kinds.params = {ParamKind::Integer, ParamKind::Handle, ParamKind::Bool, ParamKind::Text,
                    ParamKind::Colour};
    kinds.body = [](core::AppContext&, std::vector<Value>& a) {
        return Value(a[0].text() + "|" + a[1].text() + "|" + (a[2].boolean() ? "T" : "F") + "|" +
                     a[3].text() + "|" + a[4].text());
    };
    ctx.procedures.add(kinds);

    core::Procedure nothing;
    nothing.name = "P_subNothing";
    nothing.body = [](core::AppContext&, std::vector<Value>&) { return Value(); };
    ctx.procedures.add(nothing);

    core::Command stamp;  // writes "now" as the names do
    stamp.name = "cmdStamp";
    stamp.handler = [](core::AppContext& c) {
        ui::DateTime t = c.ui.now();
        char buf[40];
        std::snprintf(buf, sizeof buf, "%04d-%02d-%02d %02d:%02d:%02d", t.year, t.month, t.day,
                      t.hour, t.minute, t.second);
        c.comment(buf);
    };
    ctx.commands.add(stamp);

    core::Command state;  // state values that are hard to reach from a script
    state.name = "cmdOddState";
    state.handler = [](core::AppContext& c) {
        c.state.dblRotationCentre = {1e308, 0.1, 1.0 / 3.0};
        c.state.dblCoordOffset = {-5e-324, 2.5, -0.0};
        c.state.strLoadedFiles = "a.asc\r\nb.asc";
    };
    ctx.commands.add(state);
}

json callResult(const ScriptResult& r, std::size_t i) { return r.of("call").at(i)["result"]; }

TEST_F(ScriptTest, CallShowsResultsAndByReferenceArguments) {
    ScriptResult r = runScript(
        "call TestClampDip 120\n"
        "call TestClampDip -5 > V\n"
        "echo $V\n"
        "call TestSwap 1,2,3 4.5,-6,0.1\n"
        "call p_subKinds 7 12 0 \"a b\" 1,2,3 > K\n"
        "call p_subKinds -3 0 true \"\" 0,0,0\n"
        "call P_subNothing\n"
        "echo [$K]\n",
        testProcedures);
    ASSERT_EQ(r.rc, 0) << r.err;
    EXPECT_EQ(callResult(r, 0), json::parse("[90, 0]"));
    EXPECT_EQ(callResult(r, 1), json::parse("[0, 90]"));
    EXPECT_EQ(r.of("call")[0]["procedure"], "TestClampDip");
    EXPECT_EQ(callResult(r, 2), json::parse("[[4.5,-6,0.1],[1,2,3]]"));
    EXPECT_EQ(callResult(r, 3), "7|12|F|a b|1,2,3");
    EXPECT_EQ(callResult(r, 4), "-3|0|T||0,0,0");
    EXPECT_TRUE(callResult(r, 5).is_null());
    auto e = r.of("echo");
    EXPECT_EQ(e[0]["text"], "90");  // the return value goes into the variable
    EXPECT_EQ(e[1]["text"], "[7|12|F|a b|1,2,3]");
}

TEST_F(ScriptTest, CallErrors) {
    for (const char* line : {"call NoSuchThing", "call TestClampDip", "call TestClampDip 1 2",
                             "call TestClampDip x", "call TestSwap 1,2 3,4,5",
                             "call p_subKinds 1.5 1 1 a 1,2,3", "call p_subKinds 1 1 maybe a 1,2,3",
                             "call p_subKinds 1 1 1 a 1,2,3.5", "call TestClampDip 1 > 9x"}) {
        ScriptResult r = runScript(std::string("echo\n") + line + "\n", testProcedures);
        EXPECT_EQ(r.rc, 2) << line;
        EXPECT_NE(r.err.find("script.tvs:2:"), std::string::npos) << line << " -> " << r.err;
    }
}

TEST_F(ScriptTest, TheProgramsOwnDipToPolePlunge) {
    ScriptResult r = runScript("echo\n");
    ASSERT_EQ(r.rc, 0) << r.err;
    if (!ctx().procedures.find("P_fncDipToPolePlunge"))
        GTEST_SKIP() << "P_fncDipToPolePlunge is not registered in this build";
    r = runScript("call P_fncDipToPolePlunge 120\ncall P_fncDipToPolePlunge 30\n");
    ASSERT_EQ(r.rc, 0) << r.err;
    // 120 is clamped to 90 in place and the plunge is 90 - 90; 30 stays and gives 60.
    EXPECT_EQ(callResult(r, 0), json::parse("[90, 0]"));
    EXPECT_EQ(callResult(r, 1), json::parse("[30, 60]"));
}

TEST_F(ScriptTest, EngineOperationsWithOutArguments) {
    ScriptResult r = runScript(
        "call group_create \"G 1\" > G\n"
        "call STATE_polygon_create > P\n"
        "call polygon_add_point $P 0,0,5\n"
        "call polygon_add_point $P 0,10,5\n"
        "call polygon_add_point $P 10,0,5\n"
        "call engine_add_polygon $P\n"
        "call polygon_set_group $P $G\n"
        // the plane is two arguments, normal and d; any value will do for them
        "call polygon_get_plane $P x 0\n"
        "call entity_get_name $G \"\" 2\n"
        "call math_normalize_vector 0,-2,0\n");
    ASSERT_EQ(r.rc, 0) << r.err;
    auto calls = r.of("call");
    ASSERT_EQ(calls.size(), 10u);
    json g = calls[0]["result"], p = calls[1]["result"];
    ASSERT_TRUE(g.is_number_integer() && p.is_number_integer());
    EXPECT_NE(g, 0);
    EXPECT_EQ(calls[1]["procedure"], "STATE_polygon_create");
    EXPECT_EQ(calls[5]["result"], 0);
    // Clockwise seen from +z: normal (0,0,1) and d = -n.p = -5.
    EXPECT_EQ(calls[7]["result"], json::array({p, {0, 0, 1}, -5, 0}));
    // A buffer of 2 takes one character of the name.
    EXPECT_EQ(calls[8]["result"], json::array({g, "G", 2, 1}));
    // Normalised in place; the old length 2 is the result.
    EXPECT_EQ(calls[9]["result"], json::parse("[[0, -1, 0], 2]"));
}

TEST_F(ScriptTest, PolygonCommandAndDump) {
    ScriptResult r = runScript(
        "call group_create Mine > G\n"
        "polygon --group $G --name \"UP_Infor\\r\\nline 2\" --colour 255,0,0 0.1,0.2,0.3 "
        "0.1,10,0.3 "
        "10.7,0.2,0.3 > A\n"
        "polygon 0,0,0 0,1,0 1,0,0\n"
        "polygon \"0,0,1\" 0,1,1 1,0,1 > C\n"
        "call polygon_disable $A\n"
        "run cmdOddState\n"
        "dump out/scene.json\n",
        testProcedures);
    // The dump's folder does not exist: that is not the script's fault.
    EXPECT_EQ(r.rc, 1);
    std::filesystem::create_directories(dir.path / "out");
    r = runScript(
        "call group_create Mine > G\n"
        "polygon --group $G --name \"UP_Infor\\r\\nline 2\" --colour 255,0,0 0.1,0.2,0.3 "
        "0.1,10,0.3 "
        "10.7,0.2,0.3 > A\n"
        "polygon 0,0,0 0,1,0 1,0,0\n"
        "polygon \"0,0,1\" 0,1,1 1,0,1 > C\n"
        "call polygon_disable $A\n"
        "run cmdOddState\n"
        "dump out/scene.json\n",
        testProcedures);
    ASSERT_EQ(r.rc, 0) << r.err;
    auto calls = r.of("call");
    ASSERT_EQ(calls.size(), 5u);
    EXPECT_EQ(calls[1]["procedure"], "polygon");
    json g = calls[0]["result"], a = calls[1]["result"], b = calls[2]["result"],
         c = calls[3]["result"];

    std::ifstream f(dir.path / "out" / "scene.json");
    json scene = json::parse(f);
    auto& polys = scene["polygons"];
    ASSERT_EQ(polys.size(), 3u);
    EXPECT_EQ(polys[0]["handle"], a);
    EXPECT_EQ(polys[1]["handle"], b);
    EXPECT_EQ(polys[2]["handle"], c);
    EXPECT_EQ(polys[0]["group"], g);
    EXPECT_EQ(polys[0]["name"], "UP_Infor\r\nline 2");
    EXPECT_EQ(polys[0]["colour"], json::parse("[255,0,0]"));
    EXPECT_EQ(polys[0]["enabled"], false);
    EXPECT_EQ(polys[1]["enabled"], true);
    EXPECT_EQ(polys[1]["colour"], json::parse("[255,255,255]"));
    EXPECT_EQ(polys[0]["points"][0][0].get<double>(), 0.1);
    EXPECT_EQ(polys[0]["points"][2][0].get<double>(), 10.7);
    EXPECT_EQ(polys[0]["points"].size(), 3u);
    EXPECT_EQ(polys[0]["point_colours"].size(), 3u);
    for (const char* key : {"translucent", "brightness", "light"})
        EXPECT_TRUE(polys[0].contains(key));

    // Polygons without --group each get a new "ScriptGroup"; groups in creation order.
    auto& groups = scene["groups"];
    std::vector<json> mine;
    for (auto& gr : groups)
        if (gr["handle"] == g || gr["handle"] == polys[1]["group"] ||
            gr["handle"] == polys[2]["group"])
            mine.push_back(gr);
    ASSERT_EQ(mine.size(), 3u);
    EXPECT_EQ(mine[0]["name"], "Mine");
    EXPECT_EQ(mine[1]["name"], "ScriptGroup");
    EXPECT_EQ(mine[2]["name"], "ScriptGroup");
    EXPECT_NE(polys[1]["group"], polys[2]["group"]);
    EXPECT_EQ(mine[0]["father"], 0);

    auto& st = scene["state"];
    EXPECT_EQ(st["dblRotationCentre"][0].get<double>(), 1e308);
    EXPECT_EQ(st["dblRotationCentre"][1].get<double>(), 0.1);
    EXPECT_EQ(st["dblRotationCentre"][2].get<double>(), 1.0 / 3.0);
    EXPECT_EQ(st["dblCoordOffset"][0].get<double>(), -5e-324);
    EXPECT_TRUE(std::signbit(st["dblCoordOffset"][2].get<double>()));
    EXPECT_EQ(st["strLoadedFiles"], "a.asc\r\nb.asc");
    for (const char* key : {"strCommentLog", "txtComment"}) EXPECT_TRUE(st[key].is_string());
    EXPECT_EQ(scene["background"].size(), 3u);
    EXPECT_EQ(scene["camera"]["up"].size(), 3u);
    EXPECT_TRUE(scene["camera"]["zoom"].is_number());
}

TEST_F(ScriptTest, PolygonErrors) {
    for (const char* line :
         {"polygon --group 999999 0,0,0 0,1,0 1,0,0", "polygon --name x 0,0,0 0,1,0",
          "polygon --colour 1,2 0,0,0 0,1,0 1,0,0", "polygon --size 3 0,0,0 0,1,0 1,0,0",
          "polygon 0,0,0 0,0,0 0,0,0", "polygon 0,0,0 1,1,1 2,2,2", "polygon 0,0 0,1,0 1,0,0"}) {
        ScriptResult r = runScript(std::string("echo\n") + line + "\n");
        EXPECT_EQ(r.rc, 2) << line;
        EXPECT_NE(r.err.find("script.tvs:2:"), std::string::npos) << line << " -> " << r.err;
    }
}

TEST_F(ScriptTest, ClockFixesNowUntilToldAgain) {
    ScriptResult r = runScript(
        "clock 2026-01-05 09:30:00\nrun cmdStamp\nrun cmdStamp\n"
        "clock 2024-02-29 23:59:59\nrun cmdStamp\n",
        testProcedures);
    ASSERT_EQ(r.rc, 0) << r.err;
    std::vector<std::string> stamps;
    for (auto& c : r.of("comment")) {
        std::string t = c["text"];
        if (t.size() == 19 && t[4] == '-') stamps.push_back(t);
    }
    EXPECT_EQ(stamps, (std::vector<std::string>{"2026-01-05 09:30:00", "2026-01-05 09:30:00",
                                                "2024-02-29 23:59:59"}));
}

TEST_F(ScriptTest, WindowSizeAndRenderWindowEvents) {
    std::vector<std::string> events;
    auto setup = [&](core::AppContext& ctx) {
        auto& in = ctx.input;
        in.onKeyDown = [&](core::AppContext&, int k, int s) {
            events.push_back("key " + std::to_string(k) + " " + std::to_string(s));
        };
        auto mouse = [&](const char* what) {
            return [&, what](core::AppContext&, int b, int s, double x, double y) {
                events.push_back(std::string(what) + " " + std::to_string(b) + " " +
                                 std::to_string(s) + " " + std::to_string(x) + " " +
                                 std::to_string(y));
            };
        };
        in.onMouseDown = mouse("down");
        in.onMouseMove = mouse("move");
        in.onMouseUp = mouse("up");
        in.onDblClick = [&](core::AppContext&, double x, double y) {
            events.push_back("dbl " + std::to_string(x) + " " + std::to_string(y));
        };
        in.onWheel = [&](core::AppContext&, int d, double x, double y) {
            events.push_back("wheel " + std::to_string(d) + " " + std::to_string(x) + " " +
                             std::to_string(y));
        };
    };
    ScriptResult r = runScript(
        "window 640 480\nkey a\nkey F5 3\nkey PageDown\nkey 7 4\nkey Escape\n"
        "mouse down 1 2 10.5 20\nmouse move 1 0 11 21\nmouse up 4 1 12 22\n"
        "mouse dblclick 5 6\nwheel -120 400 300\n",
        setup);
    ASSERT_EQ(r.rc, 0) << r.err;
    EXPECT_EQ(ctx().engine.window_width(), 640);
    EXPECT_EQ(ctx().engine.window_height(), 480);
    EXPECT_EQ(ctx().state.lngWindowWidth, 640);
    EXPECT_EQ(ctx().state.lngWindowHeight, 480);
    // Key codes of the window system: A 65, F5 116, PageDown 34, 7 55, Escape 27.
    std::vector<std::string> expected = {"key 65 0",
                                         "key 116 3",
                                         "key 34 0",
                                         "key 55 4",
                                         "key 27 0",
                                         "down 1 2 10.500000 20.000000",
                                         "move 1 0 11.000000 21.000000",
                                         "up 4 1 12.000000 22.000000",
                                         "dbl 5.000000 6.000000",
                                         "wheel -120 400.000000 300.000000"};
    EXPECT_EQ(events, expected);
}

TEST_F(ScriptTest, EventsWithNoHandlerAreTakenQuietlyAndTheWindowStartsAt800By600) {
    auto none = [](core::AppContext& ctx) { ctx.input = core::InputHandlers{}; };
    ScriptResult r =
        runScript("key Space\nmouse down 1 0 1 1\nwheel 120 1 1\nmouse dblclick 0 0\n", none);
    EXPECT_EQ(r.rc, 0) << r.err;
    EXPECT_EQ(ctx().engine.window_width(), 800);
    EXPECT_EQ(ctx().engine.window_height(), 600);
}

}  // namespace
