#include "render/Overlay.h"

#include <algorithm>
#include <string>

#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-function"
#pragma GCC diagnostic ignored "-Wsign-compare"
#pragma GCC diagnostic ignored "-Wmissing-field-initializers"
#endif
#include <stb/stb_easy_font.h>
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

namespace render {

namespace {

std::uint8_t byteOf(int v) { return static_cast<std::uint8_t>(std::clamp(v, 0, 255)); }

void appendLine(std::vector<Vertex>& out, const std::string& line, float x, float y,
                engine::Rgb colour, float scale) {
    if (line.empty()) return;
    // The font writes quads of 16-byte vertices (x, y, z, rgba), our Vertex layout.
    std::vector<Vertex> quads(line.size() * 70 + 16);
    unsigned char rgba[4] = {byteOf(colour.r), byteOf(colour.g), byteOf(colour.b), 255};
    std::string text = line;
    const int n = stb_easy_font_print(0, 0, text.data(), rgba, quads.data(),
                                      static_cast<int>(quads.size() * sizeof(Vertex)));
    for (int q = 0; q < n; ++q) {
        Vertex v[4];
        for (int k = 0; k < 4; ++k) {
            v[k] = quads[q * 4 + k];
            v[k].x = x + v[k].x * scale;
            v[k].y = y + v[k].y * scale;
            v[k].z = 0;
        }
        for (int k : {0, 1, 2, 0, 2, 3}) out.push_back(v[k]);
    }
}

}  // namespace

void appendText(std::vector<Vertex>& out, const std::string& text, float x, float y,
                engine::Rgb colour, float scale) {
    const float lineHeight = 12.0f * scale;
    std::size_t start = 0;
    int row = 0;
    while (start <= text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        std::string line = text.substr(start, end - start);
        if (!line.empty() && line.back() == '\r') line.pop_back();
        appendLine(out, line, x, y + row * lineHeight, colour, scale);
        ++row;
        start = end + 1;
    }
}

void appendTexts(std::vector<Vertex>& out, const std::vector<engine::TextItem>& texts, int width,
                 int height) {
    for (const auto& t : texts) {
        const float x = static_cast<float>(t.xPercent / 100.0 * width);
        const float y = static_cast<float>(t.yPercent / 100.0 * height);
        appendText(out, t.text, x, y, t.colour);
    }
}

float textWidth(const std::string& text, float scale) {
    std::string copy = text;
    return static_cast<float>(stb_easy_font_width(copy.data())) * scale;
}

}  // namespace render
