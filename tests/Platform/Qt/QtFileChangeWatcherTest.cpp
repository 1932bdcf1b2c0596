#include "Platform/Qt/QtFileChangeWatcher.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>

#include "tests/CorvaneShared/FileTestSupport.h"

namespace corvane {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr auto settle = 30ms;

void writeFile(const fs::path& path, std::string_view content) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << content;
}

// The way settings are saved: a new file renamed over the old one.
void replaceFile(const fs::path& path, std::string_view content) {
    const fs::path temporary = path.string() + ".tmp-test";
    writeFile(temporary, content);
    fs::rename(temporary, path);
}

class QtFileChangeWatcherTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        if (QCoreApplication::instance() == nullptr) {
            static int argc = 1;
            static char name[] = "corvane-qt-tests";
            static char* argv[] = {name, nullptr};
            static QCoreApplication application(argc, argv);
        }
    }

    void SetUp() override {
        folder = directory / "corvane";
        file = folder / "suite.json";
        fs::create_directories(folder);
        writeFile(file, "{}");
        watcher = std::make_unique<QtFileChangeWatcher>(file, settle, [this] { ++calls; });
    }

    /// Runs the event loop until `done` holds (checked every few milliseconds) or a generous
    /// deadline passes; answers whether `done` held.
    static bool runUntil(const std::function<bool()>& done) {
        QElapsedTimer elapsed;
        elapsed.start();
        while (!done() && elapsed.elapsed() < 5000) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        }
        return done();
    }

    /// Runs the event loop for `span`, to see that nothing more arrives.
    static void runFor(std::chrono::milliseconds span) {
        QElapsedTimer elapsed;
        elapsed.start();
        while (elapsed.elapsed() < span.count()) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        }
    }

    testing::TemporaryDirectory directory;
    fs::path folder;
    fs::path file;
    int calls = 0;
    std::unique_ptr<QtFileChangeWatcher> watcher;
};

TEST_F(QtFileChangeWatcherTest, SeesEveryKindOfChangeOneAfterAnother) {
    struct Row {
        const char* name;
        std::function<void(const fs::path& folder, const fs::path& file)> change;
    };
    // In order on one watcher: each change must be seen after the ones before it moved the
    // watched inodes around.
    const Row rows[] = {
        {"written in place", [](const fs::path&, const fs::path& file) { writeFile(file, "{1}"); }},
        {"replaced by a rename",
         [](const fs::path&, const fs::path& file) { replaceFile(file, "{2}"); }},
        {"replaced by a rename again (the first watch followed the old file)",
         [](const fs::path&, const fs::path& file) { replaceFile(file, "{3}"); }},
        {"deleted", [](const fs::path&, const fs::path& file) { fs::remove(file); }},
        {"created again", [](const fs::path&, const fs::path& file) { writeFile(file, "{4}"); }},
        {"its folder removed",
         [](const fs::path& folder, const fs::path&) { fs::remove_all(folder); }},
        {"folder and file created again",
         [](const fs::path& folder, const fs::path& file) {
             fs::create_directories(folder);
             writeFile(file, "{5}");
         }},
        {"written in place in the new folder",
         [](const fs::path&, const fs::path& file) { writeFile(file, "{6}"); }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const int before = calls;
        row.change(folder, file);
        EXPECT_TRUE(runUntil([&] { return calls > before; }));
        // Let the rest of this change's events settle before the next row.
        runFor(3 * settle);
    }
}

TEST_F(QtFileChangeWatcherTest, ABurstOfSavesIsToldOnce) {
    for (int save = 0; save < 50; ++save) {
        replaceFile(file, "{\"save\": " + std::to_string(save) + "}");
    }
    ASSERT_TRUE(runUntil([&] { return calls > 0; }));
    runFor(5 * settle);
    EXPECT_EQ(calls, 1);
}

TEST_F(QtFileChangeWatcherTest, ReadingTheFileOrAWriteAfterTheWatcherIsGoneTellsNobody) {
    testing::readFile(file);
    runFor(5 * settle);
    EXPECT_EQ(calls, 0);
    writeFile(file, "{1}");
    watcher.reset();
    runFor(5 * settle);
    EXPECT_EQ(calls, 0);
}

}  // namespace
}  // namespace corvane
