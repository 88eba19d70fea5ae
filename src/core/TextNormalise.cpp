#include "core/TextNormalise.h"

#include <algorithm>
#include <cstring>

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
    if (intRounds <= 0) {
        out.assign(strLine);
        return;
    }
    // Runs only shrink, so the line's length is room enough.
    const std::size_t n = strLine.size();
    out.resize(n);
    const char* in = strLine.data();
    char* w = out.data();
    std::size_t i = 0;
    while (i < n) {
        const char c = in[i];
        if (!isSeparator(c)) {
            *w++ = c;
            ++i;
            continue;
        }
        std::size_t j = i + 1;
        while (j < n && isSeparator(in[j])) ++j;
        if (j - i == 1) {
            *w++ = '\t';
        } else {
            // (a run past a billion characters is counted as a billion)
            const int tabs =
                afterRounds(static_cast<int>(std::min<std::size_t>(j - i, 1u << 30)), intRounds);
            std::memset(w, '\t', static_cast<std::size_t>(tabs));
            w += tabs;
        }
        i = j;
    }
    out.resize(static_cast<std::size_t>(w - out.data()));
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
