#include "CorvaneShared/SettingsChanges.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>

#include "CorvaneShared/JSONFileSettingsStore.h"
#include "tests/CorvaneShared/FileTestSupport.h"

namespace corvane {
namespace {

namespace fs = std::filesystem;
using testing::TemporaryDirectory;

// The way our writers save: a new file renamed over the old one.
void replaceFile(const fs::path& path, std::string_view content) {
    const fs::path temporary = path.string() + ".test-new";
    testing::writeFile(temporary, content);
    fs::rename(temporary, path);
}

TEST(SettingsChanges, TellsOnlyWhenTheStoredContentChanged) {
    struct Row {
        const char* name;
        std::function<void(const fs::path& file, SettingsStore& store)> act;
        int notifications;
    };
    // The rows run in order against one file and one watcher, each starting from where the
    // previous one left it.
    const Row rows[] = {
        {"nothing happened", [](const fs::path&, SettingsStore&) {}, 0},
        {"a value changed",
         [](const fs::path& file, SettingsStore&) { replaceFile(file, R"({"a": 2, "b": "x"})"); },
         1},
        {"the same values in another layout",
         [](const fs::path& file, SettingsStore&) {
             replaceFile(file, "{\n  \"b\": \"x\",\n  \"a\": 2\n}\n");
         },
         0},
        {"the agent writes a value it already holds",
         [](const fs::path&, SettingsStore& store) { store.set("a", 2); }, 0},
        {"the agent writes a new value",
         [](const fs::path&, SettingsStore& store) { store.set("c", true); }, 1},
        {"edited in place",
         [](const fs::path& file, SettingsStore&) { testing::writeFile(file, R"({"a": 3})"); }, 1},
        {"the file turns corrupt: it reads as empty",
         [](const fs::path& file, SettingsStore&) { replaceFile(file, R"({"a": 3,)"); }, 1},
        {"corrupt in another way: still empty",
         [](const fs::path& file, SettingsStore&) { replaceFile(file, "[1, 2]"); }, 0},
        {"deleted while it read as empty",
         [](const fs::path& file, SettingsStore&) { fs::remove(file); }, 0},
        {"back with content",
         [](const fs::path& file, SettingsStore&) { replaceFile(file, R"({"a": 3})"); }, 1},
        {"deleted while it held values",
         [](const fs::path& file, SettingsStore&) { fs::remove(file); }, 1},
        {"written again with the same values",
         [](const fs::path& file, SettingsStore&) { replaceFile(file, "{}"); }, 0},
        {"replaced by a folder",
         [](const fs::path& file, SettingsStore&) {
             replaceFile(file, R"({"a": 4})");
             fs::remove(file);
             fs::create_directory(file);
         },
         0},
    };
    TemporaryDirectory directory;
    const fs::path file = directory / "suite.json";
    replaceFile(file, R"({"a": 1, "b": "x"})");
    JSONFileSettingsStore store(file);
    SettingsChanges changes(store);
    int notifications = 0;
    const Subscription subscription = changes.observe([&] { ++notifications; });
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        notifications = 0;
        row.act(file, store);
        changes.check();
        // A second look at an unchanged file tells nobody again.
        changes.check();
        EXPECT_EQ(notifications, row.notifications);
    }
}

}  // namespace
}  // namespace corvane
