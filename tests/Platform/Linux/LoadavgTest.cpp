#include "Platform/Linux/Loadavg.h"

#include <gtest/gtest.h>

#include <array>

#include "tests/Platform/Linux/ParserRow.h"

namespace corvane {
namespace {

using testing::ParserRow;

TEST(Loadavg, ParsesThreeAverages) {
    using Averages = std::array<double, 3>;
    const ParserRow<Averages> rows[] = {
        {"empty", "", std::nullopt},
        {"valid", "0.01 0.07 0.03 1/84 3877\n", Averages{0.01, 0.07, 0.03}},
        {"not enough fields", "0.52 0.31\n", std::nullopt},
        {"garbage", "0.01 nan 0.03 1/84 3877\n", std::nullopt},
        {"negative", "-1.00 0.00 0.00\n", std::nullopt},
        {"no trailing newline", "1.00 2.00 3.00", Averages{1.0, 2.0, 3.0}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(parseLoadavg(row.text), row.expected);
    }
}

}  // namespace
}  // namespace corvane
