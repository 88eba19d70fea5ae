#pragma once
// An RGBA picture in memory, top row first, and its PNG file.

#include <cstdint>
#include <string>
#include <vector>

#include "engine/Types.h"

namespace render {

struct Image {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rgba;  // width * height * 4, top row first

    bool empty() const { return width <= 0 || height <= 0; }
    // The colour at pixel (x, y) from the top left; black outside.
    engine::Rgb pixel(int x, int y) const;
    int alpha(int x, int y) const;
};

// Writes the image as a PNG; false when the file cannot be written.
bool writePng(const std::string& path, const Image& image);
// Reads a PNG (any channel count, made RGBA); an empty image when it cannot.
Image readPng(const std::string& path);

}  // namespace render
