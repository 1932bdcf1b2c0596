#include "Platform/Linux/Vmstat.h"

#include <gtest/gtest.h>

#include <string_view>

namespace corvane {
namespace {

struct VmstatRow {
    std::string_view name;
    std::string_view text;
    Vmstat expected;
};

TEST(Vmstat, ParsesPagingTotalsAsBytes) {
    const VmstatRow rows[] = {
        {"empty", "", {}},
        {"valid: KiB, not pages",
         "nr_free_pages 6107956\npgpgin 1038601\npgpgout 423108\npswpin 0\n",
         {.pagedInBytes = 1038601ULL * 1024, .pagedOutBytes = 423108ULL * 1024}},
        {"pgpgout missing", "pgpgin 5\npswpout 7\n", {.pagedInBytes = 5120}},
        {"similar names are other counters",
         "pgpginx 1\npgpgin_total 2\npgpgout 3\n",
         {.pagedOutBytes = 3072}},
        {"garbage number", "pgpgin 12x\npgpgout 3\n", {.pagedOutBytes = 3072}},
        {"trailing field", "pgpgin 1 2\n", {}},
        {"overflows as bytes", "pgpgout 18014398509481984\n", {}},
        {"no trailing newline",
         "pgpgout 3\npgpgin 2",
         {.pagedInBytes = 2048, .pagedOutBytes = 3072}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(parseVmstat(row.text), row.expected);
    }
}

}  // namespace
}  // namespace corvane
