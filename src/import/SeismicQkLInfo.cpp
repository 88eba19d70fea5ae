// A mine plan picture with its seismic information: the picture where its ".mrw"
// file puts it, the events of its ".ms" file and the reference points of its
// ".cor" file, each file beside the picture under the picture's name plus its
// extension.

#include <string>

#include "core/AppContext.h"
#include "core/Camera.h"
#include "core/LenientNumber.h"
#include "core/Lighting.h"
#include "core/MainForm.h"
#include "import/ImportRun.h"
#include "import/ProgressMessage.h"
#include "import/SeismicReaders.h"
#include "import/TextFile.h"
#include "persistence/OpenFile.h"
#include "ui/ScriptedUi.h"

namespace importers {

namespace {

// Lines of a ".mrw" file: 3 and 4 the first corner, 5 the height, 8 and 10 the
// second corner; the others are not read.
constexpr std::size_t kFrameLines = 10;

std::string loadText(const std::string& path) {
    TextFile file;
    if (!file.load(path)) throw ImportFault("associated file not found");
    return std::string(file.text());
}

void pump(core::AppContext& ctx, unsigned& since) {
    if (++since >= ImportRun::kLinesPerPump) {
        since = 0;
        ctx.ui.pumpEvents();
    }
}

void addPictureFace(engine::Engine& eng, const PictureFrame& f, engine::Handle bitmap,
                    engine::Handle group) {
    const double z = f.first.z;
    const engine::ScenePoint corners[] = {{f.first.x, f.second.y, z, 0, 0, 100},
                                          {f.second.x, f.second.y, z, 0, 1, 100},
                                          {f.second.x, f.first.y, z, 1, 1, 100},
                                          {f.first.x, f.first.y, z, 1, 0, 100}};
    const engine::Handle front = eng.polygon_create();
    for (const auto& c : corners) eng.polygon_add_point(front, c);
    if (eng.engine_add_polygon(front) != 0) {
        eng.polygon_delete(front);
        throw ImportFault("the picture's corners make no polygon");
    }
    eng.polygon_set_bitmap_fill(front, bitmap);
    eng.polygon_set_group(front, group);
    // The same picture seen from below.
    const engine::Handle back = eng.polygon_duplicate(front);
    eng.polygon_flip_visible_side(back);
    if (eng.engine_add_polygon(back) != 0) {
        eng.polygon_delete(back);
        return;
    }
    eng.polygon_set_group(back, group);
}

void pictureStep(core::AppContext& ctx, const std::string& picture, const SeismicConvention& conv) {
    const PictureFrame frame = readPictureFrame(loadText(picture + ".mrw"), conv);
    engine::Engine& eng = ctx.engine;
    const engine::Handle bitmap = eng.bitmap_load(picture);
    if (bitmap == 0) throw ImportFault("the picture cannot be loaded");
    addPictureFace(eng, frame, bitmap, seismicGroup(ctx, kBitmapGroup));
    ctx.comment(persistence::logLoadedFile(ctx, picture, " opened"));
}

// Tab-separated lines: X, Y, Z and, for events, ML (0.25 when missing). Each line
// names its marker.
void markerStep(core::AppContext& ctx, const std::string& path, const SeismicConvention& conv,
                bool bolEvents) {
    TextFile file;
    if (!file.load(path)) throw ImportFault("associated file not found");
    const engine::Handle group = seismicGroup(ctx, kSeismicGroup);
    ctx.state.sngProgressBusy = 0;
    ctx.state.lngProgressLines = 0;
    std::string_view line;
    unsigned since = 0;
    long count = 0;
    double v[4];
    while (!ctx.state.bolInterruptProcess && file.nextLine(line)) {
        pump(ctx, since);
        std::size_t n = 0;
        for (std::size_t from = 0; n < 4;) {
            const std::size_t tab = line.find('\t', from);
            v[n++] = core::valNumber(line.substr(
                from, tab == std::string_view::npos ? std::string_view::npos : tab - from));
            if (tab == std::string_view::npos) break;
            from = tab + 1;
        }
        if (n < 3) throw ImportFault("a line with too few fields");
        const engine::Point3 p = seismicPosition(conv, v[0], v[1], v[2]);
        const double ml = bolEvents ? (n > 3 ? v[3] : kMsDefaultMagnitude) : 0.0;
        const engine::Rgb colour = bolEvents ? kPictureEventColour : kPictureReferenceColour;
        if (!placeSeismicEvent(ctx, p, ml, colour, line, group)) continue;
        ++count;
        if (progressMessageDue(ctx, 100))
            progressMessageShow(ctx, 1, kEventsLoadedText + std::to_string(count));
    }
    ctx.state.bolInterruptProcess = false;
    ctx.comment(persistence::logLoadedFile(ctx, path, " added"));
}

}  // namespace

PictureFrame readPictureFrame(const std::string& mrwText, const SeismicConvention& conv) {
    LineWalker lines(mrwText);
    std::string_view line;
    double v[kFrameLines + 1] = {};
    for (std::size_t k = 1; k <= kFrameLines; ++k) {
        if (!lines.next(line)) throw ImportFault("the picture's frame file ends early");
        v[k] = core::valNumber(line);
    }
    return {seismicPosition(conv, v[3], v[4], v[5]), seismicPosition(conv, v[8], v[10], v[5])};
}

void mnuAll_QkL_Info(core::AppContext& ctx) {
    core::p_subResetAndCleanup(ctx);
    SeismicConvention conv;
    if (!askSeismicConvention(ctx, conv)) return;
    if (!persistence::p_subOpenNewFile(ctx, kBitmapFileType)) {
        ctx.state.bolFileCancelled = 0;
        core::p_subMainLoop(ctx);
        return;
    }
    const std::string picture = ctx.state.strFullPath;
    ctx.pointer(11);
    try {
        pictureStep(ctx, picture, conv);
        persistence::P_subSceneCentre(ctx);
        core::p_subInitializeCamera(ctx, true);
        markerStep(ctx, picture + ".ms", conv, true);
        markerStep(ctx, picture + ".cor", conv, false);
        if (forms::Form* main = ctx.forms.find("frm03_MirrowMain"))
            if (main->find("cboZoomRate")) main->setText("cboZoomRate", "Active");
        core::P_subApplyLight(ctx, 0);
        ctx.pointer(1);
        core::p_subMainLoop(ctx, true);
    } catch (const ui::ScriptError&) {
        throw;
    } catch (...) {
        ctx.state.bolInterruptProcess = false;
        ctx.pointer(1);
        ctx.ui.msgBox(kSeismicErrorBox.message, ui::Buttons::OK, kSeismicErrorBox.caption);
        core::p_subMainLoop(ctx);
    }
    ctx.progress(100);
}

}  // namespace importers
