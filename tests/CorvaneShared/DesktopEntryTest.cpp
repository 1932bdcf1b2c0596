#include "CorvaneShared/DesktopEntry.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace corvane {
namespace {

TEST(DesktopEntry, ExecSplitsByQuotingAndExpandsFieldCodesForNoFiles) {
    struct Row {
        const char* exec;
        const char* icon;
        std::vector<std::string> arguments;
    };
    const std::vector<Row> rows = {
        {"corvane", "", {"corvane"}},
        {R"("/opt/My App/corvane"  --settings %U)", "", {"/opt/My App/corvane", "--settings"}},
        {R"(sh -c "echo \"a %f\" \$HOME \\" "")", "", {"sh", "-c", R"(echo "a %f" $HOME \)", ""}},
        {"corvane %i %c %k --file=%f 100%%",
         "corvane-icon",
         {"corvane", "--icon", "corvane-icon", "Corvane", "/x/app.desktop", "--file=", "100%"}},
        {"corvane %i %F %d", "", {"corvane"}},
        {R"(corvane "unterminated)", "", {}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.exec);
        const DesktopEntry entry{
            .file = "/x/app.desktop", .exec = row.exec, .name = "Corvane", .icon = row.icon};
        EXPECT_EQ(DesktopEntries::commandLine(entry), row.arguments);
    }
}

}  // namespace
}  // namespace corvane
