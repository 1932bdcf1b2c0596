#include "Platform/Linux/ProcStat.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace corvane {
namespace {

struct ProcStatRow {
    std::string_view name;
    std::string_view text;
    std::optional<HostCPULoad> host;
    std::vector<ProcessorLoad> processors;
};

TEST(ProcStat, ParsesHostAndProcessorLines) {
    const ProcStatRow rows[] = {
        {"empty", "", std::nullopt, {}},
        {"valid ten columns",
         "cpu  10 1 20 300 4 5 6 7 8 9\n"
         "cpu0 6 1 12 150 2 3 4 5 8 9\n"
         "cpu1 4 0 8 150 2 2 2 2 0 0\n"
         "intr 12 0 0\nctxt 99\n",
         HostCPULoad{.user = 10, .system = 38, .idle = 304, .nice = 1},
         {{.user = 6, .system = 24, .idle = 152, .nice = 1},
          {.user = 4, .system = 14, .idle = 152, .nice = 0}}},
        {"old kernel with four columns",
         "cpu  10 1 20 300\ncpu0 10 1 20 300\n",
         HostCPULoad{.user = 10, .system = 20, .idle = 300, .nice = 1},
         {{.user = 10, .system = 20, .idle = 300, .nice = 1}}},
        {"guest time is already inside user and nice",
         "cpu 100 50 0 0 0 0 0 0 40 20\n",
         HostCPULoad{.user = 100, .system = 0, .idle = 0, .nice = 50},
         {}},
        {"not enough fields",
         "cpu  10 1 20\ncpu0 10 1 20 300\ncpu1 10 1\n",
         std::nullopt,
         {{.user = 10, .system = 20, .idle = 300, .nice = 1}}},
        {"garbage in a used column",
         "cpu  10 x 20 300\ncpu0 1 2 3 4 5 6 7 oops\n",
         std::nullopt,
         {}},
        {"negative counter",
         "cpu  1 2 3 4\ncpu0 -1 2 3 4\n",
         HostCPULoad{.user = 1, .system = 3, .idle = 4, .nice = 2},
         {}},
        {"no trailing newline",
         "cpu  1 2 3 4\ncpu0 1 2 3 4",
         HostCPULoad{.user = 1, .system = 3, .idle = 4, .nice = 2},
         {{.user = 1, .system = 3, .idle = 4, .nice = 2}}},
        {"offline CPU has no line",
         "cpu  3 0 0 0\ncpu0 1 0 0 0\ncpu2 2 0 0 0\n",
         HostCPULoad{.user = 3},
         {{.user = 1}, {.user = 2}}},
        {"labels that are not a CPU number",
         "cpu  1 0 0 0\ncpuX 2 0 0 0\ncpu1a 3 0 0 0\n",
         HostCPULoad{.user = 1},
         {}},
        {"parsing stops after the cpu lines",
         "cpu  1 0 0 0\ncpu0 1 0 0 0\nintr 5\ncpu1 9 9 9 9\n",
         HostCPULoad{.user = 1},
         {{.user = 1}}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const auto sample = parseProcStat(row.text);
        EXPECT_EQ(sample.host, row.host);
        EXPECT_EQ(sample.processors, row.processors);
    }
}

TEST(ProcStat, NumbersEachProcessorLineAsTheKernelDoes) {
    // Offline CPUs leave gaps, so a line's position is not its CPU number.
    auto sample =
        parseProcStat("cpu  6 0 0 0\ncpu0 1 0 0 0\ncpu2 2 0 0 0\ncpu17 3 0 0 0\ncpu18 x 0 0 0\n");
    EXPECT_EQ(sample.processors.size(), 3u);
    EXPECT_EQ(sample.processorNumbers, (std::vector<std::uint32_t>{0, 2, 17}));
    // A reused sample keeps nothing of the previous parse.
    sample = parseProcStat("cpu  1 0 0 0\ncpu5 1 0 0 0\n", std::move(sample));
    EXPECT_EQ(sample.processorNumbers, (std::vector<std::uint32_t>{5}));
    EXPECT_EQ(sample.processors.size(), 1u);
}

struct WideSumRow {
    std::string_view name;
    CPUTimes times;
    HostCPULoad host;
    ProcessorLoad processor;
};

TEST(ProcStat, HostRecordKeepsLow32BitsOfWideSums) {
    constexpr std::uint64_t twoTo32 = std::uint64_t{1} << 32;
    const WideSumRow rows[] = {
        {"column beyond 32 bits",
         {.user = twoTo32 + 5, .nice = twoTo32 * 3 + 1},
         {.user = 5, .nice = 1},
         {.user = twoTo32 + 5, .nice = twoTo32 * 3 + 1}},
        {"sum crosses 2^32 although each column fits",
         {.system = 0xFFFF'FFFF, .irq = 1, .softirq = 2, .steal = 3},
         {.system = 5},
         {.system = twoTo32 + 5}},
        {"idle and iowait sum crosses 2^32",
         {.idle = 0xFFFF'FFF0, .iowait = 0x20},
         {.idle = 0x10},
         {.idle = twoTo32 + 0x10}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(hostCPULoadFrom(row.times), row.host);
        EXPECT_EQ(processorLoadFrom(row.times), row.processor);
    }
}

}  // namespace
}  // namespace corvane
