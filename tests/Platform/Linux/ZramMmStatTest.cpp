#include "Platform/Linux/ZramMmStat.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "tests/Platform/Linux/ParserRow.h"

namespace corvane {
namespace {

using testing::ParserRow;

TEST(ZramMmStat, ThirdFieldIsMemoryUsed) {
    const ParserRow<std::uint64_t> rows[] = {
        {"empty", "", std::nullopt},
        {"valid",
         "2684354560  712458240  736120832        0  801427456     9842     1204      311     "
         "4021\n",
         736120832},
        {"unused device",
         "       0        0        0        0        0        0        0        0\n", 0},
        {"older kernel with seven fields", "4096 1024 8192 0 8192 0 0\n", 8192},
        {"not enough fields", "4096 1024\n", std::nullopt},
        {"garbage", "4096 1024 many 0 0 0 0\n", std::nullopt},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(parseZramMemUsedTotal(row.text), row.expected);
    }
}

}  // namespace
}  // namespace corvane
