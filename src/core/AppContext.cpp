#include "core/AppContext.h"

namespace core {

AppContext::AppContext(ui::Ui& u) : ui(u) {}
AppContext::~AppContext() = default;

void AppContext::comment(const std::string& text) {
    state.txtComment = text;
    ui.setComment(text);
}

void AppContext::logLine(const std::string& text) {
    if (!state.strCommentLog.empty()) state.strCommentLog += "\r\n";
    state.strCommentLog += text;
}

void AppContext::status(int panel, const std::string& text) { ui.setStatus(panel, text); }

}  // namespace core
