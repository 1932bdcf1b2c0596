#include "Platform/Linux/LinuxProcessTable.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

#include "tests/Platform/Linux/ParserRow.h"

namespace corvane {
namespace {

using testing::ParserRow;

const std::filesystem::path fixtures = CORVANE_FIXTURES;

TEST(LinuxProcessTable, ParsesBootTimeAndOwner) {
    const ParserRow<std::int64_t> bootRows[] = {
        {"valid", "cpu  1 2 3 4\nintr 0\nbtime 1700000000\nprocesses 2\n", 1700000000},
        {"missing", "cpu  1 2 3 4\nprocesses 2\n", std::nullopt},
        {"not a number", "btime soon\n", std::nullopt},
        {"prefix of another name", "btimex 5\n", std::nullopt},
    };
    for (const auto& row : bootRows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(parseBootTime(row.text), row.expected);
    }
    const ParserRow<std::uint32_t> uidRows[] = {
        {"real uid first", "Name:\tx\nUid:\t1000\t0\t0\t0\n", 1000},
        {"missing", "Name:\tx\nGid:\t0\t0\t0\t0\n", std::nullopt},
        {"negative", "Uid:\t-1\t0\t0\t0\n", std::nullopt},
    };
    for (const auto& row : uidRows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(parseStatusUid(row.text), row.expected);
    }
}

TEST(LinuxProcessTable, ReadsOwnProcessesWithPathAndStartTime) {
    using std::chrono::seconds;
    const auto booted = std::chrono::system_clock::time_point(seconds(1'700'000'000));
    const LinuxProcessTable table(fixtures / "agent-copies-elsewhere/proc", 100);
    // 6300 runs a file replaced since it started; 6400 has no readable link, so its command
    // line names it (and gives its arguments); 6500 has neither and is left out.
    const std::vector<ProcessRecord> expected = {
        {6200, booted + seconds(90), "/usr/bin/corvane-agent"},
        {6300, booted + seconds(30),
         "/home/ada/Corvane.app/Contents/Library/LoginItems/CorvaneAgent.app/bin/corvane-agent"},
        {6400,
         booted + std::chrono::milliseconds(90'500),
         "/home/ada/bin/corvane-agent",
         {"--stream"}},
    };
    EXPECT_EQ(table.processesOf(1000), expected);
    EXPECT_TRUE(table.processesOf(1001).empty());
}

TEST(LinuxProcessTable, UnknownBootTimeOrMissingTreeLeavesNothingToGuessFrom) {
    const LinuxProcessTable noBootTime(fixtures / "agent-copies-no-boot-time/proc", 100);
    const auto records = noBootTime.processesOf(1000);
    ASSERT_EQ(records.size(), 2u);
    EXPECT_FALSE(records[0].started);
    EXPECT_FALSE(records[1].started);
    EXPECT_TRUE(LinuxProcessTable(fixtures / "no-such-tree/proc").processesOf(0).empty());
}

}  // namespace
}  // namespace corvane
