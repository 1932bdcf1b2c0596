#include "Platform/Linux/Meminfo.h"

#include <gtest/gtest.h>

#include <string_view>

namespace corvane {
namespace {

struct MeminfoRow {
    std::string_view name;
    std::string_view text;
    Meminfo expected;
};

TEST(Meminfo, ParsesKibibyteFieldsAsBytes) {
    const MeminfoRow rows[] = {
        {"empty", "", {}},
        // Aligned as the kernel prints it, with a field that is not used among them.
        {"every field used",
         "MemTotal:       1 kB\nMemFree:        24431824 kB\nMemAvailable:   2 kB\n"
         "Buffers: 3 kB\nCached: 4 kB\nSReclaimable: 5 kB\n"
         "SUnreclaim: 6 kB\nKernelStack: 7 kB\nPageTables: 8 kB\nSecPageTables: 9 kB\n"
         "Percpu: 10 kB\nUnevictable: 11 kB\nZswap: 12 kB\nSwapTotal: 13 kB\nSwapFree: 14 kB\n",
         {.memTotal = 1024,
          .memAvailable = 2048,
          .buffers = 3072,
          .cached = 4096,
          .sReclaimable = 5120,
          .sUnreclaim = 6144,
          .kernelStack = 7168,
          .pageTables = 8192,
          .secPageTables = 9216,
          .percpu = 10240,
          .unevictable = 11264,
          .zswap = 12288,
          .swapTotal = 13312,
          .swapFree = 14336}},
        {"similar names are other fields",
         "SwapCached: 7 kB\nActive(file): 8 kB\nZswapped: 9 kB\nCached: 3 kB\n",
         {.cached = 3072}},
        {"cut off before the unit", "MemTotal: 100 kB\nMemAvailable:   2439", {.memTotal = 102400}},
        {"wrong unit", "MemTotal: 1 MB\n", {}},
        {"garbage number", "MemTotal: lots kB\nSwapFree: 0x10 kB\n", {}},
        {"trailing field", "MemTotal: 1 kB extra\n", {}},
        {"no colon", "MemTotal 100 kB\n", {}},
        {"overflows as bytes", "MemTotal: 18014398509481984 kB\n", {}},
        {"no trailing newline", "SwapFree: 8 kB", {.swapFree = 8192}},
        {"Linux 2.4 summary table before the fields",
         "        total:    used:    free:  shared: buffers:  cached:\n"
         "Mem:  527577088 510627840 16949248        0 38363136 328822784\n"
         "MemTotal:       515212 kB\n",
         {.memTotal = 515212ULL * 1024}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(parseMeminfo(row.text), row.expected);
    }
}

}  // namespace
}  // namespace corvane
