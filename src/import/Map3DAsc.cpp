// ASC wireframes: four lines a facet, the facet cut along P0-P2.

#include <tbb/parallel_for.h>

#include <algorithm>
#include <charconv>
#include <memory>

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

// One record a line, each piece of the file read straight into its place. The
// vertice values are kept one after another in one text.
struct AscRecords {
    struct Corner {
        double x, y, z;  // no initialiser: the arrays are written before they are read
    };
    std::unique_ptr<Corner[]> points;
    std::unique_ptr<std::int32_t[]> codes;
    std::size_t count = 0;
    std::string values;
    std::vector<std::size_t> valueEnds;

    void allocate(std::size_t lines) {
        points.reset(new Corner[lines]);
        codes.reset(new std::int32_t[lines]);
        count = lines;
    }
    engine::Point3 point(std::size_t i) const { return {points[i].x, points[i].y, points[i].z}; }
    std::string_view value(std::size_t i) const {
        const std::size_t from = i == 0 ? 0 : valueEnds[i - 1];
        return std::string_view(values).substr(from, valueEnds[i] - from);
    }
};

// A piece of the file read on its own, from record `first` on; `fault` tells that
// the line after the `lines` read faulted.
struct AscBlock {
    std::string_view text;
    std::size_t first = 0;
    std::size_t lines = 0;
    bool fault = false;
    std::string values;  // with vertice data
    std::vector<std::size_t> valueEnds;
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
void readLine(const Fields& f, std::size_t count, bool bolVerticeData, AscRecords& rec,
              std::size_t at, AscBlock& block) {
    const std::size_t last = count - 1;
    const bool shifted = f[0].empty();
    engine::Point3 p;
    std::int32_t code = 0;
    if (!shifted && last == 4) {
        p = filePoint(f, 0);
        code = bolVerticeData ? 3 : fileCode(f[4]);
        if (bolVerticeData) block.values.append(f[4]);  // as the text stands
    } else if (shifted && last == 5) {
        p = filePoint(f, 1);
        code = bolVerticeData ? 3 : fileCode(f[5]);
        if (bolVerticeData) block.values += core::numberText(core::valNumber(f[5]));
    } else if (!shifted && last == 3) {
        p = filePoint(f, 0);
        code = 3;
    } else if (shifted && last == 4) {
        p = filePoint(f, 1);
        code = 3;
    }
    rec.points[at] = {p.x, p.y, p.z};
    rec.codes[at] = code;
    if (bolVerticeData) block.valueEnds.push_back(block.values.size());
}

void readBlock(AscBlock& block, AscRecords& rec, bool bolVerticeData) {
    LineWalker lines(block.text);
    FieldSplitter splitter(5);
    std::string_view line;
    while (lines.next(line)) {
        try {
            const Fields& f = splitter.split(line, kFieldsKept);
            readLine(f, splitter.count(), bolVerticeData, rec, block.first + block.lines, block);
        } catch (const ImportFault&) {
            block.fault = true;
            return;
        }
        ++block.lines;
    }
}

std::size_t lineCount(std::string_view text) {
    LineWalker lines(text);
    std::string_view line;
    std::size_t n = 0;
    while (lines.next(line)) ++n;
    return n;
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
    ctx.state.sngProgressBusy = 0;
    ctx.state.lngProgressLines = 0;
    const std::vector<std::string_view> pieces = textBlocks(file.text(), kBlockBytes);
    // Where each piece's records start, its lines counted on every core.
    std::vector<AscBlock> blocks(pieces.size());
    tbb::parallel_for(std::size_t(0), pieces.size(), [&](std::size_t b) {
        blocks[b].text = pieces[b];
        blocks[b].lines = lineCount(pieces[b]);
    });
    std::size_t total = 0;
    for (AscBlock& block : blocks) {
        block.first = total;
        total += block.lines;
        block.lines = 0;
    }
    rec.allocate(total);
    if (bolVerticeData) rec.valueEnds.reserve(total);
    std::size_t count = 0;
    for (std::size_t first = 0; first < blocks.size(); first += kBlocksAtOnce) {
        if (run.interruptRequested()) interrupted();
        const std::size_t n = std::min(kBlocksAtOnce, blocks.size() - first);
        tbb::parallel_for(first, first + n,
                          [&](std::size_t b) { readBlock(blocks[b], rec, bolVerticeData); });
        for (std::size_t b = first; b < first + n; ++b) {
            AscBlock& block = blocks[b];
            for (std::size_t left = block.lines; left > 0;) {
                if (run.interruptRequested()) interrupted();
                // Lines that let no events through and show nothing only count:
                // the interrupt flag cannot change over them.
                const std::size_t quiet =
                    std::min({left - 1, std::size_t(run.quietPumps(ImportRun::kLinesPerPump)),
                              progressMessageQuietCalls(ctx, 10)});
                count += quiet;
                run.skipPumps(unsigned(quiet));
                progressMessageSkip(ctx, quiet);
                left -= quiet + 1;
                ++count;
                run.pumpSometimes(ImportRun::kLinesPerPump);
                if (progressMessageDue(ctx, 10))
                    progressMessageShow(ctx, 0.05f, linesLoadedText(count));
            }
            if (run.interruptRequested()) interrupted();
            if (block.fault) throw ImportFault("a line the reader cannot take");
            if (bolVerticeData) {
                const std::size_t base = rec.values.size();
                rec.values += block.values;
                for (std::size_t end : block.valueEnds) rec.valueEnds.push_back(base + end);
                block.values = std::string();
                block.valueEnds = std::vector<std::size_t>();
            }
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
    const std::size_t facets = rec.count / 4;
    const std::size_t perFacet = bolTwoSided ? 4 : 2;
    // Corner indices of a facet's triangles in the order they are made, and
    // whether each carries the corners' values as its name.
    static constexpr std::size_t kOneSided[2][3] = {{0, 2, 1}, {0, 3, 2}};
    static constexpr std::size_t kTwoSided[4][3] = {{0, 2, 1}, {0, 1, 2}, {0, 3, 2}, {0, 2, 3}};
    static constexpr bool kNamedOne[2] = {true, true};
    static constexpr bool kNamedTwo[4] = {true, false, true, true};
    const auto& order = bolTwoSided ? kTwoSided : kOneSided;
    const bool* named = bolTwoSided ? kNamedTwo : kNamedOne;

    engine::triangles_reserve(eng, facets * perFacet);
    constexpr std::size_t kFacetsAtOnce = 1 << 15;
    std::vector<engine::Point3> corners;
    std::vector<engine::Rgb> colours;
    std::vector<std::uint8_t> ok;
    std::vector<engine::Handle> made;
    for (std::size_t f0 = 0; f0 < facets; f0 += kFacetsAtOnce) {
        const std::size_t n = std::min(kFacetsAtOnce, facets - f0);
        corners.resize(n * perFacet * 3);
        colours.resize(n * perFacet);
        ok.resize(n * perFacet);
        tbb::parallel_for(tbb::blocked_range<std::size_t>(0, n, 4096),
                          [&](const tbb::blocked_range<std::size_t>& r) {
                              for (std::size_t k = r.begin(); k != r.end(); ++k) {
                                  const std::size_t i = (f0 + k) * 4;
                                  const engine::Rgb colour = map3DColour(rec.codes[i]);
                                  for (std::size_t t = 0; t < perFacet; ++t) {
                                      colours[k * perFacet + t] = colour;
                                      for (std::size_t c = 0; c < 3; ++c)
                                          corners[(k * perFacet + t) * 3 + c] =
                                              rec.point(i + order[t][c]);
                                  }
                              }
                          });
        // The tests of a whole piece at once; then the facets go in in runs that
        // end at the next record that lets events through or draws, so that an
        // interrupt stops the building between two facets as it would one by one.
        engine::triangles_acceptable(corners.data(), n * perFacet, ok.data());
        made.resize(n * perFacet);
        for (std::size_t k = 0; k < n;) {
            if (run.interruptRequested()) interrupted();
            const std::size_t m = std::min(n - k, run.quietRecords() + 1);
            const std::size_t t0 = k * perFacet;
            engine::triangles_add(eng, &corners[t0 * 3], &colours[t0], &ok[t0], m * perFacet,
                                  group, &made[t0]);
            if (bolVerticeData) {
                for (std::size_t j = k; j < k + m; ++j) {
                    const std::size_t i = (f0 + j) * 4;
                    for (std::size_t t = 0; t < perFacet; ++t) {
                        const engine::Handle h = made[j * perFacet + t];
                        if (h && named[t])
                            eng.polygon_set_name(h, cornerNames(rec, i + order[t][0],
                                                                i + order[t][1], i + order[t][2]));
                    }
                }
            }
            run.skipRecords(m - 1);
            run.recordBuilt();
            k += m;
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
