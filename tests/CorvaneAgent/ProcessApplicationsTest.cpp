#include "CorvaneAgent/ProcessApplications.h"

#include <gtest/gtest.h>

#include <string>

#include "Platform/Linux/LinuxProcessCommands.h"

namespace corvane {
namespace {

const std::string fixture = CORVANE_FIXTURES "/desktop-apps";

DesktopApplicationIndex fixtureIndex() {
    return DesktopApplicationIndex::load({fixture + "/home", fixture + "/share"});
}

TEST(ProcessApplications, MatchesProcessesToTheirDesktopEntries) {
    struct Row {
        const char* name;
        std::int32_t pid;
        const char* processName;
        const char* application;  // the desktop file ID; empty for none
    };
    const Row rows[] = {
        {"script by its own name, not its interpreter", 101, "meld", "org.gnome.Meld.desktop"},
        {"interpreter by its executable", 102, "python3", "python3.11.desktop"},
        {"renamed process by executable path", 103, "Isolated Web Co", "firefox-esr.desktop"},
        {"env prefix and field codes in Exec", 104, "x-tool", "x-tool.desktop"},
        {"absolute TryExec with a blank in it", 105, "editor", "org.example.Editor.desktop"},
        {"StartupWMClass ignoring case", 106, "thunderbird", "mail.desktop"},
        {"a hidden copy deletes the entry", 107, "hidden-tool", ""},
        {"NoDisplay entry still names its program", 108, "htop", "htop.desktop"},
        {"entry shown in menus wins over NoDisplay", 109, "viewer", "org.example.Viewer.desktop"},
        {"subfolder gives a prefixed ID", 110, "vendor-tool", "vendor-tool.desktop"},
        {"Flatpak entry by its --command", 111, "flat-app", "org.example.Flat.desktop"},
        {"login shell has no entry", 112, "bash", ""},
        {"kernel thread", 113, "kworker/0:1", ""},
        {"executable replaced by an upgrade", 114, "firefox-esr", "firefox-esr.desktop"},
        {"unreadable exe, absolute first argument", 115, "xt-worker", "x-tool.desktop"},
        {"process gone", 999, "ghost", ""},
    };
    ProcessApplications applications(std::make_unique<LinuxProcessCommands>(fixture + "/procfs"),
                                     fixtureIndex);
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const DesktopApplication* application =
            applications.application({.pid = row.pid, .name = row.processName});
        EXPECT_EQ(application != nullptr ? application->id : "", row.application);
    }
}

TEST(ProcessApplications, IndexSkipsOtherFilesAndReadsOnlyTheMainGroup) {
    const DesktopApplicationIndex index = fixtureIndex();
    // 13 files end in .desktop; the hidden copy and the entry it deletes are left out.
    EXPECT_EQ(index.size(), 11u);
    // The action group's Exec must not replace the entry's own.
    const DesktopApplication* firefox =
        index.match("firefox-esr", {.executable = "/usr/lib/firefox-esr/firefox-esr"});
    ASSERT_NE(firefox, nullptr);
    EXPECT_EQ(firefox->entry.exec, "/usr/lib/firefox-esr/firefox-esr %u");
    EXPECT_EQ(firefox->entry.icon, "firefox-esr");
}

struct CountingCommands final : ProcessCommands {
    int* calls;
    explicit CountingCommands(int* calls) : calls(calls) {}
    std::optional<ProcessCommand> command(std::int32_t pid) override {
        ++*calls;
        if (pid == 7) {
            return std::nullopt;
        }
        return ProcessCommand{.executable = "/usr/bin/htop", .arguments = {"htop"}};
    }
};

TEST(ProcessApplications, RemembersEachProcessUntilItsPidIsReused) {
    int calls = 0;
    int loads = 0;
    ProcessApplications applications(std::make_unique<CountingCommands>(&calls), [&] {
        ++loads;
        return fixtureIndex();
    });
    EXPECT_NE(applications.application({.pid = 5, .name = "htop"}), nullptr);
    EXPECT_NE(applications.application({.pid = 5, .name = "htop"}), nullptr);
    EXPECT_EQ(calls, 1);
    // The same pid under another name is another process.
    applications.application({.pid = 5, .name = "top"});
    EXPECT_EQ(calls, 2);
    // A process that could not be read is asked again: it may just have started.
    EXPECT_EQ(applications.application({.pid = 7, .name = "x"}), nullptr);
    EXPECT_EQ(applications.application({.pid = 7, .name = "x"}), nullptr);
    EXPECT_EQ(calls, 4);
    EXPECT_EQ(loads, 1);
    applications.reload();
    applications.application({.pid = 5, .name = "htop"});
    EXPECT_EQ(calls, 5);
    EXPECT_EQ(loads, 2);
}

}  // namespace
}  // namespace corvane
