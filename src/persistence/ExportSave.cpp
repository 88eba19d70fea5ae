#include "persistence/ExportSave.h"

#include <filesystem>
#include <fstream>
#include <optional>
#include <system_error>

#include "core/AppContext.h"
#include "persistence/OpenFile.h"

namespace persistence {

namespace fs = std::filesystem;

namespace {

bool folderWritable(const fs::path& folder) {
    std::error_code ec;
    if (folder.empty() || !fs::is_directory(folder, ec)) return false;
    const fs::path probe = folder / ".Tarvik_write_probe";
    {
        std::ofstream f(probe, std::ios::binary | std::ios::app);
        if (!f) return false;
    }
    fs::remove(probe, ec);
    return true;
}

// The chosen name, or nothing when the dialog was cancelled or the name was
// empty (the latter after its box).
std::optional<std::string> askSaveName(core::AppContext& ctx, const std::string& type) {
    ui::FileRequest req;
    req.title = "Save";
    req.filetype = type;
    req.filter = fileFilterFor(type);
    req.initialDir = ctx.state.strFolder;
    const auto answer = ctx.ui.saveFile(req);
    if (!answer) return std::nullopt;
    if (answer->empty()) {
        ctx.ui.msgBox(kNullNameText, ui::Buttons::OK, kNullNameTitle);
        return std::nullopt;
    }
    return answer;
}

fs::path besideTarget(const fs::path& target) {
    fs::path p = target;
    p += ".tarvik-part";
    return p;
}

bool commit(const fs::path& part, const fs::path& target) {
    std::error_code ec;
    fs::rename(part, target, ec);
    if (ec) {
        fs::remove(part, ec);
        return false;
    }
    return true;
}

}  // namespace

std::string exportTempFile(const core::AppContext& ctx) {
    const fs::path folder = programFolder(ctx);
    if (folderWritable(folder)) return (folder / kExportTempName).string();
    std::error_code ec;
    const fs::path tmp = fs::temp_directory_path(ec);
    return (ec ? fs::path(kExportTempName) : tmp / kExportTempName).string();
}

bool replaceFileWith(const std::string& target, const std::string& text) {
    const fs::path part = besideTarget(target);
    {
        std::ofstream f(part, std::ios::binary | std::ios::trunc);
        if (!f) return false;
        f.write(text.data(), static_cast<std::streamsize>(text.size()));
        f.close();
        if (!f) {
            std::error_code ec;
            fs::remove(part, ec);
            return false;
        }
    }
    return commit(part, target);
}

bool replaceFileByCopy(const std::string& target, const std::string& source) {
    std::error_code ec;
    if (!fs::is_regular_file(source, ec)) return false;
    const fs::path part = besideTarget(target);
    fs::copy_file(source, part, fs::copy_options::overwrite_existing, ec);
    if (ec) {
        fs::remove(part, ec);
        return false;
    }
    return commit(part, target);
}

bool P_subSaveText(core::AppContext& ctx, const std::string& strFileTypeSave,
                   const std::string& strStringToSave) {
    const auto name = askSaveName(ctx, strFileTypeSave);
    if (!name) return false;
    if (!replaceFileWith(*name, strStringToSave)) {
        ctx.ui.msgBox(kCopyFailedText, ui::Buttons::OK, kCopyFailedTitle);
        return false;
    }
    return true;
}

bool p_subFileCopy(core::AppContext& ctx, const std::string& strFileTypeSave,
                   const std::string& strSource) {
    const auto name = askSaveName(ctx, strFileTypeSave);
    if (!name) return false;
    if (!replaceFileByCopy(*name, strSource)) {
        ctx.ui.msgBox(kCopyFailedText, ui::Buttons::OK, kCopyFailedTitle);
        return false;
    }
    return true;
}

}  // namespace persistence
