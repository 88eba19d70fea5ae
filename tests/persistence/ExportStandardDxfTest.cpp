// The standard DXF read back by a strict reader written here: every group code
// a whole number on its own line, sections closed, the version in the header,
// every face's layer in the layer table, true colours and corners as written.

#include <cctype>
#include <map>
#include <optional>
#include <set>

#include "ExportFixture.h"
#include "persistence/ExportStandardDxf.h"

namespace {

using engine::Handle;
using exporttest::crlfLines;
using exporttest::ExportTest;

struct Face {
    std::string layer;
    std::optional<long> trueColour;
    std::map<int, double> coords;  // group code 10..13, 20..23, 30..33
};

struct Drawing {
    std::string version;
    std::vector<std::string> layers;
    std::vector<Face> faces;
};

// Reads the pairs strictly; any fault fails the test and gives what was read.
Drawing readDxf(const std::string& text) {
    const auto lines = crlfLines(text);
    Drawing d;
    EXPECT_EQ(lines.size() % 2, 0u) << "odd number of lines";
    std::vector<std::pair<int, std::string>> pairs;
    for (std::size_t i = 0; i + 1 < lines.size(); i += 2) {
        const std::string& c = lines[i];
        const auto digits = c.find_first_not_of(' ');
        const bool whole = digits != std::string::npos &&
                           c.find_first_not_of("0123456789", digits) == std::string::npos;
        EXPECT_TRUE(whole) << "group code '" << c << "' at line " << i;
        if (!whole) return d;
        pairs.emplace_back(std::stoi(c), lines[i + 1]);
    }
    EXPECT_FALSE(pairs.empty());
    if (pairs.empty()) return d;
    EXPECT_EQ(pairs.back(), (std::pair<int, std::string>{0, "EOF"}));
    std::string section;
    bool inLayerTable = false;
    Face* face = nullptr;
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        const auto& [code, value] = pairs[i];
        if (code == 0) {
            face = nullptr;
            if (value == "SECTION") {
                EXPECT_EQ(section, "") << "section inside a section";
                EXPECT_EQ(pairs.at(i + 1).first, 2);
                section = pairs.at(++i).second;
            } else if (value == "ENDSEC") {
                EXPECT_NE(section, "") << "ENDSEC outside a section";
                section.clear();
            } else if (value == "TABLE") {
                inLayerTable = pairs.at(i + 1).second == "LAYER";
            } else if (value == "ENDTAB") {
                inLayerTable = false;
            } else if (value == "LAYER" && inLayerTable) {
                EXPECT_EQ(pairs.at(i + 1).first, 2);
                d.layers.push_back(pairs.at(i + 1).second);
            } else if (value == "3DFACE") {
                EXPECT_EQ(section, "ENTITIES");
                d.faces.emplace_back();
                face = &d.faces.back();
            }
        } else if (section == "HEADER" && code == 9 && value == "$ACADVER") {
            d.version = pairs.at(i + 1).second;
        } else if (face) {
            if (code == 8) face->layer = value;
            if (code == 420) face->trueColour = std::stol(value);
            if ((code >= 10 && code <= 13) || (code >= 20 && code <= 23) ||
                (code >= 30 && code <= 33))
                face->coords[code] = std::stod(value);
        }
    }
    EXPECT_EQ(section, "") << "a section was left open";
    return d;
}

TEST_F(ExportTest, StandardDxfOfAnEmptySceneIsStillWhole) {
    const Drawing d = readDxf(exportTo("e.dxf", [&] { run("mnuExportStandardDXF"); }));
    EXPECT_EQ(d.version, "AC1018");
    EXPECT_EQ(d.layers, (std::vector<std::string>{"0"}));
    EXPECT_TRUE(d.faces.empty());
}

TEST_F(ExportTest, StandardDxfFacesLayersAndTrueColours) {
    const Handle stope = ctx.engine.group_create("Stope: 12/B");
    poly(stope, {{10, 20, 30}, {0, 0, 0}, {20, 0, 0}}, "", {255, 128, 1});
    const Handle drive = ctx.engine.group_create("Drive");
    poly(drive, {{0, 0, 0}, {0, 20, 0}, {10, 30, 0}, {20, 20, 0}, {20, 0, 0}}, "", {0, 0, 200});
    ctx.engine.polygon_disable(
        poly(ctx.engine.group_create("Hidden"), {{0, 0, 0}, {0, 1, 0}, {1, 1, 0}}));
    const Drawing d = readDxf(exportTo("s.dxf", [&] { run("mnuExportStandardDXF"); }));
    EXPECT_EQ(d.layers, (std::vector<std::string>{"0", "Stope_ 12_B", "Drive"}));
    // The triangle whole, the pentagon as a fan of three.
    ASSERT_EQ(d.faces.size(), 4u);
    EXPECT_EQ(d.faces[0].layer, "Stope_ 12_B");
    EXPECT_EQ(d.faces[0].trueColour, 255L * 65536 + 128 * 256 + 1);
    EXPECT_EQ(d.faces[0].coords.size(), 12u);
    EXPECT_EQ(d.faces[0].coords.at(10), 1.0);
    EXPECT_EQ(d.faces[0].coords.at(30), 3.0);
    EXPECT_EQ(d.faces[0].coords.at(12), 2.0);
    EXPECT_EQ(d.faces[0].coords.at(13), 2.0);  // the third corner again
    for (int i = 1; i <= 3; ++i) {
        const Face& f = d.faces[static_cast<std::size_t>(i)];
        EXPECT_EQ(f.layer, "Drive");
        EXPECT_EQ(f.trueColour, 200L);
        // Each fan triangle starts at the first corner, its last corner repeated.
        EXPECT_EQ(f.coords.at(10), 0.0);
        EXPECT_EQ(f.coords.at(20), 0.0);
        EXPECT_EQ(f.coords.at(12), f.coords.at(13));
        EXPECT_EQ(f.coords.at(22), f.coords.at(23));
    }
    EXPECT_EQ(d.faces[1].coords.at(21), 2.0);  // (0, 2)
    EXPECT_EQ(d.faces[2].coords.at(11), 1.0);  // (1, 3)
    EXPECT_EQ(d.faces[3].coords.at(12), 2.0);  // (2, 0)
    EXPECT_EQ(d.faces[3].coords.at(22), 0.0);
}

TEST(ExportLayerName, CharactersALayerMayNotHoldAreReplaced) {
    EXPECT_EQ(persistence::dxfLayerName("Level 3 <west>"), "Level 3 _west_");
    EXPECT_EQ(persistence::dxfLayerName("  padded  "), "padded");
    EXPECT_EQ(persistence::dxfLayerName(""), "0");
    EXPECT_EQ(persistence::dxfLayerName("\r\n"), "0");
    EXPECT_EQ(persistence::dxfLayerName("a\tb"), "a_b");
}

}  // namespace
