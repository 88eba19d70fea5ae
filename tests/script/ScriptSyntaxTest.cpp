// The script language itself: tokens, quotes, variables, answers and the exit
// statuses of script errors.

#include "ScriptFixture.h"
#include "cli/script/Tokenizer.h"

namespace {

using scripttest::ScriptResult;
using scripttest::ScriptTest;

std::vector<std::string> texts(const std::string& line,
                               std::map<std::string, std::string> vars = {}) {
    std::vector<std::string> out;
    auto toks = script::tokenize(line, [&](const std::string& n) -> std::optional<std::string> {
        auto it = vars.find(n);
        if (it == vars.end()) return std::nullopt;
        return it->second;
    });
    for (auto& t : toks) out.push_back(t.text);
    return out;
}

TEST(Tokenizer, BlanksQuotesAndEscapes) {
    using V = std::vector<std::string>;
    EXPECT_EQ(texts("  echo\ta   b  "), (V{"echo", "a", "b"}));
    EXPECT_EQ(texts(R"(echo "a b" "")"), (V{"echo", "a b", ""}));
    EXPECT_EQ(texts(R"("q\"u\\o\tt\re\n")"), (V{"q\"u\\o\tt\re\n"}));
    // Quotes may sit inside a token; outside quotes a backslash is itself.
    EXPECT_EQ(texts(R"(txtName="a b" C:\data\x.asc)"), (V{"txtName=a b", "C:\\data\\x.asc"}));
    EXPECT_EQ(texts(R"("\d")"), (V{"\\d"}));
    EXPECT_THROW(texts(R"(echo "open)"), script::SyntaxError);
}

TEST(Tokenizer, VariablesInAndOutOfQuotes) {
    using V = std::vector<std::string>;
    std::map<std::string, std::string> vars{{"P", "7"}, {"NAME_2", "x y"}};
    EXPECT_EQ(texts("call f $P,$P,0", vars), (V{"call", "f", "7,7,0"}));
    EXPECT_EQ(texts("\"[$NAME_2]\" $NAME_2", vars), (V{"[x y]", "x y"}));
    // A dollar sign not followed by a name stays.
    EXPECT_EQ(texts("$ 5$ $1", vars), (V{"$", "5$", "$1"}));
    EXPECT_THROW(texts("echo $Q", vars), script::SyntaxError);
    auto toks = script::tokenize("> \">\"", {});
    EXPECT_FALSE(toks[0].quoted);
    EXPECT_TRUE(toks[1].quoted);
}

TEST_F(ScriptTest, EchoCommentsBlankLinesAndCrLf) {
    ScriptResult r = runScript(
        "# a comment\r\n\r\n   \n  # indented comment\necho  hello   world \r\necho \"a\\tb\" "
        "\"\"\n");
    ASSERT_EQ(r.rc, 0) << r.err;
    auto e = r.of("echo");
    ASSERT_EQ(e.size(), 2u);
    EXPECT_EQ(e[0]["text"], "hello world");
    EXPECT_EQ(e[1]["text"], "a\tb ");
}

TEST_F(ScriptTest, UnknownCommandNamesItsLine) {
    ScriptResult r = runScript("echo one\n\nfoo bar\necho never\n");
    EXPECT_EQ(r.rc, 2);
    EXPECT_NE(r.err.find("script.tvs:3: unknown command 'foo'"), std::string::npos) << r.err;
    EXPECT_EQ(r.of("echo").size(), 1u);  // the run stops there
}

TEST_F(ScriptTest, BadArgumentsAreScriptErrors) {
    for (const char* line :
         {"window 800", "window a 600", "clock 2026-13-01 10:00:00", "clock 2026-02-29 10:00:00",
          "key F13", "key A 9", "mouse down 1 0 10", "mouse drag 1 0 1 1", "wheel 120 x 1",
          "answer msgbox Maybe", "answer input", "answer colour 1,2", "answer colour 1,2,300",
          "answer form", "echo \"open", "echo $UNSET", "run", "call", "polygon 0,0,0 1,0,0"}) {
        ScriptResult r = runScript(std::string("echo ok\n") + line + "\n");
        EXPECT_EQ(r.rc, 2) << line;
        EXPECT_NE(r.err.find("script.tvs:2:"), std::string::npos) << line << " -> " << r.err;
    }
}

// Commands that put up each kind of dialog and write what came back.
void dialogCommands(core::AppContext& ctx) {
    auto add = [&](const char* name, std::function<void(core::AppContext&)> h) {
        core::Command c;
        c.name = name;
        c.handler = std::move(h);
        ctx.commands.add(std::move(c));
    };
    add("cmdAskYesNo", [](core::AppContext& c) {
        auto a = c.ui.msgBox("Go on?", ui::Buttons::YesNo, "Question");
        c.comment(std::string("answer ") + ui::answerName(a));
    });
    add("cmdTellOK", [](core::AppContext& c) { c.ui.msgBox("Done", ui::Buttons::OK, "Info"); });
    add("cmdAskInput", [](core::AppContext& c) {
        auto a = c.ui.inputBox("Radius?", "Sphere", "10");
        c.comment(a ? "input " + *a : std::string("input cancelled"));
    });
    add("mnuOpenThing", [](core::AppContext& c) {
        ui::FileRequest req;
        req.filetype = "Thing";
        req.filter = "Thing (*.thg)|*.thg";
        auto a = c.ui.openFile(req);
        c.comment(a ? "open " + *a : std::string("open cancelled"));
    });
    add("mnuSaveThing", [](core::AppContext& c) {
        auto a = c.ui.saveFile({});
        c.comment(a ? "save " + *a : std::string("save cancelled"));
    });
    add("cmdPickColour", [](core::AppContext& c) {
        auto a = c.ui.chooseColour({0, 0, 0});
        c.comment(a ? "colour " + std::to_string(a->r) + "," + std::to_string(a->g) + "," +
                          std::to_string(a->b)
                    : std::string("colour cancelled"));
    });
}

TEST_F(ScriptTest, EveryAnswerKindIncludingCancel) {
    ScriptResult r = runScript(
        "answer msgbox yes\nrun cmdAskYesNo\nrun cmdTellOK\n"
        "answer msgbox No\nrun cmdAskYesNo\n"
        "answer input \"\"\nanswer input --cancel\nrun cmdAskInput\nrun cmdAskInput\n"
        "answer open sub/a.thg\nanswer open --cancel\nrun mnuOpenThing\nrun mnuOpenThing\n"
        "answer save \"out file.thg\"\nrun mnuSaveThing\nanswer save --cancel\nrun mnuSaveThing\n"
        "answer colour 10,20,30\nanswer colour --cancel\nrun cmdPickColour\nrun cmdPickColour\n",
        dialogCommands);
    ASSERT_EQ(r.rc, 0) << r.err;
    std::vector<std::string> comments;
    bool afterStart = false;
    for (auto& c : r.of("comment")) {
        std::string t = c["text"];
        if (t.rfind("answer ", 0) == 0) afterStart = true;
        if (afterStart) comments.push_back(t);
    }
    std::string dir = this->dir.path.string();
    std::vector<std::string> expected = {"answer Yes",
                                         "answer No",
                                         "input ",
                                         "input cancelled",
                                         "open " + dir + "/sub/a.thg",
                                         "open cancelled",
                                         "save " + dir + "/out file.thg",
                                         "save cancelled",
                                         "colour 10,20,30",
                                         "colour cancelled"};
    EXPECT_EQ(comments, expected);

    auto boxes = r.of("msgbox");
    ASSERT_EQ(boxes.size(), 3u);
    EXPECT_EQ(
        boxes[1],
        nlohmann::json::parse(
            R"({"kind":"msgbox","title":"Info","text":"Done","buttons":"OK","answer":"OK"})"));
    auto opens = r.of("open");
    ASSERT_EQ(opens.size(), 2u);
    EXPECT_EQ(opens[0]["filetype"], "Thing");
    EXPECT_EQ(opens[0]["answer"], "sub/a.thg");  // as the script wrote it
    EXPECT_TRUE(opens[1]["answer"].is_null());
    auto inputs = r.of("input");
    EXPECT_EQ(inputs[0]["answer"], "");
    EXPECT_EQ(inputs[0]["default"], "10");
    EXPECT_TRUE(inputs[1]["answer"].is_null());
    auto colours = r.of("colour");
    EXPECT_EQ(colours[0]["answer"], nlohmann::json::parse("[10,20,30]"));
}

TEST_F(ScriptTest, UnansweredQuestionStopsAtTheLineThatRaisedIt) {
    ScriptResult r = runScript("echo a\nrun cmdTellOK\nrun cmdAskYesNo\necho b\n", dialogCommands);
    EXPECT_EQ(r.rc, 2);
    EXPECT_NE(r.err.find("script.tvs:3:"), std::string::npos) << r.err;
    EXPECT_EQ(r.of("echo").size(), 1u);
}

TEST_F(ScriptTest, AnswerNeverUsedIsAScriptErrorNamingItsLine) {
    ScriptResult r =
        runScript("echo a\nanswer input 5\nanswer msgbox Yes\nrun cmdAskYesNo\n", dialogCommands);
    EXPECT_EQ(r.rc, 2);
    EXPECT_NE(r.err.find("script.tvs:2: answer input"), std::string::npos) << r.err;
    EXPECT_EQ(r.err.find("script.tvs:3:"), std::string::npos) << r.err;
}

TEST_F(ScriptTest, ErrorCaughtByAProcedureStillStopsTheScript) {
    // A routine with one error box for anything that goes wrong inside it.
    auto setup = [](core::AppContext& ctx) {
        core::Command c;
        c.name = "cmdCareful";
        c.handler = [](core::AppContext& cx) {
            try {
                cx.ui.msgBox("Sure?", ui::Buttons::YesNo, "Q");
            } catch (...) {
                try {
                    cx.ui.msgBox("Something went wrong", ui::Buttons::OK, "Error");
                } catch (...) {
                }
            }
        };
        ctx.commands.add(std::move(c));
    };
    ScriptResult r = runScript("run cmdCareful\necho after\n", setup);
    EXPECT_EQ(r.rc, 2);
    EXPECT_NE(r.err.find("script.tvs:1:"), std::string::npos) << r.err;
    EXPECT_TRUE(r.of("echo").empty());
    for (auto& m : r.of("msgbox")) EXPECT_NE(m["title"], "Error");
}

TEST_F(ScriptTest, FailureInsideACommandIsExitOne) {
    auto setup = [](core::AppContext& ctx) {
        core::Command c;
        c.name = "mnuBroken";
        c.handler = [](core::AppContext&) { throw std::runtime_error("disk on fire"); };
        ctx.commands.add(std::move(c));
    };
    ScriptResult r = runScript("echo a\nrun mnuBroken\n", setup);
    EXPECT_EQ(r.rc, 1);
    EXPECT_NE(r.err.find("script.tvs:2:"), std::string::npos);
    EXPECT_NE(r.err.find("disk on fire"), std::string::npos);
}

TEST_F(ScriptTest, WorldFilesWithoutHooksAndWithThem) {
    // a build whose world-file layer left the hooks empty
    auto noHooks = [](core::AppContext& ctx) { ctx.worldFiles = {}; };
    ScriptResult r = runScript("open world.STATE\n", noHooks);
    EXPECT_EQ(r.rc, 1);
    EXPECT_NE(r.err.find("world files are not available in this build"), std::string::npos);

    std::vector<std::string> seen;
    auto setup = [&](core::AppContext& ctx) {
        ctx.worldFiles.open = [&](core::AppContext&, const std::string& p) {
            seen.push_back("open " + p);
            return true;
        };
        ctx.worldFiles.save = [&](core::AppContext&, const std::string& p) {
            seen.push_back("save " + p);
            return p.find("bad") == std::string::npos;
        };
    };
    r = runScript("open a.STATE\nsave /x/b.WLD\nsave bad.STATE\necho no\n", setup);
    EXPECT_EQ(r.rc, 1);
    ASSERT_EQ(seen.size(), 3u);
    EXPECT_EQ(seen[0], "open " + (dir.path / "a.STATE").string());
    EXPECT_EQ(seen[1], "save /x/b.WLD");
    EXPECT_NE(r.err.find("script.tvs:3:"), std::string::npos);
}

}  // namespace
