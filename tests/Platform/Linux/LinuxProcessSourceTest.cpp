#include "Platform/Linux/LinuxProcessSource.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

#include "Platform/Linux/ProcPidIo.h"
#include "Platform/Linux/ProcPidStat.h"

namespace corvane {
namespace {

template <typename Value>
struct Row {
    std::string_view name;
    std::string_view text;
    std::optional<Value> expected;
};

TEST(ProcPidStat, NameBetweenFirstAndLastParenthesis) {
    const Row<ProcPidStat> rows[] = {
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

TEST(ProcessName, RepairsUTF8AndNamesNamelessProcesses) {
    const Row<std::string_view> rows[] = {
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

TEST(ProcPidIo, ReadsStorageBytes) {
    const Row<ProcPidIo> rows[] = {
        {"valid",
         "rchar: 6976\nwchar: 99\nsyscr: 10\nsyscw: 1\nread_bytes: 4096\nwrite_bytes: 8192\n"
         "cancelled_write_bytes: 4096\n",
         ProcPidIo{.readBytes = 4096, .writeBytes = 8192}},
        {"no write_bytes", "rchar: 6976\nread_bytes: 4096\n", {}},
        {"garbage", "read_bytes: lots\nwrite_bytes: 8192\n", {}},
        {"empty", "", {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(parseProcPidIo(row.text), row.expected);
    }
}

// 1: everything readable, statm's exact resident count wins over stat's. 42: a name with
// spaces and parentheses. 77: no stat, as when a process exits after the listing: left out.
// 100: no statm (exited after its stat was read) and no io (another user's): stat's resident
// count and zero disk counters.
// meminfo: not a process.
TEST(LinuxProcessSource, ReadsFixtureTree) {
    const auto pageSize = static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
    LinuxProcessSource source(std::filesystem::path(CORVANE_FIXTURES) / "processes/proc");
    auto samples = source.sampleProcesses();
    // Directory order is the file system's; compare in pid order.
    std::sort(samples.begin(), samples.end(),
              [](const auto& a, const auto& b) { return a.pid < b.pid; });
    const std::vector<ProcessSample> expected = {
        {1, "systemd", 350 + 120, 3309 * pageSize, 734003200, 96468992, 27},
        {42, "my (weird) name", 4321 + 1234, 20513 * pageSize, 0, 8192, 9041},
        {100, "sshd", 17 + 9, 1843 * pageSize, 0, 0, 1420},
    };
    EXPECT_EQ(samples, expected);
}

TEST(LinuxProcessSource, UnlistableRootGivesEmptySnapshot) {
    LinuxProcessSource source(std::filesystem::path(CORVANE_FIXTURES) / "processes/missing");
    EXPECT_TRUE(source.sampleProcesses().empty());
}

}  // namespace
}  // namespace corvane
