#include "cli/RenderCommand.h"

#include <charconv>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "render/DemoScene.h"
#include "render/OffscreenRenderer.h"
#include "render/SceneFraming.h"
#include "render/SceneLoaders.h"

namespace cli {

namespace {

constexpr const char* kUsage =
    "usage: tarvik-cli render FILE -o PNG [--size WxH] [--view top|north|east|iso|camera]\n"
    "       tarvik-cli render --demo -o PNG [--size WxH] [--view ...]\n";

struct Options {
    std::string input;
    std::string output;
    int width = 1024, height = 768;
    std::string view = "iso";
    bool demo = false;
};

bool parseSize(std::string_view s, int& w, int& h) {
    const auto x = s.find_first_of("xX");
    if (x == std::string_view::npos) return false;
    int a = 0, b = 0;
    auto r1 = std::from_chars(s.data(), s.data() + x, a);
    auto r2 = std::from_chars(s.data() + x + 1, s.data() + s.size(), b);
    if (r1.ec != std::errc() || r1.ptr != s.data() + x || r2.ec != std::errc() ||
        r2.ptr != s.data() + s.size())
        return false;
    if (a < 1 || b < 1 || a > 16384 || b > 16384) return false;
    w = a;
    h = b;
    return true;
}

// Fills `o`; returns an exit status when parsing ends the command (help, error).
int parse(int argc, char** argv, Options& o) {
    for (int i = 1; i < argc; ++i) {
        const std::string_view a = argv[i];
        auto value = [&](std::string_view name) -> const char* {
            if (i + 1 >= argc) {
                std::fprintf(stderr, "render: %.*s needs a value\n%s",
                             static_cast<int>(name.size()), name.data(), kUsage);
                return nullptr;
            }
            return argv[++i];
        };
        if (a == "-h" || a == "--help") {
            std::fputs(kUsage, stdout);
            return 0;
        } else if (a == "-o" || a == "--output") {
            const char* v = value(a);
            if (!v) return 2;
            o.output = v;
        } else if (a == "--size") {
            const char* v = value(a);
            if (!v) return 2;
            if (!parseSize(v, o.width, o.height)) {
                std::fprintf(stderr, "render: bad size '%s' (WxH, 1 to 16384)\n", v);
                return 2;
            }
        } else if (a == "--view") {
            const char* v = value(a);
            if (!v) return 2;
            if (std::string_view(v) != "camera" && !render::parseView(v)) {
                std::fprintf(stderr, "render: unknown view '%s'\n%s", v, kUsage);
                return 2;
            }
            o.view = v;
        } else if (a == "--demo") {
            o.demo = true;
        } else if (!a.empty() && a[0] == '-') {
            std::fprintf(stderr, "render: unknown option '%s'\n%s", argv[i], kUsage);
            return 2;
        } else if (o.input.empty()) {
            o.input = std::string(a);
        } else {
            std::fprintf(stderr, "render: more than one input file\n%s", kUsage);
            return 2;
        }
    }
    if (o.output.empty()) {
        std::fprintf(stderr, "render: no output file (-o PNG)\n%s", kUsage);
        return 2;
    }
    if (o.demo == !o.input.empty()) {
        std::fprintf(stderr, "render: give either a file or --demo\n%s", kUsage);
        return 2;
    }
    return -1;
}

std::shared_ptr<engine::Engine> loadScene(const Options& o) {
    if (o.demo) {
        auto e = std::make_shared<engine::Engine>();
        if (render::buildDemoScene(*e) == 0) {
            std::fprintf(stderr, "render: the demo scene could not be built\n");
            return nullptr;
        }
        return e;
    }
    if (!std::filesystem::exists(o.input)) {
        std::fprintf(stderr, "render: %s: no such file\n", o.input.c_str());
        return nullptr;
    }
    const std::string ext = std::filesystem::path(o.input).extension().string();
    const render::SceneLoader* loader = render::findSceneLoader(ext);
    if (!loader) {
        std::string known;
        for (const auto& k : render::sceneLoaderExtensions()) known += " " + k;
        std::fprintf(stderr,
                     "render: %s: files of this kind cannot be rendered yet (readable:%s)\n",
                     o.input.c_str(), known.empty() ? " none" : known.c_str());
        return nullptr;
    }
    std::string error;
    auto e = (*loader)(o.input, error);
    if (!e) std::fprintf(stderr, "render: %s: %s\n", o.input.c_str(), error.c_str());
    return e;
}

}  // namespace

int runRenderCommand(int argc, char** argv) {
    try {
        Options o;
        if (int rc = parse(argc, argv, o); rc >= 0) return rc;
        auto e = loadScene(o);
        if (!e) return 1;
        if (o.view == "camera") {
            e->set_window_size(o.width, o.height);
        } else if (!render::frameScene(*e, *render::parseView(o.view), o.width, o.height)) {
            std::fprintf(stderr, "render: the scene is empty\n");
            return 1;
        }
        render::OffscreenRenderer r;
        std::string error;
        if (!r.start(&error)) {
            std::fprintf(stderr, "render: no offscreen OpenGL: %s\n", error.c_str());
            return 1;
        }
        auto image = r.render(*e, o.width, o.height, e->take_queued_texts());
        if (!image || !render::writePng(o.output, *image)) {
            std::fprintf(stderr, "render: cannot write %s\n", o.output.c_str());
            return 1;
        }
        return 0;
    } catch (const std::exception& ex) {
        std::fprintf(stderr, "render: %s\n", ex.what());
        return 1;
    }
}

}  // namespace cli
