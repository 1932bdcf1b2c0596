#include "Platform/Linux/LinuxSystemStatistics.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>

namespace corvane {
namespace {

namespace fs = std::filesystem;

constexpr std::uint64_t KiB = 1024;

fs::path fixtureTree(std::string_view name) {
    return fs::path(CORVANE_FIXTURES) / name;
}

LinuxSystemStatistics statisticsOf(std::string_view tree) {
    return LinuxSystemStatistics(fixtureTree(tree) / "proc", fixtureTree(tree) / "sys");
}

struct TreeRow {
    std::string_view tree;
    std::optional<HostCPULoad> host;
    std::size_t processorCount;
    std::optional<VMStatistics> vm;
    std::optional<SwapUsage> swap;
    std::optional<std::int32_t> pressureLevel;
    std::optional<std::array<double, 3>> loadAverages;
    std::optional<double> uptime;
    std::optional<std::uint64_t> physicalMemory;
    std::optional<std::string> brand;
};

// Expected values are written as the fixture files' own numbers, so each can be checked
// against the file by eye.
TEST(LinuxSystemStatistics, ReadsEveryFixtureTree) {
    constexpr std::uint64_t laptopWired = (443416 + 29712 + 118444 + 0 + 11776 + 245760) * KiB;
    constexpr std::uint64_t laptopCompressed = 418320 * KiB + 736120832 + 10485760;
    constexpr std::uint64_t piWired = (71536 + 7344 + 24880 + 1664 + 16384) * KiB;

    const TreeRow rows[] = {
        {"laptop-zram-zswap-x86_64",
         HostCPULoad{
             .user = 21549997, .system = 7033573 + 86239, .idle = 170004451 + 311852, .nice = 9458},
         8,
         VMStatistics{.wiredBytes = laptopWired,
                      .compressedBytes = laptopCompressed,
                      .activeBytes = (15998012 - 3870212) * KiB - laptopWired - laptopCompressed,
                      .inactiveBytes = (182044 + 3912448 + 402188) * KiB,
                      .pageInBytes = 48213564 * KiB,
                      .pageOutBytes = 29187344 * KiB},
         SwapUsage{.totalBytes = 16387576 * KiB, .usedBytes = (16387576 - 12183220) * KiB},
         RawPressureLevel::warning, std::array{2.41, 1.87, 1.52}, 261843.52, 15998012 * KiB,
         "11th Gen Intel(R) Core(TM) i7-1165G7 @ 2.80GHz"},
        {"raspberrypi4-arm64",
         HostCPULoad{
             .user = 1212222, .system = 357791 + 5801, .idle = 16625561 + 23835, .nice = 3030},
         3,
         VMStatistics{.wiredBytes = piWired,
                      .compressedBytes = 0,
                      .activeBytes = (3884376 - 610844) * KiB - piWired,
                      .inactiveBytes = (51220 + 612408 + 61008) * KiB,
                      .pageInBytes = 9123344 * KiB,
                      .pageOutBytes = 4412208 * KiB},
         SwapUsage{.totalBytes = 1048572 * KiB, .usedBytes = (1048572 - 402212) * KiB},
         RawPressureLevel::critical, std::array{3.88, 3.12, 2.45}, 86123.07, 3884376 * KiB,
         "Raspberry Pi 4 Model B Rev 1.4"},
        {"old-kernel-2.4-i686",
         HostCPULoad{.user = 1234567, .system = 345678, .idle = 98765432, .nice = 2345}, 2,
         std::nullopt,
         SwapUsage{.totalBytes = 1044184 * KiB, .usedBytes = (1044184 - 1036212) * KiB},
         std::nullopt, std::array{0.08, 0.03, 0.01}, 1234567.89, 515212 * KiB,
         "Pentium III (Coppermine)"},
        {"broken-missing-fields", std::nullopt, 2, std::nullopt,
         SwapUsage{.totalBytes = 2097148 * KiB, .usedBytes = 0}, std::nullopt, std::nullopt,
         std::nullopt, 24684096 * KiB, std::nullopt},
        {"broken-truncated", HostCPULoad{.user = 1741, .system = 1238, .idle = 58038, .nice = 0}, 1,
         std::nullopt, std::nullopt, std::nullopt, std::nullopt, std::nullopt, 24684096 * KiB,
         std::nullopt},
        {"broken-garbage", std::nullopt, 1,
         VMStatistics{.wiredBytes = (22032 + 1364 + 2000) * KiB,
                      .compressedBytes = 0,
                      .activeBytes = (24684096 - 24393120 - 22032 - 1364 - 2000) * KiB,
                      .inactiveBytes = (4400 + 114124 + 58972) * KiB,
                      .pageInBytes = 1038601 * KiB,
                      .pageOutBytes = 423108 * KiB},
         std::nullopt, std::nullopt, std::nullopt, std::nullopt, 24684096 * KiB, std::nullopt},
        {"broken-empty", std::nullopt, 0, std::nullopt, std::nullopt, std::nullopt, std::nullopt,
         std::nullopt, std::nullopt, std::nullopt},
        {"no-such-tree", std::nullopt, 0, std::nullopt, std::nullopt, std::nullopt, std::nullopt,
         std::nullopt, std::nullopt, std::nullopt},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.tree);
        auto statistics = statisticsOf(row.tree);
        // A reused sample: a read that fails must not leave the last one's numbers behind.
        CPULoadSample cpu{.host = HostCPULoad{.user = 1}, .processors = {ProcessorLoad{.user = 1}}};
        statistics.readCPULoad(cpu);
        const auto memory = statistics.readMemory();

        EXPECT_EQ(cpu.host, row.host);
        EXPECT_EQ(cpu.processors.size(), row.processorCount);
        EXPECT_EQ(memory.vm, row.vm);
        EXPECT_EQ(memory.swap, row.swap);
        EXPECT_EQ(statistics.memoryPressureLevel(), row.pressureLevel);
        EXPECT_EQ(statistics.loadAverages(), row.loadAverages);
        EXPECT_EQ(statistics.uptimeSeconds(), row.uptime);
        EXPECT_EQ(statistics.physicalMemoryBytes(), row.physicalMemory);
        EXPECT_EQ(statistics.processorBrand(), row.brand);
        EXPECT_EQ(statistics.thermalState(), std::nullopt);
    }
}

class ZramDiscoveryTest : public ::testing::Test {
protected:
    void SetUp() override {
        root = fs::path(::testing::TempDir()) / ("corvane-zram-" + std::to_string(::getpid()));
        fs::create_directories(root / "proc");
        fs::create_directories(root / "sys/block");
        std::ofstream(root / "proc/meminfo") << "MemTotal: 1000 kB\nMemAvailable: 400 kB\n";
        std::ofstream(root / "proc/vmstat") << "pgpgin 1\npgpgout 2\n";
    }
    void TearDown() override { fs::remove_all(root); }

    void addZram(const char* name, std::uint64_t usedBytes) {
        fs::create_directories(root / "sys/block" / name);
        std::ofstream(root / "sys/block" / name / "mm_stat") << "8192 4096 " << usedBytes << " 0\n";
    }

    std::uint64_t compressedBytes(LinuxSystemStatistics& statistics) {
        const auto memory = statistics.readMemory();
        return memory.vm ? memory.vm->compressedBytes : UINT64_MAX;
    }

    fs::path root;
};

// Devices are listed once per rescan interval, and again as soon as a listed one vanishes.
TEST_F(ZramDiscoveryTest, DevicesAreFoundWithinOneRescanInterval) {
    addZram("zram0", 4096);
    LinuxSystemStatistics statistics(root / "proc", root / "sys");
    EXPECT_EQ(compressedBytes(statistics), 4096u);

    addZram("zram1", 1000);
    for (unsigned read = 1; read < LinuxSystemStatistics::zramRescanInterval; ++read) {
        ASSERT_EQ(compressedBytes(statistics), 4096u) << "read " << read;
    }
    EXPECT_EQ(compressedBytes(statistics), 5096u);

    fs::remove_all(root / "sys/block/zram0");
    EXPECT_EQ(compressedBytes(statistics), 1000u);
    addZram("zram2", 7);
    EXPECT_EQ(compressedBytes(statistics), 1007u) << "the vanished device forced a rescan";
}

}  // namespace
}  // namespace corvane
