#pragma once
// A Ui port that shows nothing, as a window nobody looks at: the benchmarks
// measure the readers and the engine, not the dialogs.

#include <optional>
#include <string>

#include "ui/Ui.h"

namespace bench {

class QuietUi : public ui::Ui {
public:
    std::string file;  // the open dialog's answer; none when empty

    ui::Answer msgBox(const std::string&, ui::Buttons, const std::string&) override {
        return ui::Answer::OK;
    }
    std::optional<std::string> inputBox(const std::string&, const std::string&,
                                        const std::string&) override {
        return std::nullopt;
    }
    std::optional<std::string> openFile(const ui::FileRequest&) override {
        if (file.empty()) return std::nullopt;
        return file;
    }
    std::optional<std::string> saveFile(const ui::FileRequest&) override { return std::nullopt; }
    std::optional<engine::Rgb> chooseColour(engine::Rgb) override { return std::nullopt; }
    ui::FormAction showModal(forms::Form&) override { return ui::FormAction::Close; }
    void setPointer(int shape) override { pointer_ = shape; }
    int pointer() const override { return pointer_; }
    void setProgress(int) override {}
    void setComment(const std::string&) override {}
    void setStatus(int, const std::string&) override {}
    void pumpEvents() override {}
    ui::DateTime now() const override { return {}; }

private:
    int pointer_ = 1;
};

}  // namespace bench
