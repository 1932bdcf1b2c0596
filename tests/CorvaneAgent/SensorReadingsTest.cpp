#include "CorvaneAgent/SensorReadings.h"

#include <gtest/gtest.h>

#include <optional>

namespace corvane {
namespace {

TEST(FanReading, LoadIsThePlaceOfTheSpeedBetweenItsLimits) {
    struct Row {
        const char* name;
        double rpm;
        std::optional<double> minimumRPM, maximumRPM;
        std::optional<double> load;
    };
    const Row rows[] = {
        {"a quarter of the way", 2500, 2000, 4000, 0.25},
        {"no maximum", 2500, 2000, std::nullopt, std::nullopt},
        {"no minimum", 2500, std::nullopt, 4000, std::nullopt},
        {"stopped below its minimum", 0, 2000, 4000, 0.0},
        {"above its maximum", 4500, 2000, 4000, 1.0},
        {"limits equal", 2000, 2000, 2000, std::nullopt},
        {"limits the wrong way round", 3000, 4000, 2000, std::nullopt},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const FanReading fan{"F0Ac", 0, row.rpm, row.minimumRPM, row.maximumRPM};
        EXPECT_EQ(fan.load(), row.load);
    }
}

}  // namespace
}  // namespace corvane
