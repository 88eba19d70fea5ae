#pragma once
// Stress analysis points: a point file of principal stresses for one mining step,
// filtered by two cut-offs, each kept point a small coloured marker named with its
// stresses and failure criterion, all in the group "Point data".

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/StressCriteria.h"
#include "engine/Types.h"

namespace core {
class AppContext;
}

namespace analysis {

inline constexpr const char* kPointDataGroup = "Point data";
inline constexpr const char* kLoadFaultText =
    "A error occurred when loading the data, probably a wrong file format";
inline constexpr const char* kLoadFaultTitle = "Information error";
inline constexpr const char* kFOSFileType = "FOSPoints";

// What the import reads off frm28_ImportFOSData.
struct StressImportSettings {
    Criterion criterion = Criterion::None;  // Shear is None on this path
    int step = 1;
    RockInputs rock;   // only the inputs of the criterion; the others stay 0
    float size = 100;  // marker size in scene units
    double sig1CutOff = 1.5, sig3CutOff = 0.5;
};

// One point as a line of the file gives it, before the filter.
struct StressPoint {
    double step = 0;
    engine::Point3 at;  // metres
    double s1 = 0, s3 = 0;
};

// A point kept by the import: its record name, colour and place in scene units.
struct KeptPoint {
    std::string name;
    engine::Rgb colour;
    engine::Point3 at;
};

// The outcome of reading a file's text; `fault` says the reading ended on a fault
// (the points kept before it stand).
struct StressImport {
    std::vector<KeptPoint> points;
    long linesRead = 0;  // lines looked at, the one that ended the reading included
    bool fault = false;
};

// Reads the text of a point file: the step filter (a higher step ends the reading,
// a lower one skips the line), the cut-offs, the S3 cap at UCSrm, the criterion,
// the name and the marker colour. No engine work. With onLine, each line looked at
// is handed to it (the kept point or null) instead of being stored, and a false
// answer ends the reading (the interrupt).
StressImport readStressPoints(std::string_view text, const StressImportSettings& s,
                              const std::function<bool(const KeptPoint*)>& onLine = {});

// The name of a kept point ("" when the criterion is None).
std::string stressPointName(Criterion c, int step, double s1, double s3, float value,
                            const RockInputs& rock);

// mnuSphereFailCriteria: file, dialog, import, markers.
void mnuSphereFailCriteria(core::AppContext& ctx);

// The menu entry and the form; called from the analysis registration.
void registerStressPoints(core::AppContext& ctx);

}  // namespace analysis
