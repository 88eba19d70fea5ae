// World files that are cut, changed, too new or not world files at all: refused
// with a message, the scene left exactly as it was, never a crash.

#include <gtest/gtest.h>

#include <sstream>

#include "WorldTestUtil.h"
#include "engine/WorldChecksum.h"
#include "engine/WorldFormat.h"
#include "support/TestSupport.h"

namespace {

using namespace worldtest;
using engine::WorldFormat;
namespace fs = std::filesystem;

class WorldDamage : public ::testing::Test {
protected:
    void SetUp() override {
        Engine source;
        buildRichScene(source, dir.file("missing.bmp"));
        ASSERT_TRUE(engine::encodeWorld(source, WorldFormat::State, binary).ok);
        ASSERT_TRUE(engine::encodeWorld(source, WorldFormat::Text, text).ok);
        sourceDescription = describe(source);
        // The scene that must survive every failed load.
        target.engine_load_world("", "", "", 4);
        const Handle g = target.group_create("Kept");
        polygon(target, {{0, 0, 0}, {0, 1, 0}, {1, 1, 0}}, g, "keep me");
        target.light_create("Light", {1, 2, 3});
        before = describe(target);
    }

    // Loads bytes into the target; on failure the target must be untouched.
    engine::WorldResult tryLoad(std::string_view bytes) {
        const auto r = engine::loadWorldBytes(target, bytes);
        if (!r.ok) {
            EXPECT_FALSE(r.message.empty());
            EXPECT_EQ(describe(target), before);
        }
        return r;
    }

    testsupport::TempDir dir;
    std::string binary, text, sourceDescription, before;
    Engine target;
};

TEST_F(WorldDamage, BinaryCutAtEveryByteIsRefused) {
    for (std::size_t n = 0; n < binary.size(); ++n) {
        const auto r = tryLoad(std::string_view(binary).substr(0, n));
        ASSERT_FALSE(r.ok) << "cut at " << n;
    }
}

TEST_F(WorldDamage, BinaryWithAnyByteChangedIsRefused) {
    // Every byte is under a checksum or is one: any change must be seen.
    for (std::size_t i = 0; i < binary.size(); ++i)
        for (unsigned char flip : {0x01, 0x80, 0xFF}) {
            std::string bad = binary;
            bad[i] = char(bad[i] ^ flip);
            ASSERT_FALSE(tryLoad(bad).ok) << "byte " << i << " ^ " << int(flip);
        }
}

TEST_F(WorldDamage, BinaryWithBytesAddedIsRefused) {
    EXPECT_FALSE(tryLoad(binary + '\0').ok);
    EXPECT_FALSE(tryLoad(binary + binary).ok);
    std::string inserted = binary;
    inserted.insert(200, "x");
    EXPECT_FALSE(tryLoad(inserted).ok);
}

TEST_F(WorldDamage, TextCutAtEveryByteIsRefusedOrLoadsTheSame) {
    // Only the last line end may go: the rest is under the sections' checks.
    for (std::size_t n = 0; n < text.size(); ++n) {
        Engine fresh;
        const auto r = engine::loadWorldBytes(fresh, std::string_view(text).substr(0, n));
        if (r.ok) {
            EXPECT_EQ(n, text.size() - 1);
            EXPECT_EQ(describe(fresh), sourceDescription);
        } else {
            EXPECT_TRUE(fresh.engine_is_engine_empty()) << "cut at " << n;
        }
    }
    EXPECT_FALSE(tryLoad(text.substr(0, text.size() / 2)).ok);
}

TEST_F(WorldDamage, TextWithAnyByteChangedIsRefusedOrLoadsTheSame) {
    // A change may be harmless (a line end written as CR LF, a checksum digit in
    // capitals): then the same scene must load, never another one.
    int loaded = 0;
    for (std::size_t i = 0; i < text.size(); ++i)
        for (unsigned char flip : {0x01, 0x20}) {
            std::string bad = text;
            bad[i] = char(bad[i] ^ flip);
            Engine fresh;
            fresh.engine_load_world("", "", "", 4);
            const std::string empty = describe(fresh);
            const auto r = engine::loadWorldBytes(fresh, bad);
            if (r.ok) {
                ++loaded;
                ASSERT_EQ(describe(fresh), sourceDescription) << "byte " << i;
            } else {
                ASSERT_EQ(describe(fresh), empty);
            }
        }
    EXPECT_LT(loaded, 40);
}

TEST_F(WorldDamage, TextWithWindowsLineEndsStillLoads) {
    std::string crlf;
    for (char c : text) {
        if (c == '\n') crlf += '\r';
        crlf += c;
    }
    const auto r = tryLoad(crlf);
    ASSERT_TRUE(r.ok) << r.message;
    EXPECT_EQ(describe(target), sourceDescription);
}

TEST_F(WorldDamage, NewerFormatsAreRefusedWithTheirVersion) {
    std::string newer = binary;
    newer[8] = 2;  // the version, then the header's checksum over the first 24 bytes
    const std::uint32_t crc = engine::world::crc32c(0, newer.data(), 24);
    for (int i = 0; i < 4; ++i) newer[24 + i] = char((crc >> (8 * i)) & 0xFF);
    auto r = tryLoad(newer);
    EXPECT_FALSE(r.ok);
    EXPECT_NE(r.message.find("format 2"), std::string::npos) << r.message;
    EXPECT_NE(r.message.find("newer"), std::string::npos) << r.message;

    std::string newerText = text;
    newerText.replace(newerText.find(" 1\n"), 3, " 7\n");
    r = tryLoad(newerText);
    EXPECT_FALSE(r.ok);
    EXPECT_NE(r.message.find("format 7"), std::string::npos) << r.message;

    std::string zero = binary;
    zero[8] = 0;
    const std::uint32_t crc0 = engine::world::crc32c(0, zero.data(), 24);
    for (int i = 0; i < 4; ++i) zero[24 + i] = char((crc0 >> (8 * i)) & 0xFF);
    r = tryLoad(zero);
    EXPECT_FALSE(r.ok);
    EXPECT_NE(r.message.find("damaged"), std::string::npos) << r.message;
}

TEST_F(WorldDamage, ForeignFilesAreRefusedAsSuch) {
    for (const std::string& foreign :
         {std::string("\x89PNG\r\n\x1a\n0000000000000000000000"), std::string("hello world\n"),
          std::string(64, '\0'), std::string("TARVIK WORLD\n"), std::string("\x89TVK")}) {
        const auto r = tryLoad(foreign);
        EXPECT_FALSE(r.ok);
        EXPECT_NE(r.message.find("not a Tarvik world file"), std::string::npos) << r.message;
    }
    const auto r = tryLoad("");
    EXPECT_FALSE(r.ok);
    EXPECT_NE(r.message.find("empty"), std::string::npos);
}

TEST_F(WorldDamage, FilesThatCannotBeReadAreRefusedWithTheirPath) {
    auto r = engine::loadWorld(target, dir.file("nothing here.STATE"));
    EXPECT_FALSE(r.ok);
    EXPECT_NE(r.message.find("nothing here.STATE"), std::string::npos);
    EXPECT_NE(r.message.find("cannot be opened"), std::string::npos) << r.message;
    fs::create_directory(dir.file("folder.STATE"));
    r = engine::loadWorld(target, dir.file("folder.STATE"));
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(describe(target), before);
    r = engine::addWorld(target, dir.file("nothing.STATE"), {}, {}, "NextModel");
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(r.group, 0u);
    EXPECT_EQ(describe(target), before);
}

// ---- text worlds with valid checks but impossible content ------------------------------

// Recomputes every section's check, as a hand edit with a careful tool would.
std::string resum(const std::string& t) {
    std::vector<std::string> lines;
    std::istringstream in(t);
    for (std::string l; std::getline(in, l);) lines.push_back(l);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (lines[i].rfind("section ", 0) != 0) continue;
        std::istringstream head(lines[i]);
        std::string word, name;
        std::size_t count = 0;
        head >> word >> name >> count;
        std::uint32_t crc = 0;
        for (std::size_t k = 1; k <= count; ++k) {
            crc = engine::world::crc32c(crc, lines[i + k].data(), lines[i + k].size());
            crc = engine::world::crc32c(crc, "\n", 1);
        }
        char hex[9];
        std::snprintf(hex, sizeof hex, "%08x", crc);
        lines[i] = "section " + name + " " + std::to_string(count) + " " + hex;
    }
    std::string out;
    for (const auto& l : lines) out += l + "\n";
    return out;
}

std::string replaced(std::string t, const std::string& from, const std::string& to) {
    const auto at = t.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    if (at != std::string::npos) t.replace(at, from.size(), to);
    return resum(t);
}

TEST_F(WorldDamage, ResummedTextStillLoads) {
    // The helper itself: an unchanged text re-checked reads as before.
    const auto r = tryLoad(resum(text));
    ASSERT_TRUE(r.ok) << r.message;
    EXPECT_EQ(describe(target), sourceDescription);
}

TEST_F(WorldDamage, ContentThatCannotBeIsRefusedEvenWithValidChecks) {
    const std::pair<std::string, std::string> edits[] = {
        {"group 1 name 5 father 5", "group 1 name 5 father 1"},     // its own father
        {"group 5 name 8 father 0", "group 5 name 8 father 1"},     // a loop of two
        {"group 2 name 6 father 0", "group 2 name 6 father 9"},     // no such group
        {"group 1 name 5", "group 1 name 99"},                      // no such name
        {"point 0 0 0\n", "point nan 0 0\n"},                       // not a number
        {"point 0 0 0\n", "point 1e999 0 0\n"},                     // out of range
        {"polygon 1 name 1 group 2", "polygon 1 name 1 group 77"},  // no such group
        {"brightness 100 points 3", "brightness 100 points 2"},     // too few points
        {"colour 255 0 16", "colour 256 0 16"},                     // not a channel
        {"extra bitmap 0", "extra bitmap 5"},                       // no such bitmap
        {"entity 3", "entity 42"},                                  // light of no group
        {"order 1 polygons 2 5 4", "order 1 polygons 2 5 5"},       // a member twice
        {"order 1 polygons 2 5 4", "order 1 polygons 2 5 0"},       // not a member
        {"zoom 1 near", "zoom 0 near"},                             // no usable camera
        {"\"\"\n\"PR_Tri", "\"x\"\n\"PR_Tri"},                      // names start empty
        {"point 10 10 5 uv", "point 10 10 5 alpha 256 uv"},         // alpha out of range
        {"patch colour 9 8 7 type -4 points 3 1 1 -1 1 2 -1 2 2 -1",
         "patch colour 9 8 7 type -4 points 2 1 1 -1 1 2 -1"},  // a patch of two points
    };
    for (const auto& [from, to] : edits) {
        const std::string bad = replaced(text, from, to);
        const auto r = tryLoad(bad);
        EXPECT_FALSE(r.ok) << to;
        EXPECT_NE(r.message.find("damaged"), std::string::npos) << to << ": " << r.message;
    }
}

TEST_F(WorldDamage, TheMessageNamesTheLineOfABadTextLine) {
    const auto r = tryLoad(replaced(text, "background 12 34 56", "background 12 34"));
    EXPECT_FALSE(r.ok);
    EXPECT_NE(r.message.find("line 3 (background)"), std::string::npos) << r.message;
}

}  // namespace

namespace {

// Files this large read their coordinates on a second thread: damage found
// there must stop both threads and leave the scene alone.
TEST(WorldDamageLarge, ALargeDamagedFileIsRefusedWhileItIsRead) {
    testsupport::TempDir dir;
    Engine big;
    big.engine_load_world("", "", "", 4);
    const Handle g = big.group_create("Surface");
    for (int i = 0; i < 250000; ++i)
        polygon(big, {{double(i), 0, 0}, {double(i), 1, 0}, {double(i) + 1, 1, 0}}, g, "cell");
    const fs::path file = dir.file("big.STATE");
    ASSERT_TRUE(engine::saveWorld(big, file).ok);
    const std::string good = readAll(file);
    ASSERT_GT(good.size(), std::size_t(16) << 20);

    Engine target;
    target.engine_load_world("", "", "", 4);
    polygon(target, {{0, 0, 0}, {0, 1, 0}, {1, 1, 0}}, 0, "keep me");
    const std::string before = describe(target);

    for (std::size_t at : {good.size() / 3, good.size() - 100}) {
        std::string bad = good;
        bad[at] ^= 0x04;
        writeAll(file, bad);
        const auto r = engine::loadWorld(target, file);
        EXPECT_FALSE(r.ok) << at;
        EXPECT_NE(r.message.find("PNTS fails its check"), std::string::npos) << r.message;
        EXPECT_EQ(describe(target), before);
    }
    writeAll(file, good.substr(0, good.size() * 3 / 4));
    const auto cut = engine::loadWorld(target, file);
    EXPECT_FALSE(cut.ok);
    EXPECT_EQ(describe(target), before);

    writeAll(file, good);
    const auto r = engine::loadWorld(target, file);
    ASSERT_TRUE(r.ok) << r.message;
    EXPECT_EQ(target.polygon_count(), 250000u);
}

}  // namespace
