// The separator and line-end normalisers against a literal replace-pass model.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "core/TextNormalise.h"

using core::P_subNormaliseLineEnds;
using core::P_subNormaliseSeparators;

namespace {

// One left-to-right pass replacing every non-overlapping occurrence.
std::string replaceAll(std::string s, const std::string& from, const std::string& to) {
    std::string out;
    std::size_t pos = 0;
    for (;;) {
        std::size_t hit = s.find(from, pos);
        if (hit == std::string::npos) break;
        out.append(s, pos, hit - pos);
        out += to;
        pos = hit + from.size();
    }
    out.append(s, pos, std::string::npos);
    return out;
}

std::string modelSeparators(std::string s, int rounds) {
    for (int r = 0; r < rounds; ++r) {
        s = replaceAll(s, " ", "\t");
        s = replaceAll(s, ",", "\t");
        s = replaceAll(s, "\t\t", "\t");
        s = replaceAll(s, "\t\t\t", "\t");
    }
    return s;
}

std::string modelLineEnds(std::string s) {
    s = replaceAll(s, "\r\n", "\t");
    s = replaceAll(s, "\r", "\t");
    s = replaceAll(s, "\n", "\t");
    s = replaceAll(s, "\t\t", "\t");
    return replaceAll(s, "\t\t\t", "\t");
}

std::string separators(std::string s, int rounds) {
    P_subNormaliseSeparators(s, rounds);
    return s;
}

std::string lineEnds(std::string s) {
    P_subNormaliseLineEnds(s);
    return s;
}

TEST(NormaliseSeparators, HandWorkedLines) {
    EXPECT_EQ(separators("1 2,3\t4", 1), "1\t2\t3\t4");
    // three blanks: two to one gives two tabs, three to one finds none
    EXPECT_EQ(separators("a   b", 1), "a\t\tb");
    EXPECT_EQ(separators("a   b", 2), "a\tb");
    // seven: 4 after the halving, then 1 + 1 = 2; the next round makes it 1
    EXPECT_EQ(separators("a , , , b", 1), "a\t\tb");
    EXPECT_EQ(separators("a , , , b", 5), "a\tb");
    // a leading separator stays one tab: the first field is empty
    EXPECT_EQ(separators("  ,12.5, 7", 5), "\t12.5\t7");
    EXPECT_EQ(separators("x y", 0), "x y");
    EXPECT_EQ(separators("", 5), "");
}

TEST(NormaliseSeparators, LongRunsKeepMoreThanOneTabAfterFewRounds) {
    // 40 blanks: 20 -> 6 + 2 = 8; 4 -> 1 + 1 = 2; 1
    std::string line = "a" + std::string(40, ' ') + "b";
    EXPECT_EQ(separators(line, 1), "a" + std::string(8, '\t') + "b");
    EXPECT_EQ(separators(line, 2), "a\t\tb");
    EXPECT_EQ(separators(line, 3), "a\tb");
}

TEST(NormaliseSeparators, AgreesWithTheReplacePassesOnRandomLines) {
    std::mt19937 rng(12345);
    const std::string alphabet = "  ,,\t\tab1.-";
    for (int iter = 0; iter < 2000; ++iter) {
        std::string s;
        int len = static_cast<int>(rng() % 40);
        for (int i = 0; i < len; ++i) s.push_back(alphabet[rng() % alphabet.size()]);
        int rounds = static_cast<int>(rng() % 6);
        ASSERT_EQ(separators(s, rounds), modelSeparators(s, rounds)) << "line [" << s << "]";
    }
}

TEST(NormaliseLineEnds, EachKindOfLineEndIsOneTab) {
    EXPECT_EQ(lineEnds("a\r\nb\rc\nd"), "a\tb\tc\td");
    EXPECT_EQ(lineEnds("CM_Dist\r\n12.5\r\n\r\n7"), "CM_Dist\t12.5\t7");
    // three line ends: two tabs remain after the single round
    EXPECT_EQ(lineEnds("a\r\n\r\n\r\nb"), "a\t\tb");
    // LF CR is two ends, CR CR LF is two as well
    EXPECT_EQ(lineEnds("a\n\rb"), "a\tb");
    EXPECT_EQ(lineEnds("a\r\r\nb"), "a\tb");
    EXPECT_EQ(lineEnds("no ends, kept as is"), "no ends, kept as is");
}

TEST(NormaliseLineEnds, AgreesWithTheReplacePassesOnRandomNames) {
    std::mt19937 rng(777);
    const std::string alphabet = "\r\n\r\n\tx5 ";
    for (int iter = 0; iter < 2000; ++iter) {
        std::string s;
        int len = static_cast<int>(rng() % 30);
        for (int i = 0; i < len; ++i) s.push_back(alphabet[rng() % alphabet.size()]);
        ASSERT_EQ(lineEnds(s), modelLineEnds(s));
    }
}

}  // namespace
