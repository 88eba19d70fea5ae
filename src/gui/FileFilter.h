#pragma once
// File dialog filters in the program's "Text (*.txt)|*.txt|All (*.*)|*.*" form
// (description and pattern pairs, patterns separated by ';') turned into Qt's
// "Text (*.txt);;All (*)" form.

#include <string>

namespace gui {

std::string qtFileFilter(const std::string& filter);

}  // namespace gui
