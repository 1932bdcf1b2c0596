#include "Platform/Linux/LinuxProcessSource.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string_view>
#include <vector>

namespace corvane {
namespace {

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
