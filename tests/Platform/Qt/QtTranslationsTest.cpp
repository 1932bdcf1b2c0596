#include "Platform/Qt/QtTranslations.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "CorvaneAgent/SensorReadings.h"
#include "Platform/Qt/QtProcessLauncher.h"
#include "tests/CorvaneShared/FileTestSupport.h"

namespace corvane {
namespace {

TEST(QtTranslations, AnswersFromTheBuildTreesCompiledTranslations) {
    QtTranslations translations(std::filesystem::path(CORVANE_BUILD_BUNDLE));
    struct Row {
        const char* language;
        const char* key;
        std::optional<std::string> text;
    };
    const std::vector<Row> rows = {
        {"de", "Unknown", "Unbekannt"},
        {"ja", "%@ RPM", "%@ 回転/分"},
        {"de", "No such text", std::nullopt},
        {"pt", "Unknown", std::nullopt},
        // Qt's own lookup would fall back from corvane_de_AT.qm to corvane_de.qm.
        {"de-AT", "Unknown", std::nullopt},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.language) + " " + row.key);
        EXPECT_EQ(translations.translation(row.language, row.key), row.text);
    }
}

// The sensor panel's titles show in the interface language; a title missing from one
// language's file would show in English there only.
TEST(QtTranslations, EverySensorCategoryAndPowerChannelTitleIsTranslated) {
    QtTranslations translations(std::filesystem::path(CORVANE_BUILD_BUNDLE));
    const TextLookup english = [](std::string_view key) { return std::string(key); };
    std::vector<std::string> titles;
    for (const SensorCategory category : allSensorCategories) {
        titles.push_back(title(category, english));
    }
    for (const PowerChannel channel : allPowerChannels) {
        titles.push_back(title(channel, english));
    }
    for (const char* language : {"de", "fr", "ja", "es"}) {
        for (const std::string& text : titles) {
            EXPECT_TRUE(translations.translation(language, text)) << language << " " << text;
        }
    }
}

TEST(QtProcessLauncher, StartsInTheWorkingDirectoryWithTheExtraEnvironment) {
    testing::TemporaryDirectory directory;
    const auto output = directory / "output";
    ASSERT_TRUE(launchDetached({
        .program = "/bin/sh",
        .arguments = {"-c", R"(printf '%s %s' "$PWD" "$CORVANE_TEST_VALUE" > partial &&
                               mv partial output)"},
        .workingDirectory = directory.path(),
        .environment = {{"CORVANE_TEST_VALUE", "a b"}},
    }));
    // The program runs on its own; give it a generous while to write.
    for (int attempt = 0; attempt < 500 && !std::filesystem::exists(output); ++attempt) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_EQ(testing::readFile(output), directory.path().string() + " a b");
    EXPECT_FALSE(launchDetached({.program = (directory / "missing").string()}));
}

}  // namespace
}  // namespace corvane
