#include "render/Image.h"

#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STB_IMAGE_WRITE_STATIC
#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#define STBI_ONLY_PNG
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-function"
#pragma GCC diagnostic ignored "-Wmissing-field-initializers"
#pragma GCC diagnostic ignored "-Wsign-compare"
#endif
#include <stb/stb_image.h>
#include <stb/stb_image_write.h>
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

namespace render {

engine::Rgb Image::pixel(int x, int y) const {
    if (x < 0 || y < 0 || x >= width || y >= height) return {};
    const auto* p = &rgba[(static_cast<std::size_t>(y) * width + x) * 4];
    return {p[0], p[1], p[2]};
}

int Image::alpha(int x, int y) const {
    if (x < 0 || y < 0 || x >= width || y >= height) return 0;
    return rgba[(static_cast<std::size_t>(y) * width + x) * 4 + 3];
}

bool writePng(const std::string& path, const Image& image) {
    if (image.empty() ||
        image.rgba.size() < static_cast<std::size_t>(image.width) * image.height * 4)
        return false;
    return stbi_write_png(path.c_str(), image.width, image.height, 4, image.rgba.data(),
                          image.width * 4) != 0;
}

Image readPng(const std::string& path) {
    Image img;
    int w = 0, h = 0, n = 0;
    unsigned char* data = stbi_load(path.c_str(), &w, &h, &n, 4);
    if (!data) return img;
    img.width = w;
    img.height = h;
    img.rgba.assign(data, data + static_cast<std::size_t>(w) * h * 4);
    stbi_image_free(data);
    return img;
}

}  // namespace render
