// The parts the readers are made of: the Map3D colour codes, the lenient number
// reading, the line and field walk, and the excavation dialog's logic.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "core/LenientNumber.h"
#include "core/TextNormalise.h"
#include "forms/Frm12Excavation.h"
#include "import/Map3DColour.h"
#include "import/TextFile.h"

namespace {

using engine::Rgb;
using importers::map3DColour;

TEST(Map3DColour, CodesByTheirDigits) {
    // Each worked out by hand: lower by 5 when over 5, then shade s from the digits
    // and the hue from the last digit.
    EXPECT_EQ(map3DColour(0), (Rgb{119, 9, 246}));     // s 9, hue 0: 128-s, s, 255-s
    EXPECT_EQ(map3DColour(3), (Rgb{246, 246, 9}));     // s 9, hue 3
    EXPECT_EQ(map3DColour(5), (Rgb{246, 9, 119}));     // 5 is not over 5: hue 5
    EXPECT_EQ(map3DColour(6), (Rgb{9, 9, 246}));       // 1: hue 1
    EXPECT_EQ(map3DColour(9), (Rgb{246, 9, 9}));       // 4: hue 4
    EXPECT_EQ(map3DColour(11), (Rgb{9, 246, 246}));    // 6: hue 6
    EXPECT_EQ(map3DColour(12), (Rgb{119, 246, 119}));  // 7: hue 7
    EXPECT_EQ(map3DColour(14), (Rgb{246, 119, 9}));    // 9: hue 9
    EXPECT_EQ(map3DColour(15), (Rgb{119, 9, 246}));    // 10: tens 1, s 9, hue 0
    EXPECT_EQ(map3DColour(57), (Rgb{45, 210, 45}));    // 52: tens 5, s 45, hue 2
    EXPECT_EQ(map3DColour(104), (Rgb{174, 47, 81}));   // 99: tens 9, s 81, hue 9
}

TEST(Map3DColour, HundredsThousandsAndBeyond) {
    EXPECT_EQ(map3DColour(127), (Rgb{19, 236, 19}));     // 122: tens 2, hundreds 1, s 19
    EXPECT_EQ(map3DColour(999), (Rgb{165, 90, 90}));     // 994: tens 9, hundreds 9, s 90
    EXPECT_EQ(map3DColour(1006), (Rgb{10, 10, 245}));    // 1001: tens 0, hundreds 10
    EXPECT_EQ(map3DColour(3755), (Rgb{46, 82, 173}));    // 3750: tens 5, hundreds 37, s 82
    EXPECT_EQ(map3DColour(5005), (Rgb{91, 37, 218}));    // 5000: hundreds 50 capped at 37
    EXPECT_EQ(map3DColour(10004), (Rgb{137, 10, 118}));  // 9999: tens 9, hundreds 37, s 118
    EXPECT_EQ(map3DColour(10005), (Rgb{119, 9, 246}));   // 10000: tens 1, hundreds 0
    EXPECT_EQ(map3DColour(123456), (Rgb{9, 9, 246}));    // 123451: s 9, hue 1
    EXPECT_EQ(map3DColour(-7), (Rgb{119, 246, 119}));    // under 10: s 9, hue 7
    EXPECT_EQ(map3DColour(-123), (Rgb{246, 246, 9}));    // under 10: s 9, hue 3
    // The extremes of the code stay within the colour range.
    for (std::int32_t code : {std::numeric_limits<std::int32_t>::min(),
                              std::numeric_limits<std::int32_t>::max(), 9999 + 5, 9989 + 5}) {
        Rgb c = map3DColour(code);
        for (int v : {c.r, c.g, c.b}) {
            EXPECT_GE(v, 0) << code;
            EXPECT_LE(v, 255) << code;
        }
    }
}

TEST(LenientNumber, LeadingNumberElseZero) {
    EXPECT_EQ(core::valNumber("12.5abc"), 12.5);
    EXPECT_EQ(core::valNumber("abc"), 0);
    EXPECT_EQ(core::valNumber(""), 0);
    EXPECT_EQ(core::valNumber("-.5e1x"), -5);
    EXPECT_EQ(core::valNumber("+3"), 3);
    EXPECT_EQ(core::valNumber("--3"), 0);
    EXPECT_EQ(core::valNumber("1.2.3"), 1.2);
    EXPECT_EQ(core::valNumber("1e"), 1);
    EXPECT_EQ(core::valNumber("1e+"), 1);
    EXPECT_EQ(core::valNumber("2D3"), 2000);
    EXPECT_EQ(core::valNumber(" 1 2\t3"), 123);  // blanks inside are passed over
    EXPECT_EQ(core::valNumber("&HFF"), 255);
    EXPECT_EQ(core::valNumber("&HFFFF"), -1);  // four digits: 16-bit
    EXPECT_EQ(core::valNumber("&H10000"), 65536);
    EXPECT_EQ(core::valNumber("&O17"), 15);
    EXPECT_EQ(core::valNumber("NaN"), 0);
    EXPECT_EQ(core::valNumber("inf"), 0);
    EXPECT_EQ(core::valNumber("1e308"), 1e308);
    EXPECT_TRUE(std::isinf(core::valNumber("1e309")));
    EXPECT_LT(core::valNumber("-1e400"), 0);
    EXPECT_EQ(core::valNumber("1e-400"), 0);
    const double negZero = core::valNumber("-0");
    EXPECT_EQ(negZero, 0);
    EXPECT_TRUE(std::signbit(negZero));
    // A long run of digits is still one number.
    const std::string digits(300, '1');
    EXPECT_EQ(core::valNumber(digits + "x"), std::strtod(digits.c_str(), nullptr));
}

// Plain decimals take a short way; it must round exactly as the C library does,
// at every length of digits and places and around the limits of the short way.
TEST(LenientNumber, PlainDecimalsRoundAsTheLibrary) {
    std::mt19937_64 random(7);
    for (int i = 0; i < 200000; ++i) {
        const int digits = 1 + int(random() % 20), places = int(random() % (digits + 4));
        std::string text = random() % 3 == 0 ? "-" : "";
        std::string body;
        for (int d = 0; d < digits; ++d) body += char('0' + random() % 10);
        if (places > 0 && places <= digits)
            body.insert(body.size() - std::size_t(places), ".");
        text += body;
        const double want = std::strtod(text.c_str(), nullptr), got = core::valNumber(text);
        ASSERT_EQ(std::memcmp(&want, &got, sizeof want), 0) << text;
    }
    for (const char* text : {"9007199254740992", "9007199254740993", "9007199254740992.5",
                             "0.0000000000000000000001", "0.00000000000000000000001",
                             "1234567890123456789", "12345678901234567890", "-0.000", "+7.",
                             ".25"}) {
        const double want = std::strtod(text, nullptr), got = core::valNumber(text);
        EXPECT_EQ(std::memcmp(&want, &got, sizeof want), 0) << text;
    }
}

TEST(LenientNumber, WholeNumbersAndTexts) {
    EXPECT_EQ(core::wholeNumber(2.5), 2);  // halves to the even neighbour
    EXPECT_EQ(core::wholeNumber(3.5), 4);
    EXPECT_EQ(core::wholeNumber(-2.5), -2);
    EXPECT_EQ(core::wholeNumber(2147483647.4), 2147483647);
    EXPECT_FALSE(core::wholeNumber(2147483647.5).has_value());
    EXPECT_EQ(core::wholeNumber(-2147483648.0), std::numeric_limits<std::int32_t>::min());
    EXPECT_FALSE(core::wholeNumber(1e10).has_value());
    EXPECT_FALSE(core::wholeNumber(std::numeric_limits<double>::infinity()).has_value());

    EXPECT_EQ(core::numberText(1.5), "1.5");
    EXPECT_EQ(core::numberText(core::valNumber("1.50")), "1.5");
    EXPECT_EQ(core::numberText(-0.0), "0");
    EXPECT_EQ(core::numberText(0.1 + 0.2), "0.3");
    EXPECT_EQ(core::numberText(1e20), "1E+20");
    EXPECT_EQ(core::numberText(0.00001), "1E-05");
    EXPECT_EQ(core::numberText(0.0001), "0.0001");
    EXPECT_EQ(core::numberText(123456789012345.0), "123456789012345");
    EXPECT_EQ(core::numberText(1234567890123456.0), "1.23456789012346E+15");
}

std::vector<std::string> linesOf(const std::string& text) {
    importers::TextFile f;
    f.assign(text);
    std::vector<std::string> out;
    std::string_view line;
    while (f.nextLine(line)) out.emplace_back(line);
    return out;
}

TEST(TextFile, LinesEndAtEveryKindOfLineEnd) {
    using V = std::vector<std::string>;
    EXPECT_EQ(linesOf("a\r\nb\nc\rd"), (V{"a", "b", "c", "d"}));
    EXPECT_EQ(linesOf("a\n"), (V{"a"}));        // the last end makes no empty line
    EXPECT_EQ(linesOf("a\n\n"), (V{"a", ""}));  // an empty line is a line
    EXPECT_EQ(linesOf("\r\r\n\n"), (V{"", "", ""}));
    EXPECT_EQ(linesOf(""), V{});
    EXPECT_EQ(linesOf("\xEF\xBB\xBF"), V{});
    EXPECT_EQ(linesOf("\xEF\xBB\xBFx\n\xEF\xBB\xBFy"), (V{"x", "\xEF\xBB\xBFy"}));
    EXPECT_EQ(linesOf("\xEF\xBB"), (V{"\xEF\xBB"}));  // not a whole mark
    // Lone CRs over a long text: every line found.
    std::string cr;
    for (int i = 0; i < 20000; ++i) cr += "1 2 3\r";
    EXPECT_EQ(linesOf(cr).size(), 20000u);
}

TEST(TextFile, LineCountHintAndMissingFiles) {
    importers::TextFile f;
    f.assign("a\r\nb\r\nc");
    EXPECT_EQ(f.lineCountHint(), 3u);
    f.assign("a\nb\n");
    EXPECT_GE(f.lineCountHint(), 2u);
    EXPECT_FALSE(f.load("/nonexistent-folder-of-tarvik/x.asc"));
    EXPECT_FALSE(f.load(std::filesystem::temp_directory_path().string()));  // a folder
}

TEST(TextFile, PiecesHoldTheSameLinesAsTheWhole) {
    // Texts of short and long lines with every kind of line end, cut at many sizes:
    // the lines of the pieces in order are the lines of the text.
    std::string mixed;
    const char* ends[] = {"\r\n", "\n", "\r", "\r\n\r\n", "\n\r"};
    for (int i = 0; i < 3000; ++i)
        mixed += std::string(static_cast<std::size_t>(i % 37), 'x') + ends[i % 5];
    mixed += "last";
    std::string crOnly;
    for (int i = 0; i < 500; ++i) crOnly += "1 2 3\r";
    for (const std::string* text : {&mixed, &crOnly}) {
        const auto whole = linesOf(*text);
        for (std::size_t bytes : {1u, 2u, 7u, 64u, 1000u, 100000u}) {
            std::vector<std::string> pieced;
            for (std::string_view piece : importers::textBlocks(*text, bytes)) {
                importers::LineWalker w(piece);
                std::string_view line;
                while (w.next(line)) pieced.emplace_back(line);
            }
            EXPECT_EQ(pieced, whole) << "pieces of " << bytes;
        }
    }
    EXPECT_TRUE(importers::textBlocks("", 10).empty());
}

// The normaliser as written out: each round replaces blanks and commas by tabs,
// then in one pass each two tabs by one, then each three by one.
std::string replaceAll(std::string s, const std::string& from, const std::string& to) {
    std::string out;
    std::size_t i = 0;
    while (i < s.size()) {
        if (s.compare(i, from.size(), from) == 0) {
            out += to;
            i += from.size();
        } else {
            out += s[i++];
        }
    }
    return out;
}

std::string literalNormalise(std::string s, int rounds) {
    for (int r = 0; r < rounds; ++r) {
        s = replaceAll(s, " ", "\t");
        s = replaceAll(s, ",", "\t");
        s = replaceAll(s, "\t\t", "\t");
        s = replaceAll(s, "\t\t\t", "\t");
    }
    return s;
}

TEST(FieldSplitter, ReaderNormaliserMatchesTheRoundsWrittenOut) {
    // Lines of digits and separator runs of every length up to 60, reused buffer.
    std::string out;
    unsigned seed = 12345;
    auto next = [&] { return seed = seed * 1103515245u + 12345u, (seed >> 16) & 0x7fff; };
    for (int trial = 0; trial < 400; ++trial) {
        std::string line;
        const int parts = 1 + static_cast<int>(next() % 8);
        for (int p = 0; p < parts; ++p) {
            const int run = static_cast<int>(next() % 61);
            for (int k = 0; k < run; ++k) line += " ,\t"[next() % 3];
            line += std::to_string(next() % 1000);
        }
        for (int rounds : {1, 2, 5}) {
            core::P_subNormaliseSeparators(line, rounds, out);
            EXPECT_EQ(out, literalNormalise(line, rounds)) << trial << " rounds " << rounds;
        }
    }
}

TEST(FieldSplitter, LeadingSeparatorGivesAnEmptyFirstField) {
    using V = std::vector<std::string_view>;
    importers::FieldSplitter s(5);
    EXPECT_EQ(s.split("1 2,3\t4"), (V{"1", "2", "3", "4"}));
    EXPECT_EQ(s.split(" 1  ,, 2"), (V{"", "1", "2"}));
    EXPECT_EQ(s.split("1 2 "), (V{"1", "2", ""}));
    EXPECT_EQ(s.split(""), (V{""}));
    std::string wide;
    for (int i = 0; i < 100000; ++i) wide += "7,";
    EXPECT_EQ(s.split(wide).size(), 100001u);
    // Keeping the first few: the count still tells the line's shape.
    EXPECT_EQ(s.split(wide, 3), (V{"7", "7", "7"}));
    EXPECT_EQ(s.count(), 100001u);
    EXPECT_EQ(s.split(" 1", 8), (V{"", "1"}));
    EXPECT_EQ(s.count(), 2u);
}

TEST(Frm12Excavation, TypeOptionsRelabelTheDialog) {
    forms::Frm12Excavation f;
    EXPECT_EQ(f.selectedType(), "optExcTunnel");
    EXPECT_EQ(f.at("fraExcavationDimensions").caption, "Excavation dimensions");
    f.setOption("optExcCylinder");
    EXPECT_EQ(f.at("fraExcavationDimensions").caption, "Cylinder diameter");
    EXPECT_EQ(f.at("lblExcavationWidth").caption, "Diameter");
    EXPECT_FALSE(f.at("cboExcavationHeight").visible);
    EXPECT_FALSE(f.at("lblExcavationHeight").visible);
    f.setOption("optExc4Cone");
    EXPECT_EQ(f.at("fraExcavationDimensions").caption, "Pyramid dimensions");
    EXPECT_EQ(f.at("lblExcavationWidth").caption, "Width");
    EXPECT_TRUE(f.at("cboExcavationHeight").visible);
    f.setOption("optCrossPolyLine");
    EXPECT_EQ(f.at("fraExcavationDimensions").caption, "Line thickness");
}

TEST(Frm12Excavation, AcceptRefusesZeroSizesEvenInAHiddenBox) {
    forms::Frm12Excavation f;
    f.setOption("optExcCylinder");  // hides the height box
    f.setText("cboExcavationHeight", "");
    f.setShown(true);
    f.click("cmdOK");
    EXPECT_TRUE(f.shown());
    f.setText("cboExcavationHeight", "0abc");
    f.click("cmdOK");
    EXPECT_TRUE(f.shown());
    f.setText("cboExcavationHeight", "2");
    f.setText("cboExcavationColour", "Dark blue (tunnels)");
    bool armed = false;
    f.onAccepted = [&] { armed = true; };
    f.click("cmdOK");
    EXPECT_FALSE(f.shown());
    EXPECT_TRUE(armed);
    EXPECT_EQ(f.lngExcavationColour, (Rgb{2, 2, 190}));
}

TEST(Frm12Excavation, ColoursOfTheEntries) {
    const Rgb box{1, 2, 3};
    EXPECT_EQ(forms::Frm12Excavation::excavationColourFor("Light blue(tunnels)", box),
              (Rgb{126, 126, 253}));
    EXPECT_EQ(forms::Frm12Excavation::excavationColourFor("Brown (Sidewall slabbing - HS)", box),
              (Rgb{190, 62, 30}));
    EXPECT_EQ(forms::Frm12Excavation::excavationColourFor("Colour Box", box), box);
    // Unknown text, including the catalogue's spelling with a blank: light blue.
    EXPECT_EQ(forms::Frm12Excavation::excavationColourFor("Light blue (tunnels)", box),
              (Rgb{126, 126, 253}));
    forms::Frm12Excavation f;
    f.setColourChoiceEnabled(false);
    f.setText("cboExcavationColour", "Red (Ventilation return)");
    bool armed = false;
    f.onAccepted = [&] { armed = true; };
    f.click("cmdOK");
    // A reader's use: the colour stays and nothing is armed.
    EXPECT_EQ(f.lngExcavationColour, (Rgb{128, 128, 255}));
    EXPECT_FALSE(armed);
}

}  // namespace
