#include "builders/TextSearch.h"

#include <charconv>
#include <cmath>

#include "core/AppContext.h"
#include "core/MainForm.h"
#include "core/NameRecords.h"
#include "core/Procedures.h"

namespace builders {

namespace {

// Events run (and the interrupt flag is read) once every so many polygons.
constexpr unsigned kPumpEvery = 4096;

std::string lowerAscii(std::string_view s) {
    std::string out(s);
    for (char& c : out)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return out;
}

// The pieces of a text between separators, all of them (empty ones included).
std::string_view piece(std::string_view s, std::string_view sep, int index) {
    if (index < 0) return {};
    std::size_t start = 0;
    for (int i = 0; i < index; ++i) {
        auto at = s.find(sep, start);
        if (at == std::string_view::npos) return {};
        start = at + sep.size();
    }
    auto end = s.find(sep, start);
    return s.substr(start, end == std::string_view::npos ? std::string_view::npos : end - start);
}

bool hasPiece(std::string_view s, std::string_view sep, int index) {
    if (index < 0) return false;
    std::size_t start = 0;
    for (int i = 0; i < index; ++i) {
        auto at = s.find(sep, start);
        if (at == std::string_view::npos) return false;
        start = at + sep.size();
    }
    return true;
}

// A position as typed: its leading number, rounded (0 when it has none).
int positionValue(const std::string& s) {
    const char* b = s.data();
    const char* e = b + s.size();
    while (b != e && *b == ' ') ++b;
    if (b != e && *b == '+') ++b;
    double d = 0;
    auto res = std::from_chars(b, e, d);
    if (res.ec != std::errc() || !std::isfinite(d) || d < -1e6 || d > 1e6) return 0;
    return static_cast<int>(std::lround(d));
}

core::Procedure procedure(
    const char* name, std::vector<core::ParamKind> params,
    std::function<core::Value(core::AppContext&, std::vector<core::Value>&)> body) {
    core::Procedure p;
    p.name = name;
    p.params = std::move(params);
    p.body = std::move(body);
    return p;
}

void addMenu(core::AppContext& ctx, const char* name, const char* caption, const char* menu,
             std::function<void(core::AppContext&)> handler) {
    core::Command c;
    c.name = name;
    c.caption = caption;
    c.menuPath = menu;
    c.handler = std::move(handler);
    ctx.commands.add(std::move(c));
}

void findWithQuestion(core::AppContext& ctx, int scope) {
    ui::Answer a = ctx.ui.msgBox(kMatchQuestion, ui::Buttons::YesNo, kMatchQuestionTitle);
    p_subFindText(ctx, scope, a == ui::Answer::Yes, false);
}

}  // namespace

std::string textCell(std::string_view name, int row, int column) {
    if (row < 1 || column < 1 || !hasPiece(name, core::kCrLf, row - 1)) return {};
    std::string_view line = piece(name, core::kCrLf, row - 1);
    if (!hasPiece(line, "\t", column - 1)) return {};
    return std::string(piece(line, "\t", column - 1));
}

bool generalMatch(std::string_view cell, std::string_view text) {
    if (text.empty()) return false;
    return lowerAscii(cell).find(lowerAscii(text)) != std::string::npos;
}

bool specificMatch(std::string_view cell, std::string_view text) {
    if (text.empty()) return false;
    std::string wrapped = "\t";
    std::size_t start = 0;
    for (;;) {
        auto at = cell.find(core::kCrLf, start);
        if (at == std::string_view::npos) {
            wrapped.append(cell.substr(start));
            break;
        }
        wrapped.append(cell.substr(start, at - start)).push_back('\t');
        start = at + core::kCrLf.size();
    }
    wrapped.push_back('\t');
    return lowerAscii(wrapped).find("\t" + lowerAscii(text) + "\t") != std::string::npos;
}

std::optional<TextCell> askTextCell(core::AppContext& ctx) {
    auto row = ctx.ui.inputBox("Row position", kSearchTitle, "1");
    if (!row) return std::nullopt;
    auto column = ctx.ui.inputBox("Column position", kSearchTitle, "1");
    if (!column) return std::nullopt;
    return TextCell{positionValue(*row), positionValue(*column)};
}

int p_subFindText(core::AppContext& ctx, int intScope, bool bolGeneralMatch, bool bolPosition,
                  std::optional<TextCell> cell) {
    if (intScope < 1 || intScope > 3) return 0;
    if (bolPosition && !cell) {
        cell = askTextCell(ctx);
        if (!cell) return 0;
    }
    auto text = ctx.ui.inputBox(kSearchPrompt, kSearchTitle, "");
    if (!text || text->empty()) return 0;

    auto& e = ctx.engine;
    ctx.pointer(11);
    core::p_subMainLoop(ctx);
    ctx.state.bolInterruptProcess = false;

    if (intScope == 1)
        for (auto p = e.polygon_get_first_polygon(); p != 0; p = e.polygon_get_next(p))
            e.polygon_disable(p);

    int count = 0;
    unsigned walked = 0;
    // Polygons of one object share one name: the last answer is kept for the next.
    std::string lastName;
    bool lastMatch = false, haveLast = false;
    for (auto p = e.polygon_get_first_polygon(); p != 0; p = e.polygon_get_next(p)) {
        if (++walked % kPumpEvery == 0 && core::interrupted(ctx)) break;
        const bool disabled = e.polygon_is_disabled(p);
        if ((intScope == 2 && disabled) || (intScope == 3 && !disabled)) continue;
        std::string name = core::strEntityName(e, p);
        bool match = lastMatch;
        if (!haveLast || name != lastName) {
            std::string c = bolPosition ? textCell(name, cell->row, cell->column) : name;
            match = bolGeneralMatch ? generalMatch(c, *text) : specificMatch(c, *text);
            lastName = std::move(name);
            lastMatch = match;
            haveLast = true;
        }
        if (match) {
            e.polygon_enable(p);
            ++count;
        } else {
            e.polygon_disable(p);
        }
    }

    if (count == 0) {
        // Only the search over everything gives the scene back; the others leave
        // what they hid hidden.
        if (intScope == 1)
            for (auto p = e.polygon_get_first_polygon(); p != 0; p = e.polygon_get_next(p))
                e.polygon_enable(p);
        ctx.ui.msgBox(kZeroMatchesText, ui::Buttons::OK, kZeroMatchesTitle);
    } else {
        ctx.comment(kFoundCountText + std::to_string(count));
    }
    ctx.pointer(1);
    core::p_subMainLoop(ctx);
    ctx.ui.setFocus();
    return count;
}

std::string protectedName(std::string_view name, std::string_view strAction) {
    const bool pr = name.starts_with("PR");
    const bool up = name.starts_with("UP");
    if (strAction == "Unprotect") {
        if (pr) return "UP" + std::string(name.substr(2));
    } else if (strAction == "Protect1") {
        if (up) return "PR" + std::string(name.substr(2));
    } else if (strAction == "Protect2") {
        // Whatever the name holds, even a protected record, gets the prefix.
        if (up) return "PR" + std::string(name.substr(2));
        return std::string(core::kProtectedPrefix) + std::string(name);
    }
    return std::string(name);
}

int p_subProtectText(core::AppContext& ctx, const std::string& strAction) {
    const char* question = nullptr;
    if (strAction == "Unprotect")
        question = kUnprotectQuestion;
    else if (strAction == "Protect1" || strAction == "Protect2")
        question = kProtectQuestion;
    if (!question) return 0;
    if (ctx.ui.msgBox(question, ui::Buttons::YesNo, kProtectTitle) != ui::Answer::Yes) return 0;

    auto& e = ctx.engine;
    ctx.pointer(11);
    ctx.state.bolInterruptProcess = false;
    int changed = 0;
    unsigned walked = 0;
    for (auto p = e.polygon_get_first_polygon(); p != 0; p = e.polygon_get_next(p)) {
        if (++walked % kPumpEvery == 0 && core::interrupted(ctx)) break;
        if (e.polygon_is_disabled(p)) continue;
        std::string name = core::strEntityName(e, p);
        std::string next = protectedName(name, strAction);
        if (next == name) continue;
        e.polygon_set_name(p, next);
        ++changed;
    }
    ctx.pointer(1);
    core::p_subMainLoop(ctx);
    return changed;
}

void registerTextSearch(core::AppContext& ctx) {
    const char* find = "Information/Find text";
    addMenu(ctx, "mnuFindFromAllText", "In all polygons...", find,
            [](core::AppContext& c) { findWithQuestion(c, 1); });
    addMenu(ctx, "mnuFindFromVisibleText", "In the shown polygons...", find,
            [](core::AppContext& c) { findWithQuestion(c, 2); });
    addMenu(ctx, "mnuFindFromHiddenText", "In the hidden polygons...", find,
            [](core::AppContext& c) { findWithQuestion(c, 3); });
    addMenu(ctx, "mnuFindFromSpesPosition", "At a row and column...", find,
            [](core::AppContext& c) {
                auto cell = askTextCell(c);
                if (cell) p_subFindText(c, 1, false, true, cell);
            });
    const char* protect = "Information/Protection";
    addMenu(ctx, "mnuUnprotectText", "Unprotect the shown texts...", protect,
            [](core::AppContext& c) { p_subProtectText(c, "Unprotect"); });
    addMenu(ctx, "mnuProtectText1", "Protect the shown records...", protect,
            [](core::AppContext& c) { p_subProtectText(c, "Protect1"); });
    addMenu(ctx, "mnuProtectText2", "Protect all shown texts...", protect,
            [](core::AppContext& c) { p_subProtectText(c, "Protect2"); });

    using K = core::ParamKind;
    ctx.procedures.add(procedure("p_subFindText", {K::Integer, K::Bool, K::Bool},
                                 [](core::AppContext& c, std::vector<core::Value>& a) {
                                     p_subFindText(c, static_cast<int>(a.at(0).integer()),
                                                   a.at(1).boolean(), a.at(2).boolean());
                                     return core::Value();
                                 }));
    ctx.procedures.add(procedure("p_subProtectText", {K::Text},
                                 [](core::AppContext& c, std::vector<core::Value>& a) {
                                     p_subProtectText(c, a.at(0).text());
                                     return core::Value();
                                 }));
}

}  // namespace builders
