#include "forms/Frm26FileAdd.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <system_error>

namespace forms {

namespace fs = std::filesystem;

namespace {
bool isWorldName(const fs::path& p) {
    std::string ext = p.extension().string();
    std::transform(ext.begin(), ext.end(), ext.begin(),
                   [](unsigned char c) { return char(std::tolower(c)); });
    return ext == ".state" || ext == ".wld";
}
}  // namespace

Frm26FileAdd::Frm26FileAdd() : Form(kName, "Open/Add multiple Tarvik-files") {
    add(ControlKind::TextBox, "txtFolder", "Folder").onChange = [this] { refresh(); };
    add(ControlKind::ListBox, "lstFiles", "Tarvik-files in the folder");
    add(ControlKind::CommandButton, "cmdAddFile", ">").onChange = [this] {
        choose(text("lstFiles"));
    };
    add(ControlKind::CommandButton, "cmdAddAll", ">>").onChange = [this] {
        for (const std::string& f : at("lstFiles").items) choose(f);
    };
    add(ControlKind::CommandButton, "cmdRemoveFile", "<").onChange = [this] {
        Control& c = at("lstChosen");
        auto it = std::find(c.items.begin(), c.items.end(), c.text);
        if (it != c.items.end()) c.items.erase(it);
        c.text.clear();
        c.value = -1;
    };
    add(ControlKind::CommandButton, "cmdClear", "Clear").onChange = [this] {
        Control& c = at("lstChosen");
        c.items.clear();
        c.text.clear();
        c.value = -1;
    };
    add(ControlKind::ListBox, "lstChosen", "Files to read, in this order");
    add(ControlKind::Frame, "fraFirst", "The first file");
    add(ControlKind::OptionButton, "optOpen", "Opens a new scene", "fraFirst").value = 1;
    add(ControlKind::OptionButton, "optAdd", "Is added to the scene", "fraFirst");
    add(ControlKind::CommandButton, "cmdOK", "Load").onChange = [this] {
        cancelled = false;
        hide();
    };
    add(ControlKind::CommandButton, "cmdCancel", "Cancel").onChange = [this] {
        cancelled = true;
        hide();
    };
}

void Frm26FileAdd::onQueryClose() {
    cancelled = true;
    hide();
}

void Frm26FileAdd::refresh() {
    Control& list = at("lstFiles");
    list.items.clear();
    std::error_code ec;
    for (fs::directory_iterator it(text("txtFolder"), ec), end; !ec && it != end; it.increment(ec))
        if (it->is_regular_file(ec) && isWorldName(it->path()))
            list.items.push_back(it->path().filename().string());
    std::sort(list.items.begin(), list.items.end());
    if (std::find(list.items.begin(), list.items.end(), list.text) == list.items.end()) {
        list.text.clear();
        list.value = -1;
    }
}

void Frm26FileAdd::choose(const std::string& file) {
    if (file.empty()) return;
    Control& c = at("lstChosen");
    if (std::find(c.items.begin(), c.items.end(), file) == c.items.end()) c.items.push_back(file);
}

std::vector<std::string> Frm26FileAdd::chosenPaths() const {
    std::vector<std::string> out;
    const fs::path folder(text("txtFolder"));
    for (const std::string& f : find("lstChosen")->items) out.push_back((folder / f).string());
    return out;
}

}  // namespace forms
