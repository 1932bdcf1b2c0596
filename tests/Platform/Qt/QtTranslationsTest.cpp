#include "Platform/Qt/QtTranslations.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

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

}  // namespace
}  // namespace corvane
