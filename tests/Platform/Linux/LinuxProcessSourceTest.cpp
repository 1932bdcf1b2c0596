#include "Platform/Linux/LinuxProcessSource.h"

#include <gtest/gtest.h>
#include <linux/sched.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {
namespace {

namespace fs = std::filesystem;

const fs::path fixtureRoot = fs::path(CORVANE_FIXTURES) / "processes/proc";

std::vector<ProcessSample> byPid(std::vector<ProcessSample> samples) {
    std::sort(samples.begin(), samples.end(),
              [](const auto& a, const auto& b) { return a.pid < b.pid; });
    return samples;
}

const ProcessSample* findPid(const std::vector<ProcessSample>& samples, std::int32_t pid) {
    const auto found = std::find_if(samples.begin(), samples.end(),
                                    [pid](const auto& sample) { return sample.pid == pid; });
    return found == samples.end() ? nullptr : &*found;
}

// How many descriptors this process has open.
std::size_t openDescriptors() {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator()));
}

// A writable copy of the fixture tree, removed at the end of the test.
class TreeCopy {
public:
    TreeCopy() : root(fs::temp_directory_path() / ("corvane-processes-" + testName())) {
        fs::remove_all(root);
        fs::copy(fixtureRoot, root, fs::copy_options::recursive);
    }
    TreeCopy(const TreeCopy&) = delete;
    TreeCopy& operator=(const TreeCopy&) = delete;
    ~TreeCopy() {
        std::error_code ignored;
        fs::remove_all(root, ignored);
    }

    // Makes `pid` a process with another name and start time. The new directory is made before
    // the old one goes, so the file system cannot hand it the old one's inode number.
    void replace(std::int32_t pid, std::string_view name, std::uint64_t startTime) const {
        const auto fresh = root / "fresh";
        fs::create_directory(fresh);
        std::ofstream(fresh / "stat")
            << pid << " (" << name << ") S 1 1 1 0 -1 0 0 0 0 0 5 6 0 0 20 0 1 0 " << startTime
            << " 1000 7 0\n";
        fs::remove_all(root / std::to_string(pid));
        fs::rename(fresh, root / std::to_string(pid));
    }

    const fs::path root;

private:
    static std::string testName() {
        const auto* test = ::testing::UnitTest::GetInstance()->current_test_info();
        return std::string(test->name()) + "-" + std::to_string(::getpid());
    }
};

// `count` processes from `firstPid` on, each with a stat and a statm.
void addWorkers(const fs::path& root, int firstPid, int count) {
    for (int pid = firstPid; pid < firstPid + count; ++pid) {
        fs::create_directory(root / std::to_string(pid));
        std::ofstream(root / std::to_string(pid) / "stat")
            << pid << " (worker) S 1 1 1 0 -1 0 0 0 0 0 " << pid << " 1 0 0 20 0 1 0 " << pid
            << " 1000 9 0\n";
        std::ofstream(root / std::to_string(pid) / "statm") << "10 " << pid << " 1 1 0 1 0\n";
    }
}

// 1: everything readable, statm's exact resident count wins over stat's. 42: a name with
// spaces and parentheses. 77: no stat, as when a process exits after the listing: left out.
// 100: no statm (exited after its stat was read) and no io (another user's): stat's resident
// count and zero disk counters. meminfo: not a process. The same from a source that keeps
// descriptors (on its first scan and when rereading them), one whose budget holds only some,
// and one that keeps none.
TEST(LinuxProcessSource, ReadsFixtureTree) {
    const auto pageSize = static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
    const std::vector<ProcessSample> expected = {
        {1, "systemd", 350 + 120, 3309 * pageSize, 734003200, 96468992, 27},
        {42, "my (weird) name", 4321 + 1234, 20513 * pageSize, 0, 8192, 9041},
        {100, "sshd", 17 + 9, 1843 * pageSize, 0, 0, 1420},
    };
    for (const std::size_t budget :
         {std::size_t{0}, std::size_t{2}, std::size_t{3}, std::size_t{4}, std::size_t{1000}}) {
        SCOPED_TRACE(budget);
        LinuxProcessSource source(fixtureRoot, budget);
        EXPECT_EQ(byPid(source.sampleProcesses()), expected);
        EXPECT_EQ(byPid(source.sampleProcesses()), expected);
    }
}

TEST(LinuxProcessSource, UnlistableRootGivesEmptySnapshot) {
    LinuxProcessSource source(fs::path(CORVANE_FIXTURES) / "processes/missing");
    EXPECT_TRUE(source.sampleProcesses().empty());
}

// A process that went away is dropped with its kept descriptors; one that appeared is read.
TEST(LinuxProcessSource, FollowsProcessesComingAndGoing) {
    TreeCopy tree;
    LinuxProcessSource source(tree.root, 1000);
    ASSERT_EQ(source.sampleProcesses().size(), 3U);
    const auto descriptorsWithAll = openDescriptors();
    fs::remove_all(tree.root / "42");
    const auto samples = source.sampleProcesses();
    EXPECT_EQ(findPid(samples, 42), nullptr);
    EXPECT_EQ(samples.size(), 2U);
    // 42 had stat, statm and io open.
    EXPECT_EQ(openDescriptors(), descriptorsWithAll - 3);
    tree.replace(77, "newcomer", 500);
    const auto later = source.sampleProcesses();
    ASSERT_NE(findPid(later, 77), nullptr);
    EXPECT_EQ(findPid(later, 77)->name, "newcomer");
}

// On a fixture tree a kept descriptor still reads the removed file, as procfs never does; only
// the new inode number of the pid's directory tells the source that another process has it.
TEST(LinuxProcessSource, ReusedPidInFixtureIsReadAfresh) {
    TreeCopy tree;
    LinuxProcessSource source(tree.root, 1000);
    source.sampleProcesses();
    tree.replace(42, "successor", 777);
    const auto samples = source.sampleProcesses();
    ASSERT_NE(findPid(samples, 42), nullptr);
    EXPECT_EQ(findPid(samples, 42)->name, "successor");
    EXPECT_EQ(findPid(samples, 42)->startTime, 777U);
}

// A budget smaller than the processes keeps what fits, reads the rest with open/read/close, and
// never holds more descriptors than it allows, however many scans run.
TEST(LinuxProcessSource, BudgetBoundsKeptDescriptors) {
    TreeCopy tree;
    addWorkers(tree.root, 2000, 40);
    LinuxProcessSource unlimited(tree.root, 0);
    const auto expected = byPid(unlimited.sampleProcesses());
    ASSERT_EQ(expected.size(), 43U);
    // The root's own descriptor stays open too, outside the budget.
    const auto before = openDescriptors() + 1;
    LinuxProcessSource bounded(tree.root, 20);
    for (int scan = 0; scan < 3; ++scan) {
        EXPECT_EQ(byPid(bounded.sampleProcesses()), expected);
        EXPECT_LE(openDescriptors(), before + 20);
        EXPECT_GE(openDescriptors(), before + 18);
    }
    // Room freed by processes that went is taken by those that were read the slow way.
    for (int pid = 2000; pid < 2010; ++pid) {
        fs::remove_all(tree.root / std::to_string(pid));
    }
    bounded.sampleProcesses();
    EXPECT_GE(openDescriptors(), before + 18);
}

// Under a low hard limit the source raises the soft limit to it, keeps what fits in half of it,
// and reads every process all the same. Run in a child, as it lowers the limits for good.
int scanUnderLowLimit(const fs::path& root) {
    const rlimit low{.rlim_cur = 64, .rlim_max = 128};
    if (::setrlimit(RLIMIT_NOFILE, &low) != 0) {
        return 3;
    }
    LinuxProcessSource source(root);
    rlimit raised{};
    ::getrlimit(RLIMIT_NOFILE, &raised);
    LinuxProcessSource reference(root, 0);
    const auto expected = byPid(reference.sampleProcesses());
    const bool allRead = expected.size() == 63 && byPid(source.sampleProcesses()) == expected &&
                         byPid(source.sampleProcesses()) == expected;
    return raised.rlim_cur == 128 && allRead ? 0 : 1;
}

TEST(LinuxProcessSource, LowDescriptorLimitStillReadsEveryProcess) {
    TreeCopy tree;
    addWorkers(tree.root, 2000, 60);
    EXPECT_EXIT(std::_Exit(scanUnderLowLimit(tree.root)), ::testing::ExitedWithCode(0), "");
}

// Scans `root` twice as the user nobody: 0 when only 1 (with zero disk counters) and 100 are read.
int scanAsUnprivilegedUser(const fs::path& root) {
    constexpr uid_t nobody = 65534;
    if (::geteuid() == 0 && ::setresuid(nobody, nobody, nobody) != 0) {
        return 3;
    }
    LinuxProcessSource source(root, 1000);
    source.sampleProcesses();
    const auto samples = byPid(source.sampleProcesses());
    const bool expected = samples.size() == 2 && samples[0].pid == 1 && samples[0].diskRead == 0 &&
                          samples[0].diskWrite == 0 && samples[0].name == "systemd" &&
                          samples[1].pid == 100;
    return expected ? 0 : 1;
}

// As with /proc mounted with hidepid=1: a process whose directory cannot be entered is left
// out, one whose io alone is refused keeps zero disk counters. Run as an unprivileged user,
// since permissions do not hold root back.
TEST(LinuxProcessSource, SkipsProcessesThatCannotBeRead) {
    TreeCopy tree;
    fs::permissions(tree.root, fs::perms::owner_all | fs::perms::group_read |
                                   fs::perms::group_exec | fs::perms::others_read |
                                   fs::perms::others_exec);
    fs::permissions(tree.root / "42", fs::perms::none);
    fs::permissions(tree.root / "1" / "io", fs::perms::owner_read);
    EXPECT_EXIT(std::_Exit(scanAsUnprivilegedUser(tree.root)), ::testing::ExitedWithCode(0), "");
    fs::permissions(tree.root / "42", fs::perms::owner_all);
}

// ---- The real /proc ---------------------------------------------------------------------

// In a child: takes `name`, tells the parent through `ready`, and waits to be killed.
[[noreturn]] void runNamedChild(const char* name, int ready) {
    ::prctl(PR_SET_NAME, name);
    const char done = 1;
    [[maybe_unused]] const auto written = ::write(ready, &done, 1);
    for (;;) {
        ::pause();
    }
}

// A child that names itself and waits to be killed; returned once it has its name. With `pid`,
// under that pid, or -1 when the kernel does not let this process choose pids (that takes
// CAP_SYS_ADMIN).
pid_t startChild(const char* name, std::optional<pid_t> pid = std::nullopt) {
    int ready[2];
    if (::pipe(ready) != 0) {
        return -1;
    }
    pid_t child = -1;
    if (pid) {
        clone_args arguments{};
        arguments.exit_signal = SIGCHLD;
        arguments.set_tid = reinterpret_cast<std::uintptr_t>(&*pid);
        arguments.set_tid_size = 1;
        child = static_cast<pid_t>(::syscall(SYS_clone3, &arguments, sizeof arguments));
    } else {
        child = ::fork();
    }
    if (child == 0) {
        runNamedChild(name, ready[1]);
    }
    ::close(ready[1]);
    char done = 0;
    if (child > 0) {
        [[maybe_unused]] const auto count = ::read(ready[0], &done, 1);
    }
    ::close(ready[0]);
    return child;
}

void endChild(pid_t child) {
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
}

// Kept descriptors give what open/read/close gives: every field of processes that hold still
// (stopped children), and the start time of every process both scans saw (its name may change
// in between: other processes run programs while the test runs).
TEST(LinuxProcessSource, KeptDescriptorsReadLiveProcessesAsFreshOnes) {
    const pid_t first = startChild("corvane-still-1");
    const pid_t second = startChild("corvane-still-2");
    ::kill(first, SIGSTOP);
    ::kill(second, SIGSTOP);
    LinuxProcessSource keeping("/proc", 1000);
    LinuxProcessSource fresh("/proc", 0);
    keeping.sampleProcesses();
    const auto kept = keeping.sampleProcesses();
    const auto reread = fresh.sampleProcesses();
    for (const pid_t child : {first, second}) {
        ASSERT_NE(findPid(kept, child), nullptr);
        ASSERT_NE(findPid(reread, child), nullptr);
        EXPECT_EQ(*findPid(kept, child), *findPid(reread, child));
    }
    std::size_t common = 0;
    for (const auto& sample : kept) {
        if (const auto* other = findPid(reread, sample.pid)) {
            ++common;
            EXPECT_EQ(sample.startTime, other->startTime) << sample.pid;
        }
    }
    EXPECT_GT(common, kept.size() / 2);
    endChild(first);
    endChild(second);
}

// A process that exited between scans is left out, not read from its kept descriptors.
TEST(LinuxProcessSource, LiveProcessExitingBetweenScansIsLeftOut) {
    const pid_t child = startChild("corvane-leaving");
    LinuxProcessSource source("/proc", 1000);
    ASSERT_NE(findPid(source.sampleProcesses(), child), nullptr);
    endChild(child);
    EXPECT_EQ(findPid(source.sampleProcesses(), child), nullptr);
}

// A pid that another process took between scans gives the new process's name and start time.
TEST(LinuxProcessSource, LiveReusedPidGivesTheNewProcess) {
    const pid_t child = startChild("corvane-before");
    LinuxProcessSource source("/proc", 1000);
    const auto before = source.sampleProcesses();
    ASSERT_NE(findPid(before, child), nullptr);
    const auto startedBefore = findPid(before, child)->startTime;
    endChild(child);
    // The start time is in clock ticks: the successor must start in a later one.
    ::usleep(20000);
    const pid_t successor = startChild("corvane-after", child);
    if (successor < 0) {
        GTEST_SKIP() << "this process cannot choose a child's pid: " << std::strerror(errno);
    }
    const auto after = source.sampleProcesses();
    endChild(successor);
    ASSERT_NE(findPid(after, child), nullptr);
    EXPECT_EQ(findPid(after, child)->name, "corvane-after");
    EXPECT_GT(findPid(after, child)->startTime, startedBefore);
}

}  // namespace
}  // namespace corvane
