#include "CorvaneShared/SettingsStore.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace corvane {
namespace {

TEST(SettingsStore, TypedReadsFollowDefaultsConventions) {
    struct Row {
        const char* name;
        SettingValue value;
        bool boolean;
        double number;
        std::optional<std::string> text;
    };
    const std::vector<Row> rows = {
        {"true", true, true, 1, std::nullopt},
        {"integer", 42, true, 42, "42"},
        {"zero", 0, false, 0, "0"},
        {"fraction", 0.25, true, 0.25, "0.25"},
        {"upper-case YES", "YES", true, 0, "YES"},
        {"no", "no", false, 0, "no"},
        {"text 1", "1", true, 1, "1"},
        {"numeric text", "1.5", false, 1.5, "1.5"},
        {"number with suffix", "1.5x", false, 0, "1.5x"},
        {"text naming NaN", "nan", false, 0, "nan"},
        {"text naming infinity", "inf", false, 0, "inf"},
        {"empty text", "", false, 0, ""},
        {"array", SettingValue::array({1}), false, 0, std::nullopt},
        {"null", nullptr, false, 0, std::nullopt},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(booleanFromSetting(row.value), row.boolean);
        EXPECT_DOUBLE_EQ(doubleFromSetting(row.value), row.number);
        EXPECT_EQ(stringFromSetting(row.value), row.text);
    }
}

}  // namespace
}  // namespace corvane
