#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <sodium.h>

#include "Platform/Updates/ArchiveChecks.h"
#include "Platform/Updates/ArchiveSignature.h"
#include "Platform/Updates/ArchiveUnpacker.h"
#include "Platform/Updates/BundleProcesses.h"
#include "Platform/Updates/BundleSwap.h"
#include "Platform/Updates/UpdateChoice.h"
#include "tests/CorvaneShared/FileTestSupport.h"
#include "tests/Platform/Updates/ArchiveBuilder.h"

namespace corvane {
namespace {

namespace fs = std::filesystem;
using testing::buildArchive;
using testing::TemporaryDirectory;
using testing::TestKeys;

TEST(ArchiveSignature, OnlyTheUntouchedArchiveSignedByTheBundleKeyPasses) {
    const TestKeys keys;
    const TestKeys otherKeys;
    const std::string archive = buildArchive({{.path = "Corvane.app/bin/a", .content = "v2"}});
    std::string tampered = archive;
    tampered[tampered.size() / 2] ^= 0x01;
    struct Row {
        const char* name;
        std::string archive;
        std::string signature;
        std::string key;
        std::optional<std::string> failure;
    };
    const std::vector<Row> rows = {
        {"good", archive, keys.sign(archive), keys.publicBase64(), std::nullopt},
        {"signature with line breaks", archive, keys.sign(archive).insert(40, "\n  "),
         keys.publicBase64(), std::nullopt},
        {"tampered", tampered, keys.sign(archive), keys.publicBase64(),
         "the update's signature does not match its archive and key"},
        {"other key", archive, otherKeys.sign(archive), keys.publicBase64(),
         "the update's signature does not match its archive and key"},
        {"unsigned", archive, " ", keys.publicBase64(), "the update is not signed"},
        {"signature cut short", archive, keys.sign(archive).substr(0, 40), keys.publicBase64(),
         "the update's signature is not an Ed25519 signature"},
        {"key of the wrong size", archive, keys.sign(archive), "AAAA",
         "the update key of the installed bundle is not an Ed25519 key"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const auto failure = ArchiveSignature::verify(row.archive, row.signature, row.key);
        EXPECT_EQ(failure ? std::optional(failure->description) : std::nullopt, row.failure);
    }
}

// The agent checks its key at start without libsodium; the module verifies with libsodium's
// decoder. Each text is decoded by both: a key the start accepts must be one the verifier
// accepts, and no text the verifier refuses may pass at start.
TEST(ArchiveChecks, DecodesBase64AsStrictlyAsTheSignatureLibrary) {
    const TestKeys keys;
    const std::string key = keys.publicBase64();
    const std::string signature = keys.sign("archive");
    ASSERT_EQ(key.size(), 44u);
    ASSERT_EQ(signature.size(), 88u);
    auto withNul = [](std::string text, std::size_t at) { return text.insert(at, 1, '\0'); };
    struct Row {
        const char* name;
        std::string text;
        std::size_t bytes;
        bool accepted;
    };
    const std::vector<Row> rows = {
        {"key", key, 32, true},
        {"signature", signature, 64, true},
        {"blanks and line breaks anywhere",
         " \t" + key.substr(0, 10) + "\r\n" + key.substr(10) + " \n", 32, true},
        {"blank between padding characters", signature.substr(0, 87) + " =", 64, true},
        {"NUL passed over like a blank", withNul(key, 5), 32, true},
        {"padding missing", key.substr(0, 43), 32, false},
        {"one padding character of two", signature.substr(0, 87), 64, false},
        {"padding doubled", key + "=", 32, false},
        {"text after the padding", key + "AAAA", 32, false},
        {"padding inside", key.substr(0, 20) + "=" + key.substr(20), 32, false},
        {"unused bits set", key.substr(0, 42) + "B=", 32, false},
        {"url-safe alphabet", "-_" + key.substr(2), 32, false},
        {"other blank (vertical tab)", key.substr(0, 4) + "\v" + key.substr(4), 32, false},
        {"byte above ASCII", key.substr(0, 4) + "\xC3\xA9" + key.substr(4), 32, false},
        {"one byte short", key, 33, false},
        {"one byte long", key, 31, false},
        {"key where a signature belongs", key, 64, false},
        {"empty", "", 32, false},
        {"only blanks", " \n ", 32, false},
        {"single character", "A", 0, false},
        {"empty for nothing", "", 0, true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        std::string sodiumBytes(row.bytes + 1, '\0');
        std::size_t sodiumLength = 0;
        const char* end = nullptr;
        const bool sodiumAccepts =
            sodium_base642bin(reinterpret_cast<unsigned char*>(sodiumBytes.data()),
                              sodiumBytes.size(), row.text.data(), row.text.size(), " \t\r\n",
                              &sodiumLength, &end, sodium_base64_VARIANT_ORIGINAL) == 0 &&
            end == row.text.data() + row.text.size() && sodiumLength == row.bytes;
        sodiumBytes.resize(sodiumLength);
        const auto decoded = ArchiveChecks::decodeBase64(row.text, row.bytes);
        EXPECT_EQ(decoded.has_value(), row.accepted);
        EXPECT_EQ(sodiumAccepts, row.accepted);
        if (decoded && sodiumAccepts) {
            EXPECT_EQ(*decoded, sodiumBytes);
        }
    }
}

TEST(ArchiveSignature, ArchiveMustBeExactlyTheStatedLength) {
    TemporaryDirectory folder;
    testing::writeFile(folder / "update.tar.xz", "0123456789");
    EXPECT_EQ(std::get<std::string>(ArchiveSignature::readExactly(folder / "update.tar.xz", 10)),
              "0123456789");
    EXPECT_EQ(std::get<UpdateFailure>(ArchiveSignature::readExactly(folder / "update.tar.xz", 12))
                  .description,
              "the downloaded update is 10 bytes (truncated) where the feed states 12 bytes");
    EXPECT_EQ(std::get<UpdateFailure>(ArchiveSignature::readExactly(folder / "update.tar.xz", 9))
                  .description,
              "the downloaded update is 10 bytes (too long) where the feed states 9 bytes");
    EXPECT_TRUE(std::holds_alternative<UpdateFailure>(
        ArchiveSignature::readExactly(folder / "missing", 10)));
}

TEST(ArchiveUnpacker, EntryNamesAndLinkTargetsStayInside) {
    EXPECT_EQ(ArchiveUnpacker::safeEntryPath("./Corvane.app//bin/a"),
              fs::path("Corvane.app/bin/a"));
    EXPECT_EQ(ArchiveUnpacker::safeEntryPath("Corvane.app/"), fs::path("Corvane.app"));
    for (const char* refused : {"", "/etc/passwd", "../x", "a/../../x", "a/..", ".", "./"}) {
        SCOPED_TRACE(refused);
        EXPECT_FALSE(ArchiveUnpacker::safeEntryPath(refused));
    }
    struct Row {
        const char* entry;
        const char* target;
        bool inward;
    };
    const std::vector<Row> rows = {
        {"Corvane.app/lib/libx.so", "libx.so.1", true},
        {"Corvane.app/bin/tool", "../lib/tool", true},
        {"Corvane.app/current", ".", true},
        {"Corvane.app/bin/tool", "../../outside", true},
        {"Corvane.app/bin/tool", "../../../outside", false},
        {"link", "..", false},
        {"Corvane.app/a", "/usr/bin/env", false},
        // Climbing out and back in still looks through a folder that is not ours.
        {"Corvane.app/a", "../../x/Corvane.app/b", false},
        {"Corvane.app/a", "", false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.entry) + " -> " + row.target);
        EXPECT_EQ(ArchiveUnpacker::isInwardLink(row.entry, row.target), row.inward);
    }
}

TEST(ArchiveUnpacker, UnpacksFilesFoldersAndInwardLinksWithoutSetIdBits) {
    TemporaryDirectory folder;
    const std::string archive = buildArchive({
        {.path = "Corvane.app", .type = AE_IFDIR, .permissions = 0755},
        {.path = "Corvane.app/bin/corvane-agent", .content = "#!/bin/sh\n", .permissions = 04775},
        {.path = "Corvane.app/share/readme", .content = "hello", .permissions = 0666},
        {.path = "Corvane.app/bin/agent", .type = AE_IFLNK, .link = "corvane-agent"},
    });
    ASSERT_FALSE(ArchiveUnpacker::unpack(archive, folder.path()));
    const fs::path bundle = folder / "Corvane.app";
    EXPECT_EQ(testing::readFile(bundle / "share" / "readme"), "hello");
    EXPECT_EQ(fs::read_symlink(bundle / "bin" / "agent"), "corvane-agent");
    struct stat status {};
    ASSERT_EQ(::stat((bundle / "bin" / "corvane-agent").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0755u);
    ASSERT_EQ(::stat((bundle / "share" / "readme").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0644u);
}

TEST(ArchiveUnpacker, RefusesWhatWouldReachOutsideOrIsNotAnArchive) {
    const std::string good = buildArchive({{.path = "Corvane.app/a", .content = "x"}});
    struct Row {
        const char* name;
        std::string archive;
        std::string failureStart;
    };
    const std::vector<Row> rows = {
        {"absolute path", buildArchive({{.path = "/tmp/corvane-test-escape", .content = "x"}}),
         "the update archive holds a path outside its folder"},
        {"dot-dot", buildArchive({{.path = "Corvane.app/../../escape", .content = "x"}}),
         "the update archive holds a path outside its folder"},
        {"outward link",
         buildArchive({{.path = "Corvane.app/l", .type = AE_IFLNK, .link = "../../escape"}}),
         "the update archive holds a link that points outside"},
        {"absolute link",
         buildArchive({{.path = "Corvane.app/l", .type = AE_IFLNK, .link = "/etc"}}),
         "the update archive holds a link that points outside"},
        {"write through an inward link",
         buildArchive({{.path = "Corvane.app/l", .type = AE_IFLNK, .link = "."},
                       {.path = "Corvane.app/l/a", .content = "x"}}),
         "the update archive cannot be unpacked"},
        {"hard link",
         buildArchive({{.path = "Corvane.app/a", .content = "x"},
                       {.path = "Corvane.app/b", .hardlink = "Corvane.app/a"}}),
         "the update archive holds a hard link"},
        {"fifo", buildArchive({{.path = "Corvane.app/p", .type = AE_IFIFO}}),
         "the update archive holds a special file"},
        {"not an archive", "this is not an archive", "the update archive is not a readable"},
        {"truncated", good.substr(0, good.size() / 2), "the update archive"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        TemporaryDirectory folder;
        fs::create_directory(folder / "staging");
        const auto failure = ArchiveUnpacker::unpack(row.archive, folder / "staging");
        ASSERT_TRUE(failure);
        EXPECT_TRUE(failure->description.starts_with(row.failureStart)) << failure->description;
        // Nothing landed beside the staging folder, nor in /tmp.
        EXPECT_FALSE(fs::exists(folder / "escape"));
        EXPECT_FALSE(fs::exists("/tmp/corvane-test-escape"));
    }
}

TEST(BundleSwap, StagingFolderHoldsExactlyOneApp) {
    TemporaryDirectory folder;
    const fs::path installed = folder / "Corvane.app";
    fs::create_directory(installed);
    const auto staging = std::get<fs::path>(BundleSwap::makeStagingFolder(installed));
    EXPECT_EQ(staging.parent_path(), folder.path());
    EXPECT_TRUE(staging.filename().string().starts_with(".Corvane.app.update-"));

    EXPECT_TRUE(std::holds_alternative<UpdateFailure>(BundleSwap::unpackedBundle(staging)));
    fs::create_directory(staging / "Corvane.app");
    EXPECT_EQ(std::get<fs::path>(BundleSwap::unpackedBundle(staging)), staging / "Corvane.app");
    testing::writeFile(staging / "extra", "x");
    EXPECT_TRUE(std::holds_alternative<UpdateFailure>(BundleSwap::unpackedBundle(staging)));
    fs::remove(staging / "extra");
    fs::create_directory_symlink(installed, staging / "Other.app");
    EXPECT_TRUE(std::holds_alternative<UpdateFailure>(BundleSwap::unpackedBundle(staging)));

    EXPECT_TRUE(std::holds_alternative<UpdateFailure>(
        BundleSwap::makeStagingFolder(folder / "missing" / "Corvane.app")));
}

// An installed bundle and its replacement in a staging folder beside it.
struct SwapFolders {
    SwapFolders() {
        fs::create_directories(installed);
        testing::writeFile(installed / "version", "old");
        fs::create_directories(replacement);
        testing::writeFile(replacement / "version", "new");
    }

    static std::optional<std::string> versionAt(const fs::path& bundle) {
        return testing::readFile(bundle / "version");
    }

    TemporaryDirectory folder;
    fs::path installed = folder / "Corvane.app";
    fs::path replacement = folder / ".Corvane.app.update-x" / "Corvane.app";
};

TEST(BundleSwap, EveryFailingStepLeavesTheInstalledBundleInPlace) {
    const BundleSwap::Renames real = BundleSwap::systemRenames();
    struct Row {
        const char* name;
        int exchangeError;
        // Which move fails (1: aside, 2: in), and with what; 0: none.
        int failingMove;
        int moveError;
        const char* installedVersion;
    };
    const std::vector<Row> rows = {
        {"exchange refused, read-only folder", EACCES, 0, 0, "old"},
        {"no exchange, moving aside fails", EINVAL, 1, EACCES, "old"},
        {"no exchange, moving in fails", EINVAL, 2, ENOSPC, "old"},
        {"no exchange, moves work", EINVAL, 0, 0, "new"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const SwapFolders fresh;
        int moves = 0;
        const BundleSwap::Renames renames{
            .exchange = [&](const fs::path&, const fs::path&) { return row.exchangeError; },
            .move =
                [&](const fs::path& from, const fs::path& to) {
                    return ++moves == row.failingMove ? row.moveError : real.move(from, to);
                },
        };
        const auto failure = BundleSwap::swap(fresh.installed, fresh.replacement, renames);
        EXPECT_EQ(failure.has_value(), std::string(row.installedVersion) == "old");
        EXPECT_EQ(fresh.versionAt(fresh.installed), row.installedVersion);
        if (!failure) {
            EXPECT_EQ(fresh.versionAt(fresh.replacement), "old");
        }
    }
}

TEST(BundleProcesses, FindsAndEndsOnlyTheProcessesRunningFromTheBundle) {
    TemporaryDirectory folder;
    const fs::path bundle = folder / "Corvane.app";
    fs::create_directories(bundle / "bin");
    fs::copy_file("/bin/sleep", bundle / "bin" / "sleep");
    fs::create_directories(folder / "Corvane.app-other");
    fs::copy_file("/bin/sleep", folder / "Corvane.app-other" / "sleep");

    auto spawn = [](const fs::path& program) {
        const pid_t child = ::fork();
        if (child == 0) {
            ::execl(program.c_str(), "sleep", "30", static_cast<char*>(nullptr));
            ::_exit(127);
        }
        return child;
    };
    const pid_t inside = spawn(bundle / "bin" / "sleep");
    const pid_t beside = spawn(folder / "Corvane.app-other" / "sleep");
    BundleProcesses processes;
    // The child shows its new executable only once exec has happened.
    std::vector<pid_t> found;
    for (int attempt = 0; attempt < 200 && found.empty(); ++attempt) {
        found = processes.runningFrom(bundle);
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_EQ(found, std::vector<pid_t>{inside});
    EXPECT_FALSE(processes.isTerminated(inside));
    processes.terminate(inside);
    bool ended = false;
    for (int attempt = 0; attempt < 200 && !ended; ++attempt) {
        ended = processes.isTerminated(inside);
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_TRUE(ended);
    EXPECT_FALSE(processes.isTerminated(beside));
    processes.forceTerminate(beside);
    int status = 0;
    ::waitpid(inside, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
    ::waitpid(beside, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
}

TEST(UpdateChoice, NewestBuildAboveTheRunningOneThatIsNotSkipped) {
    auto item = [](const char* build) { return UpdateItem{.versionString = build}; };
    const std::vector<UpdateItem> feed = {item("55"),   item("beta"), item("60"),
                                          item(" 58 "), item("60"),   item("40")};
    struct Row {
        const char* name;
        std::int64_t running;
        std::optional<std::int64_t> skipped;
        std::optional<std::string> chosen;
    };
    const std::vector<Row> rows = {
        {"newest wins whatever its place", 50, std::nullopt, "60"},
        {"skipped newest gives the next", 50, 60, " 58 "},
        {"nothing newer", 60, std::nullopt, std::nullopt},
        {"only the skipped one is newer", 58, 60, std::nullopt},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const auto chosen = UpdateChoice::newest(feed, row.running, row.skipped);
        EXPECT_EQ(chosen ? std::optional(chosen->versionString) : std::nullopt, row.chosen);
    }
    EXPECT_FALSE(UpdateChoice::newest({}, 0, std::nullopt));
}

}  // namespace
}  // namespace corvane
