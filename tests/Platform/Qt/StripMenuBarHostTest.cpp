#include "Platform/Qt/StripMenuBarHost.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDeadlineTimer>
#include <QProcess>
#include <QStandardPaths>
#include <QThread>
#include <QWidget>

#include <algorithm>
#include <cmath>
#include <map>

namespace corvane {
namespace {

// Generous, since it only costs time when a test fails, and CI runs the suite two at a time on a
// loaded machine.
bool runUntil(const std::function<bool()>& done, int milliseconds = 15000) {
    QDeadlineTimer deadline(milliseconds);
    while (!done() && !deadline.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    return done();
}

void settle() {
    runUntil([] { return false; }, 300);
}

/// Runs a command against the test's display and answers what it printed.
QString run(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished(5000);
    return QString::fromLocal8Bit(process.readAllStandardOutput());
}

void xdotool(const QStringList& arguments) {
    run(QStringLiteral("xdotool"), arguments);
    settle();
}

// A private X server with a window manager for the whole suite, since Qt connects to one
// display per process.
class StripMenuBarHostTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        for (const char* tool : {"Xvfb", "openbox", "xdotool", "xprop"}) {
            if (QStandardPaths::findExecutable(QString::fromLatin1(tool)).isEmpty()) {
                missingTool = tool;
                return;
            }
        }
        server = new QProcess;
        server->start(QStringLiteral("Xvfb"),
                      {"-displayfd", "1", "-nolisten", "tcp", "-screen", "0", "1280x800x24"});
        server->waitForReadyRead(10000);
        const QByteArray display = ":" + server->readAllStandardOutput().trimmed();
        qputenv("DISPLAY", display);
        qputenv("QT_QPA_PLATFORM", "xcb");
        windowManager = new QProcess;
        windowManager->start(QStringLiteral("openbox"), {"--sm-disable"});
        QDeadlineTimer deadline(10000);
        while (!run("xprop", {"-root", "_NET_SUPPORTING_WM_CHECK"}).contains("window id") &&
               !deadline.hasExpired()) {
            QThread::msleep(50);
        }
        static int argc = 1;
        static char name[] = "corvane-strip-tests";
        static char* argv[] = {name, nullptr};
        application = new QApplication(argc, argv);
        // The window manager names itself before it manages windows, and on a busy machine a
        // window mapped in between was never managed (never framed, so the first click went
        // nowhere). A probe window it took in (gave WM_STATE) shows it is ready; one it missed
        // is replaced by another.
        QDeadlineTimer managing(15000);
        while (!managing.hasExpired()) {
            QWidget probe;
            probe.show();
            const QString window = QString::number(probe.winId());
            if (runUntil(
                    [&] {
                        return run("xprop", {"-id", window, "WM_STATE"}).contains("Normal");
                    },
                    2000)) {
                break;
            }
        }
    }

    static void TearDownTestSuite() {
        delete application;
        for (QProcess* process : {windowManager, server}) {
            if (process) {
                process->terminate();
                process->waitForFinished(3000);
                delete process;
            }
        }
    }

    void SetUp() override {
        if (!missingTool.empty()) {
            GTEST_SKIP() << missingTool << " is not installed (scripts/setup installs it)";
        }
        MenuBarHostMenu menu{"Settings", "Quit", {}, {}};
        auto creation = StripMenuBarHost::create(
            [this](const std::string& name) -> std::optional<double> {
                return positions.count(name) ? std::optional(positions.at(name)) : std::nullopt;
            },
            std::move(menu));
        ASSERT_TRUE(creation.host) << creation.failure;
        host = std::move(creation.host);
        moves = host->observeItemMoved([this](MenuBarItem&) { ++moveCount; });
        presses = host->observePointerPresses(
            [this](ScreenPoint, bool onItem) { pressesOnItem.push_back(onItem); });
        // Installed right to left, as the controller does.
        positions = {
            {"Corvane.cpu.1", 4200}, {"Corvane.memory.1", 4100}, {"Corvane.storage.1", 4000}};
        for (const char* name : {"Corvane.storage.1", "Corvane.memory.1", "Corvane.cpu.1"}) {
            items.push_back(host->addItem(widths.at(name), name));
            MenuBarItem& item = *items.back();
            item.setAction([this, name] { ++clicks[name]; });
            item.setDrawing([name, this](double scale, double height) {
                ItemImage image{int(std::lround(widths.at(name) * scale)),
                                int(std::lround(height * scale)),
                                scale,
                                {}};
                image.pixels.assign(std::size_t(image.pixelWidth) * image.pixelHeight,
                                    name[8] == 'c' ? 0xFF3070F0u : 0xFF30C060u);
                return image;
            });
        }
        ASSERT_TRUE(runUntil([this] { return visualOrder().size() == 3; }));
        // The bar takes pointer events once the window manager has mapped it (WM_STATE), which
        // on a busy machine can come well after Qt has placed it.
        const QWidget* bar = QApplication::topLevelWidgets().value(0);
        ASSERT_NE(bar, nullptr);
        const QString window = QString::number(bar->winId());
        ASSERT_TRUE(runUntil([&] {
            return run("xprop", {"-id", window, "WM_STATE"}).contains("Normal");
        }));
        settle();
        moveCount = 0;
    }

    void TearDown() override {
        items.clear();
        host.reset();
    }

    /// The items' names, left to right on the screen.
    std::vector<std::string> visualOrder() const {
        std::vector<std::pair<double, std::string>> placed;
        for (const auto& item : items) {
            if (const auto frame = item->windowFrame()) {
                placed.emplace_back(frame->x, item->autosaveName());
            }
        }
        std::sort(placed.begin(), placed.end());
        std::vector<std::string> names;
        for (const auto& [x, name] : placed) {
            names.push_back(name);
        }
        return names;
    }

    ScreenRect frameOf(const std::string& name) const {
        const auto found = std::find_if(items.begin(), items.end(), [&](const auto& item) {
            return item->autosaveName() == name;
        });
        return (*found)->windowFrame().value_or(ScreenRect{});
    }

    static QString centreOf(const ScreenRect& frame, char axis) {
        return QString::number(
            int(axis == 'x' ? frame.x + frame.width / 2 : frame.y + frame.height / 2));
    }

    /// Drags `name` 60 points to the right, with Ctrl held or not.
    void drag(const std::string& name, bool withCtrl) {
        const ScreenRect frame = frameOf(name);
        const QString x = centreOf(frame, 'x');
        const QString y = centreOf(frame, 'y');
        if (withCtrl) {
            xdotool({"keydown", "ctrl"});
        }
        xdotool({"mousemove", x, y, "mousedown", "1"});
        for (int step = 1; step <= 4; ++step) {
            xdotool({"mousemove", QString::number(x.toInt() + 15 * step), y});
        }
        xdotool({"mouseup", "1"});
        if (withCtrl) {
            xdotool({"keyup", "ctrl"});
        }
    }

    static inline std::string missingTool;
    static inline QProcess* server = nullptr;
    static inline QProcess* windowManager = nullptr;
    static inline QApplication* application = nullptr;

    const std::map<std::string, double> widths = {
        {"Corvane.cpu.1", 40}, {"Corvane.memory.1", 52}, {"Corvane.storage.1", 36}};
    std::map<std::string, double> positions;
    std::unique_ptr<MenuBarHost> host;
    std::vector<std::unique_ptr<MenuBarItem>> items;
    std::map<std::string, int> clicks;
    int moveCount = 0;
    std::vector<bool> pressesOnItem;
    Subscription moves;
    Subscription presses;
};

TEST_F(StripMenuBarHostTest, DocksAtTheTopReservingItsHeightWithItemsRightAligned) {
    const QWidget* bar = QApplication::topLevelWidgets().value(0);
    ASSERT_NE(bar, nullptr);
    const QString window = QString::number(bar->winId());
    const QString properties = run(
        "xprop", {"-id", window, "_NET_WM_WINDOW_TYPE", "_NET_WM_STRUT_PARTIAL", "_NET_WM_NAME"});
    EXPECT_TRUE(properties.contains("_NET_WM_WINDOW_TYPE_DOCK")) << properties.toStdString();
    EXPECT_TRUE(properties.contains("= 0, 0, 24, 0, 0, 0, 0, 0, 0, 1279, 0, 0"))
        << properties.toStdString();
    EXPECT_TRUE(properties.contains("\"Corvane\"")) << properties.toStdString();

    EXPECT_EQ(visualOrder(),
              (std::vector<std::string>{"Corvane.cpu.1", "Corvane.memory.1", "Corvane.storage.1"}));
    const ScreenRect cpu = frameOf("Corvane.cpu.1");
    const ScreenRect memory = frameOf("Corvane.memory.1");
    const ScreenRect storage = frameOf("Corvane.storage.1");
    EXPECT_EQ(storage.x + storage.width, 1280 - 8);
    EXPECT_EQ(memory.x + memory.width + 4, storage.x);
    EXPECT_EQ(cpu.x + cpu.width + 4, memory.x);
    EXPECT_EQ(cpu.y, 0);
    EXPECT_EQ(cpu.height, 24);
    // The work area the panels hang in starts below the bar.
    EXPECT_EQ(host->primaryScreenVisibleFrame()->y, 24);

    if (const QByteArray directory = qgetenv("CORVANE_SCREENSHOT_DIR"); !directory.isEmpty()) {
        run("import", {"-window", "root", QString::fromLocal8Bit(directory) + "/strip.png"});
    }
}

TEST_F(StripMenuBarHostTest, ClickRunsTheActionAndPressesAreToldWhereTheyLanded) {
    const ScreenRect memory = frameOf("Corvane.memory.1");
    xdotool({"mousemove", centreOf(memory, 'x'), centreOf(memory, 'y'), "click", "1"});
    EXPECT_TRUE(runUntil([&] { return clicks["Corvane.memory.1"] == 1; }));
    EXPECT_EQ(clicks["Corvane.cpu.1"], 0);
    // A press on the bare desktop, outside any window of this program.
    xdotool({"mousemove", "400", "500", "click", "1"});
    EXPECT_TRUE(runUntil([&] { return pressesOnItem.size() == 2; }));
    EXPECT_EQ(pressesOnItem, (std::vector<bool>{true, false}));
    EXPECT_EQ(moveCount, 0);
}

TEST_F(StripMenuBarHostTest, CtrlDragReordersAndReportsEachMove) {
    drag("Corvane.cpu.1", true);
    const std::vector<std::string> reordered{"Corvane.memory.1", "Corvane.cpu.1",
                                             "Corvane.storage.1"};
    // The pointer's events may still be on their way when xdotool returns.
    EXPECT_TRUE(runUntil([&] { return moveCount >= 4 && visualOrder() == reordered; }))
        << moveCount << " moves";
    EXPECT_EQ(clicks["Corvane.cpu.1"], 0);
    // Settled into slots again: still right-aligned with the same spacing.
    const ScreenRect cpu = frameOf("Corvane.cpu.1");
    EXPECT_EQ(cpu.x + cpu.width + 4, frameOf("Corvane.storage.1").x);
}

TEST_F(StripMenuBarHostTest, DragWithoutCtrlMovesNothing) {
    drag("Corvane.cpu.1", false);
    settle();
    EXPECT_EQ(moveCount, 0);
    EXPECT_EQ(visualOrder(),
              (std::vector<std::string>{"Corvane.cpu.1", "Corvane.memory.1", "Corvane.storage.1"}));
}

}  // namespace
}  // namespace corvane
