#include "core/TextNormalise.h"

namespace core {

// A pass of "two tabs to one" leaves ceil(n / 2) of a run of n; "three to one" then
// leaves m / 3 + m % 3 of m. Runs never meet, so each run can be worked out alone
// and the line is rewritten once, however many rounds are asked for.
int collapsedTabRun(int n) {
    int m = (n + 1) / 2;
    return m / 3 + m % 3;
}

namespace {

int afterRounds(int n, int rounds) {
    // A single tab is the only fixed point of a round.
    for (int r = 0; r < rounds && n > 1; ++r) n = collapsedTabRun(n);
    return n;
}

bool isSeparator(char c) { return c == ' ' || c == ',' || c == '\t'; }

}  // namespace

void P_subNormaliseSeparators(std::string_view strLine, int intRounds, std::string& out) {
    out.clear();
    if (intRounds <= 0) {
        out.assign(strLine);
        return;
    }
    const std::size_t n = strLine.size();
    std::size_t i = 0;
    while (i < n) {
        std::size_t j = i;
        while (j < n && !isSeparator(strLine[j])) ++j;
        out.append(strLine.data() + i, j - i);
        if (j == n) break;
        i = j;
        while (j < n && isSeparator(strLine[j])) ++j;
        out.append(static_cast<std::size_t>(afterRounds(static_cast<int>(j - i), intRounds)), '\t');
        i = j;
    }
}

void P_subNormaliseSeparators(std::string& strLine, int intRounds) {
    if (intRounds <= 0) return;
    std::string out;
    out.reserve(strLine.size());
    P_subNormaliseSeparators(std::string_view(strLine), intRounds, out);
    strLine.swap(out);
}

void P_subNormaliseLineEnds(std::string& strName) {
    std::string out;
    out.reserve(strName.size());
    const std::size_t n = strName.size();
    std::size_t i = 0;
    while (i < n) {
        char c = strName[i];
        if (c != '\t' && c != '\r' && c != '\n') {
            out.push_back(c);
            ++i;
            continue;
        }
        int run = 0;
        while (i < n) {
            c = strName[i];
            if (c == '\r' && i + 1 < n && strName[i + 1] == '\n') {
                i += 2;  // CR LF is one tab
            } else if (c == '\t' || c == '\r' || c == '\n') {
                ++i;
            } else {
                break;
            }
            ++run;
        }
        out.append(static_cast<std::size_t>(afterRounds(run, 1)), '\t');
    }
    strName.swap(out);
}

}  // namespace core
