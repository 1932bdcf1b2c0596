#include "tools/corvanectl/CtlAutostart.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "tests/CorvaneShared/FileTestSupport.h"

namespace corvane {
namespace {

namespace fs = std::filesystem;
using Action = CtlCommand::AutostartAction;

struct Outcome {
    int status;
    std::string out;
    std::string errors;
};

Outcome run(Action action, const AutostartPlace& place) {
    std::ostringstream out;
    std::ostringstream errors;
    const int status = runAutostartCommand(
        CtlCommand{.verb = CtlCommand::Verb::autostart, .autostart = action}, place, out, errors);
    return {status, out.str(), errors.str()};
}

AutostartPlace placeIn(const fs::path& config, const char* suppress = nullptr) {
    return {
        .entryFile = config / "autostart" / "io.corvane.Corvane.Agent.desktop",
        .agent = fs::path("/opt/corvane/bin/corvane-agent"),
        .environment = [suppress](const char* name) -> const char* {
            return std::string_view(name) == "CORVANE_NO_LOGIN_ITEM" ? suppress : nullptr;
        },
        .arguments = {},
        .places = {.environment = nullptr,
                   .mountOf = [](const fs::path&) -> std::optional<LoginItemPolicy::MountFacts> {
                       return LoginItemPolicy::MountFacts{.device = 1, .readOnly = false};
                   }},
    };
}

TEST(CtlAutostart, OnStatusOffRoundTrip) {
    testing::TemporaryDirectory config;
    const AutostartPlace place = placeIn(config.path());
    const std::vector<std::pair<Action, Outcome>> steps = {
        {Action::status, {0, "off\n", ""}}, {Action::on, {0, "", ""}},
        {Action::status, {0, "on\n", ""}},  {Action::off, {0, "", ""}},
        {Action::status, {0, "off\n", ""}},
    };
    for (const auto& [action, expected] : steps) {
        const Outcome outcome = run(action, place);
        EXPECT_EQ(outcome.status, expected.status);
        EXPECT_EQ(outcome.out, expected.out);
        EXPECT_EQ(outcome.errors, expected.errors);
    }

    AutostartPlace moved = place;
    moved.agent = fs::path("/home/me/corvane-agent");
    ASSERT_EQ(run(Action::on, place).status, 0);
    EXPECT_EQ(run(Action::status, moved).out, "elsewhere /opt/corvane/bin/corvane-agent\n");
}

TEST(CtlAutostart, RefusesWithOneLineAndStatusOneTouchingNothing) {
    testing::TemporaryDirectory config;
    struct Row {
        const char* name;
        AutostartPlace place;
        Action action;
    };
    AutostartPlace temporary = placeIn(config.path());
    temporary.agent = fs::path("/tmp/Corvane.app/bin/corvane-agent");
    AutostartPlace missing = placeIn(config.path());
    missing.agent.reset();
    AutostartPlace noFolder = placeIn(config.path());
    noFolder.entryFile.reset();
    const Row rows[] = {
        {"suppressed on", placeIn(config.path(), "1"), Action::on},
        {"suppressed off", placeIn(config.path(), "1"), Action::off},
        {"translocated", temporary, Action::on},
        {"no agent", missing, Action::on},
        {"no folder", noFolder, Action::on},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const Outcome outcome = run(row.action, row.place);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_TRUE(outcome.errors.starts_with("corvanectl: ")) << outcome.errors;
        EXPECT_EQ(std::count(outcome.errors.begin(), outcome.errors.end(), '\n'), 1);
        EXPECT_FALSE(fs::exists(config / "autostart"));
    }
}

}  // namespace
}  // namespace corvane
