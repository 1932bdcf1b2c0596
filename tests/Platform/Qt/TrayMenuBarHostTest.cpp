#include "Platform/Qt/TrayMenuBarHost.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QDeadlineTimer>
#include <QObject>

#include <cmath>
#include <map>

#include "Platform/Qt/StatusNotifierTypes.h"

namespace corvane {

// A watcher of the test's own, on its own connection so that it can leave the bus and come
// back as a restarting tray would.
class RecordingWatcher final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")

public:
    QStringList registered;

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString& service) { registered.append(service); }
};

namespace {

const QString watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString itemInterface = QStringLiteral("org.kde.StatusNotifierItem");

bool runUntil(const std::function<bool()>& done) {
    QDeadlineTimer deadline(5000);
    while (!done() && !deadline.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    return done();
}

/// Calls a method of this process's own items without blocking the loop that answers it.
QDBusMessage callItem(const QString& service, const QString& path, const QString& interface,
                      const QString& method, const QVariantList& arguments = {}) {
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, method);
    call.setArguments(arguments);
    QDBusPendingCallWatcher pending(QDBusConnection::sessionBus().asyncCall(call));
    runUntil([&] { return pending.isFinished(); });
    return pending.reply();
}

template <typename T>
T itemProperty(const QString& service, const QString& name) {
    const QDBusMessage reply = callItem(service, QStringLiteral("/StatusNotifierItem"),
                                        QStringLiteral("org.freedesktop.DBus.Properties"),
                                        QStringLiteral("Get"), {itemInterface, name});
    const QVariant value = reply.arguments().value(0).value<QDBusVariant>().variant();
    T result{};
    if (value.canConvert<QDBusArgument>()) {
        value.value<QDBusArgument>() >> result;
    } else {
        result = value.value<T>();
    }
    return result;
}

/// A meter drawn as a plain colour at the size it is asked for.
ItemImage solidImage(double length, double devicePixelRatio, double height,
                     std::uint32_t premultipliedArgb) {
    ItemImage image;
    image.pixelWidth = static_cast<int>(std::lround(length * devicePixelRatio));
    image.pixelHeight = static_cast<int>(std::lround(height * devicePixelRatio));
    image.devicePixelRatio = devicePixelRatio;
    image.pixels.assign(static_cast<std::size_t>(image.pixelWidth) * image.pixelHeight,
                        premultipliedArgb);
    return image;
}

class TrayMenuBarHostTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        static int argc = 1;
        static char name[] = "corvane-tray-tests";
        static char* argv[] = {name, nullptr};
        static QApplication application(argc, argv);
    }

    void SetUp() override {
        ASSERT_TRUE(QDBusConnection::sessionBus().isConnected())
            << "no D-Bus session bus: run this under dbus-run-session";
        startWatcher();
        MenuBarHostMenu menu{"Settings…", "Quit", [this] { ++settingsOpened; },
                             [this] { ++quits; }};
        auto creation = TrayMenuBarHost::create(
            [this](const std::string& name) -> std::optional<double> {
                const auto found = positions.find(name);
                return found == positions.end() ? std::nullopt
                                                : std::optional<double>(found->second);
            },
            std::move(menu));
        ASSERT_TRUE(creation.host) << creation.failure;
        host = std::move(creation.host);
    }

    void TearDown() override {
        items.clear();
        host.reset();
        stopWatcher();
    }

    void startWatcher() {
        watcherBus.registerObject(QStringLiteral("/StatusNotifierWatcher"), &watcher,
                                  QDBusConnection::ExportAllSlots);
        ASSERT_TRUE(watcherBus.registerService(watcherName));
    }

    void stopWatcher() {
        watcherBus.unregisterService(watcherName);
        watcherBus.unregisterObject(QStringLiteral("/StatusNotifierWatcher"));
    }

    /// The Ids of the registered items, in the order the watcher heard of them.
    QStringList registeredIds() const {
        QStringList ids;
        for (const QString& service : watcher.registered) {
            ids.append(itemProperty<QString>(service, QStringLiteral("Id")));
        }
        return ids;
    }

    /// Adds an item and waits until the watcher has it; answers its bus name.
    QString addRegisteredItem(double length, const std::string& name) {
        items.push_back(host->addItem(length, name));
        const qsizetype before = watcher.registered.size();
        runUntil([&] { return watcher.registered.size() > before; });
        return watcher.registered.value(before);
    }

    QDBusConnection watcherBus =
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("test-watcher"));
    RecordingWatcher watcher;
    std::map<std::string, double> positions;
    std::unique_ptr<MenuBarHost> host;
    std::vector<std::unique_ptr<MenuBarItem>> items;
    int settingsOpened = 0;
    int quits = 0;
};

TEST_F(TrayMenuBarHostTest, RegistersABatchLeftToRightAndAgainWhenTheWatcherReturns) {
    // Installed right to left, as the controller does; "Corvane.extra.1" has no position.
    positions = {{"Corvane.cpu.3", 4200}, {"Corvane.memory.3", 4100}, {"Corvane.sensors.3", 4000}};
    for (const char* name :
         {"Corvane.sensors.3", "Corvane.extra.1", "Corvane.memory.3", "Corvane.cpu.3"}) {
        items.push_back(host->addItem(30, name));
    }
    const QStringList expected = {"Corvane.cpu", "Corvane.memory", "Corvane.sensors",
                                  "Corvane.extra"};
    ASSERT_TRUE(runUntil([&] { return watcher.registered.size() == 4; }));
    EXPECT_EQ(registeredIds(), expected);

    stopWatcher();
    watcher.registered.clear();
    startWatcher();
    ASSERT_TRUE(runUntil([&] { return watcher.registered.size() == 4; }));
    EXPECT_EQ(registeredIds(), expected);

    // A removed item's bus name goes, which is how a watcher learns of it.
    const QString removed = watcher.registered.first();
    host->removeItem(*items.back());
    items.pop_back();
    EXPECT_TRUE(runUntil([&] {
        return !QDBusConnection::sessionBus().interface()->isServiceRegistered(removed).value();
    }));
}

TEST_F(TrayMenuBarHostTest, IconPixmapsKeepTheMetersProportionsAndByteOrder) {
    struct Row {
        const char* name;
        double length;
        std::uint32_t premultiplied;
        QByteArray firstPixel;
    };
    const Row rows[] = {
        {"opaque red", 30, 0xFFFF0000u, QByteArray::fromHex("ffff0000")},
        // Trays want straight alpha: half-transparent red is stored as 0x80800000.
        {"half-transparent red", 57.5, 0x80800000u, QByteArray::fromHex("80ff0000")},
        {"narrow", 12, 0xFF0000FFu, QByteArray::fromHex("ff0000ff")},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const QString service = addRegisteredItem(row.length, row.name);
        items.back()->setDrawing([&](double scale, double height) {
            return solidImage(row.length, scale, height, row.premultiplied);
        });
        const auto pixmaps = itemProperty<StatusNotifierPixmaps>(service, "IconPixmap");
        ASSERT_EQ(pixmaps.size(), 2);
        for (const auto& [pixmap, height] : {std::pair{pixmaps[0], 22}, {pixmaps[1], 44}}) {
            EXPECT_EQ(pixmap.height, height);
            EXPECT_NEAR(double(pixmap.width) / pixmap.height, row.length / 22, 1.0 / height);
            ASSERT_EQ(pixmap.bytes.size(), qsizetype(pixmap.width) * pixmap.height * 4);
            EXPECT_EQ(pixmap.bytes.left(4).toHex(), row.firstPixel.toHex());
        }
    }
}

TEST_F(TrayMenuBarHostTest, ToolTipCarriesTheTitleAndReadout) {
    const QString service = addRegisteredItem(30, "Corvane.cpu.1");
    items.back()->setAccessibilityLabel("CPU");
    items.back()->setToolTip("42 %");
    const auto toolTip = itemProperty<StatusNotifierToolTip>(service, "ToolTip");
    EXPECT_EQ(toolTip.title, "CPU");
    EXPECT_EQ(toolTip.text, "42 %");
    EXPECT_EQ(itemProperty<QString>(service, "Title"), "CPU");
}

TEST_F(TrayMenuBarHostTest, ActivateRunsTheActionWithTheItemFramedAtTheClick) {
    const QString service = addRegisteredItem(40, "Corvane.memory.1");
    MenuBarItem& item = *items.back();
    std::optional<ScreenRect> frameWhenRun;
    item.setAction([&] { frameWhenRun = item.windowFrame(); });
    EXPECT_FALSE(item.windowFrame());

    callItem(service, "/StatusNotifierItem", itemInterface, "Activate", {300, 200});
    ASSERT_TRUE(runUntil([&] { return frameWhenRun.has_value(); }));
    EXPECT_TRUE(frameWhenRun->contains({300, 200}));
    EXPECT_EQ(frameWhenRun->width, 40);
    EXPECT_TRUE(item.isWindowVisible());
}

TEST_F(TrayMenuBarHostTest, MenuOffersSettingsAndQuit) {
    const QString service = addRegisteredItem(30, "Corvane.cpu.1");
    EXPECT_EQ(itemProperty<bool>(service, "ItemIsMenu"), false);
    const QDBusMessage layoutReply = callItem(service, "/MenuBar", "com.canonical.dbusmenu",
                                              "GetLayout", {0, -1, QStringList()});
    ASSERT_EQ(layoutReply.type(), QDBusMessage::ReplyMessage)
        << layoutReply.errorMessage().toStdString();
    DBusMenuLayoutItem root;
    layoutReply.arguments().value(1).value<QDBusArgument>() >> root;
    QStringList labels;
    for (const QVariant& child : root.children) {
        DBusMenuLayoutItem entry;
        child.value<QDBusArgument>() >> entry;
        labels.append(entry.properties.value("label").toString());
    }
    EXPECT_EQ(labels, (QStringList{"Settings…", "Quit"}));

    callItem(service, "/MenuBar", "com.canonical.dbusmenu", "Event",
             {2, "clicked", QVariant::fromValue(QDBusVariant(QString())), 0u});
    EXPECT_TRUE(runUntil([&] { return quits == 1; }));
    EXPECT_EQ(settingsOpened, 0);
}

TEST(TrayActivationFrame, HangsClearOfThePanelThatWasClicked) {
    const ScreenRect screen{0, 0, 1920, 1080};
    struct Row {
        const char* name;
        ScreenPoint click;
        ScreenRect workArea;
        ScreenRect expected;
    };
    const Row rows[] = {
        {"top panel", {1000, 10}, {0, 28, 1920, 1052}, {980, 0, 40, 28}},
        {"bottom panel", {1000, 1070}, {0, 0, 1920, 1040}, {980, 1040, 40, 40}},
        {"no reserved panel", {1000, 500}, {0, 0, 1920, 1080}, {980, 489, 40, 22}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const ScreenRect frame = trayActivationFrame(row.click, 40, screen, row.workArea);
        EXPECT_EQ(frame, row.expected);
        EXPECT_TRUE(frame.contains(row.click));
    }
}

}  // namespace
}  // namespace corvane

#include "TrayMenuBarHostTest.moc"
