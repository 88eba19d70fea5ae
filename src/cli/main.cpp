// tarvik-cli: the program without its window. `run` drives it by a script;
// `render`, `convert` and `info` each have their own entry point below.

#ifdef TARVIK_HAVE_RENDER
#include "cli/RenderCommand.h"
#include "cli/render/ScriptSceneLoader.h"
#endif
#include <cstring>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "cli/Convert.h"
#include "cli/script/ScriptSession.h"

namespace {

const char* kUsage =
    "Usage: tarvik-cli COMMAND [ARGS]\n"
    "\n"
    "Commands:\n"
    "  run SCRIPT [--transcript FILE]   run a script; the transcript (one JSON object a\n"
    "                                   line) goes to FILE, or to standard output\n"
    "  render ...                       draw a world to a picture\n"
    "  convert ...                      convert between file formats\n"
    "  info ...                         describe a world or data file\n"
    "  --help                           this text\n"
    "\n"
    "Exit status of run: 0 the script ran to its end, 2 a script error (named with its\n"
    "line on standard error), 1 anything else.\n";

int usageError(const std::string& message) {
    std::cerr << "tarvik-cli: " << message << "\n\n" << kUsage;
    return 2;
}

// ---- run ------------------------------------------------------------------------
int runMain(const std::vector<std::string>& args) {
    std::string script, transcript;
    bool haveTranscript = false;
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "--transcript") {
            if (i + 1 >= args.size()) return usageError("--transcript needs a file");
            transcript = args[++i];
            haveTranscript = true;
        } else if (args[i] == "--help" || args[i] == "-h") {
            std::cout << kUsage;
            return 0;
        } else if (script.empty()) {
            script = args[i];
        } else {
            return usageError("run takes one script");
        }
    }
    if (script.empty()) return usageError("run needs a script");
    std::ofstream file;
    std::ostream* out = &std::cout;
    if (haveTranscript) {
        file.open(transcript, std::ios::binary | std::ios::trunc);
        if (!file) {
            std::cerr << "tarvik-cli: cannot write the transcript '" << transcript << "'\n";
            return 1;
        }
        out = &file;
    }
    return script::runScriptFile(script, out, std::cerr);
}

// ---- render ---------------------------------------------------------------------
int renderMain(int argc, char** argv) {
#ifdef TARVIK_HAVE_RENDER
    cli::registerScriptSceneLoader();
    // argv[0] is "render", the options follow
    return cli::runRenderCommand(argc, argv);
#else
    (void)argc;
    (void)argv;
    std::cerr << "tarvik-cli: render is not available in this build\n";
    return 1;
#endif
}

// ---- convert --------------------------------------------------------------------
int convertMain(const std::vector<std::string>& args) {
    return cli::runConvert(args, std::cout, std::cerr);
}

// ---- info -----------------------------------------------------------------------
int infoMain(const std::vector<std::string>& /*args*/) {
    std::cerr << "tarvik-cli: info is not available in this build\n";
    return 1;
}

}  // namespace

int main(int argc, char** argv) {
    std::ios::sync_with_stdio(false);
    if (argc < 2) return usageError("no command given");
    std::string cmd = argv[1];
    std::vector<std::string> args(argv + 2, argv + argc);
    if (cmd == "--help" || cmd == "-h" || cmd == "help") {
        std::cout << kUsage;
        return 0;
    }
    if (cmd == "run") return runMain(args);
    if (cmd == "render") return renderMain(argc - 1, argv + 1);
    if (cmd == "convert") return convertMain(args);
    if (cmd == "info") return infoMain(args);
    return usageError("unknown command '" + cmd + "'");
}
