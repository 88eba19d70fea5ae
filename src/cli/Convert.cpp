#include "cli/Convert.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <ostream>

#include "cli/script/ScriptSession.h"
#include "core/AppContext.h"
#include "engine/WorldFormat.h"
#include "persistence/ExportCentres.h"
#include "persistence/ExportDxf.h"
#include "persistence/ExportSave.h"
#include "persistence/ExportSeisInfo.h"
#include "persistence/ExportStandardDxf.h"
#include "persistence/ExportTubes.h"
#include "persistence/OpenFile.h"
#include "persistence/WorldFiles.h"
#include "ui/ScriptedUi.h"

namespace cli {

namespace fs = std::filesystem;

namespace {

const char* kConvertUsage =
    "Usage: tarvik-cli convert IN OUT [--to FORMAT] [options]\n"
    "\n"
    "IN is a world (.STATE, .WLD) or a file one of the readers takes; OUT is a world\n"
    "or an export, chosen by --to or else by OUT's extension (.STATE state, .WLD wld,\n"
    ".DXF standard-dxf, .PNT points4).\n"
    "\n"
    "Formats:\n"
    "  state, wld                       world files (binary, text)\n"
    "  standard-dxf                     DXF with header, layers and true colours\n"
    "  dxf                              the wireframe DXF of the export menu\n"
    "  points4, points3                 Map3D wireframes (closed polygons, triangles)\n"
    "  map3d-strings, ventsim, datamine-strings   tube centre lines\n"
    "  seismic                          the seismic event list\n"
    "  poly-centres, poly-offset        polygon centres, or points off them\n"
    "  entity-centres, entity-offset    entity centres with data, or with off-set points\n"
    "  group-centres                    centres and data of the large groups\n"
    "  poly-data                        the name record of each polygon\n"
    "\n"
    "Options:\n"
    "  --to FORMAT              the output format\n"
    "  --import COMMAND         the import menu entry that reads IN (default by extension:\n"
    "                           .ASC and .PNT mnuOpenMap3DWireASC)\n"
    "  --answer-input TEXT      answer the next input box the reader opens (repeatable)\n"
    "  --answer-msgbox ANSWER   answer the next question box: Yes, No, OK or Cancel\n"
    "  --depth METRES           the off-set depth of poly-offset and entity-offset (0.75)\n"
    "  --transcript FILE        write what the dialogs showed, one JSON object a line\n";

using Writer = std::function<bool(core::AppContext&)>;

struct Format {
    const char* name;
    // Exports that ask for the off-set depth first.
    bool asksDepth = false;
    Writer write;
};

const std::vector<Format>& formats() {
    using namespace persistence;
    static const std::vector<Format> table = {
        {"standard-dxf", false, [](core::AppContext& c) { return exportStandardDxf(c); }},
        {"dxf", false, [](core::AppContext& c) { return P_subExportDXF(c, "GeneralDXF"); }},
        {"points4", false, [](core::AppContext& c) { return P_subExportPNT(c, "Points4"); }},
        {"points3", false, [](core::AppContext& c) { return P_subExportPNT(c, "Points3"); }},
        {"map3d-strings", false, [](core::AppContext& c) { return P_subExportTubes(c, "Map3D"); }},
        {"ventsim", false, [](core::AppContext& c) { return P_subExportTubes(c, "VentSim"); }},
        {"datamine-strings", false,
         [](core::AppContext& c) { return P_subExportDatamineStrings(c); }},
        {"seismic", false, [](core::AppContext& c) { return P_subExportSeisInfo(c); }},
        {"poly-centres", false,
         [](core::AppContext& c) { return P_subExportCentres(c, "Poly", 0, 0); }},
        {"poly-offset", true,
         [](core::AppContext& c) { return P_subExportCentres(c, "Poly", -1, 0); }},
        {"entity-centres", false,
         [](core::AppContext& c) { return P_subExportCentres(c, "Entity", 0, -1); }},
        {"entity-offset", true,
         [](core::AppContext& c) { return P_subExportCentres(c, "Entity", -1, 0); }},
        {"group-centres", false,
         [](core::AppContext& c) { return P_subExportCentres(c, "Group", 0, -1); }},
        {"poly-data", false, [](core::AppContext& c) { return P_subExportPolyData(c); }},
    };
    return table;
}

std::string lower(std::string s) {
    std::transform(s.begin(), s.end(), s.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return s;
}

std::string extensionOf(const std::string& path) {
    return lower(fs::path(path).extension().string());
}

std::optional<std::string> formatByExtension(const std::string& path) {
    static const std::map<std::string, std::string> byExt = {
        {".state", "state"}, {".wld", "wld"}, {".dxf", "standard-dxf"}, {".pnt", "points4"}};
    auto it = byExt.find(extensionOf(path));
    if (it == byExt.end()) return std::nullopt;
    return it->second;
}

std::optional<std::string> importByExtension(const std::string& path) {
    static const std::map<std::string, std::string> byExt = {{".asc", "mnuOpenMap3DWireASC"},
                                                             {".pnt", "mnuOpenMap3DWireASC"}};
    auto it = byExt.find(extensionOf(path));
    if (it == byExt.end()) return std::nullopt;
    return it->second;
}

struct Options {
    std::string in, out, to, importCommand, transcript;
    std::vector<std::string> inputs;
    std::vector<ui::Answer> msgboxes;
    std::string depth = persistence::kDepthDefault;
    bool help = false;
};

std::optional<ui::Answer> answerOf(const std::string& s) {
    const std::string l = lower(s);
    if (l == "yes") return ui::Answer::Yes;
    if (l == "no") return ui::Answer::No;
    if (l == "ok") return ui::Answer::OK;
    if (l == "cancel") return ui::Answer::Cancel;
    return std::nullopt;
}

// Fills `o`; returns the usage error, or "" when the arguments are sound.
std::string parse(const std::vector<std::string>& args, Options& o) {
    std::vector<std::string> files;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        auto value = [&](std::string& into) -> bool {
            if (i + 1 >= args.size()) return false;
            into = args[++i];
            return true;
        };
        if (a == "--help" || a == "-h") {
            o.help = true;
        } else if (a == "--to") {
            if (!value(o.to)) return "--to needs a format";
            o.to = lower(o.to);
        } else if (a == "--import") {
            if (!value(o.importCommand)) return "--import needs a menu entry";
        } else if (a == "--answer-input") {
            std::string v;
            if (!value(v)) return "--answer-input needs a text";
            o.inputs.push_back(v);
        } else if (a == "--answer-msgbox") {
            std::string v;
            if (!value(v)) return "--answer-msgbox needs an answer";
            const auto ans = answerOf(v);
            if (!ans) return "--answer-msgbox takes Yes, No, OK or Cancel, not '" + v + "'";
            o.msgboxes.push_back(*ans);
        } else if (a == "--depth") {
            if (!value(o.depth)) return "--depth needs a number of metres";
        } else if (a == "--transcript") {
            if (!value(o.transcript)) return "--transcript needs a file";
        } else if (a.size() > 1 && a[0] == '-' && a != "-") {
            return "unknown option '" + a + "'";
        } else {
            files.push_back(a);
        }
    }
    if (o.help) return "";
    if (files.size() != 2) return "convert takes an input and an output file";
    o.in = files[0];
    o.out = files[1];
    if (o.to.empty()) {
        const auto f = formatByExtension(o.out);
        if (!f) return "cannot tell the output format from '" + o.out + "': give --to";
        o.to = *f;
    }
    const bool known = o.to == "state" || o.to == "wld" ||
                       std::any_of(formats().begin(), formats().end(),
                                   [&](const Format& f) { return o.to == f.name; });
    if (!known) return "unknown output format '" + o.to + "'";
    return "";
}

// The text of the last message box shown, for the error line.
std::string lastBox(const ui::ScriptedUi& u) {
    const auto& t = u.transcript();
    for (auto it = t.rbegin(); it != t.rend(); ++it) {
        const auto j = nlohmann::json::parse(*it, nullptr, false);
        if (j.is_object() && j.value("kind", "") == "msgbox")
            return j.value("title", "") + ": " + j.value("text", "");
    }
    return {};
}

bool readInput(script::ScriptSession& s, const Options& o, std::ostream& err) {
    core::AppContext& ctx = s.context();
    std::error_code ec;
    if (!fs::is_regular_file(o.in, ec)) {
        err << "tarvik-cli convert: cannot read '" << o.in << "'\n";
        return false;
    }
    if (o.importCommand.empty() && engine::isWorldFile(o.in)) {
        if (!ctx.worldFiles.open || !ctx.worldFiles.open(ctx, o.in)) {
            err << "tarvik-cli convert: '" << o.in << "' is no world that can be opened";
            const std::string box = lastBox(s.ui());
            if (!box.empty()) err << " (" << box << ")";
            err << "\n";
            return false;
        }
        return true;
    }
    std::string name = o.importCommand;
    if (name.empty()) {
        const auto byExt = importByExtension(o.in);
        if (!byExt) {
            err << "tarvik-cli convert: no reader for '" << o.in
                << "': name its import menu entry with --import\n";
            return false;
        }
        name = *byExt;
    }
    const core::Command* c = ctx.commands.find(name);
    const bool reader =
        c && (c->menuPath.rfind("File/Import", 0) == 0 || c->menuPath.rfind("File/Open", 0) == 0);
    if (!reader || !c->enabled) {
        err << "tarvik-cli convert: '" << name << "' is no import menu entry of this version\n";
        return false;
    }
    s.ui().answerOpen(o.in);
    for (const auto& t : o.inputs) s.ui().answerInput(t);
    for (const auto a : o.msgboxes) s.ui().answerMsgBox(a);
    const auto handler = c->handler;
    handler(ctx);
    if (s.ui().failure()) {
        err << "tarvik-cli convert: the reader " << name << ": " << *s.ui().failure() << "\n";
        return false;
    }
    for (const auto& u : s.ui().unusedAnswers())
        err << "tarvik-cli convert: warning: unused " << u.what << "\n";
    if (ctx.engine.polygon_get_first_polygon() == 0) {
        err << "tarvik-cli convert: nothing was read from '" << o.in << "'";
        const std::string box = lastBox(s.ui());
        if (!box.empty()) err << " (" << box << ")";
        err << "\n";
        return false;
    }
    return true;
}

bool writeWorld(core::AppContext& ctx, const Options& o) {
    const auto wanted = o.to == "wld" ? engine::WorldFormat::Text : engine::WorldFormat::State;
    if (engine::worldFormatFor(o.out) == wanted)
        return persistence::P_subSaveWorld(ctx, persistence::kStateFileType, 0, false, o.out);
    engine::WorldSaveOptions opt;
    opt.format = wanted;
    return engine::saveWorld(ctx.engine, o.out, opt).ok;
}

bool writeOutput(script::ScriptSession& s, const Options& o, std::ostream& err) {
    core::AppContext& ctx = s.context();
    bool ok = false;
    if (o.to == "state" || o.to == "wld") {
        ok = writeWorld(ctx, o);
    } else {
        const auto f = std::find_if(formats().begin(), formats().end(),
                                    [&](const Format& x) { return o.to == x.name; });
        if (f->asksDepth) s.ui().answerInput(o.depth);
        s.ui().answerSave(o.out);
        ok = f->write(ctx);
        // The window keeps the temporary file for a second try; a command line has
        // no second try, so it leaves nothing behind in the working folder.
        std::error_code ec;
        fs::remove(persistence::exportTempFile(ctx), ec);
        if (s.ui().failure()) {
            err << "tarvik-cli convert: " << *s.ui().failure() << "\n";
            return false;
        }
    }
    if (!ok) {
        err << "tarvik-cli convert: '" << o.out << "' was not written";
        const std::string box = lastBox(s.ui());
        if (!box.empty()) err << " (" << box << ")";
        err << "\n";
    }
    return ok;
}

}  // namespace

int runConvert(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    Options o;
    const std::string problem = parse(args, o);
    if (o.help) {
        out << kConvertUsage;
        return 0;
    }
    if (!problem.empty()) {
        err << "tarvik-cli convert: " << problem << "\n\n" << kConvertUsage;
        return 2;
    }
    std::ofstream transcriptFile;
    std::ostream* transcript = nullptr;
    if (!o.transcript.empty()) {
        transcriptFile.open(o.transcript, std::ios::binary | std::ios::trunc);
        if (!transcriptFile) {
            err << "tarvik-cli convert: cannot write the transcript '" << o.transcript << "'\n";
            return 1;
        }
        transcript = &transcriptFile;
    }
    script::ScriptSession session(transcript);
    if (int rc = session.start(err)) return rc;
    try {
        if (!readInput(session, o, err)) return 1;
        if (!writeOutput(session, o, err)) return 1;
    } catch (const std::exception& e) {
        err << "tarvik-cli convert: " << e.what() << "\n";
        return 1;
    }
    return 0;
}

}  // namespace cli
