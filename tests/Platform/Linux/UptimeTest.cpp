#include "Platform/Linux/Uptime.h"

#include <gtest/gtest.h>

#include "tests/Platform/Linux/ParserRow.h"

namespace corvane {
namespace {

using testing::ParserRow;

TEST(Uptime, ParsesSecondsSinceBoot) {
    const ParserRow<double> rows[] = {
        {"empty", "", std::nullopt},
        {"valid", "306.47 567.55\n", 306.47},
        {"garbage", "abc 567.55\n", std::nullopt},
        {"negative", "-5.00 10.00\n", std::nullopt},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(parseUptime(row.text), row.expected);
    }
}

}  // namespace
}  // namespace corvane
