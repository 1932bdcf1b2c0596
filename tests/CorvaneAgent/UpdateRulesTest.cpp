#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "CorvaneAgent/BundleVersion.h"
#include "CorvaneAgent/UpdateController.h"
#include "CorvaneAgent/UpdatePolicy.h"
#include "CorvaneShared/UpdateOffer.h"

namespace corvane {
namespace {

namespace fs = std::filesystem;

TEST(UpdateOffer, NameShowsTheBuildOnlyWhenItDiffersFromTheVersion) {
    EXPECT_EQ(UpdateOffer::name("2.1", "57"), "2.1 (57)");
    EXPECT_EQ(UpdateOffer::name("57", "57"), "57");
    EXPECT_EQ(UpdateOffer::name("?", "?"), "?");
}

TEST(UpdateOffer, BuildNumberIsTheNumberInTheLastBrackets) {
    struct Row {
        const char* text;
        std::optional<std::int64_t> build;
    };
    const std::vector<Row> rows = {
        {"2.1 (57)", 57},
        {"2.1", std::nullopt},
        {"2.1 ( 57 )", 57},
        {"2.1 (x)", std::nullopt},
        {"2.1 (57", std::nullopt},
        {"2.1 57)", std::nullopt},
        {"2.1 )57(", std::nullopt},
        {"2.1 (beta) (60)", 60},
        {"2.1 (5 7)", std::nullopt},
        {"2.1 ()", std::nullopt},
        {"2.1 (-3)", -3},
        {"2.1 (99999999999999999999)", std::nullopt},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(UpdateOffer::buildNumber(row.text), row.build);
    }
}

TEST(UpdatePolicy, EnvironmentTurnsUpdatesOffOnlyWithExactValues) {
    using Environment = std::map<std::string, std::string>;
    struct Row {
        const char* name;
        Environment environment;
        const char* key;
        bool disabled;
    };
    const std::vector<Row> rows = {
        {"empty environment, key", {}, "KEY", false},
        {"empty environment, no key", {}, "", true},
        {"disable set to 0", {{"CORVANE_DISABLE_UPDATER", "0"}}, "KEY", false},
        {"disable set to 1", {{"CORVANE_DISABLE_UPDATER", "1"}}, "KEY", true},
        {"disable set to true", {{"CORVANE_DISABLE_UPDATER", "true"}}, "KEY", false},
        {"ui testing 1", {{"CORVANE_UI_TESTING", "1"}}, "KEY", true},
        {"ui testing yes", {{"CORVANE_UI_TESTING", "yes"}}, "KEY", false},
        {"unit-test host, empty value", {{"XCTestConfigurationFilePath", ""}}, "KEY", true},
        {"unrelated variable", {{"CORVANE_LANGUAGE", "1"}}, "KEY", false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(UpdatePolicy::isDisabled(row.environment, row.key), row.disabled);
    }
}

TEST(UpdateController, HostBundleIsTheFourthAncestorWhenItIsAnApp) {
    struct Row {
        const char* agentBundle;
        std::optional<fs::path> host;
    };
    const std::vector<Row> rows = {
        {"/opt/Corvane.app/Contents/Library/LoginItems/CorvaneAgent.app", "/opt/Corvane.app"},
        {"/opt/Corvane.app/Contents/Library/LoginItems/CorvaneAgent.app/", "/opt/Corvane.app"},
        {"/home/me/corvane/build/a/b/c", std::nullopt},
        {"/home/me/Downloads/x/y/z/CorvaneAgent.app", std::nullopt},
        {"/usr", std::nullopt},
        // The rule looks at the path alone: a folder that does not exist still answers.
        {"/nowhere/Other.app/1/2/3/4", "/nowhere/Other.app"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.agentBundle);
        EXPECT_EQ(UpdateController::hostBundleURL(row.agentBundle), row.host);
    }
}

TEST(BundleVersion, MissingVersionOrBuildReadsAsQuestionMark) {
    BundleInfo info{.identifier = "a.b", .version = "2.1", .build = "57"};
    EXPECT_EQ(BundleVersion::text(info), "2.1 (57)");
    info.build.reset();
    EXPECT_EQ(BundleVersion::text(info), "2.1 (?)");
    EXPECT_EQ(BundleVersion::text(std::nullopt), "?");
}

}  // namespace
}  // namespace corvane
