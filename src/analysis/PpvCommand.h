#pragma once
// The seismic PPV command: the dialog, the colour scale, the reset of every
// enabled polygon's record, the reading of the event file with colouring as it
// goes, and the completion box.

#include <string>

#include "analysis/PpvRun.h"

namespace core {
class AppContext;
}
namespace forms {
class Form;
}

namespace analysis {

inline constexpr const char* kCompletedTitle = "NOTICE: Function completed";
inline constexpr const char* kDataChangesForm = "frm21_DataChanges";
inline constexpr const char* kSeismicFileType = "QkLFile";

// "Seismic information from file NAME imported".
std::string ppvCompletedText(const std::string& strFileName);

// The whole evaluation of one file, from the dialog to the completion box.
void p_subEvaluatePPV(core::AppContext& ctx, const std::string& strFileName,
                      const CoordConvention& conv, PpvPath path = PpvPath::Indexed);

// The menu entry: reset, the coordinate convention, the file dialog, then the
// evaluation. `conv` keeps the convention for later calls.
void mnuImportSeismicEvents(core::AppContext& ctx, CoordConvention& conv);

// The convention of the frm21_DataChanges controls: a sign box whose text is a
// negative number or starts with "-" gives -1, and the check box the swap.
CoordConvention conventionFromForm(const forms::Form& form);

// The menu entry, the dialog and the procedure p_subEvaluatePPV for scripts.
void registerPPV(core::AppContext& ctx);

}  // namespace analysis
