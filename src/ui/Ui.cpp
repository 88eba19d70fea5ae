#include "ui/Ui.h"

namespace ui {

const char* buttonsName(Buttons b) {
    switch (b) {
        case Buttons::OK:
            return "OK";
        case Buttons::OKCancel:
            return "OKCancel";
        case Buttons::YesNo:
            return "YesNo";
        case Buttons::YesNoCancel:
            return "YesNoCancel";
    }
    return "OK";
}

const char* answerName(Answer a) {
    switch (a) {
        case Answer::OK:
            return "OK";
        case Answer::Cancel:
            return "Cancel";
        case Answer::Yes:
            return "Yes";
        case Answer::No:
            return "No";
    }
    return "OK";
}

}  // namespace ui
