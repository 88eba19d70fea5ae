#include "persistence/OpenFile.h"

#include <filesystem>
#include <map>
#include <system_error>

#include "core/AppContext.h"
#include "core/Camera.h"
#include "forms/Form.h"

namespace persistence {

namespace fs = std::filesystem;

namespace {

const std::map<std::string, std::string>& filters() {
    static const std::map<std::string, std::string> table = {
        {"STATE-File",
         "Binary-files(*.STATE)|*.STATE|ASCII-files(*.WLD)|*.wld|All file types (*.*)|*.*"},
        {"LinkSTATE-File",
         "Binary-files(*.STATE)|*.STATE|ASCII-files(*.WLD)|*.wld|All file types (*.*)|*.*"},
        {"BMP-File",
         "All Picture Files|*.bmp;*.jpg;*.pic;*.gif;*.wmf;*.emf;|Bitmaps (*.bmp)|*.bmp|JPEG Images "
         "(*.jpg)|*.jpg|PIC Images (*.pic)|*.pic|GIF Images (*.gif)|*.gif|Metafiles "
         "(*.wmf;*.emf)|*.wmf;*.emp|All Files (*.*)|*.*"},
        {"ASC-File",
         "Map3D PNT-files(*.PNT)|*.PNT|Map3D ASC-files(*.ASC)|*.ASC|All file types (*.*)|*.*"},
        {"PNT-File", "Map3D PNT-files(*.PNT)|*.PNT|All file types (*.*)|*.*"},
        {"MSFile",
         "Seismic MS-files(*.MS)|*.MS|Seismic TXT-files(*.TXT)|*.TXT|All file types (*.*)|*.*"},
        {"QkLFile",
         "Seismic QkL-files(*.QkL; *.TXT)|*.QkL; *.TXT|Seismic TXT-files(*.TXT)|*.TXT|All file "
         "types (*.*)|*.*"},
        {"Map3DStringFileLocal", "Map3D PNT-files(*.PNT)|*.PNT|All file types (*.*)|*.*"},
        {"DatamineStringFileLocal", "Datamine DAT-files(*.DAT)|*.DAT|All file types (*.*)|*.*"},
        {"StopeCADLynx2Delimited", "StopeCAD LNX-files(*.LNX)|*.LNX|All file types (*.*)|*.*"},
        {"View-File", "View-files(*.VIE)|*.VIE|All file types (*.*)|*.*"},
        {"DAT-File", "Datamine text-files(*.DAT)|*.DAT|All file types (*.*)|*.*"},
        {"DatamineBorehole", "Datamine bore hole(*.TXT)|*.TXT|All file types (*.*)|*.*"},
        {"DXF-File", "All DXF-files(*.DXF)|*.DXF|All file types (*.*)|*.*"},
        {"Stress-File", "Stress output from Map3D(*.TXT)|*.TXT|All file types (*.*)|*.*"},
        {"Converted Map3D-File", "Converted Map3D-file(*.MCF)|*.MCF|All file types (*.*)|*.*"},
        {"FOSPoints", "FOS-data(*.MCF)|*.MCF|All file types (*.*)|*.*"},
        {"DHCollarFile",
         "Collar-data(*.COL)|*.COL|Collar-data(*.TXT)|*.TXT|All file types (*.*)|*.*"},
        {"DHSurveyFile",
         "Survey-data(*.SUR)|*.SUR|Survey-data(*.TXT)|*.TXT|All file types (*.*)|*.*"},
        {"DHAttributeFile",
         "Attribute-data(*.ATR)|*.ATR|Attribute-data(*.TXT)|*.TXT|All file types (*.*)|*.*"},
        {"DHOrientJointsFile",
         "Oriented Joint-data(*.ORJ)|*.ORJ|Oriented Joint-data(*.TXT)|*.TXT|All file types "
         "(*.*)|*.*"},
        {"SurpacStringFileLocal", "Surpac STR-files(*.STR)|*.STR|All file types (*.*)|*.*"},
        {"LOG-File", "Datamine bore hole(*.LOG)|*.LOG|All file types (*.*)|*.*"},
        {"Settings-File", "Settings(*.SET)|*.SET|All file types (*.*)|*.*"},
        {"TXT-File", "Text file(*.TXT)|*.TXT|All file types (*.*)|*.*"},
        {"MappingFile", "Text file(*.MAP)|*.MAP|All file types (*.*)|*.*"},
    };
    return table;
}

bool isWorldType(const std::string& type) {
    return type == kStateFileType || type == kLinkStateFileType;
}

void cancelled(core::AppContext& ctx) {
    auto& s = ctx.state;
    s.bolFileCancelled = -1;
    s.bolDialogCancelled = true;
    ctx.pointer(1);
}

}  // namespace

std::string fileFilterFor(const std::string& type) {
    const auto& t = filters();
    auto it = t.find(type);
    return it == t.end() ? "All file types (*.*)|*.*" : it->second;
}

void splitFullPath(core::AppContext& ctx, const std::string& fullPath) {
    auto& s = ctx.state;
    s.strFullPath = fullPath;
    s.strFileTitle = fs::path(fullPath).filename().string();
    s.strFolder = fullPath.substr(0, fullPath.size() - s.strFileTitle.size());
}

bool p_subOpenNewFile(core::AppContext& ctx, const std::string& type) {
    auto& s = ctx.state;
    // 1
    ctx.ui.pumpEvents();
    ctx.progress(0);
    s.strFullPath.clear();
    s.strFileTitle.clear();
    s.bolOpenByAssociation = false;
    s.bolDialogCancelled = false;
    // 2 and 3: the world dialog starts where the last world came from.
    ui::FileRequest req;
    req.title = "Open";
    req.filetype = type;
    req.filter = fileFilterFor(type);
    if (type == kStateFileType) {
        req.fileName = s.comLoadStateFile;
        req.initialDir = s.strFolder.empty() ? programFolder(ctx) : s.strFolder;
    } else {
        req.initialDir = s.strFolder;
    }
    // 4
    const auto answer = ctx.ui.openFile(req);
    if (!answer || answer->empty()) {
        cancelled(ctx);
        return false;
    }
    s.strFullPath = *answer;
    if (isWorldType(type)) s.strFileTitle = fs::path(*answer).filename().string();
    // 5
    std::error_code ec;
    if (!fs::is_regular_file(s.strFullPath, ec)) {
        cancelled(ctx);
        return false;
    }
    // 6
    s.strFolder = s.strFullPath.substr(0, s.strFullPath.size() - s.strFileTitle.size());
    // 7
    if (type == kStateFileType) {
        s.comLoadStateFile = s.strFullPath;
        if (auto* f = ctx.forms.find("frm26_FileAdd")) f->setText("txtFolder", s.strFolder);
    }
    return true;
}

std::string logLoadedFile(core::AppContext& ctx, const std::string& path,
                          const std::string& suffix) {
    auto& s = ctx.state;
    const std::string line = path + suffix;
    if (s.strLoadedFiles.empty())
        s.strLoadedFiles = line;
    else
        s.strLoadedFiles += "\r\n" + line;
    return line;
}

void P_subDeleteEngineLogs(core::AppContext& ctx, const std::string& folder) {
    std::vector<fs::path> folders = {fs::path("."), fs::path(ctx.strProgramFolder)};
    if (!folder.empty()) folders.emplace_back(folder);
    for (const fs::path& dir : folders) {
        if (dir.empty()) continue;
        for (const char* name : {"error.Log", "3dstate.log", "3d_card_capabilities.txt"}) {
            std::error_code ec;
            fs::remove(dir / name, ec);
        }
    }
}

void P_subSceneCentre(core::AppContext& ctx) {
    core::setRotationCentre(ctx, ctx.engine.group_get_center_of_mass(0));
}

std::string programFolder(const core::AppContext& ctx) {
    if (!ctx.strProgramFolder.empty()) return ctx.strProgramFolder;
    std::error_code ec;
    const fs::path here = fs::current_path(ec);
    return ec ? std::string(".") : here.string();
}

}  // namespace persistence
