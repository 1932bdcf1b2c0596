#include "CorvaneShared/DisplayLocale.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace corvane {
namespace {

using Environment = std::map<std::string, std::string>;

SharedSettings::EnvironmentLookup lookupIn(const Environment& environment) {
    return [&environment](const char* name) -> const char* {
        auto found = environment.find(name);
        return found == environment.end() ? nullptr : found->second.c_str();
    };
}

TEST(DisplayLocale, EachDecisionFollowsItsOwnLocaleCategory) {
    struct Row {
        const char* name;
        Environment environment;
        std::string region;
        bool usesUSSystem;
    };
    const std::vector<Row> rows = {
        {"LANG only", {{"LANG", "en_US.UTF-8"}}, "US", true},
        {"categories split",
         {{"LANG", "de_DE.UTF-8"}, {"LC_MEASUREMENT", "en_US.UTF-8"}, {"LC_NUMERIC", "fr_CH"}},
         "CH",
         true},
        {"LC_ALL overrides", {{"LC_ALL", "ja_JP.UTF-8"}, {"LC_NUMERIC", "en_US"}}, "JP", false},
        {"empty counts as unset",
         {{"LC_ALL", ""}, {"LC_NUMERIC", ""}, {"LANG", "de_DE"}},
         "DE",
         false},
        {"modifier", {{"LANG", "sr_RS@latin"}}, "RS", false},
        {"British system is not the US one", {{"LANG", "en_GB.UTF-8"}}, "GB", false},
        {"bare language takes its likely territory", {{"LANG", "en"}}, "", true},
        {"C locale", {{"LANG", "C.UTF-8"}}, "", false},
        {"nothing set", {}, "", false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        auto environment = lookupIn(row.environment);
        EXPECT_EQ(DisplayLocale::userRegion(environment), row.region);
        EXPECT_EQ(DisplayLocale::usesUSMeasurementSystem(environment), row.usesUSSystem);
    }
}

TEST(DisplayLocale, LanguageFromTheCodeRegionFromTheUser) {
    struct Row {
        const char* code;
        const char* region;
        const char* expected;
    };
    const std::vector<Row> rows = {
        {"de", "DE", "de-DE"},           {"en", "DE", "en-DE"}, {"pt-BR", "PT", "pt-PT"},
        {"zh_Hans", "TW", "zh-Hans-TW"}, {"ja", "", "ja"},      {"de", "not a region", "de"},
        {"!!", "US", "en-US"},           {"", "", "en"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.code);
        EXPECT_EQ(DisplayLocale::identifier(row.code, row.region), row.expected);
    }
}

}  // namespace
}  // namespace corvane
