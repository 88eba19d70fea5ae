#pragma once
// The evaluation of an event file against the model, event by event, in one of two
// ways with the same outcome: the walk over every enabled polygon for each event,
// or a spatial index over the polygon centres that only visits the polygons within
// the distance where the event reaches the threshold. The index keeps the walk
// order of the polygons it hands back, so records, colours and the polygon a fault
// stops at are those of the walk.

#include <memory>
#include <string>
#include <string_view>

#include "analysis/Ppv.h"

namespace core {
class AppContext;
}

namespace analysis {

enum class PpvPath { Indexed, PlainWalk };

struct PpvSettings {
    float sngK1 = 0.7326f;
    float sngK2 = 0.0821f;
    double dblThreshold = 0.03;
    bool bolLoadEvents = false;
    CoordConvention conv;
    // The colour scale, as P_subColourScaleSetup left it (bytScale is 4).
    double dblMax = 0.12, dblMin = 0.03, dblRange = 0.09, dblInc = 0.0225;
};

class PpvRun {
public:
    PpvRun(core::AppContext& ctx, const PpvSettings& settings, engine::Handle hDamagingGroup,
           PpvPath path);
    ~PpvRun();
    PpvRun(const PpvRun&) = delete;
    PpvRun& operator=(const PpvRun&) = delete;

    // The start record and grey on every enabled polygon; the index (for that path)
    // is built over them here.
    void resetRecords();

    enum class Outcome { Below, Passed, Fault };
    // One line of the file: read, nearest distance, marker, update.
    Outcome line(std::string_view rawLine);
    // One event already read; `name` names the marker's polygons.
    Outcome event(const PpvEvent& e, std::string_view name);

    long eventsPassed() const { return passed_; }
    long polygonsHit() const { return hits_; }

private:
    struct Index;
    bool nearestPlain(const PpvEvent& e, double& dblNearest) const;
    bool updatePlain(const PpvEvent& e);
    bool nearestIndexed(const PpvEvent& e, double& dblNearest) const;
    bool updateIndexed(const PpvEvent& e);
    // The update of one polygon at distance D; false on a fault.
    bool hit(engine::Handle h, double dblPPV);
    void placeMarker(const PpvEvent& e, double radius, std::string_view name);

    core::AppContext& ctx_;
    PpvSettings s_;
    engine::Handle group_;
    PpvPath path_;
    std::unique_ptr<Index> index_;
    std::string normalised_, name_;  // the line as read; the record being written
    long passed_ = 0, hits_ = 0;
};

// The marker of a damaging event: its radius from the magnitude and the sphere
// settings, and its colour by magnitude. A radius of 0 makes no marker.
double eventMarkerRadius(double dblSphereScale, double dblSphereRadius, double dblML);
engine::Rgb magnitudeColour(double dblML);

}  // namespace analysis
