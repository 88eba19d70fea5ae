// The end of every export: the save dialog and what a cancel, an empty name or
// a failed write leave behind.

#include <filesystem>

#include "ExportFixture.h"
#include "persistence/ExportSave.h"

namespace {

using engine::Point3;
using exporttest::ExportTest;
namespace fs = std::filesystem;

TEST_F(ExportTest, CancelledSaveLeavesTheTemporaryFileAndTheWorldMovedBack) {
    const auto p = triangleAt(ctx.engine.group_create("G"), 10, 0, 0);
    ctx.state.dblCoordOffset = {10, 0, 0};
    ui.answerSave(std::nullopt);
    run("mnuExportMap3DWireframes3");
    EXPECT_EQ(testsupport::readFile(tempFile()),
              "0\t0\t0\t3\t10\r\n0\t1\t0\t2\t10\r\n1\t1\t0\t2\t10\r\n");
    EXPECT_TRUE(records("msgbox").empty());
    Point3 first;
    ctx.engine.point_get_xyz(ctx.engine.polygon_get_first_point(p), first);
    EXPECT_EQ(first, (Point3{10, 0, 0}));
}

TEST_F(ExportTest, EmptyFileNameIsRefusedWithItsBox) {
    triangleAt(ctx.engine.group_create("G"), 0, 0, 0);
    ui.answerSave(std::string());
    run("mnuExportDXFWireframes");
    auto boxes = records("msgbox");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0]["text"], "No file saved as the filename was a Null-value");
    EXPECT_EQ(boxes[0]["title"], "Null-value for filename");
}

TEST_F(ExportTest, FailedSaveLeavesThePreviousFile) {
    triangleAt(ctx.engine.group_create("G"), 0, 0, 0);
    const fs::path target = dir.file("old.pnt");
    testsupport::writeFile(target, "previous contents\r\n");
    // Something in the way of the new file: a folder where it would be written.
    fs::path blocker = target;
    blocker += ".tarvik-part";
    fs::create_directories(blocker / "inside");
    ui.answerSave(target.string());
    run("mnuExportMap3DWireframes4");
    EXPECT_EQ(testsupport::readFile(target), "previous contents\r\n");
    auto boxes = records("msgbox");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0]["text"], "The file could not be saved");
    EXPECT_EQ(boxes[0]["title"], "Error copying file");

    // The same for a text handed over whole.
    ui.answerSave(target.string());
    EXPECT_FALSE(persistence::P_subSaveText(ctx, "Seismic Data", "new\r\n"));
    EXPECT_EQ(testsupport::readFile(target), "previous contents\r\n");
}

TEST_F(ExportTest, SavedFileReplacesThePreviousOneWhole) {
    const fs::path target = dir.file("list.txt");
    testsupport::writeFile(target, std::string(1000, 'x'));
    ui.answerSave(target.string());
    EXPECT_TRUE(persistence::P_subSaveText(ctx, "Seismic Data", "a\r\nb\r\n"));
    EXPECT_EQ(testsupport::readFile(target), "a\r\nb\r\n");
    auto saves = records("save");
    ASSERT_EQ(saves.size(), 1u);
    EXPECT_EQ(saves[0]["filetype"], "Seismic Data");
}

TEST_F(ExportTest, ScriptsCallTheExportProcedures) {
    triangleAt(ctx.engine.group_create("G"), 0, 0, 0);
    const core::Procedure* p = ctx.procedures.find("P_subExportPNT");
    ASSERT_NE(p, nullptr);
    std::vector<core::Value> args{core::Value("Points3")};
    ui.answerSave(dir.file("called.pnt").string());
    p->body(ctx, args);
    EXPECT_EQ(testsupport::readFile(dir.file("called.pnt")),
              "0\t0\t0\t3\t10\r\n0\t1\t0\t2\t10\r\n1\t1\t0\t2\t10\r\n");
    for (const char* name : {"P_subExportDXF", "P_subExportTubes", "P_subExportDatamineStrings",
                             "P_subExportSeisInfo", "P_subExportCentres", "P_subExportPolyData",
                             "P_subSaveText", "p_subFileCopy", "P_fncGroupAllVisible"})
        EXPECT_NE(ctx.procedures.find(name), nullptr) << name;
    for (const char* name :
         {"mnuExportDXFWireframes", "mnuExportStandardDXF", "mnuExportMap3DWireframes4",
          "mnuExportMap3DWireframes3", "mnuExportDatamineStrings", "mnuExportMap3DStrings",
          "mnuExportVentSimStrings", "mnuExportSeisInfo", "mnuExportCentreAndData",
          "mnuExportEntityCentreAndData", "mnuExportEntityDoubleCentres",
          "mnuExportGroupCentreAndData", "mnuExportPolyData"}) {
        const core::Command* c = ctx.commands.find(name);
        ASSERT_NE(c, nullptr) << name;
        EXPECT_FALSE(c->caption.empty()) << name;
        EXPECT_EQ(c->menuPath, "File/Export") << name;
    }
}

}  // namespace
