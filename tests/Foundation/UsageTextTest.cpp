#include "Foundation/UsageText.h"

#include <gtest/gtest.h>

#include <string>

namespace corvane {
namespace {

TEST(UsageText, DescriptionsStartInOneColumn) {
    struct Row {
        const char* name;
        const char* synopsis;
        const char* description;
        const char* expected;
    };
    const Row rows[] = {
        {"short synopsis", "--open SECTION", "mark SECTION open",
         "  --open SECTION       mark SECTION open\n"},
        {"widest that fits", "--twenty-characters!", "one space",
         "  --twenty-characters! one space\n"},
        {"too wide", "set KEY VALUE [--bool]", "on the next line",
         "  set KEY VALUE [--bool]\n                       on the next line\n"},
        {"several lines", "-h, --help", "first\nsecond",
         "  -h, --help           first\n                       second\n"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        std::string text = "Options:\n";
        appendUsageEntry(text, row.synopsis, row.description);
        EXPECT_EQ(text, std::string("Options:\n") + row.expected);
    }
}

}  // namespace
}  // namespace corvane
