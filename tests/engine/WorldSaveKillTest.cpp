// A save killed half-way never costs the previous file.

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "WorldTestUtil.h"
#include "engine/WorldFormat.h"
#include "support/TestSupport.h"

namespace {

using namespace worldtest;
namespace fs = std::filesystem;

void fill(Engine& e, int triangles, double z) {
    e.engine_load_world("", "", "", 4);
    const Handle g = e.group_create("Surface");
    for (int i = 0; i < triangles; ++i)
        polygon(e, {{double(i), 0, z}, {double(i), 1, z}, {double(i) + 1, 1, z}}, g, "cell");
}

TEST(WorldSaveKill, AChildKilledWhileSavingLeavesTheOldFileLoadable) {
    testsupport::TempDir dir;
    const fs::path world = dir.file("mine.STATE");
    Engine oldScene, newScene;
    fill(oldScene, 1000, 1);
    // Large enough that a save takes a while: the kill lands in the middle.
    fill(newScene, 400000, 2);
    ASSERT_TRUE(engine::saveWorld(oldScene, world).ok);
    const std::string oldBytes = readAll(world);

    int sawOld = 0, sawNew = 0;
    for (int delayMs : {0, 1, 3, 7, 15, 30, 60, 120}) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            // Saves over and over until killed.
            for (;;) engine::saveWorld(newScene, world);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(delayMs));
        ASSERT_EQ(kill(child, SIGKILL), 0);
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status));

        Engine copy;
        const auto r = engine::loadWorld(copy, world);
        ASSERT_TRUE(r.ok) << "after " << delayMs << " ms: " << r.message;
        const std::size_t n = copy.polygon_count();
        ASSERT_TRUE(n == 1000 || n == 400000) << n;
        (n == 1000 ? sawOld : sawNew) += 1;
        // Put the old world back for the next round.
        ASSERT_TRUE(engine::saveWorld(oldScene, world).ok);
        ASSERT_EQ(readAll(world), oldBytes);
    }
    // The temporary files of killed saves are hidden beside the world; the world
    // itself is always one of the two whole files.
    for (const auto& entry : fs::directory_iterator(dir.path)) {
        const std::string name = entry.path().filename().string();
        EXPECT_TRUE(name == "mine.STATE" || name.rfind(".mine.STATE.", 0) == 0) << name;
    }
    EXPECT_GT(sawOld, 0);
}

TEST(WorldSaveKill, AFailedSaveLeavesTheOldFileAndNoTemporaryFile) {
    testsupport::TempDir dir;
    const fs::path world = dir.file("mine.STATE");
    Engine scene;
    fill(scene, 10, 1);
    ASSERT_TRUE(engine::saveWorld(scene, world).ok);
    const std::string before = readAll(world);
    // A folder in the way of the rename: the save fails, the folder's file stays.
    const fs::path blocked = dir.file("blocked.STATE");
    fs::create_directories(blocked / "inside");
    const auto r = engine::saveWorld(scene, blocked);
    EXPECT_FALSE(r.ok);
    EXPECT_NE(r.message.find("cannot be written"), std::string::npos) << r.message;
    EXPECT_TRUE(fs::is_directory(blocked / "inside"));
    // A folder that does not exist.
    EXPECT_FALSE(engine::saveWorld(scene, dir.file("no/such/folder.STATE")).ok);
    int files = 0;
    for (const auto& entry : fs::directory_iterator(dir.path)) {
        (void)entry;
        ++files;
    }
    EXPECT_EQ(files, 2);  // mine.STATE and the folder
    EXPECT_EQ(readAll(world), before);
}

}  // namespace
