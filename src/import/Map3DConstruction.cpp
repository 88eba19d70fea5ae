// Construction wireframes and construction strings of the Map3D point files.

#include "builders/Meshes.h"
#include "builders/Tubes.h"
#include "core/AppContext.h"
#include "forms/Frm12Excavation.h"
#include "import/ImportRun.h"
#include "import/LineLoop.h"
#include "import/Map3DColour.h"
#include "import/Map3DFields.h"
#include "import/Map3DReaders.h"
#include "import/Triangle.h"
#include "ui/ScriptedUi.h"

namespace importers {

namespace {

struct ConstructionRecords {
    std::vector<engine::Point3> points;
    std::vector<std::int32_t> pens;
    std::vector<std::int32_t> codes;

    void reserve(std::size_t n) {
        points.reserve(n);
        pens.reserve(n);
        codes.reserve(n);
    }
    void push(const engine::Point3& p, std::int32_t pen, std::int32_t code) {
        points.push_back(p);
        pens.push_back(pen);
        codes.push_back(code);
    }
};

// X, Y, Z, pen code, colour code; a line that is short of them is a fault.
void readWireframeLine(const Fields& f, std::size_t count, ConstructionRecords& rec) {
    const std::size_t first = f[0].empty() ? 1 : 0;
    if (count < first + 5) throw ImportFault("a line without its five columns");
    rec.push(filePoint(f, first), fileCode(f[first + 3]), fileCode(f[first + 4]));
}

// X, Y, Z and pen code, the colour code where there is one; other shapes read as zeros.
void readStringLine(const Fields& f, std::size_t count, ConstructionRecords& rec) {
    const std::size_t last = count - 1;
    const bool shifted = f[0].empty();
    const std::size_t first = shifted ? 1 : 0;
    if (last == first + 3 || last == first + 4) {
        const std::int32_t code = last == first + 4 ? fileCode(f[first + 4]) : 0;
        rec.push(filePoint(f, first), fileCode(f[first + 3]), code);
    } else {
        rec.push({0, 0, 0}, 0, 0);
    }
}

void buildWireframes(ImportRun& run, const ConstructionRecords& rec, engine::Handle group) {
    engine::Engine& eng = run.context().engine;
    const std::size_t count = rec.points.size();
    auto triangle = [&](std::size_t a, std::size_t b, std::size_t c, const engine::Rgb& colour) {
        const engine::Handle h =
            P_fncTriangle(eng, rec.points[a], rec.points[b], rec.points[c], colour);
        if (h != 0) eng.polygon_set_group(h, group);
    };
    // Four corners and a closing line that is not used.
    for (std::size_t i = 0; i + 4 <= count; i += 5) {
        if (run.interruptRequested()) return;
        const engine::Rgb colour = map3DColour(rec.codes[i]);
        triangle(i, i + 1, i + 2, colour);
        triangle(i, i + 2, i + 1, colour);
        triangle(i, i + 2, i + 3, colour);
        triangle(i, i + 3, i + 2, colour);
        run.recordBuilt();
    }
}

struct StringShape {
    std::string type;      // the type option of frm12_Excavation
    std::string position;  // the line position option
    double width = 0, height = 0;
};

engine::Handle buildSegment(engine::Engine& eng, const StringShape& shape, engine::Point3 a,
                            engine::Point3 b, const engine::Rgb& colour) {
    if (shape.position == "optLineBottom") {
        a.z += shape.height / 2;
        b.z += shape.height / 2;
    } else if (shape.position == "optLineTop") {
        a.z -= shape.height / 2;
        b.z -= shape.height / 2;
    }
    const std::string& t = shape.type;
    if (t == "optCrossPolyLine")
        return builders::P_fncCreate3DString(eng, a, b, shape.width, colour);
    if (t == "optExcCylinder") return builders::P_fncCreateCylinder(eng, a, b, shape.width, colour);
    if (t == "optExcWedge") return builders::P_fncCreateWedge(eng, a, b, shape.width, colour);
    if (t == "optExc4Cone")
        return builders::P_fncCreate4Cone(eng, false, a, b, shape.width, shape.height, colour);
    if (t == "optExc8Cone") return builders::fncCreateCone(eng, a, b, shape.width, colour);
    if (t == "optExc3Cone") return builders::P_fncCreate3Cone(eng, a, b, shape.width, colour);
    return builders::P_fncCreate3DExcavation(eng, false, a, b, shape.width, shape.height, colour);
}

// frm12_Excavation chooses shape and size, its colours off; nothing when it was closed.
std::optional<StringShape> askStringShape(core::AppContext& ctx) {
    auto& form = forms::Frm12Excavation::of(ctx);
    form.ensureLoaded();
    form.setColourChoiceEnabled(false);
    form.cancelled = false;
    ui::FormAction action = ui::FormAction::Close;
    try {
        action = ctx.ui.showModal(form);
    } catch (...) {
        form.setColourChoiceEnabled(true);
        throw;
    }
    form.setColourChoiceEnabled(true);
    if (action != ui::FormAction::Accept || form.cancelled) {
        form.cancelled = false;
        return std::nullopt;
    }
    return StringShape{form.selectedType(), form.selectedLinePosition(), form.widthMetres() * 10.0,
                       form.heightMetres() * 10.0};
}

void buildStrings(ImportRun& run, const ConstructionRecords& rec, const StringShape& shape,
                  engine::Handle top, engine::Handle current) {
    engine::Engine& eng = run.context().engine;
    const std::size_t count = rec.points.size();
    for (std::size_t i = 0; i < count; ++i) {
        if (run.interruptRequested()) return;
        // the line after the last has no pen down
        const bool penDown = i + 1 < count && rec.pens[i + 1] == 2;
        if (penDown) {
            const engine::Handle h = buildSegment(eng, shape, rec.points[i], rec.points[i + 1],
                                                  map3DColour(rec.codes[i]));
            if (h != 0) {
                eng.group_set_father_group(h, current);
                eng.group_set_father_group(current, top);
            }
        } else {
            current = eng.group_create(kConstructionGroup);
        }
        run.recordBuilt();
    }
}

template <class Body>
void guarded(ImportRun& run, const ErrorBox& box, Body&& body) {
    try {
        body();
    } catch (const ui::ScriptError&) {
        throw;
    } catch (...) {
        run.fail(box);
    }
}

}  // namespace

void importMap3DConstructionWireframes(core::AppContext& ctx, const std::string& strMode) {
    const auto mode = importModeOf(strMode);
    if (!mode) return;
    ImportRun run(ctx, *mode);
    guarded(run, kFormatErrorBox, [&] {
        engine::Handle group = 0;
        if (run.begin()) {
            ConstructionRecords rec;
            readFileLines(
                run, 5, kFieldsKept, [&](std::size_t n) { rec.reserve(n); },
                [&](const Fields& f, std::size_t count) { readWireframeLine(f, count, rec); });
            run.startBuild();
            group = ctx.engine.group_create(kConstructionGroup);
            buildWireframes(run, rec, group);
        }
        run.finish(group);
    });
}

void importMap3DConstructionStrings(core::AppContext& ctx, const std::string& strMode) {
    const auto mode = importModeOf(strMode);
    if (!mode) return;
    ImportRun run(ctx, *mode);
    guarded(run, kFormatErrorBox, [&] {
        engine::Handle top = 0;
        if (run.begin()) {
            top = ctx.engine.group_create(kConstructionStringsGroup);
            const engine::Handle first = ctx.engine.group_create(kConstructionGroup);
            ConstructionRecords rec;
            readFileLines(
                run, 5, kFieldsKept, [&](std::size_t n) { rec.reserve(n); },
                [&](const Fields& f, std::size_t count) { readStringLine(f, count, rec); });
            const auto shape = askStringShape(ctx);
            if (!shape) {
                run.abandon();
                return;
            }
            run.startBuild();
            buildStrings(run, rec, *shape, top, first);
        }
        run.finish(top);
    });
}

}  // namespace importers
