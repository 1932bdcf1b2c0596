#include "Platform/Linux/Cpuinfo.h"

#include <gtest/gtest.h>

#include <string_view>

#include "tests/Platform/Linux/ParserRow.h"

namespace corvane {
namespace {

using testing::ParserRow;

TEST(Cpuinfo, FindsFirstModelName) {
    const ParserRow<std::string_view> rows[] = {
        {"empty", "", std::nullopt},
        {"x86",
         "processor\t: 0\nvendor_id\t: GenuineIntel\nmodel\t\t: 207\n"
         "model name\t: Intel(R) Xeon(R) Processor\nstepping\t: 2\n\n"
         "processor\t: 1\nmodel name\t: Second CPU\n",
         "Intel(R) Xeon(R) Processor"},
        {"padding trimmed", "model name\t:   AMD Ryzen 7 5800X 8-Core Processor   \n",
         "AMD Ryzen 7 5800X 8-Core Processor"},
        {"colon inside the value", "model name\t: Vendor: Model 9\n", "Vendor: Model 9"},
        {"arm64 names no model",
         "processor\t: 0\nBogoMIPS\t: 108.00\nCPU part\t: 0xd08\n\n"
         "Hardware\t: BCM2835\nModel\t\t: Raspberry Pi 4 Model B Rev 1.4\n",
         std::nullopt},
        {"blank model name", "model name\t:   \n", std::nullopt},
        {"cut off before the colon", "model name\t", std::nullopt},
        {"no trailing newline", "model name\t: Pentium III (Coppermine)",
         "Pentium III (Coppermine)"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(parseCpuinfoModelName(row.text), row.expected);
    }
}

}  // namespace
}  // namespace corvane
