#include "render/ImageCompare.h"

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <string_view>

namespace rendertest {

namespace {

int pixelDistance(const render::Image& a, const render::Image& b, int x, int y) {
    const std::size_t i = (static_cast<std::size_t>(y) * a.width + x) * 4;
    int d = 0;
    for (int c = 0; c < 3; ++c) d = std::max(d, std::abs(int(a.rgba[i + c]) - int(b.rgba[i + c])));
    return d;
}

bool updating() {
    const char* v = std::getenv("TARVIK_UPDATE_BASELINES");
    return v != nullptr && std::string_view(v) == "1";
}

}  // namespace

std::filesystem::path baselineFolder() {
    return std::filesystem::path(TARVIK_SOURCE_DIR) / "tests" / "render" / "baselines";
}

ImageDifference compareImages(const render::Image& actual, const render::Image& expected) {
    ImageDifference d;
    d.sameSize = actual.width == expected.width && actual.height == expected.height &&
                 !actual.empty() && actual.rgba.size() == expected.rgba.size();
    if (!d.sameSize) return d;
    double sum = 0;
    for (int y = 0; y < actual.height; ++y)
        for (int x = 0; x < actual.width; ++x) {
            const int p = pixelDistance(actual, expected, x, y);
            sum += p;
            if (p > d.worst) d.worst = p, d.worstX = x, d.worstY = y;
        }
    d.mean = sum / (static_cast<double>(actual.width) * actual.height);
    return d;
}

render::Image differenceImage(const render::Image& actual, const render::Image& expected) {
    render::Image out;
    if (!compareImages(actual, expected).sameSize) return out;
    out.width = actual.width;
    out.height = actual.height;
    out.rgba.assign(actual.rgba.size(), 0);
    for (int y = 0; y < out.height; ++y)
        for (int x = 0; x < out.width; ++x) {
            const std::size_t i = (static_cast<std::size_t>(y) * out.width + x) * 4;
            // Small differences are stretched so that they show.
            out.rgba[i] =
                static_cast<std::uint8_t>(std::min(255, pixelDistance(actual, expected, x, y) * 4));
            out.rgba[i + 3] = 255;
        }
    return out;
}

std::string checkBaseline(const std::string& name, const render::Image& actual,
                          BaselineTolerance tolerance) {
    return checkBaselineIn(baselineFolder(), name, actual, tolerance);
}

std::string checkBaselineIn(const std::filesystem::path& folder, const std::string& name,
                            const render::Image& actual, BaselineTolerance tolerance) {
    if (actual.empty()) return "nothing was drawn";
    const auto baseline = folder / (name + ".png");
    if (updating()) {
        std::filesystem::create_directories(folder);
        if (!render::writePng(baseline.string(), actual))
            return "cannot write " + baseline.string();
        return {};
    }
    const render::Image expected = render::readPng(baseline.string());
    std::ostringstream why;
    if (expected.empty()) {
        why << "no baseline " << baseline.string() << " (make it with TARVIK_UPDATE_BASELINES=1)";
    } else {
        const ImageDifference d = compareImages(actual, expected);
        if (!d.sameSize) {
            why << "size " << actual.width << "x" << actual.height << ", baseline "
                << expected.width << "x" << expected.height;
        } else if (d.worst > tolerance.worst || d.mean > tolerance.mean) {
            why << "worst pixel differs by " << d.worst << " at (" << d.worstX << ", " << d.worstY
                << "), allowed " << tolerance.worst << "; mean " << d.mean << ", allowed "
                << tolerance.mean;
        } else {
            return {};
        }
    }
    const std::filesystem::path failures = std::filesystem::current_path() / "render-failures";
    std::filesystem::create_directories(failures);
    const auto actualPath = failures / (name + ".actual.png");
    render::writePng(actualPath.string(), actual);
    why << "; the picture drawn is " << actualPath.string();
    if (!expected.empty()) {
        const auto diff = differenceImage(actual, expected);
        if (!diff.empty()) {
            const auto diffPath = failures / (name + ".diff.png");
            render::writePng(diffPath.string(), diff);
            why << ", the differences " << diffPath.string();
        }
    }
    return why.str();
}

}  // namespace rendertest
