#include "Foundation/DirectoryListing.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

namespace corvane {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> namesIn(DirectoryListing& listing) {
    std::vector<std::string> names;
    while (auto name = listing.next()) {
        names.emplace_back(*name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

TEST(DirectoryListing, ListsEveryEntryButDotAndDotDotOnce) {
    const fs::path folder =
        fs::temp_directory_path() / ("corvane-listing-" + std::to_string(::getpid()));
    fs::create_directories(folder / "sub");
    std::ofstream{folder / "file"}.close();
    std::ofstream{folder / ".hidden"}.close();

    DirectoryListing listing(folder.c_str());
    ASSERT_TRUE(listing.isOpen());
    EXPECT_GE(listing.descriptor(), 0);
    EXPECT_EQ(namesIn(listing), (std::vector<std::string>{".hidden", "file", "sub"}));
    // At the end it stays at the end.
    EXPECT_FALSE(listing.next());

    // A moved-from listing is closed; the new owner lists from where the old one was.
    DirectoryListing first((folder / "sub").c_str());
    DirectoryListing second = std::move(first);
    EXPECT_FALSE(first.isOpen());  // NOLINT(bugprone-use-after-move): what is tested
    EXPECT_FALSE(first.next());    // NOLINT(bugprone-use-after-move)
    EXPECT_TRUE(namesIn(second).empty());
    fs::remove_all(folder);
}

TEST(DirectoryListing, WhatDoesNotOpenListsNothing) {
    for (const char* path : {"/nonexistent/corvane", "/proc/self/status", ""}) {
        SCOPED_TRACE(path);
        DirectoryListing listing(path);
        EXPECT_FALSE(listing.isOpen());
        EXPECT_EQ(listing.descriptor(), -1);
        EXPECT_FALSE(listing.next());
    }
}

}  // namespace
}  // namespace corvane
