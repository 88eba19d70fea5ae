// tarvik-cli run as a user runs it: exit statuses, error lines on standard
// error, the transcript to a file or to standard output.

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <nlohmann/json.hpp>
#include <sstream>

#include "support/TestSupport.h"

namespace {

struct CliRun {
    int rc = -1;
    std::string out, err;
};

class Cli : public ::testing::Test {
protected:
    CliRun run(const std::string& args) {
        std::string cmd = std::string("\"") + TARVIK_CLI + "\" " + args + " > \"" +
                          dir.file("stdout").string() + "\" 2> \"" + dir.file("stderr").string() +
                          "\"";
        int status = std::system(cmd.c_str());
        CliRun r;
        r.rc = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        r.out = testsupport::readFile(dir.file("stdout"));
        r.err = testsupport::readFile(dir.file("stderr"));
        return r;
    }
    std::string script(const std::string& name, const std::string& text) {
        testsupport::writeFile(dir.file(name), text);
        return "\"" + dir.file(name).string() + "\"";
    }
    static std::vector<nlohmann::json> lines(const std::string& text) {
        std::vector<nlohmann::json> out;
        std::istringstream in(text);
        for (std::string l; std::getline(in, l);) out.push_back(nlohmann::json::parse(l));
        return out;
    }
    testsupport::TempDir dir;
};

TEST_F(Cli, TranscriptToStandardOutputOrToAFile) {
    std::string s =
        script("ok.tvs", "echo \"first line\"\npolygon 0,0,0 0,1,0 1,0,0 > P\necho $P\n");
    CliRun r = run("run " + s);
    ASSERT_EQ(r.rc, 0) << r.err;
    auto all = lines(r.out);
    std::vector<nlohmann::json> echoes;
    for (auto& l : all)
        if (l["kind"] == "echo") echoes.push_back(l);
    ASSERT_EQ(echoes.size(), 2u);
    EXPECT_EQ(echoes[0]["text"], "first line");

    r = run("run " + s + " --transcript \"" + dir.file("t.jsonl").string() + "\"");
    ASSERT_EQ(r.rc, 0) << r.err;
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(lines(testsupport::readFile(dir.file("t.jsonl"))).size(), all.size());
}

TEST_F(Cli, ScriptErrorsExitTwoWithTheLine) {
    CliRun r = run("run " + script("bad.tvs", "echo a\n\n# c\nfoo 1 2\n"));
    EXPECT_EQ(r.rc, 2);
    EXPECT_NE(r.err.find("bad.tvs:4: unknown command 'foo'"), std::string::npos) << r.err;

    r = run("run " + script("unused.tvs", "answer msgbox Yes\necho a\n"));
    EXPECT_EQ(r.rc, 2);
    EXPECT_NE(r.err.find("unused.tvs:1:"), std::string::npos) << r.err;
}

TEST_F(Cli, OtherFailuresExitOne) {
    CliRun r = run("run " + script("dump.tvs", "dump no/such/folder/x.json\n"));
    EXPECT_EQ(r.rc, 1);
    EXPECT_NE(r.err.find("dump.tvs:1:"), std::string::npos) << r.err;

    r = run("run \"" + dir.file("missing.tvs").string() + "\"");
    EXPECT_EQ(r.rc, 1);
    EXPECT_FALSE(r.err.empty());
}

TEST_F(Cli, HelpAndUsage) {
    CliRun r = run("--help");
    EXPECT_EQ(r.rc, 0);
    EXPECT_NE(r.out.find("run SCRIPT [--transcript FILE]"), std::string::npos);
    r = run("");
    EXPECT_EQ(r.rc, 2);
    r = run("run");
    EXPECT_EQ(r.rc, 2);
    r = run("frobnicate");
    EXPECT_EQ(r.rc, 2);
}

}  // namespace
