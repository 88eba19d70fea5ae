#pragma once
// The two normalisers that make the text formats free-form: after them a field
// separator is one tab (up to long runs), and a line that starts with a separator
// keeps one leading tab, so its first field is empty.

#include <string>
#include <string_view>

namespace core {

// Each round: every blank and every comma to a tab, then every two tabs to one, then
// every three tabs to one (each replace a single left-to-right pass).
void P_subNormaliseSeparators(std::string& strLine, int intRounds);
// The same into `out` (its memory is reused), for readers that walk millions of lines.
void P_subNormaliseSeparators(std::string_view strLine, int intRounds, std::string& out);
// CR LF, CR and LF each to a tab, then every two tabs to one, then every three to one.
void P_subNormaliseLineEnds(std::string& strName);

// Length a run of n tabs has after one "two to one, then three to one" pass.
int collapsedTabRun(int n);

}  // namespace core
