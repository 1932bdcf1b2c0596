#include "CorvaneAgent/UI/ProcessIcon.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QImage>
#include <QPixmap>

#include <filesystem>
#include <string_view>

#include "Platform/Linux/LinuxProcessCommands.h"
#include "tests/CorvaneShared/FileTestSupport.h"

namespace corvane {
namespace {

const std::string fixture = CORVANE_FIXTURES "/desktop-apps";

// The colour of the first opaque pixel of the icon drawn 14 pixels square; transparent when it
// has none.
QColor inkColour(const QIcon& icon) {
    const QImage image = icon.pixmap(14, 14).toImage();
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y).alpha() == 255) {
                return image.pixelColor(x, y);
            }
        }
    }
    return Qt::transparent;
}

TEST(ProcessIcon, ApplicationIconFromThemeOrFileElseNone) {
    QIcon::setThemeSearchPaths({QString::fromStdString(fixture + "/icons")});
    QIcon::setThemeName("hicolor");
    const QColor editorRed(0xd0, 0x40, 0x20);
    struct Row {
        const char* name;
        std::int32_t pid;
        const char* processName;
        bool hasIcon;
    };
    const Row rows[] = {
        {"theme icon of the matched entry", 105, "editor", true},
        {"entry whose icon the theme lacks", 104, "x-tool", false},
        {"command-line program", 112, "bash", false},
        {"process gone", 999, "ghost", false},
    };
    ProcessIcon icons(fixture + "/procfs", [&](const char* name) -> const char* {
        static const std::string home = fixture + "/home";
        static const std::string share = fixture + "/share";
        const std::string_view variable = name;
        return variable == "XDG_DATA_HOME"   ? home.c_str()
               : variable == "XDG_DATA_DIRS" ? share.c_str()
                                             : nullptr;
    });
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const QIcon icon = icons.icon({.pid = row.pid, .name = row.processName});
        ASSERT_EQ(icon.isNull(), !row.hasIcon);
        if (row.hasIcon) {
            EXPECT_EQ(inkColour(icon).rgb(), editorRed.rgb());
        }
    }
    EXPECT_FALSE(
        applicationIcon(fixture + "/icons/hicolor/scalable/apps/example-editor.svg").isNull());
    EXPECT_FALSE(applicationIcon("example-editor.svg").isNull());
    EXPECT_TRUE(applicationIcon("/no/such/icon.png").isNull());
    EXPECT_TRUE(applicationIcon("").isNull());
}

TEST(ProcessIcon, AnApplicationRemovedWhileRunningLosesItsIcon) {
    QIcon::setThemeSearchPaths({QString::fromStdString(fixture + "/icons")});
    QIcon::setThemeName("hicolor");
    testing::TemporaryDirectory data;
    std::filesystem::copy(fixture + "/share", data.path(),
                          std::filesystem::copy_options::recursive);
    const std::string dataDirectory = data.path().string();
    ProcessIcon icons(fixture + "/procfs", [&](const char* name) -> const char* {
        return std::string_view(name) == "XDG_DATA_DIRS" ? dataDirectory.c_str() : "/nonexistent";
    });
    const ProcessMetric editor{.pid = 105, .name = "editor"};
    ASSERT_FALSE(icons.icon(editor).isNull());
    std::filesystem::remove(data / "applications/org.example.Editor.desktop");
    QDeadlineTimer deadline(15000);
    while (!icons.icon(editor).isNull() && !deadline.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    EXPECT_TRUE(icons.icon(editor).isNull());
}

}  // namespace
}  // namespace corvane
