// Bitmaps travel by reference: the path, or a copy in "Bitmaps" beside the world.

#include <gtest/gtest.h>

#include "WorldTestUtil.h"
#include "engine/WorldFormat.h"
#include "support/TestSupport.h"

namespace {

using namespace worldtest;
namespace fs = std::filesystem;

class WorldBitmaps : public ::testing::Test {
protected:
    // Two squares with bitmaps of the same file name from two folders.
    void SetUp() override {
        fs::create_directories(dir.file("a"));
        fs::create_directories(dir.file("b"));
        writeBmp(dir.file("a") / "rock.bmp", 4, 2, {255, 0, 0});
        writeBmp(dir.file("b") / "rock.bmp", 3, 3, {0, 0, 255});
        e.engine_load_world("", "", "", 4);
        for (const char* folder : {"a", "b"}) {
            const Handle p = polygon(e, {{0, 0, 0}, {0, 1, 0}, {1, 1, 0}, {1, 0, 0}}, 0, folder);
            e.polygon_set_bitmap_fill(p, e.bitmap_load((dir.file(folder) / "rock.bmp").string()));
        }
    }
    std::vector<int> widths(const Engine& x) const {
        std::vector<int> w;
        for (Handle p = x.polygon_get_first_polygon(); p; p = x.polygon_get_next(p))
            w.push_back(x.bitmap_get_width(x.polygon_get_bitmap(p)));
        return w;
    }

    testsupport::TempDir dir;
    Engine e;
};

TEST_F(WorldBitmaps, WithoutCopiesTheReferenceIsThePath) {
    const fs::path world = dir.file("w.wld");
    ASSERT_TRUE(engine::saveWorld(e, world).ok);
    const std::string text = readAll(world);
    EXPECT_NE(text.find("bitmap 1 \"" + (dir.file("a") / "rock.bmp").string() + "\""),
              std::string::npos);
    EXPECT_FALSE(fs::exists(dir.file("Bitmaps")));
    Engine copy;
    ASSERT_TRUE(engine::loadWorld(copy, world).ok);
    EXPECT_EQ(widths(copy), (std::vector<int>{4, 3}));
}

TEST_F(WorldBitmaps, CopiesGoBesideTheWorldAndTravelWithIt) {
    fs::create_directories(dir.file("out"));
    const fs::path world = dir.file("out") / "w.wld";
    engine::WorldSaveOptions opt;
    opt.bitmaps = true;
    const auto saved = engine::saveWorld(e, world, opt);
    ASSERT_TRUE(saved.ok) << saved.message;
    EXPECT_TRUE(saved.notes.empty());
    // Same file names from two folders do not overwrite each other.
    EXPECT_EQ(fs::file_size(dir.file("out") / "Bitmaps" / "rock.bmp"),
              fs::file_size(dir.file("a") / "rock.bmp"));
    EXPECT_EQ(fs::file_size(dir.file("out") / "Bitmaps" / "rock_2.bmp"),
              fs::file_size(dir.file("b") / "rock.bmp"));
    const std::string text = readAll(world);
    EXPECT_NE(text.find("bitmap 1 \"Bitmaps/rock.bmp\""), std::string::npos);
    EXPECT_NE(text.find("bitmap 2 \"Bitmaps/rock_2.bmp\""), std::string::npos);

    // The world and its folder moved elsewhere, the originals gone: still found.
    fs::rename(dir.file("out"), dir.file("moved"));
    fs::remove_all(dir.file("a"));
    fs::remove_all(dir.file("b"));
    Engine copy;
    const auto r = engine::loadWorld(copy, dir.file("moved") / "w.wld");
    ASSERT_TRUE(r.ok) << r.message;
    EXPECT_TRUE(r.notes.empty());
    EXPECT_EQ(widths(copy), (std::vector<int>{4, 3}));
    // Saving again with copies gives the same file.
    ASSERT_TRUE(engine::saveWorld(copy, dir.file("moved") / "again.wld", opt).ok);
    EXPECT_EQ(readAll(dir.file("moved") / "again.wld"), text);
}

TEST_F(WorldBitmaps, AMissingBitmapIsNotedAndItsReferenceKept) {
    const fs::path world = dir.file("w.STATE");
    ASSERT_TRUE(engine::saveWorld(e, world).ok);
    fs::remove(dir.file("a") / "rock.bmp");
    Engine copy;
    const auto r = engine::loadWorld(copy, world);
    ASSERT_TRUE(r.ok) << r.message;
    ASSERT_EQ(r.notes.size(), 1u);
    EXPECT_NE(r.notes[0].find("Bitmap not found"), std::string::npos);
    EXPECT_NE(r.notes[0].find("rock.bmp"), std::string::npos);
    EXPECT_EQ(widths(copy), (std::vector<int>{0, 3}));
    ASSERT_TRUE(engine::saveWorld(copy, dir.file("again.STATE")).ok);
    EXPECT_EQ(readAll(dir.file("again.STATE")), readAll(world));
}

TEST_F(WorldBitmaps, TheBitmapFolderIsSearchedByFileName) {
    const fs::path world = dir.file("w.STATE");
    ASSERT_TRUE(engine::saveWorld(e, world).ok);
    fs::create_directories(dir.file("textures"));
    fs::rename(dir.file("a") / "rock.bmp", dir.file("textures") / "rock.bmp");
    Engine copy;
    const auto r = engine::loadWorld(copy, world, dir.file("textures"));
    ASSERT_TRUE(r.ok);
    EXPECT_TRUE(r.notes.empty());
    EXPECT_EQ(widths(copy), (std::vector<int>{4, 3}));
}

}  // namespace
