#pragma once
// A started program with the exports registered and an empty scene; helpers to
// build small scenes and to run an export into a file.

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "app/Registration.h"
#include "core/AppContext.h"
#include "support/TestSupport.h"
#include "ui/ScriptedUi.h"

namespace exporttest {

using engine::Handle;
using engine::Point3;

class ExportTest : public ::testing::Test {
protected:
    ExportTest() : ctx(ui) {}

    void SetUp() override {
        app::registerAll(ctx);
        std::filesystem::create_directories(dir.file("program"));
        ctx.strProgramFolder = dir.file("program").string();
        ASSERT_TRUE(app::startMainForm(ctx));
        ASSERT_EQ(ctx.engine.polygon_get_first_polygon(), 0u) << "the start-up left polygons";
        skipped = ui.transcript().size();
    }

    Handle poly(Handle group, std::initializer_list<Point3> pts, const std::string& name = "",
                engine::Rgb colour = {0, 0, 0}) {
        const Handle p = ctx.engine.polygon_create();
        for (const Point3& q : pts) ctx.engine.polygon_add_point(p, q);
        EXPECT_NE(ctx.engine.engine_add_polygon(p), -1);
        if (group) ctx.engine.polygon_set_group(p, group);
        ctx.engine.polygon_set_name(p, name);
        ctx.engine.polygon_set_color_fill(p, colour);
        return p;
    }

    // A horizontal triangle of the given size, its corner at (x, y, z).
    Handle triangleAt(Handle group, double x, double y, double z, const std::string& name = "") {
        return poly(group, {{x, y, z}, {x, y + 10, z}, {x + 10, y + 10, z}}, name);
    }

    // Runs `exportFn` with the save dialog answered by `name` in the test folder;
    // returns the file's text ("" when it was not written).
    std::string exportTo(const std::string& name, const std::function<void()>& exportFn) {
        const auto path = dir.file(name);
        ui.answerSave(path.string());
        exportFn();
        return std::filesystem::exists(path) ? testsupport::readFile(path) : std::string();
    }

    void run(const std::string& command) {
        const core::Command* c = ctx.commands.find(command);
        ASSERT_NE(c, nullptr) << command;
        auto handler = c->handler;
        handler(ctx);
    }

    std::vector<nlohmann::json> records(const std::string& kind) const {
        std::vector<nlohmann::json> out;
        const auto& t = ui.transcript();
        for (std::size_t i = skipped; i < t.size(); ++i) {
            auto j = nlohmann::json::parse(t[i]);
            if (j.value("kind", "") == kind) out.push_back(j);
        }
        return out;
    }

    std::string tempFile() const { return dir.file("program").string() + "/Tarvik_temp.txt"; }

    testsupport::TempDir dir;
    ui::ScriptedUi ui;
    core::AppContext ctx;
    std::size_t skipped = 0;
};

// The lines of a text whose every line ends in CR LF; a line ending otherwise
// fails the test.
inline std::vector<std::string> crlfLines(const std::string& text) {
    std::vector<std::string> out;
    std::size_t start = 0;
    while (start < text.size()) {
        const auto end = text.find("\r\n", start);
        if (end == std::string::npos) {
            ADD_FAILURE() << "text does not end in CR LF: '" << text.substr(start) << "'";
            break;
        }
        const std::string line = text.substr(start, end - start);
        EXPECT_EQ(line.find('\n'), std::string::npos) << "bare LF in '" << line << "'";
        out.push_back(line);
        start = end + 2;
    }
    return out;
}

}  // namespace exporttest
