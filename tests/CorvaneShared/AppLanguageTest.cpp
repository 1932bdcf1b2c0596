#include "CorvaneShared/AppLanguage.h"

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/CorvaneShared/FakeEnvironment.h"

namespace corvane {
namespace {

using Variables = std::map<std::string, std::string>;

/// An agent that ships de, fr, ja and es, with only a few German texts and an English table.
class AppLanguageTest : public ::testing::Test {
protected:
    AppLanguage language(std::vector<std::string> localizations = {"de", "fr", "ja", "es"},
                         std::optional<std::string> development = std::nullopt) {
        return AppLanguage({
            .environment = environment.lookup(),
            .setEnvironment = environment.setter(),
            .shared = shared,
            .own = own,
            .developmentLocalization = std::move(development),
            .localizations = std::move(localizations),
            .translation =
                [](std::string_view code, std::string_view key) {
                    const std::map<std::pair<std::string, std::string>, std::string> table = {
                        {{"de", "Unknown"}, "Unbekannt"},
                        {{"en", "Unknown"}, "Unknown (English table)"},
                    };
                    const auto found = table.find({std::string(code), std::string(key)});
                    return found == table.end() ? std::nullopt
                                                : std::optional<std::string>(found->second);
                },
        });
    }

    testing::FakeEnvironment environment;
    InMemorySettingsStore shared;
    InMemorySettingsStore own;
};

TEST_F(AppLanguageTest, CodeIsAShippedChoiceElseTheSystemMatchElseEnglish) {
    struct Row {
        const char* name;
        Variables variables;
        std::optional<std::string> stored;
        std::string code;
    };
    const std::vector<Row> rows = {
        {"stored choice", {{"LANG", "en_US.UTF-8"}}, "de", "de"},
        {"forced choice beats the stored one",
         {{"CORVANE_LANGUAGE", "ja"}, {"LANG", "en_US.UTF-8"}},
         "de",
         "ja"},
        {"empty forced choice beats the stored one and follows the system",
         {{"CORVANE_LANGUAGE", ""}, {"LANG", "fr_FR.UTF-8"}},
         "de",
         "fr"},
        {"unshipped choice follows the system", {{"LANG", "es_MX.UTF-8"}}, "pt", "es"},
        {"system choice", {{"LANG", "de_AT.UTF-8"}}, "system", "de"},
        {"no choice stored", {{"LANG", "ja_JP.UTF-8"}}, std::nullopt, "ja"},
        {"no shipped system language", {{"LANG", "pt_BR.UTF-8"}}, "system", "en"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        environment.variables = row.variables;
        shared.set("language", row.stored ? SettingValue(*row.stored) : SettingValue());
        EXPECT_EQ(language().code(), row.code);
    }
}

TEST_F(AppLanguageTest, ShippedStartsWithTheDevelopmentLanguageWithoutBaseOrRepeats) {
    struct Row {
        const char* name;
        std::vector<std::string> localizations;
        std::optional<std::string> development;
        std::vector<std::string> shipped;
    };
    const std::vector<Row> rows = {
        {"Base among the localisations", {"Base", "en", "de", "de"}, "en", {"en", "de"}},
        {"no development localisation", {"fr", "en"}, std::nullopt, {"en", "fr"}},
        {"Base as the development localisation", {"de", "Base", "fr"}, "Base", {"de", "fr"}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(language(row.localizations, row.development).shipped(), row.shipped);
    }
}

TEST_F(AppLanguageTest, SystemLanguagesFollowTheLocaleVariablesAsGettextDoes) {
    struct Row {
        const char* name;
        Variables variables;
        std::vector<std::string> languages;
    };
    const std::vector<Row> rows = {
        {"nothing set", {}, {"en"}},
        {"LANG", {{"LANG", "de_DE.UTF-8"}}, {"de-DE"}},
        {"LC_MESSAGES before LANG", {{"LANG", "de_DE.UTF-8"}, {"LC_MESSAGES", "fr_FR"}}, {"fr-FR"}},
        {"LC_ALL before LC_MESSAGES, an empty one skipped",
         {{"LC_ALL", ""}, {"LC_MESSAGES", "fr_FR"}, {"LANG", "de_DE"}},
         {"fr-FR"}},
        {"LANGUAGE list, unusable entries skipped",
         {{"LANG", "de_DE.UTF-8"}, {"LANGUAGE", "pt_BR::C:ja"}},
         {"pt-BR", "ja"}},
        {"LANGUAGE of nothing usable", {{"LANG", "de_DE.UTF-8"}, {"LANGUAGE", "C"}}, {"de-DE"}},
        {"C locale silences LANGUAGE", {{"LANG", "C.UTF-8"}, {"LANGUAGE", "de"}}, {"en"}},
        {"the inherited list stands for ours",
         {{"LANG", "de_DE"}, {"LANGUAGE", "ja:de"}, {"CORVANE_INHERITED_LANGUAGE", "fr"}},
         {"fr"}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        environment.variables = row.variables;
        EXPECT_EQ(language().systemLanguages(), row.languages);
    }
}

TEST_F(AppLanguageTest, StringTranslatesIntoTheCodeAndFallsBackToTheKey) {
    struct Row {
        const char* choice;
        const char* key;
        std::string text;
    };
    const std::vector<Row> rows = {
        {"de", "Unknown", "Unbekannt"},
        {"de", "Critical", "Critical"},
        {"fr", "Unknown", "Unknown"},
        {"en", "Unknown", "Unknown"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.choice) + " " + row.key);
        environment.variables = {{"CORVANE_LANGUAGE", row.choice}};
        EXPECT_EQ(language().string(row.key), row.text);
    }
}

TEST_F(AppLanguageTest, ProcessIsStaleOnlyOnceTheLaunchCodeIsRecordedAndDiffers) {
    AppLanguage process = language();
    environment.variables = {{"CORVANE_LANGUAGE", "de"}};
    EXPECT_FALSE(process.processIsStale());
    process.recordLaunchCode();
    environment.variables = {{"CORVANE_LANGUAGE", "fr"}};
    EXPECT_TRUE(process.processIsStale());
    environment.variables = {{"CORVANE_LANGUAGE", "de"}};
    EXPECT_FALSE(process.processIsStale());
}

TEST_F(AppLanguageTest, ApplyingTheChoiceSetsAndThenRestoresTheProcessLanguages) {
    struct Row {
        const char* name;
        Variables variables;
        SettingValue appleLanguages;
        std::string languageVariable;
    };
    const std::vector<Row> rows = {
        {"user's LANGUAGE",
         {{"LANG", "en_US.UTF-8"}, {"LANGUAGE", "en:de:ja"}},
         {"de", "en", "ja"},
         "de:en:ja"},
        {"no LANGUAGE", {{"LANG", "en_US.UTF-8"}}, {"de", "en-US"}, "de:en_US"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        environment.variables = row.variables;
        const std::vector<std::string> system = language().systemLanguages();

        shared.set("language", "de");
        language().applyChoiceToProcessDefaults();
        EXPECT_EQ(own.object("AppleLanguages"), row.appleLanguages);
        EXPECT_EQ(environment.variables["LANGUAGE"], row.languageVariable);
        EXPECT_EQ(language().systemLanguages(), system);
        // A relaunch applies the same choice again and must not lose the user's own list.
        language().applyChoiceToProcessDefaults();
        EXPECT_EQ(own.object("AppleLanguages"), row.appleLanguages);

        shared.set("language", "pt");
        language().applyChoiceToProcessDefaults();
        EXPECT_TRUE(own.object("AppleLanguages").is_null());
        EXPECT_EQ(environment.variables, row.variables);
    }
}

}  // namespace
}  // namespace corvane
