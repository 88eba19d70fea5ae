#pragma once
// The seismic entries: the QkL and MS lists, and the picture of a mine plan with
// its events and reference points (mnuAll_QkL_Info). Each asks frm21_DataChanges
// for the coordinate convention before its file.

#include <string>

#include "import/ImportRun.h"
#include "import/SeismicEvents.h"

namespace core {
class AppContext;
}

namespace importers {

inline constexpr const char* kSeismicMenu = "File/Import Other/Seismic Data";
inline constexpr const char* kQkLFileType = "QkLFile";
inline constexpr const char* kMsFileType = "MSFile";
inline constexpr const char* kBitmapFileType = "BMP-File";
inline constexpr ErrorBox kSeismicErrorBox{
    "Seismic information error",
    "Associated seismic information could not be found OR The seismic file is invalid"};
// The colours of the picture's own event list and of its reference points.
inline constexpr engine::Rgb kPictureEventColour{255, 0, 0};
inline constexpr engine::Rgb kPictureReferenceColour{0, 255, 0};

enum class SeismicFormat { QkL, MS };

// frm21_DataChanges shown modally; false (the flag cleared) when it was closed by
// its frame.
bool askSeismicConvention(core::AppContext& ctx, SeismicConvention& conv);

// Reads state.strFullPath as a list of that format into "Seismic data": one
// marker an event, QkL events named by their PR_SEvnt record, MS events by the
// line as read. A fault ends in the "Seismic information error" box; the events
// placed before it stay. An interrupt ends the reading and keeps what was placed.
void importSeismicList(core::AppContext& ctx, const std::string& strMode,
                       const SeismicConvention& conv, SeismicFormat format);

// The menu entries: the convention, the prompt of the format, the dialog, the list.
void mnuImportSeismicDataQkL(core::AppContext& ctx);
void mnuImportSeismicDataMS(core::AppContext& ctx);
// A picture laid flat where its ".mrw" file puts it (both sides), then the events
// of its ".ms" file and the reference points of its ".cor" file.
void mnuAll_QkL_Info(core::AppContext& ctx);

// The corners and height of the picture from the ten lines of its ".mrw" file, in
// scene units with the convention applied: (x1, y1, z) and (x2, y2, z).
struct PictureFrame {
    engine::Point3 first, second;
};
PictureFrame readPictureFrame(const std::string& mrwText, const SeismicConvention& conv);

// The entries of the seismic menu and frm21_DataChanges.
void registerSeismicReaders(core::AppContext& ctx);

}  // namespace importers
