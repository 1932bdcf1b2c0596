#include "Platform/Qt/QtTranslations.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "CorvaneAgent/SensorReadings.h"
#include "CorvaneShared/BundleDirectory.h"

namespace corvane {
namespace {

TEST(QtTranslations, AnswersFromTheBuildTreesCompiledTranslations) {
    QtTranslations translations([](std::string_view language) {
        return BundleDirectory::translationFile(CORVANE_BUILD_BUNDLE, language);
    });
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
    QtTranslations translations([](std::string_view language) {
        return BundleDirectory::translationFile(CORVANE_BUILD_BUNDLE, language);
    });
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

}  // namespace
}  // namespace corvane
