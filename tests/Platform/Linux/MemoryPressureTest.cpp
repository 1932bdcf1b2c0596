#include "Platform/Linux/MemoryPressure.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string_view>

#include "Platform/SystemStatistics.h"

namespace corvane {
namespace {

struct PressureTextRow {
    std::string_view name;
    std::string_view text;
    MemoryPressure expected;
};

TEST(MemoryPressure, ParsesTenSecondAverages) {
    const PressureTextRow rows[] = {
        {"empty", "", {}},
        {"valid",
         "some avg10=14.23 avg60=9.87 avg300=4.12 total=193847562\n"
         "full avg10=3.05 avg60=2.11 avg300=0.94 total=61230871\n",
         {.someAvg10 = 14.23, .fullAvg10 = 3.05}},
        {"some line only", "some avg10=1.50 avg60=0.00 avg300=0.00 total=0\n", {.someAvg10 = 1.5}},
        {"avg10 not first", "some avg60=1.00 avg10=2.00\nfull avg10=0.00\n", {.fullAvg10 = 0.0}},
        {"garbage share", "some avg10=high avg60=0.00\nfull avg10=0.00\n", {.fullAvg10 = 0.0}},
        {"cut off after the key", "some avg10=0.00 avg60=0.00\nfull avg1", {.someAvg10 = 0.0}},
        {"share out of range", "some avg10=100.01\nfull avg10=-1.00\n", {}},
        {"not a finite number", "some avg10=nan\nfull avg10=inf\n", {}},
        {"no trailing newline", "full avg10=100.00 avg60=0.00", {.fullAvg10 = 100.0}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(parseMemoryPressure(row.text), row.expected);
    }
}

struct PressureLevelRow {
    std::string_view name;
    MemoryPressure pressure;
    std::optional<std::int32_t> level;
};

TEST(MemoryPressure, LevelsChangeAtTenPercentStalled) {
    const PressureLevelRow rows[] = {
        {"idle", {.someAvg10 = 0.0, .fullAvg10 = 0.0}, RawPressureLevel::normal},
        {"some just below", {.someAvg10 = 9.99, .fullAvg10 = 9.99}, RawPressureLevel::normal},
        {"some at the threshold", {.someAvg10 = 10.0, .fullAvg10 = 0.0}, RawPressureLevel::warning},
        {"full just below", {.someAvg10 = 60.0, .fullAvg10 = 9.99}, RawPressureLevel::warning},
        {"full at the threshold",
         {.someAvg10 = 10.0, .fullAvg10 = 10.0},
         RawPressureLevel::critical},
        {"full without some", {.someAvg10 = 0.0, .fullAvg10 = 50.0}, RawPressureLevel::critical},
        {"full missing", {.someAvg10 = 50.0}, std::nullopt},
        {"some missing", {.fullAvg10 = 50.0}, std::nullopt},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(rawPressureLevelFrom(row.pressure), row.level);
    }
}

}  // namespace
}  // namespace corvane
