#pragma once
// What the later drillhole readers need of the surveyed holes: the intervals of a
// hole as the survey names carry them, and the small steps the readers share.

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "engine/Types.h"
#include "import/TextFile.h"

namespace engine {
class Engine;
}
namespace core {
class AppContext;
}

namespace importers {

// One survey interval as its name tells it: depths and position in metres.
struct SurveyInterval {
    std::string id;
    engine::Point3 start;  // scene units (the name's metres times 10)
    double from = 0, to = 0;
    double azimuth = 0, plunge = 0;
};

// Reads a survey interval name; false when it is none (fewer than nine fields or
// another record).
bool parseSurveyName(std::string name, SurveyInterval& out);

// The survey holes of the scene: the father group of the first survey polygon, and
// under it each hole group with its intervals, each interval once, in build order.
class SurveyHoles {
public:
    explicit SurveyHoles(const engine::Engine& eng);
    engine::Handle top() const { return top_; }
    // The intervals of the first hole group of that ID; null when there is none.
    const std::vector<SurveyInterval>* hole(std::string_view id) const;

private:
    engine::Handle top_ = 0;
    std::unordered_map<std::string, std::vector<SurveyInterval>> holes_;
};

// The hole a reader's lines are at: each time the ID changes from one line to the
// next, a new group of that name under `top` (an ID that comes back later gets
// another) and the survey intervals of the ID.
class HoleRun {
public:
    HoleRun(engine::Engine& eng, const SurveyHoles& holes, engine::Handle top, const char* name)
        : eng_(eng), holes_(holes), top_(top), name_(name) {}
    void at(std::string_view id);
    engine::Handle group() const { return group_; }
    const std::vector<SurveyInterval>* intervals() const { return intervals_; }

private:
    engine::Engine& eng_;
    const SurveyHoles& holes_;
    engine::Handle top_;
    const char* name_;
    bool started_ = false;
    std::string id_;
    engine::Handle group_ = 0;
    const std::vector<SurveyInterval>* intervals_ = nullptr;
};

// Each polygon of `from` goes to `to`, then `from` (empty now) is deleted.
void P_subMovePolygonsToGroup(engine::Engine& eng, engine::Handle from, engine::Handle to);

// The whole-file read every drillhole reader starts with: a fault when it cannot
// be read.
void loadImportFile(core::AppContext& ctx, TextFile& file);

// The input box of a size: nothing for Cancel or an empty answer, else the
// number read leniently.
bool askSize(core::AppContext& ctx, const std::string& prompt, const std::string& title,
             const std::string& defaultText, double& value);

// Field i of a split line, or "" past its end.
inline std::string_view fieldAt(const std::vector<std::string_view>& f, std::size_t count,
                                std::size_t i) {
    return i < count && i < f.size() ? f[i] : std::string_view();
}

}  // namespace importers
