#include "analysis/Ppv.h"

#include <charconv>
#include <cmath>
#include <vector>

#include "core/AngleMath.h"
#include "core/LenientNumber.h"
#include "core/TextNormalise.h"

namespace analysis {

namespace {

bool blank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

// Fields of a tab separated text; `out` keeps its memory between lines.
void splitTabs(std::string_view text, std::vector<std::string_view>& out) {
    out.clear();
    std::size_t start = 0;
    for (;;) {
        const std::size_t tab = text.find('\t', start);
        if (tab == std::string_view::npos) {
            out.push_back(text.substr(start));
            return;
        }
        out.push_back(text.substr(start, tab - start));
        start = tab + 1;
    }
}

}  // namespace

std::optional<double> strictNumber(std::string_view text) {
    while (!text.empty() && blank(text.front())) text.remove_prefix(1);
    while (!text.empty() && blank(text.back())) text.remove_suffix(1);
    bool negative = false;
    if (!text.empty() && (text.front() == '+' || text.front() == '-')) {
        negative = text.front() == '-';
        text.remove_prefix(1);
    }
    // from_chars would take "inf" and "nan", which are no numbers here.
    if (text.empty() || !(std::isdigit(static_cast<unsigned char>(text.front())) ||
                          text.front() == '.'))
        return std::nullopt;
    double v = 0;
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), v);
    if (ec != std::errc() || end != text.data() + text.size() || !std::isfinite(v))
        return std::nullopt;
    return negative ? -v : v;
}

std::optional<PpvEvent> readPpvEventLine(std::string_view line, const CoordConvention& conv,
                                         std::string& normalised) {
    while (!line.empty() && (line.back() == '\r' || line.back() == '\n')) line.remove_suffix(1);
    core::P_subNormaliseSeparators(line, 5, normalised);
    thread_local std::vector<std::string_view> fields;
    splitTabs(normalised, fields);
    if (fields.size() < 6) return std::nullopt;
    const double offset = fields[0].empty() ? 1.0 : 0.0;
    double v[4];
    for (int k = 0; k < 4; ++k) {
        const auto n = strictNumber(fields[2 + k]);
        if (!n) return std::nullopt;
        v[k] = *n + offset;
    }
    // Each value keeps the sign of its place in the file; the swap moves it after.
    const double first = v[0] * conv.sign[0] * 10.0;
    const double second = v[1] * conv.sign[1] * 10.0;
    PpvEvent e;
    e.position = {conv.swapXY ? second : first, conv.swapXY ? first : second,
                  v[2] * conv.sign[2] * 10.0};
    e.ml = v[3];
    if (!e.position.finite() || !std::isfinite(e.ml)) return std::nullopt;
    return e;
}

double ppvDistance(const engine::Point3& a, const engine::Point3& b) {
    const double dx = a.x - b.x, dy = a.y - b.y, dz = a.z - b.z;
    return std::sqrt(dx * dx + dy * dy + dz * dz) * 0.1;
}

double ppvAt(float sngK1, float sngK2, double dblML, double dblDistance) {
    return std::exp(static_cast<double>(sngK1) * dblML + static_cast<double>(sngK2) -
                    std::log(dblDistance));
}

std::optional<double> ppvReach(float sngK1, float sngK2, double dblML, double dblThreshold) {
    if (!(dblThreshold > 0)) return std::nullopt;
    const double d =
        std::exp(static_cast<double>(sngK1) * dblML + static_cast<double>(sngK2)) / dblThreshold;
    if (!std::isfinite(d) || !(d > 0)) return std::nullopt;
    return d;
}

PpvRecord readPpvRecord(std::string_view name) {
    std::string text(name);
    core::P_subNormaliseLineEnds(text);
    std::vector<std::string_view> fields;
    splitTabs(text, fields);
    PpvRecord r;
    if (fields.size() > 1) r.cumulative = core::valNumber(fields[1]);
    if (fields.size() > 2) r.maximum = core::valNumber(fields[2]);
    if (fields.size() > 3) {
        const double h = core::roundHalfEven(core::valNumber(fields[3]));
        r.hits = std::fabs(h) < 1e9 ? static_cast<long>(h) : 1000000000L;  // past 16 bits anyway
    }
    return r;
}

bool ppvRecordAfterHit(std::string_view oldName, double dblPPV, std::string& newName,
                       double& dblCumulative) {
    const PpvRecord r = readPpvRecord(oldName);
    const double cumulative = r.cumulative + dblPPV;
    const double maximum = dblPPV > r.maximum ? dblPPV : r.maximum;
    const long hits = r.hits + 1;
    if (!std::isfinite(cumulative) || hits > 32767 || hits < -32768) return false;
    newName.assign(kPpvRecordTag);
    newName += '\t';
    newName += core::numberText(cumulative);
    newName += '\t';
    newName += core::numberText(maximum);
    newName += '\t';
    newName += std::to_string(hits);
    dblCumulative = cumulative;
    return true;
}

}  // namespace analysis
