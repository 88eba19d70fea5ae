#pragma once
// Drillhole imports end to end: files written by the test, the prompts answered by
// the script, then the scene read back through names and groups.

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "ImportTestUtil.h"
#include "core/TextNormalise.h"

namespace drillholetest {

inline std::string collarRun(const std::string& file, const std::string& radius = "6.0") {
    return "answer open " + file + "\nanswer input " + radius + "\nrun mnuReadDHCollarFile\n";
}

// lowQuality: drill lines instead of cylinders; plungeUp: the file's plunge is
// positive upwards.
inline std::string surveyRun(const std::string& file, bool lowQuality = false,
                             bool plungeUp = false, const std::string& diameter = "2.0") {
    return "answer open " + file + "\nanswer input " + diameter + "\nanswer msgbox " +
           (lowQuality ? "Yes" : "No") + "\nanswer msgbox " + (plungeUp ? "Yes" : "No") +
           "\nrun mnuReadDHSurveyFile\n";
}

inline std::string attributeRun(const std::string& file, bool cylinders = true,
                                const std::string& diameter = "5") {
    return "answer open " + file + "\nanswer input " + diameter + "\nanswer msgbox " +
           (cylinders ? "Yes" : "No") + "\nrun mnuReadDHAtrributeFile\n";
}

inline std::string jointRun(const std::string& file, bool dipAndDipDirection = false,
                            const std::string& diameter = "10") {
    return "answer open " + file + "\nanswer input " + diameter + "\nrun " +
           (dipAndDipDirection ? "mnuReadDHOrientJointsFileDipDD" : "mnuReadDHOrientJointsFile") +
           "\n";
}

// A name split the way the readers split them: line ends to tabs, then on tab.
inline std::vector<std::string> nameFields(std::string name) {
    core::P_subNormaliseLineEnds(name);
    std::vector<std::string> out;
    std::size_t from = 0;
    for (;;) {
        const std::size_t tab = name.find('\t', from);
        out.push_back(name.substr(from, tab == std::string::npos ? tab : tab - from));
        if (tab == std::string::npos) return out;
        from = tab + 1;
    }
}

inline double distance(const engine::Point3& a, const engine::Point3& b) {
    return std::sqrt((a.x - b.x) * (a.x - b.x) + (a.y - b.y) * (a.y - b.y) +
                     (a.z - b.z) * (a.z - b.z));
}

// Corners of the box round every point of the polygons.
inline void bounds(const std::vector<importtest::Poly>& ps, engine::Point3& lo,
                   engine::Point3& hi) {
    lo = {1e300, 1e300, 1e300};
    hi = {-1e300, -1e300, -1e300};
    for (const auto& p : ps)
        for (const auto& q : p.points) {
            lo = {std::min(lo.x, q.x), std::min(lo.y, q.y), std::min(lo.z, q.z)};
            hi = {std::max(hi.x, q.x), std::max(hi.y, q.y), std::max(hi.z, q.z)};
        }
}

inline bool hasComment(const importtest::ScriptResult& r, const std::string& text) {
    for (const auto& c : r.of("comment"))
        if (c["text"] == text) return true;
    return false;
}

// Presses the interrupt button once, as soon as the scene holds more than `polys`.
inline std::function<void(core::AppContext&)> interruptAbove(std::size_t polys) {
    return [polys](core::AppContext& c) {
        dynamic_cast<ui::ScriptedUi&>(c.ui).onPump = [&c, polys, pressed = false]() mutable {
            if (!pressed && c.engine.polygon_count() > polys) {
                c.state.bolInterruptProcess = true;
                pressed = true;
            }
        };
    };
}

inline engine::Point3 centre(const importtest::Poly& p) {
    engine::Point3 c{0, 0, 0};
    for (const auto& q : p.points) c = {c.x + q.x, c.y + q.y, c.z + q.z};
    const double n = p.points.empty() ? 1.0 : static_cast<double>(p.points.size());
    return {c.x / n, c.y / n, c.z / n};
}

// A flat hole H from the origin: 0-10 towards -y, 10-20 towards -x, 20-30 towards
// +y (grid north along +x after start-up).
inline const std::string kFlatHole[2] = {"H 0 0 0 30\n", "H 0 90 0\nH 10 180 0\nH 20 270 0\n"};
// A vertical hole V from the origin down to 50 m.
inline const std::string kVerticalHole[2] = {"V 0 0 0 50\n", "V 0 0 90\n"};

class DrillholeTest : public importtest::ImportTest {
protected:
    void write(const std::string& file, const std::string& text) {
        testsupport::writeFile(dir.file(file), text);
    }
    // Writes c.col and s.sur; the script that reads them (cylinders unless lowQuality).
    std::string hole(const std::string (&files)[2], bool lowQuality = false) {
        write("c.col", files[0]);
        write("s.sur", files[1]);
        return collarRun("c.col") + surveyRun("s.sur", lowQuality);
    }
    // The polygons whose name starts with the prefix, in scene order.
    std::vector<importtest::Poly> named(const std::string& prefix) {
        std::vector<importtest::Poly> out;
        for (auto& p : polygons())
            if (p.name.rfind(prefix, 0) == 0) out.push_back(p);
        return out;
    }
    // The distinct names among those polygons, in order of first appearance.
    std::vector<std::string> distinctNames(const std::string& prefix) {
        std::vector<std::string> out;
        for (auto& p : named(prefix))
            if (out.empty() || out.back() != p.name) out.push_back(p.name);
        return out;
    }
    std::vector<importtest::GroupInfo> groupsNamed(const std::string& name) {
        std::vector<importtest::GroupInfo> out;
        for (auto& g : groups())
            if (g.name == name) out.push_back(g);
        return out;
    }
    std::string groupName(engine::Handle g) { return ctx().engine.entity_get_name(g); }
};

}  // namespace drillholetest
