#include "Platform/Linux/ProcPidStat.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string_view>

#include "tests/Platform/Linux/ParserRow.h"

namespace corvane {
namespace {

using testing::ParserRow;

TEST(ProcPidStat, NameBetweenFirstAndLastParenthesis) {
    const ParserRow<ProcPidStat> rows[] = {
        {"spaces, parentheses and a negative priority",
         "42 (my (weird) name) R 1 42 42 0 -1 4194304 1200 0 3 0 4321 1234 0 0 -2 -20 3 0 9041 "
         "812457984 20480 18446744073709551615\n",
         ProcPidStat{.comm = "my (weird) name",
                     .cpuTicks = 5555,
                     .startTime = 9041,
                     .residentPages = 20480}},
        {"empty name", "7 () S 2 0 0 0 -1 0 0 0 0 0 1 2 0 0 20 0 1 0 5 0 0 0\n",
         ProcPidStat{.comm = "", .cpuTicks = 3, .startTime = 5, .residentPages = 0}},
        {"truncated before rss", "9 (cut) S 1 9 9 0 -1 0 0 0 0 0 5 6 0 0 20 0 1 0 5 1000", {}},
        {"garbage utime", "9 (bad) S 1 9 9 0 -1 0 0 0 0 0 x 6 0 0 20 0 1 0 5 1000 7 0\n", {}},
        {"garbage start time", "9 (bad) S 1 9 9 0 -1 0 0 0 0 0 5 6 0 0 20 0 1 0 x 1000 7 0\n", {}},
        {"no closing parenthesis", "9 (never closed S 1 9 9 0 -1 0 0 0 0 0 5 6\n", {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(parseProcPidStat(row.text), row.expected);
    }
}

TEST(ProcPidStat, ProcessNameRepairsUTF8AndNamesNamelessProcesses) {
    const ParserRow<std::string_view> rows[] = {
        {"empty", "", "PID 4242"},
        {"valid multibyte kept", "caf\xC3\xA9", "caf\xC3\xA9"},
        {"stray byte", "a\xFFz", "a\xEF\xBF\xBDz"},
        {"sequence cut short", "ab\xE2\x82", "ab\xEF\xBF\xBD"},
        {"encoded surrogate, one per byte", "\xED\xA0\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(processName(row.text, 4242), *row.expected);
    }
}

}  // namespace
}  // namespace corvane
