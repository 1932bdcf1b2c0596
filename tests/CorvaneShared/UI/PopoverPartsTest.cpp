#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "CorvaneShared/UI/ByteText.h"
#include "CorvaneShared/UI/MemoryCompositionBar.h"
#include "CorvaneShared/UI/MetricProgressBar.h"
#include "CorvaneShared/UI/PopoverColors.h"

namespace corvane {
namespace {

TEST(ByteText, RatesInTheDisplayLocale) {
    struct Row {
        const char* locale;
        std::uint64_t bytes;
        const char* expected;
    };
    // Zero is written as a number; the unit is chosen by size, so huge rates stay short.
    const std::vector<Row> rows = {
        {"en-US", 0, "0 bytes/s"},
        {"en-US", 512, "512 bytes/s"},
        {"en-US", 1'500'000, "1.5 MB/s"},
        {"en-US", 2'000'000, "2 MB/s"},
        {"en-US", 12'345, "12 kB/s"},
        {"en-US", 3'456'789'012, "3.46 GB/s"},
        {"de-DE", 1'500'000, "1,5 MB/s"},
        {"de-DE", 3'456'789'012, "3,46 GB/s"},
        {"en-US", std::numeric_limits<std::uint64_t>::max(), "9.22 EB/s"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(ByteText::rate(row.bytes, ByteText::localeFor(row.locale)).toStdString(),
                  row.expected)
            << row.locale << " " << row.bytes;
    }
}

TEST(ByteText, MemoryCountsInPowersOf1024) {
    const QLocale english = ByteText::localeFor("en-US");
    EXPECT_EQ(ByteText::format(16ull << 30, ByteText::Style::memory, english).toStdString(),
              "16 GB");
    EXPECT_EQ(ByteText::format(1'500'000, ByteText::Style::memory, english).toStdString(),
              "1.4 MB");
    EXPECT_EQ(ByteText::format(16ull << 30, ByteText::Style::file, english).toStdString(),
              "17.18 GB");
}

TEST(PopoverParts, BarsNeverPassTheirEdges) {
    EXPECT_EQ(filledFraction(1.7), 1.0);
    EXPECT_EQ(filledFraction(-0.2), 0.0);
    EXPECT_EQ(filledFraction(std::nan("")), 0.0);

    struct Row {
        const char* name;
        std::array<double, 4> shares;
        std::array<CompositionSegment, 4> expected;
    };
    const std::vector<Row> rows = {
        {"all zero", {0, 0, 0, 0}, {{{0, 0}, {0, 0}, {0, 0}, {0, 0}}}},
        {"wired only", {1, 0, 0, 0}, {{{0, 100}, {100, 0}, {100, 0}, {100, 0}}}},
        {"half in all",
         {0.125, 0.125, 0.125, 0.125},
         {{{0, 12.5}, {12.5, 12.5}, {25, 12.5}, {37.5, 12.5}}}},
        {"bytes", {200, 100, 100, 400}, {{{0, 25}, {25, 12.5}, {37.5, 12.5}, {50, 50}}}},
        {"negative share", {-50, 50, 0, 50}, {{{0, 0}, {0, 100}, {100, 0}, {100, 0}}}},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(compositionSegments(row.shares, 100), row.expected) << row.name;
    }
}

TEST(PopoverParts, AppearanceIsForcedOnlyByExactNames) {
    EXPECT_EQ(preferredScheme("dark"), PopoverScheme::dark);
    EXPECT_EQ(preferredScheme("light"), PopoverScheme::light);
    EXPECT_EQ(preferredScheme("Dark"), std::nullopt);
    EXPECT_EQ(preferredScheme("system"), std::nullopt);
}

}  // namespace
}  // namespace corvane
