#include "gui/FileRoute.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "core/Commands.h"

namespace gui {

namespace {

struct Row {
    const char* extension;
    std::vector<const char*> open;  // replaces the scene where it can
    std::vector<const char*> add;   // keeps the scene
};

// Readers that only ever add ("Add" behaviour) stand in both lists.
const std::vector<Row>& table() {
    static const std::vector<Row> rows = {
        {".state", {"mnuSTATEFileOpenInitialize"}, {"mnuSTATEFileAdd"}},
        {".wld", {"mnuSTATEFileOpenInitialize"}, {"mnuSTATEFileAdd"}},
        {".asc", {"mnuOpenMap3DWireASC"}, {"mnuAddMap3DWireASC"}},
        {".pnt",
         {"mnuOpenMap3DWireASC", "mnuFileOpenPNTEditor"},
         {"mnuAddMap3DWireASC", "mnuFileAddPNTEditor"}},
        {".dat",
         {"mnuOpenDatamineWireText", "mnuOpenDatamineStringText"},
         {"mnuAddDatamineWireText", "mnuAddDatamineStringText"}},
        {".str", {"mnuOpenSurpacStringText"}, {"mnuAddSurpacStringText"}},
        {".lnx", {"mnuImportStopeCADLynx2"}, {"mnuImportStopeCADLynx2"}},
        {".dxf", {"mnuImportDXF"}, {"mnuImportDXF"}},
        {".col", {"mnuReadDHCollarFile"}, {"mnuReadDHCollarFile"}},
        {".sur", {"mnuReadDHSurveyFile"}, {"mnuReadDHSurveyFile"}},
        {".atr", {"mnuReadDHAtrributeFile"}, {"mnuReadDHAtrributeFile"}},
        {".orj", {"mnuReadDHOrientJointsFile"}, {"mnuReadDHOrientJointsFile"}},
        {".qkl", {"mnuImportSeismicDataQkL"}, {"mnuImportSeismicDataQkL"}},
        {".ms", {"mnuImportSeismicDataMS"}, {"mnuImportSeismicDataMS"}},
    };
    return rows;
}

const Row* rowFor(const std::string& extension) {
    for (const Row& r : table())
        if (extension == r.extension) return &r;
    return nullptr;
}

}  // namespace

std::string extensionOf(const std::string& path) {
    std::string e = std::filesystem::path(path).extension().string();
    std::transform(e.begin(), e.end(), e.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return e;
}

std::vector<std::string> routeCandidates(const std::string& extension, bool add) {
    const Row* r = rowFor(extension);
    if (!r) return {};
    const auto& list = add ? r->add : r->open;
    return {list.begin(), list.end()};
}

bool readsFiles(const std::string& command) {
    for (const Row& r : table()) {
        for (const char* c : r.open)
            if (command == c) return true;
        for (const char* c : r.add)
            if (command == c) return true;
    }
    return false;
}

bool knownExtension(const std::string& extension) { return rowFor(extension) != nullptr; }

std::optional<FileRoute> routeFor(const core::CommandRegistry& commands, const std::string& path,
                                  bool add) {
    const std::string ext = extensionOf(path);
    const bool world = ext == ".state" || ext == ".wld";
    for (const std::string& name : routeCandidates(ext, add)) {
        const core::Command* c = commands.find(name);
        if (c && c->handler && c->enabled) return FileRoute{name, world && !add};
    }
    return std::nullopt;
}

}  // namespace gui
