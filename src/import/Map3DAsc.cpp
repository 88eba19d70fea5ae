// ASC wireframes: four lines a facet, the facet cut along P0-P2.

#include <tbb/parallel_for.h>

#include <algorithm>
#include <charconv>

#include "core/AppContext.h"
#include "engine/TriangleBatch.h"
#include "import/ImportRun.h"
#include "import/Map3DColour.h"
#include "import/Map3DFields.h"
#include "import/Map3DReaders.h"
#include "import/ProgressMessage.h"
#include "import/TextFile.h"
#include "ui/ScriptedUi.h"

namespace importers {

namespace {

// One record a line. The vertice values are kept one after another in one text.
struct AscRecords {
    std::vector<engine::Point3> points;
    std::vector<std::int32_t> codes;
    std::string values;
    std::vector<std::size_t> valueEnds;

    std::string_view value(std::size_t i) const {
        const std::size_t from = i == 0 ? 0 : valueEnds[i - 1];
        return std::string_view(values).substr(from, valueEnds[i] - from);
    }
    void append(const AscRecords& more) {
        points.insert(points.end(), more.points.begin(), more.points.end());
        codes.insert(codes.end(), more.codes.begin(), more.codes.end());
        const std::size_t base = values.size();
        values += more.values;
        for (std::size_t end : more.valueEnds) valueEnds.push_back(base + end);
    }
};

// A piece of the file read on its own; `fault` is the line that faulted, if any.
struct AscBlock {
    std::string_view text;
    AscRecords records;
    std::size_t lines = 0;
    bool fault = false;
};

[[noreturn]] void interrupted() { throw ImportFault("interrupted"); }

std::string linesLoadedText(std::size_t count) {
    char buf[24];
    auto r = std::to_chars(buf, buf + sizeof buf, count);
    std::string text(kLinesLoadedText);
    text.append(buf, r.ptr);
    return text;
}

// The line shapes, by the emptiness of the first field and the index of the last.
void readLine(const Fields& f, std::size_t count, bool bolVerticeData, AscRecords& rec) {
    const std::size_t last = count - 1;
    const bool shifted = f[0].empty();
    engine::Point3 p;
    std::int32_t code = 0;
    if (!shifted && last == 4) {
        p = filePoint(f, 0);
        code = bolVerticeData ? 3 : fileCode(f[4]);
        if (bolVerticeData) rec.values.append(f[4]);  // as the text stands
    } else if (shifted && last == 5) {
        p = filePoint(f, 1);
        code = bolVerticeData ? 3 : fileCode(f[5]);
        if (bolVerticeData) rec.values += core::numberText(core::valNumber(f[5]));
    } else if (!shifted && last == 3) {
        p = filePoint(f, 0);
        code = 3;
    } else if (shifted && last == 4) {
        p = filePoint(f, 1);
        code = 3;
    }
    rec.points.push_back(p);
    rec.codes.push_back(code);
    if (bolVerticeData) rec.valueEnds.push_back(rec.values.size());
}

void readBlock(AscBlock& block, bool bolVerticeData) {
    LineWalker lines(block.text);
    FieldSplitter splitter(5);
    std::string_view line;
    while (lines.next(line)) {
        try {
            const Fields& f = splitter.split(line, kFieldsKept);
            readLine(f, splitter.count(), bolVerticeData, block.records);
        } catch (const ImportFault&) {
            block.fault = true;
            return;
        }
        ++block.lines;
    }
}

// The lines are read in pieces, several at once; then, piece by piece in the
// file's order, each line goes through the interrupt test and the progress as if
// it had been read alone, and a faulty line faults where it stands.
constexpr std::size_t kBlockBytes = 256 * 1024;
constexpr std::size_t kBlocksAtOnce = 16;

void readAsc(ImportRun& run, AscRecords& rec, bool bolVerticeData) {
    core::AppContext& ctx = run.context();
    TextFile file;
    if (!file.load(ctx.state.strFullPath)) throw ImportFault("the file cannot be read");
    const std::size_t hint = file.lineCountHint();
    rec.points.reserve(hint);
    rec.codes.reserve(hint);
    if (bolVerticeData) rec.valueEnds.reserve(hint);
    ctx.state.sngProgressBusy = 0;
    ctx.state.lngProgressLines = 0;
    const std::vector<std::string_view> pieces = textBlocks(file.text(), kBlockBytes);
    std::size_t count = 0;
    std::vector<AscBlock> blocks;
    for (std::size_t first = 0; first < pieces.size(); first += kBlocksAtOnce) {
        if (run.interruptRequested()) interrupted();
        const std::size_t n = std::min(kBlocksAtOnce, pieces.size() - first);
        blocks.assign(n, AscBlock{});
        for (std::size_t b = 0; b < n; ++b) blocks[b].text = pieces[first + b];
        tbb::parallel_for(std::size_t(0), n,
                          [&](std::size_t b) { readBlock(blocks[b], bolVerticeData); });
        for (const AscBlock& block : blocks) {
            for (std::size_t k = 0; k < block.lines; ++k) {
                if (run.interruptRequested()) interrupted();
                ++count;
                run.pumpSometimes(ImportRun::kLinesPerPump);
                if (progressMessageDue(ctx, 10))
                    progressMessageShow(ctx, 0.05f, linesLoadedText(count));
            }
            if (run.interruptRequested()) interrupted();
            if (block.fault) throw ImportFault("a line the reader cannot take");
            rec.append(block.records);
        }
    }
}

std::string cornerNames(const AscRecords& rec, std::size_t a, std::size_t b, std::size_t c) {
    std::string name;
    const auto va = rec.value(a), vb = rec.value(b), vc = rec.value(c);
    name.reserve(va.size() + vb.size() + vc.size() + 2);
    name.append(va).append(1, '\t').append(vb).append(1, '\t').append(vc);
    return name;
}

void buildAsc(ImportRun& run, const AscRecords& rec, engine::Handle group, bool bolVerticeData,
              bool bolTwoSided) {
    engine::Engine& eng = run.context().engine;
    const std::size_t facets = rec.points.size() / 4;
    const std::size_t perFacet = bolTwoSided ? 4 : 2;
    // Corner indices of a facet's triangles in the order they are made, and
    // whether each carries the corners' values as its name.
    static constexpr std::size_t kOneSided[2][3] = {{0, 2, 1}, {0, 3, 2}};
    static constexpr std::size_t kTwoSided[4][3] = {{0, 2, 1}, {0, 1, 2}, {0, 3, 2}, {0, 2, 3}};
    static constexpr bool kNamedOne[2] = {true, true};
    static constexpr bool kNamedTwo[4] = {true, false, true, true};
    const auto& order = bolTwoSided ? kTwoSided : kOneSided;
    const bool* named = bolTwoSided ? kNamedTwo : kNamedOne;

    constexpr std::size_t kFacetsAtOnce = 1 << 15;
    std::vector<engine::Point3> corners;
    std::vector<engine::Rgb> colours;
    std::vector<std::uint8_t> ok;
    engine::Handle made[4];
    for (std::size_t f0 = 0; f0 < facets; f0 += kFacetsAtOnce) {
        const std::size_t n = std::min(kFacetsAtOnce, facets - f0);
        corners.resize(n * perFacet * 3);
        colours.resize(n * perFacet);
        ok.resize(n * perFacet);
        for (std::size_t k = 0; k < n; ++k) {
            const std::size_t i = (f0 + k) * 4;
            const engine::Rgb colour = map3DColour(rec.codes[i]);
            for (std::size_t t = 0; t < perFacet; ++t) {
                colours[k * perFacet + t] = colour;
                for (std::size_t c = 0; c < 3; ++c)
                    corners[(k * perFacet + t) * 3 + c] = rec.points[i + order[t][c]];
            }
        }
        // The tests of a whole piece at once; the building stays one facet at a
        // time so that an interrupt stops it between two facets.
        engine::triangles_acceptable(corners.data(), n * perFacet, ok.data());
        for (std::size_t k = 0; k < n; ++k) {
            if (run.interruptRequested()) interrupted();
            const std::size_t t0 = k * perFacet;
            engine::triangles_add(eng, &corners[t0 * 3], &colours[t0], &ok[t0], perFacet, group,
                                  made);
            if (bolVerticeData) {
                const std::size_t i = (f0 + k) * 4;
                for (std::size_t t = 0; t < perFacet; ++t)
                    if (made[t] && named[t])
                        eng.polygon_set_name(made[t], cornerNames(rec, i + order[t][0],
                                                                  i + order[t][1], i + order[t][2]));
            }
            run.recordBuilt();
        }
    }
}

}  // namespace

void importMap3DAsc(core::AppContext& ctx, const std::string& strMode, bool bolVerticeData,
                    bool bolTwoSided) {
    const auto mode = importModeOf(strMode);
    if (!mode) return;
    ImportRun run(ctx, *mode);
    engine::Handle group = 0;
    try {
        if (run.begin()) {
            AscRecords rec;
            readAsc(run, rec, bolVerticeData);
            run.startBuild();
            group = ctx.engine.group_create(kAscGroup);
            buildAsc(run, rec, group, bolVerticeData, bolTwoSided);
        }
        run.finish(group);
    } catch (const ui::ScriptError&) {
        throw;
    } catch (...) {
        run.fail(kAscErrorBox);
    }
}

}  // namespace importers
