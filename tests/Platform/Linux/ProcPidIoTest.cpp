#include "Platform/Linux/ProcPidIo.h"

#include <gtest/gtest.h>

#include <optional>
#include <string_view>

#include "tests/Platform/Linux/ParserRow.h"

namespace corvane {
namespace {

using testing::ParserRow;

TEST(ProcPidIo, ReadsStorageBytes) {
    const ParserRow<ProcPidIo> rows[] = {
        {"valid",
         "rchar: 6976\nwchar: 99\nsyscr: 10\nsyscw: 1\nread_bytes: 4096\nwrite_bytes: 8192\n"
         "cancelled_write_bytes: 4096\n",
         ProcPidIo{.readBytes = 4096, .writeBytes = 8192}},
        {"no write_bytes", "rchar: 6976\nread_bytes: 4096\n", {}},
        {"garbage", "read_bytes: lots\nwrite_bytes: 8192\n", {}},
        {"empty", "", {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(parseProcPidIo(row.text), row.expected);
    }
}

}  // namespace
}  // namespace corvane
