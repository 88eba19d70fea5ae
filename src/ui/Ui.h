#pragma once
// The Ui port: every procedure that talks to the user goes through it, so a
// command runs the same in the window, in a test and in a script.

#include <optional>
#include <string>

#include "engine/Types.h"

namespace forms {
class Form;
}

namespace ui {

enum class Buttons { OK, OKCancel, YesNo, YesNoCancel };
enum class Answer { OK, Cancel, Yes, No };

const char* buttonsName(Buttons b);
const char* answerName(Answer a);

struct FileRequest {
    std::string title;
    std::string filetype;  // the file type of the import table, e.g. "Map3D ASC-File"
    std::string filter;    // "Text (*.txt)|*.txt|All (*.*)|*.*"
    std::string initialDir;
    std::string fileName;  // proposed name
};

enum class FormAction { Accept, Close };

struct DateTime {
    int year = 2000, month = 1, day = 1, hour = 0, minute = 0, second = 0;
};

// Pointer shapes of the program: 1 arrow, 2 cross/pan, 5 size-all, 7 size-ns,
// 11 hourglass, 14 pick cross.
class Ui {
public:
    virtual ~Ui() = default;

    virtual Answer msgBox(const std::string& text, Buttons buttons, const std::string& title) = 0;
    // The text, or nothing for Cancel.
    virtual std::optional<std::string> inputBox(const std::string& prompt, const std::string& title,
                                                const std::string& defaultText) = 0;
    virtual std::optional<std::string> openFile(const FileRequest& req) = 0;
    virtual std::optional<std::string> saveFile(const FileRequest& req) = 0;
    virtual std::optional<engine::Rgb> chooseColour(engine::Rgb initial) = 0;
    // Shows the form modally; returns how it was left.
    virtual FormAction showModal(forms::Form& form) = 0;

    virtual void setPointer(int shape) = 0;
    virtual int pointer() const = 0;
    virtual void setProgress(int percent) = 0;
    virtual void setComment(const std::string& text) = 0;
    virtual void setStatus(int panel, const std::string& text) = 0;
    virtual void pumpEvents() = 0;
    virtual void beep() {}
    virtual void setFocus() {}
    // Draw the render window now (the window repaints; scripts do nothing).
    virtual void requestFrame() {}
    // Opens a file (a photograph, a document) in the desktop's own viewer; false
    // when no viewer took it.
    virtual bool openExternal(const std::string& path) {
        (void)path;
        return false;
    }
    virtual DateTime now() const = 0;
};

}  // namespace ui
