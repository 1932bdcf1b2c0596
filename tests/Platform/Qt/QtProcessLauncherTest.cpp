#include "Platform/Qt/QtProcessLauncher.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "tests/CorvaneShared/FileTestSupport.h"

namespace corvane {
namespace {

TEST(QtProcessLauncher, StartsInTheWorkingDirectoryWithTheExtraEnvironment) {
    testing::TemporaryDirectory directory;
    const auto output = directory / "output";
    ASSERT_TRUE(launchDetached({
        .program = "/bin/sh",
        .arguments = {"-c", R"(printf '%s %s' "$PWD" "$CORVANE_TEST_VALUE" > partial &&
                               mv partial output)"},
        .workingDirectory = directory.path(),
        .environment = {{"CORVANE_TEST_VALUE", "a b"}},
    }));
    // The program runs on its own; give it a generous while to write.
    for (int attempt = 0; attempt < 500 && !std::filesystem::exists(output); ++attempt) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_EQ(testing::readFile(output), directory.path().string() + " a b");
    EXPECT_FALSE(launchDetached({.program = (directory / "missing").string()}));
}

}  // namespace
}  // namespace corvane
