#include "CorvaneShared/JSONFileSettingsStore.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tests/CorvaneShared/FileTestSupport.h"

namespace corvane {
namespace {

namespace fs = std::filesystem;
using testing::TemporaryDirectory;

// Puts `content` in place the way our writers do, so the file gets a new identity.
void replaceFileContent(const fs::path& path, std::string_view content) {
    const fs::path temporary = path.string() + ".test-new";
    testing::writeFile(temporary, content);
    fs::rename(temporary, path);
}

// {"a": 1, "deep": [[…]]} with `levels` levels of nesting in all, the outer object included.
std::string nestedSettings(std::size_t levels) {
    return R"({"a": 1, "deep": )" + std::string(levels - 1, '[') + std::string(levels - 1, ']') +
           "}";
}

std::set<std::string> temporaryFilesBeside(const fs::path& path) {
    std::set<std::string> names =
        testing::namesStartingWith(path.parent_path(), path.filename().string() + ".tmp-");
    return names;
}

TEST(JSONFileSettingsStore, ReadsTheFileAsItIsNow) {
    struct Row {
        const char* name;
        std::optional<std::string> content;  // absent: no file
        SettingValue expected;
    };
    const SettingValue empty = SettingValue::object();
    // The rows run in order against one store, so each also checks that the store notices the
    // change from the row before.
    const std::vector<Row> rows = {
        {"missing file", std::nullopt, empty},
        {"object", R"({"a": 1, "b": "text"})", {{"a", 1}, {"b", "text"}}},
        {"not JSON", "{\"a\": ", empty},
        {"object after a corrupt file", R"({"a": 2})", {{"a", 2}}},
        {"array", "[1, 2]", empty},
        {"object followed by other text", R"({"a": 3} {"b": 4})", empty},
        {"empty file", "", empty},
        {"object after an empty file", R"({"c": true})", {{"c", true}}},
        {"nested 64 levels", nestedSettings(64), SettingValue::parse(nestedSettings(64))},
        {"nested 65 levels", nestedSettings(65), empty},
        {"nested 100,000 levels", nestedSettings(100'000), empty},
        {"deleted file", std::nullopt, empty},
    };
    TemporaryDirectory directory;
    const fs::path path = directory / "settings.json";
    JSONFileSettingsStore store(path);
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        if (row.content) {
            replaceFileContent(path, *row.content);
        } else {
            fs::remove(path);
        }
        EXPECT_EQ(store.storedValues(), row.expected);
    }
}

TEST(JSONFileSettingsStore, ReadsSeeAnotherStoresWritesAtOnce) {
    TemporaryDirectory directory;
    const fs::path path = directory / "settings.json";
    JSONFileSettingsStore writer(path);
    JSONFileSettingsStore reader(path);

    // Values of equal length, each file stamped with the same time as if all landed within one
    // timestamp tick: only the inode number tells the files apart. Several writes between two
    // reads let a file system that recycles freed inode numbers give one back.
    const timespec sameTick[2] = {{1'700'000'000, 0}, {1'700'000'000, 0}};
    int written = 0;
    for (int round = 0; round < 30; ++round) {
        std::string value;
        for (int write = 0; write <= round % 3; ++write) {
            value = "value-" + std::to_string(written++ % 10);
            ASSERT_TRUE(writer.set("key", value));
            ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), sameTick, 0), 0);
        }
        ASSERT_EQ(reader.string("key"), value) << "round " << round;
    }

    ASSERT_TRUE(writer.remove("key"));
    EXPECT_TRUE(reader.object("key").is_null());
}

TEST(JSONFileSettingsStore, WritesKeepTheKindOfEveryNumber) {
    struct Row {
        const char* name;
        SettingValue value;
    };
    // In sequence under one key: each row changes only the kind of number, which JSON equality
    // alone would take for no change at all.
    const std::vector<Row> rows = {
        {"float", 1.0},
        {"integer of the same value", 1},
        {"float again", 1.0},
    };
    TemporaryDirectory directory;
    const fs::path path = directory / "settings.json";
    JSONFileSettingsStore writer(path);
    JSONFileSettingsStore reader(path);
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        ASSERT_TRUE(writer.set("value", row.value));
        EXPECT_EQ(reader.object("value").dump(), row.value.dump());
    }
}

TEST(JSONFileSettingsStore, CorruptFileIsCopiedBesideItselfBeforeItIsReplaced) {
    TemporaryDirectory directory;
    const fs::path path = directory / "settings.json";
    const std::string backupPrefix = "settings.json.corrupt-";
    JSONFileSettingsStore store(path);

    testing::writeFile(path, "not JSON");
    EXPECT_EQ(store.storedValues(), SettingValue::object());
    ASSERT_TRUE(store.set("a", 1));
    std::set<std::string> backups = testing::namesStartingWith(directory.path(), backupPrefix);
    ASSERT_EQ(backups.size(), 1u);
    EXPECT_EQ(testing::readFile(directory / *backups.begin()), "not JSON");
    EXPECT_EQ(JSONFileSettingsStore(path).storedValues(), SettingValue({{"a", 1}}));

    // A second episode within the same second must not overwrite the first copy.
    testing::writeFile(path, "[1, 2]");
    EXPECT_EQ(store.storedValues(), SettingValue::object());
    ASSERT_TRUE(store.remove("a"));
    EXPECT_EQ(testing::readFile(path), "[1, 2]") << "removing from an empty read changes nothing";
    ASSERT_TRUE(store.set("b", 2));

    backups = testing::namesStartingWith(directory.path(), backupPrefix);
    std::multiset<std::string> contents;
    for (const std::string& backup : backups) {
        contents.insert(testing::readFile(directory / backup).value_or("<unreadable>"));
    }
    EXPECT_EQ(contents, (std::multiset<std::string>{"not JSON", "[1, 2]"}));
    EXPECT_EQ(JSONFileSettingsStore(path).storedValues(), SettingValue({{"b", 2}}));
}

TEST(JSONFileSettingsStore, NeverWritesWhatItWouldNotReadBack) {
    TemporaryDirectory directory;
    const fs::path path = directory / "settings.json";
    JSONFileSettingsStore store(path);

    // A value that would nest the file too deep is refused; the file stays as it was.
    ASSERT_TRUE(store.set("a", 1));
    const std::optional<std::string> before = testing::readFile(path);
    SettingValue deep = SettingValue::array();
    for (int level = 0; level < 63; ++level) {
        deep = SettingValue::array({std::move(deep)});
    }
    EXPECT_FALSE(store.set("deep", deep));
    EXPECT_EQ(testing::readFile(path), before);
    EXPECT_TRUE(store.set("deep", deep[0]));
    EXPECT_EQ(JSONFileSettingsStore(path).object("deep"), deep[0]);

    // 1.6 million zeros take 3.2 MB written compactly but 17.6 MB with one per indented line,
    // past the 16 MB a read accepts.
    const std::size_t count = 1'600'000;
    std::string zeros = R"({"big": [0)";
    for (std::size_t i = 1; i < count; ++i) {
        zeros += ",0";
    }
    zeros += "]}";
    testing::writeFile(path, zeros);
    ASSERT_TRUE(store.set("small", 1));
    const SettingValue values = JSONFileSettingsStore(path).storedValues();
    EXPECT_EQ(values.value("big", SettingValue()).size(), count);
    EXPECT_EQ(values.value("small", SettingValue()), 1);
}

TEST(JSONFileSettingsStore, FailedWriteLeavesFileAsItWas) {
    struct Row {
        const char* name;
        // Prepares the folder and answers the settings file to write.
        std::function<fs::path(const TemporaryDirectory&)> prepare;
    };
    // Tests run as root, where permission bits do not stop a write; these obstacles do.
    const std::vector<Row> rows = {
        {"folder under a regular file",
         [](const TemporaryDirectory& directory) {
             testing::writeFile(directory / "plain", "");
             return directory / "plain" / "sub" / "settings.json";
         }},
        {"lock file is a folder",
         [](const TemporaryDirectory& directory) {
             fs::path path = directory / "settings.json";
             EXPECT_TRUE(JSONFileSettingsStore(path).set("a", 1));
             fs::remove(directory / "settings.json.lock");
             fs::create_directory(directory / "settings.json.lock");
             return path;
         }},
        {"file is not a regular file",
         [](const TemporaryDirectory& directory) {
             fs::path path = directory / "settings.json";
             EXPECT_EQ(::mkfifo(path.c_str(), 0600), 0);
             return path;
         }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        TemporaryDirectory directory;
        const fs::path path = row.prepare(directory);
        const bool isRegular = fs::is_regular_file(path);
        const std::optional<std::string> contentBefore =
            isRegular ? testing::readFile(path) : std::nullopt;
        JSONFileSettingsStore store(path);
        const SettingValue valuesBefore = store.storedValues();

        EXPECT_FALSE(store.set("a", 2));
        EXPECT_EQ(store.storedValues(), valuesBefore);
        if (isRegular) {
            EXPECT_EQ(testing::readFile(path), contentBefore);
        }
        EXPECT_TRUE(temporaryFilesBeside(path).empty());
    }
}

TEST(JSONFileSettingsStore, ConcurrentWritersKeepEachOthersKeysAndReadersSeeWholeFiles) {
    constexpr int writerCount = 2;
    constexpr int keysPerWriter = 200;
    TemporaryDirectory directory;
    // The folder does not exist yet, so the writers also race to create it.
    const fs::path path = directory / "corvane" / "settings.json";

    std::vector<pid_t> writers;
    for (int writer = 0; writer < writerCount; ++writer) {
        const pid_t child = ::fork();
        if (child == 0) {
            JSONFileSettingsStore store(path);
            bool allWritten = true;
            for (int key = 0; key < keysPerWriter; ++key) {
                const std::string name = std::to_string(writer) + "-" + std::to_string(key);
                allWritten = store.set(name, key) && allWritten;
            }
            ::_exit(allWritten ? 0 : 1);
        }
        ASSERT_GT(child, 0);
        writers.push_back(child);
    }

    int tornReads = 0;
    int wholeReads = 0;
    int running = writerCount;
    std::vector<int> statuses;
    while (running > 0) {
        if (const std::optional<std::string> content = testing::readFile(path)) {
            const bool isWhole = SettingValue::parse(*content, nullptr, false).is_object();
            (isWhole ? wholeReads : tornReads) += 1;
        }
        for (pid_t& writer : writers) {
            int status = 0;
            if (writer > 0 && ::waitpid(writer, &status, WNOHANG) == writer) {
                statuses.push_back(WIFEXITED(status) ? WEXITSTATUS(status) : -1);
                writer = 0;
                --running;
            }
        }
    }

    EXPECT_EQ(statuses, std::vector<int>(writerCount, 0));
    EXPECT_EQ(tornReads, 0) << "after " << wholeReads << " whole reads";
    const SettingValue values = JSONFileSettingsStore(path).storedValues();
    EXPECT_EQ(values.size(), static_cast<std::size_t>(writerCount * keysPerWriter));
    for (int writer = 0; writer < writerCount; ++writer) {
        for (int key = 0; key < keysPerWriter; ++key) {
            const std::string name = std::to_string(writer) + "-" + std::to_string(key);
            EXPECT_EQ(values.value(name, -1), key) << name;
        }
    }
}

}  // namespace
}  // namespace corvane
