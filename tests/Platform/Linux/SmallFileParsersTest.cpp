#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "Platform/Linux/Cpuinfo.h"
#include "Platform/Linux/DevicetreeModel.h"
#include "Platform/Linux/Loadavg.h"
#include "Platform/Linux/Uptime.h"
#include "Platform/Linux/ZramMmStat.h"

namespace corvane {
namespace {

template <typename Value>
struct Row {
    std::string_view name;
    std::string_view text;
    std::optional<Value> expected;
};

TEST(Loadavg, ParsesThreeAverages) {
    using Averages = std::array<double, 3>;
    const Row<Averages> rows[] = {
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

TEST(Uptime, ParsesSecondsSinceBoot) {
    const Row<double> rows[] = {
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

TEST(Cpuinfo, FindsFirstModelName) {
    const Row<std::string_view> rows[] = {
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

TEST(DevicetreeModel, DropsTrailingNULs) {
    using namespace std::string_view_literals;
    const Row<std::string_view> rows[] = {
        {"empty", "", std::nullopt},
        {"NUL-terminated", "Raspberry Pi 4 Model B Rev 1.4\0"sv, "Raspberry Pi 4 Model B Rev 1.4"},
        {"only NULs", "\0\0"sv, std::nullopt},
        {"text after the NUL ignored", "Board A\0junk"sv, "Board A"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(parseDevicetreeModel(row.text), row.expected);
    }
}

TEST(ZramMmStat, ThirdFieldIsMemoryUsed) {
    const Row<std::uint64_t> rows[] = {
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
