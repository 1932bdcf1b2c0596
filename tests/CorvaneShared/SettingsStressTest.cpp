// The settings file under load from several processes at once, and under the faults a file
// meets on a real machine while it is in use. The counts are small in the normal suite;
// CORVANE_STRESS_WRITES raises them for the long run (`make stress`).

#include <gtest/gtest.h>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iostream>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "CorvaneShared/JSONFileSettingsStore.h"
#include "Foundation/NumberParsing.h"
#include "tests/CorvaneShared/FileTestSupport.h"

namespace corvane {
namespace {

namespace fs = std::filesystem;
using testing::TemporaryDirectory;

volatile std::sig_atomic_t readerStopped = 0;

int writesPerWriter() {
    const char* text = std::getenv("CORVANE_STRESS_WRITES");
    const auto count = text ? parseNumber<int>(text) : std::nullopt;
    return count && *count > 0 ? *count : 400;
}

// Every name in the settings folder: after any run only the file and its lock file belong
// there (and copies of a corrupt file, which the fault rows expect by name).
std::set<std::string> namesIn(const fs::path& directory) {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(directory)) {
        names.insert(entry.path().filename().string());
    }
    return names;
}

pid_t startChild(const std::function<int()>& body) {
    const pid_t child = ::fork();
    if (child == 0) {
        ::_exit(body());
    }
    return child;
}

int waitForChild(pid_t child) {
    int status = 0;
    if (::waitpid(child, &status, 0) != child) {
        return -1;
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// Each writer counts its own key up from 1; a reader that ever sees a count go back, or a key
// it has seen vanish, has seen a lost write or a torn file.
TEST(SettingsStress, WritersOfDifferentKeysNeverLoseEachOthersWritesWhileOthersRead) {
    constexpr int writerCount = 3;
    const int writes = writesPerWriter();
    TemporaryDirectory directory;
    const fs::path path = directory / "corvane" / "suite.json";

    std::vector<pid_t> writers;
    for (int writer = 0; writer < writerCount; ++writer) {
        writers.push_back(startChild([&, writer] {
            JSONFileSettingsStore store(path);
            const std::string key = "writer-" + std::to_string(writer);
            int failures = 0;
            for (int count = 1; count <= writes; ++count) {
                failures += store.set(key, count) ? 0 : 1;
            }
            return failures == 0 ? 0 : 1;
        }));
        ASSERT_GT(writers.back(), 0);
    }
    // A reader in its own process, as the agent is, and this process reading the same file
    // through another store: both must only ever see whole, growing counts.
    const auto readUntil = [&](const std::function<bool()>& done) {
        JSONFileSettingsStore store(path);
        std::map<std::string, int> seen;
        int reads = 0;
        bool wentBack = false;
        while (!done() || reads == 0) {
            const SettingValue values = store.storedValues();
            for (const auto& [key, last] : seen) {
                const int now = values.value(key, 0);
                wentBack = wentBack || now < last;
            }
            for (const auto& [key, value] : values.items()) {
                seen[key] = value.get<int>();
            }
            ++reads;
        }
        return std::pair{reads, wentBack};
    };
    const pid_t reader = startChild([&] {
        ::signal(SIGTERM, [](int) { readerStopped = 1; });
        const auto [childReads, childWentBack] = readUntil([] { return readerStopped != 0; });
        return childWentBack ? 1 : 0;
    });
    ASSERT_GT(reader, 0);

    int running = writerCount;
    std::vector<int> statuses;
    const auto [reads, wentBack] = readUntil([&] {
        for (pid_t& writer : writers) {
            int status = 0;
            if (writer > 0 && ::waitpid(writer, &status, WNOHANG) == writer) {
                statuses.push_back(WIFEXITED(status) ? WEXITSTATUS(status) : -1);
                writer = 0;
                --running;
            }
        }
        return running == 0;
    });
    ::kill(reader, SIGTERM);
    EXPECT_EQ(waitForChild(reader), 0) << "the reading process saw a count go back";

    EXPECT_EQ(statuses, std::vector<int>(writerCount, 0));
    EXPECT_FALSE(wentBack) << "after " << reads << " reads";
    const SettingValue values = JSONFileSettingsStore(path).storedValues();
    for (int writer = 0; writer < writerCount; ++writer) {
        EXPECT_EQ(values.value("writer-" + std::to_string(writer), 0), writes);
    }
    EXPECT_EQ(namesIn(path.parent_path()),
              (std::set<std::string>{"suite.json", "suite.json.lock"}));
    std::cout << "settings stress: " << writerCount * writes << " writes, " << reads
              << " reads in this process\n";
}

// A writer process keeps counting while the file meets a fault; reads during the fault give
// the documented fallback (no stored values), and once the fault is gone the writer's next
// write lands and every store reads it again.
TEST(SettingsStress, FaultsMidRunGiveTheFallbackAndTheStoreRecovers) {
    struct Row {
        const char* name;
        std::function<void(const fs::path&)> cause;
        std::function<void(const fs::path&)> clear;
    };
    const std::vector<Row> rows = {
        {"file deleted", [](const fs::path& path) { fs::remove(path); }, nullptr},
        {"file replaced by a directory",
         [](const fs::path& path) {
             fs::remove(path);
             fs::create_directory(path);
         },
         [](const fs::path& path) { fs::remove(path); }},
        {"file truncated mid-object",
         [](const fs::path& path) { fs::resize_file(path, fs::file_size(path) / 2); }, nullptr},
        {"file emptied", [](const fs::path& path) { fs::resize_file(path, 0); }, nullptr},
        {"folder removed", [](const fs::path& path) { fs::remove_all(path.parent_path()); },
         nullptr},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        TemporaryDirectory directory;
        const fs::path path = directory / "corvane" / "suite.json";
        JSONFileSettingsStore observer(path);
        ASSERT_TRUE(observer.set("kept", "before the fault"));

        const pid_t writer = startChild([&] {
            ::signal(SIGTERM, [](int) { ::_exit(0); });
            JSONFileSettingsStore store(path);
            for (int count = 1;; ++count) {
                store.set("count", count);
            }
            return 0;
        });
        ASSERT_GT(writer, 0);
        const auto waitForCountAbove = [&](int least) {
            for (int attempt = 0; attempt < 20'000; ++attempt) {
                if (observer.number("count") > least) {
                    return true;
                }
                ::usleep(100);
            }
            return false;
        };
        ASSERT_TRUE(waitForCountAbove(0));

        // The writer is held while the fault is made and looked at, so that no write of its own
        // can undo the fault before the reads see it; it may be held anywhere in a write.
        ::kill(writer, SIGSTOP);
        int stopped = 0;
        ASSERT_EQ(::waitpid(writer, &stopped, WUNTRACED), writer);
        row.cause(path);
        // While the fault lasts every read gives the fallback: no stored values at all.
        for (int read = 0; read < 200; ++read) {
            EXPECT_EQ(observer.storedValues(), SettingValue::object());
        }
        if (row.clear) {
            row.clear(path);
        }
        ::kill(writer, SIGCONT);
        EXPECT_TRUE(waitForCountAbove(0)) << "the writer never wrote again";
        ::kill(writer, SIGTERM);
        EXPECT_EQ(waitForChild(writer), 0) << "the writer crashed";

        EXPECT_TRUE(observer.set("after", true));
        EXPECT_TRUE(observer.boolean("after"));
        std::set<std::string> names = namesIn(path.parent_path());
        // A truncated file is copied aside when a write finds it; a writer held after its read
        // replaces it unread, so a copy may or may not be there.
        std::erase_if(
            names, [](const std::string& name) { return name.starts_with("suite.json.corrupt-"); });
        // A writer killed between its temporary file and the rename may leave that file; the
        // lock and the file are all that a finished write leaves.
        std::erase_if(names,
                      [](const std::string& name) { return name.starts_with("suite.json.tmp-"); });
        EXPECT_EQ(names, (std::set<std::string>{"suite.json", "suite.json.lock"}));
    }
}

// A file or folder made read-only while in use. Run as the user nobody when the suite runs as
// root, since root writes through permission bits. The store writes by replacing the file, so
// a read-only file is replaced like any other; a read-only folder refuses every write, keeps
// what was stored readable and leaves nothing behind, and writes land again once it is
// writable. The child answers the number of the first step that failed, 0 when none did.
TEST(SettingsStress, ReadOnlyFileAndFolder) {
    const char* steps[] = {"",
                           "the first write",
                           "a write to a read-only file",
                           "reading it back",
                           "a write to a read-only folder was accepted",
                           "a read-only folder hid what was stored",
                           "a refused write left files behind",
                           "a write once the folder is writable again",
                           "dropping to the user nobody"};
    TemporaryDirectory directory;
    const fs::path folder = directory / "corvane";
    fs::permissions(directory.path(), fs::perms::all);
    const pid_t child = startChild([&] {
        constexpr uid_t nobody = 65534;
        if (::geteuid() == 0 && (::setresgid(nobody, nobody, nobody) != 0 ||
                                 ::setresuid(nobody, nobody, nobody) != 0)) {
            return 8;
        }
        // The child's own folder, so that it may change the folder's permissions.
        const fs::path path = folder / "suite.json";
        JSONFileSettingsStore store(path);
        if (!store.set("kept", 1)) {
            return 1;
        }
        fs::permissions(path, fs::perms::owner_read | fs::perms::group_read);
        if (!store.set("kept", 2)) {
            return 2;
        }
        if (store.number("kept") != 2) {
            return 3;
        }
        const std::set<std::string> before = namesIn(folder);
        fs::permissions(folder, fs::perms::owner_read | fs::perms::owner_exec);
        if (store.set("kept", 3)) {
            return 4;
        }
        if (store.number("kept") != 2) {
            return 5;
        }
        if (namesIn(folder) != before) {
            return 6;
        }
        fs::permissions(folder, fs::perms::owner_all);
        return store.set("kept", 4) && store.number("kept") == 4 ? 0 : 7;
    });
    ASSERT_GT(child, 0);
    const int failed = waitForChild(child);
    ASSERT_TRUE(failed >= 0 && failed < 9) << "the child ended abnormally: " << failed;
    EXPECT_EQ(failed, 0) << steps[failed];
}

}  // namespace
}  // namespace corvane
