#include "Platform/Linux/DevicetreeModel.h"

#include <gtest/gtest.h>

#include <string_view>

#include "tests/Platform/Linux/ParserRow.h"

namespace corvane {
namespace {

using testing::ParserRow;

TEST(DevicetreeModel, DropsTrailingNULs) {
    using namespace std::string_view_literals;
    const ParserRow<std::string_view> rows[] = {
        {"empty", "", std::nullopt},
        {"NUL-terminated", "Raspberry Pi 4 Model B Rev 1.4\0"sv, "Raspberry Pi 4 Model B Rev 1.4"},
        {"only NULs", "\0\0"sv, std::nullopt},
        {"text after the NUL ignored", "Board A\0junk"sv, "Board A"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(parseDevicetreeModel(row.text), row.expected);
    }
}

}  // namespace
}  // namespace corvane
