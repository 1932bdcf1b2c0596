#include "tools/corvane-release/ReleaseTool.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "Platform/Updates/ArchiveSignature.h"
#include "tests/CorvaneShared/FileTestSupport.h"

namespace corvane {
namespace {

using testing::TemporaryDirectory;

struct ToolRun {
    int status;
    std::string out;
    std::string errors;
};

ToolRun release(const std::vector<std::string>& arguments) {
    const std::vector<std::string_view> views(arguments.begin(), arguments.end());
    std::ostringstream out;
    std::ostringstream errors;
    const int status = ReleaseTool::run(views, out, errors);
    return {status, out.str(), errors.str()};
}

TEST(ReleaseTool, KeysSignWhatTheUpdaterVerifies) {
    TemporaryDirectory folder;
    const std::string secret = (folder / "release.key").string();
    const ToolRun keys = release({"keys", secret});
    ASSERT_EQ(keys.status, 0) << keys.errors;
    const std::string publicKey = keys.out.substr(0, keys.out.find('\n'));
    EXPECT_TRUE(ArchiveSignature::decodePublicKey(publicKey));
    struct stat status {};
    ASSERT_EQ(::stat(secret.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600u);
    // A second run must not replace the key that signed earlier releases.
    const std::string before = *testing::readFile(secret);
    EXPECT_EQ(release({"keys", secret}).status, 1);
    EXPECT_EQ(testing::readFile(secret), before);

    testing::writeFile(folder / "Corvane.tar.xz", "archive bytes");
    const ToolRun signing =
        release({"sign", (folder / "Corvane.tar.xz").string(), "--key", secret});
    ASSERT_EQ(signing.status, 0) << signing.errors;
    const std::string prefix = "sparkle:edSignature=\"";
    ASSERT_TRUE(signing.out.starts_with(prefix));
    const std::string signature =
        signing.out.substr(prefix.size(), signing.out.find('"', prefix.size()) - prefix.size());
    EXPECT_TRUE(signing.out.ends_with("\" length=\"13\"\n"));
    EXPECT_FALSE(ArchiveSignature::verify("archive bytes", signature, publicKey));
    EXPECT_TRUE(ArchiveSignature::verify("archive bytes!", signature, publicKey));
}

TEST(ReleaseTool, FeedItemEscapesWhatItQuotes) {
    const std::string item = ReleaseTool::feedItem({
        .version = "2.1",
        .build = "57",
        .url = "https://u/a.tar.xz?x=1&y=\"2\"",
        .length = 12,
        .signature = "c2ln",
        .notes = "<p>Fixes & more</p>",
    });
    EXPECT_NE(item.find("<sparkle:version>57</sparkle:version>"), std::string::npos);
    EXPECT_NE(item.find("<description>&lt;p&gt;Fixes &amp; more&lt;/p&gt;</description>"),
              std::string::npos);
    EXPECT_NE(item.find(R"(url="https://u/a.tar.xz?x=1&amp;y=&quot;2&quot;" length="12")"),
              std::string::npos);
    EXPECT_EQ(item.find("releaseNotesLink"), std::string::npos);
}

TEST(ReleaseTool, BadCommandLinesExplainThemselves) {
    TemporaryDirectory folder;
    testing::writeFile(folder / "a.tar.xz", "x");
    testing::writeFile(folder / "not-a-key", "hello");
    const std::string archive = (folder / "a.tar.xz").string();
    ASSERT_EQ(::mkfifo((folder / "fifo").c_str(), 0600), 0);
    const std::string fifo = (folder / "fifo").string();
    const std::string directory = folder.path().string();
    const std::string key = (folder / "not-a-key").string();
    struct Row {
        std::vector<std::string> arguments;
        int status;
        std::string error;
    };
    // One place of each kind that is not a file: a FIFO and a folder fail the same check.
    const std::vector<Row> rows = {
        {{}, 2, "missing command"},
        {{"sign", archive, "--key", key, "--verbose"}, 2, "unknown option '--verbose'"},
        {{"sign", archive, "--key", fifo}, 2, "is not a file"},
        {{"sign", directory, "--key", key}, 2, "is not a file"},
        {{"keys", fifo}, 2, "is not a file"},
        {{"sign",
          "a\xff"
          "b.tar.xz",
          "--key", key},
         2,
         "'a\\xffb.tar.xz' is not valid UTF-8"},
        {{"sign\n", archive}, 2, "unknown command 'sign\\x0a'"},
        {{"feed-item", archive, "--key", key, "--version", "2.1", "--build", "5x", "--url", "u"},
         2,
         "--build: '5x' is not a whole number"},
        {{"feed-item", archive, "--key", key, "--version", "2.1", "--build", "99999999999999999999",
          "--url", "u", "--notes", directory},
         2,
         "is not a whole number"},
        {{"feed-item", archive, "--key", key, "--version", "2.1", "--build", "57", "--url", "u",
          "--notes", fifo},
         2,
         "--notes: "},
        {{"publish"}, 2, "unknown command 'publish'"},
        {{"keys"}, 2, "keys needs the file"},
        {{"sign", archive}, 2, "--key is needed"},
        {{"sign", archive, "--key"}, 2, "--key needs a value"},
        {{"sign", archive, "--key", key}, 1, "does not hold a secret key"},
        {{"feed-item", archive, "--key", "k", "--version", "2.1", "--url", "u"},
         2,
         "--build is needed"},
        {{"sign", (folder / "missing").string(), "--key", key}, 1, "does not hold a secret key"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.arguments.empty() ? "(nothing)" : row.arguments[0]);
        const ToolRun run = release(row.arguments);
        EXPECT_EQ(run.status, row.status);
        EXPECT_NE(run.errors.find(row.error), std::string::npos) << run.errors;
        EXPECT_TRUE(run.out.empty());
        EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1) << run.errors;
        // Nothing written: the folder still holds the archive, the key, and the FIFO.
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 3);
    }
}

}  // namespace
}  // namespace corvane
