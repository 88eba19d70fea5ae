#include "import/DrillholeHoles.h"

#include "core/AppContext.h"
#include "core/LenientNumber.h"
#include "core/NameRecords.h"
#include "core/TextNormalise.h"
#include "import/DrillholeReaders.h"
#include "import/ImportRun.h"

namespace importers {

namespace {

std::vector<std::string_view> splitTabs(std::string_view s) {
    std::vector<std::string_view> out;
    std::size_t from = 0;
    for (;;) {
        const std::size_t tab = s.find('\t', from);
        if (tab == std::string_view::npos) {
            out.push_back(s.substr(from));
            return out;
        }
        out.push_back(s.substr(from, tab - from));
        from = tab + 1;
    }
}

bool startsWith(std::string_view s, std::string_view prefix) {
    return s.substr(0, prefix.size()) == prefix;
}

}  // namespace

bool parseSurveyName(std::string name, SurveyInterval& out) {
    core::P_subNormaliseLineEnds(name);
    const auto f = splitTabs(name);
    if (f.size() < 9 || f[0] != kSurveyName) return false;
    out.id = std::string(f[1]);
    out.start = {core::valNumber(f[2]) * 10, core::valNumber(f[3]) * 10,
                 core::valNumber(f[4]) * 10};
    out.from = core::valNumber(f[5]);
    out.to = core::valNumber(f[6]);
    out.azimuth = core::valNumber(f[7]);
    out.plunge = core::valNumber(f[8]);
    return true;
}

SurveyHoles::SurveyHoles(const engine::Engine& eng) {
    const std::string_view prefix = "DHSurvey";
    for (engine::Handle p = eng.polygon_get_first_polygon(); p; p = eng.polygon_get_next(p)) {
        if (startsWith(core::strEntityName(eng, p), prefix)) {
            top_ = eng.group_get_father_group(eng.polygon_get_group(p));
            break;
        }
    }
    if (top_ == 0 || !eng.group_is_group(top_)) {
        top_ = 0;
        return;
    }
    for (engine::Handle g = eng.group_get_first_included_group(top_); g;
         g = eng.group_get_next_included_group(top_, g)) {
        std::vector<SurveyInterval> intervals;
        std::string last;
        for (engine::Handle p = eng.group_get_first_polygon(g); p;
             p = eng.group_get_next_polygon(g, p)) {
            if (eng.polygon_is_disabled(p)) continue;
            std::string name = core::strEntityName(eng, p);
            // The polygons of one interval share one name.
            if (!startsWith(name, prefix) || name == last) continue;
            last = name;
            SurveyInterval s;
            if (parseSurveyName(std::move(name), s)) intervals.push_back(std::move(s));
        }
        if (intervals.empty()) continue;
        const std::string id = intervals.front().id;
        holes_.try_emplace(id, std::move(intervals));
    }
}

const std::vector<SurveyInterval>* SurveyHoles::hole(std::string_view id) const {
    const auto it = holes_.find(std::string(id));
    return it == holes_.end() ? nullptr : &it->second;
}

void P_subMovePolygonsToGroup(engine::Engine& eng, engine::Handle from, engine::Handle to) {
    if (from == 0 || from == to) return;
    std::vector<engine::Handle> polys;
    for (engine::Handle p = eng.group_get_first_polygon(from); p;
         p = eng.group_get_next_polygon(from, p))
        polys.push_back(p);
    for (engine::Handle p : polys) eng.polygon_set_group(p, to);
    eng.group_delete_members(from);
}

void HoleRun::at(std::string_view id) {
    if (started_ && id == id_) return;
    started_ = true;
    id_ = std::string(id);
    group_ = eng_.group_create(name_);
    eng_.group_set_father_group(group_, top_);
    intervals_ = holes_.hole(id);
}

void loadImportFile(core::AppContext& ctx, TextFile& file) {
    if (!file.load(ctx.state.strFullPath)) throw ImportFault("the file cannot be read");
}

bool askSize(core::AppContext& ctx, const std::string& prompt, const std::string& title,
             const std::string& defaultText, double& value) {
    const auto answer = ctx.ui.inputBox(prompt, title, defaultText);
    if (!answer || answer->empty()) return false;
    value = core::valNumber(*answer);
    return true;
}

}  // namespace importers
