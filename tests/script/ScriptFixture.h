#pragma once
// Runs a script text through a fresh session and keeps what came out.

#include <gtest/gtest.h>

#include <functional>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "cli/script/ScriptSession.h"
#include "core/AppContext.h"
#include "support/TestSupport.h"
#include "ui/ScriptedUi.h"

namespace scripttest {

struct ScriptResult {
    int rc = -1;
    std::string err;
    std::vector<nlohmann::json> lines;  // the transcript
    // The records of one kind, in order.
    std::vector<nlohmann::json> of(const std::string& kind) const {
        std::vector<nlohmann::json> out;
        for (const auto& l : lines)
            if (l.value("kind", "") == kind) out.push_back(l);
        return out;
    }
};

class ScriptTest : public ::testing::Test {
protected:
    // Runs `text` as "script.tvs" in a temp folder; `setup` adds test forms,
    // commands and procedures before the start-up.
    ScriptResult runScript(const std::string& text,
                           const std::function<void(core::AppContext&)>& setup = {}) {
        transcript.str("");
        transcript.clear();
        session = std::make_unique<script::ScriptSession>(&transcript);
        ScriptResult r;
        std::ostringstream err;
        r.rc = session->start(err, setup);
        if (r.rc == 0) {
            testsupport::writeFile(dir.file("script.tvs"), text);
            r.rc = session->runFile(dir.file("script.tvs"), err);
        }
        r.err = err.str();
        std::istringstream in(transcript.str());
        for (std::string l; std::getline(in, l);) r.lines.push_back(nlohmann::json::parse(l));
        return r;
    }
    core::AppContext& ctx() { return session->context(); }

    testsupport::TempDir dir;
    std::ostringstream transcript;
    std::unique_ptr<script::ScriptSession> session;
};

}  // namespace scripttest
