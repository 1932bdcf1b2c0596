#include "CorvaneShared/LanguageTag.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace corvane {
namespace {

TEST(LanguageTag, ReadsTagsAndPOSIXLocaleNames) {
    struct Row {
        const char* text;
        std::optional<std::string> tag;
        std::string gettextName;
    };
    const std::vector<Row> rows = {
        {"de", "de", "de"},
        {"de_DE.UTF-8", "de-DE", "de_DE"},
        {"pt-br", "pt-BR", "pt_BR"},
        {"es_419", "es-419", "es_419"},
        {"zh-hant-tw", "zh-Hant-TW", "zh_TW"},
        {"sr_RS@latin", "sr-Latn-RS", "sr_RS"},
        {"ca_ES.UTF-8@valencia", "ca-ES", "ca_ES"},
        {"en-US-posix", "en-US", "en_US"},
        {"C", std::nullopt, ""},
        {"C.UTF-8", std::nullopt, ""},
        {"POSIX", std::nullopt, ""},
        {"", std::nullopt, ""},
        {"english", std::nullopt, ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        const std::optional<LanguageTag> tag = parseLanguageTag(row.text);
        ASSERT_EQ(tag.has_value(), row.tag.has_value());
        if (tag) {
            EXPECT_EQ(languageTagText(*tag), *row.tag);
            EXPECT_EQ(gettextLanguageName(*tag), row.gettextName);
        }
    }
}

TEST(LanguageTag, PreferredLocalizationTriesEachPreferenceExactThenGeneralThenSibling) {
    const std::vector<std::string> shipped = {"en", "de", "fr", "ja", "es"};
    struct Row {
        const char* name;
        std::vector<std::string> available;
        std::vector<std::string> preferences;
        std::optional<std::string> expected;
    };
    const std::vector<Row> rows = {
        {"exact", shipped, {"fr"}, "fr"},
        {"region dropped", shipped, {"de-AT"}, "de"},
        {"first preference without any match skipped", shipped, {"pt-BR", "es-MX"}, "es"},
        {"region dropped before a sibling region", {"en", "de-CH", "de"}, {"de-AT"}, "de"},
        {"exact before a sibling region", {"en", "pt-PT", "pt-BR"}, {"pt-BR"}, "pt-BR"},
        {"first sibling in shipped order", {"en", "pt-PT", "pt-BR"}, {"pt"}, "pt-PT"},
        {"an earlier preference wins over a closer match",
         {"fr-FR", "de-CH"},
         {"de-AT", "fr-FR"},
         "de-CH"},
        {"script must agree", {"en", "zh-Hans"}, {"zh-Hant-TW"}, std::nullopt},
        {"script kept when the region goes", {"zh-Hans", "zh-Hant"}, {"zh-Hant-TW"}, "zh-Hant"},
        {"case and separator ignored, entry answered as written",
         {"en", "pt_BR"},
         {"PT-br"},
         "pt_BR"},
        {"no preferences", shipped, {}, std::nullopt},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(preferredLocalization(row.available, row.preferences), row.expected);
    }
}

}  // namespace
}  // namespace corvane
