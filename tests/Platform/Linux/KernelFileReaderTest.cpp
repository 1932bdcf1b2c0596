#include "Platform/Linux/KernelFileReader.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>

namespace corvane {
namespace {

namespace fs = std::filesystem;

class KernelFileReaderTest : public ::testing::Test {
protected:
    void SetUp() override {
        directory = fs::path(::testing::TempDir()) /
                    ("corvane-reader-" + std::to_string(::getpid()) + "-" +
                     ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::create_directories(directory);
    }
    void TearDown() override { fs::remove_all(directory); }

    std::string write(const char* name, std::string_view content) {
        const auto path = directory / name;
        std::ofstream(path, std::ios::binary) << content;
        return path.string();
    }

    fs::path directory;
};

std::string lines(std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        text += "line " + std::to_string(i) + " 0123456789abcdef\n";
    }
    return text;
}

TEST_F(KernelFileReaderTest, AbsentWhenTheFileCannotBeRead) {
    KernelFileReader reader;
    const auto empty = write("empty", "");
    EXPECT_EQ(reader.read((directory / "missing").c_str()), std::nullopt);
    EXPECT_EQ(reader.read(empty.c_str()), std::nullopt);
    EXPECT_EQ(reader.read(directory.c_str()), std::nullopt) << "a directory fails with EISDIR";
}

// A sysfs attribute holds one number and its line end; anything more or less is no reading.
TEST_F(KernelFileReaderTest, ReadsANumberFileOnlyWhenItHoldsOneWholeNumber) {
    struct Row {
        const char* name;
        const char* content;
        std::optional<std::int64_t> expected;
    };
    const Row rows[] = {
        {"with its line end", "45000\n", 45000},
        {"padded with blanks", " \t-12 \n", -12},
        {"two numbers", "1 2\n", std::nullopt},
        {"a unit after it", "12mV\n", std::nullopt},
        {"only a line end", "\n", std::nullopt},
        {"past 64 bits", "9223372036854775808\n", std::nullopt},
    };
    KernelFileReader reader;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const auto path = write("number", row.content);
        EXPECT_EQ(reader.readNumber<std::int64_t>(path.c_str()), row.expected);
    }
    EXPECT_EQ(reader.readNumber<std::int64_t>((directory / "missing").c_str()), std::nullopt);
    const auto negative = write("negative", "-1\n");
    EXPECT_EQ(reader.readNumber<std::uint64_t>(negative.c_str()), std::nullopt);
}

TEST_F(KernelFileReaderTest, ReadsTheWholeFileWhateverItsSize) {
    KernelFileReader reader;
    const auto small = write("small", "cpu 1 2 3 4");
    const auto large = lines(4000);  // well past the first buffer size
    const auto largePath = write("large", large);

    EXPECT_EQ(reader.read(small.c_str()), "cpu 1 2 3 4");
    EXPECT_EQ(reader.read(largePath.c_str()), large);
    EXPECT_EQ(reader.read(small.c_str()), "cpu 1 2 3 4") << "a shorter file after a longer one";
}

// procfs reports a size of 0 for files that are anything but empty.
TEST_F(KernelFileReaderTest, IgnoresTheSizeProcfsReports) {
    struct stat status {};
    ASSERT_EQ(::stat("/proc/self/status", &status), 0);
    ASSERT_EQ(status.st_size, 0);

    KernelFileReader reader;
    const auto text = reader.read("/proc/self/status");
    ASSERT_TRUE(text.has_value());
    EXPECT_TRUE(text->starts_with("Name:"));
    EXPECT_NE(text->find("\nPid:"), std::string_view::npos);
}

TEST_F(KernelFileReaderTest, CutsAnOverlongFileAfterItsLastCompleteLine) {
    KernelFileReader reader(100);
    const auto text = lines(10);
    const auto path = write("long", text);
    const auto oneLongLine = write("one-line", std::string(200, '7'));

    const auto result = reader.read(path.c_str());

    ASSERT_TRUE(result.has_value());
    EXPECT_LE(result->size(), 100u);
    EXPECT_TRUE(result->ends_with('\n'));
    EXPECT_TRUE(text.starts_with(*result));
    EXPECT_EQ(reader.read(oneLongLine.c_str()), std::nullopt)
        << "no complete line within the limit";
}

}  // namespace
}  // namespace corvane
