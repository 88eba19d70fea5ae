#pragma once
// Compares a picture with a stored baseline PNG within a tolerance, and keeps
// the evidence of a failure where the test ran.

#include <filesystem>
#include <string>

#include "render/Image.h"

namespace rendertest {

struct ImageDifference {
    bool sameSize = false;
    int worst = 0;    // largest difference of one channel of one pixel, 0..255
    double mean = 0;  // mean of the largest channel difference over all pixels
    int worstX = -1, worstY = -1;
};

ImageDifference compareImages(const render::Image& actual, const render::Image& expected);

// A picture of the differences: black where equal, brighter red the larger.
render::Image differenceImage(const render::Image& actual, const render::Image& expected);

struct BaselineTolerance {
    int worst = 48;     // one channel of one pixel (antialiased edges move a little)
    double mean = 1.5;  // over the whole picture
};

// Checks `actual` against tests/render/baselines/NAME.png. With the environment
// variable TARVIK_UPDATE_BASELINES=1 the baseline is written instead. On a
// failure the actual picture and the difference go to render-failures/ in the
// working folder. Empty when the picture matches; else what went wrong.
std::string checkBaseline(const std::string& name, const render::Image& actual,
                          BaselineTolerance tolerance = {});
// The same against NAME.png in another folder.
std::string checkBaselineIn(const std::filesystem::path& folder, const std::string& name,
                            const render::Image& actual, BaselineTolerance tolerance = {});

std::filesystem::path baselineFolder();

}  // namespace rendertest
