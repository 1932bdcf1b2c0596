#include "CorvaneAgent/RecordedSMCTable.h"

#include <gtest/gtest.h>

#include <string>
#include <variant>

namespace corvane {
namespace {

struct RefusalRow {
    std::string_view name;
    std::string_view json;
    std::string_view message;
};

TEST(RecordedSMCTable, RefusesMalformedTablesNamingTheEntry) {
    const auto thirtyThreeBytes =
        R"([{"key": "TC0P", "type": "sp78", "bytes": ")" + std::string(66, '0') + R"("}])";
    const RefusalRow rows[] = {
        {"not JSON", "[{", "the table is not valid JSON"},
        {"not an array", "{}", "the table is not a JSON array of keys"},
        {"not an object", R"([{"key": "TC0P", "type": "sp78", "bytes": ""}, 7])",
         "entry 1 is not an object"},
        {"key not text", R"([{"key": 7, "type": "sp78", "bytes": "2d80"}])",
         R"(entry 0: "key" must be a string of four bytes)"},
        {"key of three bytes", R"([{"key": "TC0", "type": "sp78", "bytes": "2d80"}])",
         R"(entry 0 "TC0": "key" must be a string of four bytes)"},
        {"no type", R"([{"key": "TC0P", "bytes": "2d80"}])",
         R"(entry 0 "TC0P": "type" must be a string of four bytes)"},
        {"odd digits", R"([{"key": "TC0P", "type": "sp78", "bytes": "2d8"}])",
         R"(entry 0 "TC0P": "bytes" must be a string of hexadecimal digit pairs)"},
        {"not hex", R"([{"key": "TC0P", "type": "sp78", "bytes": "2x80"}])",
         R"(entry 0 "TC0P": "bytes" must be a string of hexadecimal digit pairs)"},
        {"33 bytes", thirtyThreeBytes, R"(entry 0 "TC0P": "bytes" holds more than 32 bytes)"},
        {"negative size", R"([{"key": "TC0P", "type": "sp78", "bytes": "2d80", "size": -1}])",
         R"(entry 0 "TC0P": "size" must be a whole number from 0 to 2^32 - 1)"},
        {"listed twice", R"([{"key": "TC0P", "type": "sp78", "bytes": "2d80"},
                            {"key": "TC0P", "type": "sp78", "bytes": "2e00"}])",
         R"(entry 1 "TC0P": the key is listed before, as entry 0)"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const auto result = parseRecordedSMCTable(row.json);
        const auto* error = std::get_if<RecordedSMCTableError>(&result);
        ASSERT_TRUE(error);
        EXPECT_EQ(error->message, row.message);
    }
    // A file that never ends is refused once it passes the size any table has.
    for (const char* file : {CORVANE_FIXTURES "/smc/missing.json", "/dev/zero"}) {
        SCOPED_TRACE(file);
        const auto loaded = loadRecordedSMCTable(file);
        ASSERT_TRUE(std::holds_alternative<RecordedSMCTableError>(loaded));
        const auto& message = std::get<RecordedSMCTableError>(loaded).message;
        EXPECT_NE(message.find(file), std::string::npos) << message;
    }
}

}  // namespace
}  // namespace corvane
