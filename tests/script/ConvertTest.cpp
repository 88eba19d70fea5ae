// tarvik-cli convert as a user runs it: worlds and reader files in, worlds and
// exports out, the format by extension or by --to, and the exit statuses.

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "support/TestSupport.h"

namespace {

struct CliRun {
    int rc = -1;
    std::string out, err;
};

class Convert : public ::testing::Test {
protected:
    CliRun cli(const std::string& args) {
        // Run inside the test folder, so that anything left in the working folder shows.
        const std::string cmd = "cd \"" + dir.path.string() + "\" && \"" + TARVIK_CLI + "\" " +
                                args + " > \"" + dir.file("stdout").string() + "\" 2> \"" +
                                dir.file("stderr").string() + "\"";
        const int status = std::system(cmd.c_str());
        CliRun r;
        r.rc = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        r.out = testsupport::readFile(dir.file("stdout"));
        r.err = testsupport::readFile(dir.file("stderr"));
        return r;
    }
    std::string path(const std::string& name) const {
        return "\"" + dir.file(name).string() + "\"";
    }

    // A world of two triangles written by a script; returns its quoted path.
    std::string world(const std::string& name) {
        testsupport::writeFile(dir.file("make.tvs"),
                               "polygon --name first 0,0,0 0,10,0 10,10,0\n"
                               "polygon --name second 0,0,20 0,30,20 30,30,20 30,0,20\n"
                               "save " +
                                   name + "\n");
        const CliRun r = cli("run " + path("make.tvs"));
        EXPECT_EQ(r.rc, 0) << r.err;
        return path(name);
    }
    std::string text(const std::string& name) const {
        return std::filesystem::exists(dir.file(name)) ? testsupport::readFile(dir.file(name))
                                                       : std::string("<missing>");
    }

    testsupport::TempDir dir;
};

TEST_F(Convert, WorldToPointListsChosenByExtensionOrByTo) {
    const std::string in = world("w.wld");
    CliRun r = cli("convert " + in + " " + path("out.pnt"));
    ASSERT_EQ(r.rc, 0) << r.err;
    EXPECT_EQ(text("out.pnt"),
              "0\t0\t0\t3\t10\r\n0\t1\t0\t2\t10\r\n1\t1\t0\t2\t10\r\n"
              "0\t0\t0\t2\t10\r\n"  // the first polygon closed ahead of the second
              "0\t0\t2\t3\t10\r\n0\t3\t2\t2\t10\r\n3\t3\t2\t2\t10\r\n3\t0\t2\t2\t10\r\n"
              "0\t0\t2\t2\t10\r\n");
    r = cli("convert " + in + " " + path("out.txt") + " --to points3");
    ASSERT_EQ(r.rc, 0) << r.err;
    EXPECT_EQ(text("out.txt"),
              "0\t0\t0\t3\t10\r\n0\t1\t0\t2\t10\r\n1\t1\t0\t2\t10\r\n"
              "0\t0\t2\t3\t10\r\n0\t3\t2\t2\t10\r\n3\t3\t2\t2\t10\r\n");
    r = cli("convert " + in + " " + path("data.txt") + " --to POLY-DATA");
    ASSERT_EQ(r.rc, 0) << r.err;
    EXPECT_EQ(text("data.txt"), "\tfirst\r\n\tsecond\r\n");
    EXPECT_FALSE(std::filesystem::exists(dir.file("Tarvik_temp.txt")));
}

TEST_F(Convert, WorldFormatsRoundTrip) {
    const std::string in = world("w.STATE");
    ASSERT_EQ(cli("convert " + in + " " + path("a.wld")).rc, 0);
    ASSERT_EQ(cli("convert " + path("a.wld") + " " + path("b.bin") + " --to state").rc, 0);
    // A binary world whatever its name says, read back by its contents.
    ASSERT_EQ(cli("convert " + path("b.bin") + " " + path("c.wld")).rc, 0);
    EXPECT_NE(text("a.wld"), "<missing>");
    ASSERT_EQ(cli("convert " + path("c.wld") + " " + path("c.txt") + " --to poly-centres").rc, 0);
    // Centres (10/3, 20/3, 0) and (15, 15, 20) in scene units.
    EXPECT_EQ(text("c.txt"), "0.33333333333333337\t0.6666666666666667\t0\r\n1.5\t1.5\t2\r\n");
}

TEST_F(Convert, ReaderFilesGoThroughTheImportEntry) {
    testsupport::writeFile(dir.file("sq.asc"), "0 0 0 9 3\n1 0 0 9 3\n1 1 0 9 3\n0 1 0 9 3\n");
    CliRun r = cli("convert " + path("sq.asc") + " " + path("sq.dxf") + " --to dxf");
    ASSERT_EQ(r.rc, 0) << r.err;
    // Four faces of the two-sided square, each a triangle with its third corner again.
    const std::string t = text("sq.dxf");
    std::size_t faces = 0;
    for (auto at = t.find("3DFACE"); at != std::string::npos; at = t.find("3DFACE", at + 1))
        ++faces;
    EXPECT_EQ(faces, 4u);
    EXPECT_EQ(t.rfind("  0\r\nSECTION\r\n  2\r\nENTITIES\r\n  0\r\n3DFACE\r\n", 0), 0u);

    // The same file under a name the extension table does not know needs --import.
    testsupport::writeFile(dir.file("sq.xyz"), testsupport::readFile(dir.file("sq.asc")));
    r = cli("convert " + path("sq.xyz") + " " + path("sq2.pnt"));
    EXPECT_EQ(r.rc, 1);
    EXPECT_NE(r.err.find("--import"), std::string::npos) << r.err;
    r = cli("convert " + path("sq.xyz") + " " + path("sq2.pnt") + " --import mnuOpenMap3DWireASC");
    ASSERT_EQ(r.rc, 0) << r.err;
    const std::string pnt = text("sq2.pnt");
    EXPECT_EQ(std::count(pnt.begin(), pnt.end(), '\n'), 16);
}

TEST_F(Convert, OffsetExportsTakeTheDepthOption) {
    const std::string in = world("w.wld");
    ASSERT_EQ(cli("convert " + in + " " + path("o.txt") + " --to poly-offset --depth 1").rc, 0);
    // The first triangle faces up, the square too: 10 scene units up.
    EXPECT_EQ(text("o.txt"), "0.33333333333333337\t0.6666666666666667\t1\r\n1.5\t1.5\t3\r\n");
}

TEST_F(Convert, UsageErrorsAndFailures) {
    const std::string in = world("w.wld");
    EXPECT_EQ(cli("convert").rc, 2);
    EXPECT_EQ(cli("convert " + in).rc, 2);
    CliRun r = cli("convert " + in + " " + path("x.unknown"));
    EXPECT_EQ(r.rc, 2);
    EXPECT_NE(r.err.find("--to"), std::string::npos) << r.err;
    EXPECT_EQ(cli("convert " + in + " " + path("x.txt") + " --to nonsense").rc, 2);
    EXPECT_EQ(cli("convert " + in + " " + path("x.txt") + " --bogus").rc, 2);
    EXPECT_EQ(cli("convert " + in + " " + path("x.txt") + " --to dxf --answer-msgbox maybe").rc, 2);
    r = cli("convert " + path("absent.wld") + " " + path("x.dxf"));
    EXPECT_EQ(r.rc, 1);
    EXPECT_EQ(text("x.dxf"), "<missing>");
    // An output that cannot be written.
    r = cli("convert " + in + " " + path("no/such/folder/x.dxf"));
    EXPECT_EQ(r.rc, 1);
    EXPECT_NE(r.err.find("was not written"), std::string::npos) << r.err;
    r = cli("convert --help");
    EXPECT_EQ(r.rc, 0);
    EXPECT_NE(r.out.find("standard-dxf"), std::string::npos);
}

}  // namespace
