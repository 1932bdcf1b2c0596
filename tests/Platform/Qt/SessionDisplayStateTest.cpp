#include <gtest/gtest.h>

#include <QDBusConnectionInterface>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QVariantMap>

#include <vector>

#include "Platform/Qt/SessionDisplayState.h"
#include "tests/Platform/Qt/BusTestSupport.h"

namespace corvane {
namespace {

const QString sessionPath = QStringLiteral("/org/freedesktop/login1/session/_31");

void emitSignal(const QDBusConnection& from, const QString& path, const QString& interface,
                const QString& member, const QVariantList& arguments) {
    QDBusMessage message = QDBusMessage::createSignal(path, interface, member);
    message.setArguments(arguments);
    from.send(message);
}

// Answers the logind manager's session lookup with sessionPath.
class FakeLogind final : public QDBusVirtualObject {
public:
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        askedFor = message.arguments().value(0).toString();
        connection.send(message.createReply(QVariant::fromValue(QDBusObjectPath(sessionPath))));
        return true;
    }
    QString askedFor;
};

class SessionDisplayStateTest : public testing::BusTest {
protected:
    /// Another client of the test bus, left connected until the tests end.
    static QDBusConnection fake(const QString& name) {
        return QDBusConnection::connectToBus(QDBusConnection::SessionBus, name);
    }

    std::vector<DisplayEvent> events;
};

TEST_F(SessionDisplayStateTest, ScreensaverOwnerSleepsAndWakesTheScreens) {
    const std::pair<QString, QString> rows[] = {
        {"org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver"},
        {"org.freedesktop.ScreenSaver", "/ScreenSaver"},
        {"org.gnome.ScreenSaver", "/org/gnome/ScreenSaver"},
    };
    for (const auto& [service, path] : rows) {
        SCOPED_TRACE(path.toStdString());
        QDBusConnection owner = fake(path + "-owner");
        QDBusConnection impostor = fake(path + "-impostor");
        ASSERT_TRUE(owner.registerService(service));
        events.clear();
        SessionDisplayState state(QDBusConnection::sessionBus(), noBus());
        Subscription subscription = state.observe([&](DisplayEvent e) { events.push_back(e); });
        // A call on the same connection returns after the daemon has taken its match rules.
        QDBusConnection::sessionBus().interface()->isServiceRegistered(service);

        // Anyone may send the signal; only the name's owner is believed.
        emitSignal(impostor, path, service, "ActiveChanged", {true});
        impostor.interface()->isServiceRegistered(service);
        emitSignal(owner, path, service, "ActiveChanged", {true});
        emitSignal(owner, path, service, "ActiveChanged", {false});
        ASSERT_TRUE(runUntil([&] { return events.size() >= 2; }));
        EXPECT_EQ(events,
                  (std::vector{DisplayEvent::screensDidSleep, DisplayEvent::screensDidWake}));
        owner.unregisterService(service);
    }
}

TEST_F(SessionDisplayStateTest, LogindActiveChangesOfThisSessionOnly) {
    // A second client of the test bus stands in for logind on the system bus.
    QDBusConnection logind = fake("logind");
    FakeLogind manager;
    ASSERT_TRUE(logind.registerService("org.freedesktop.login1"));
    ASSERT_TRUE(logind.registerVirtualObject("/org/freedesktop/login1", &manager));

    SessionDisplayState state(noBus(), QDBusConnection::sessionBus());
    Subscription subscription = state.observe([&](DisplayEvent e) { events.push_back(e); });
    ASSERT_TRUE(waitForMatchRule("path='" + sessionPath + "'"));
    EXPECT_EQ(manager.askedFor, "auto");

    auto changed = [&](const QString& path, const QString& interface, const QVariantMap& values) {
        emitSignal(logind, path, "org.freedesktop.DBus.Properties", "PropertiesChanged",
                   {interface, values, QStringList()});
    };
    const QString session = "org.freedesktop.login1.Session";
    // Sent in order from one connection, so a wrongly believed one would arrive first.
    changed("/org/freedesktop/login1/session/_32", session, {{"Active", false}});
    changed(sessionPath, "org.freedesktop.login1.Other", {{"Active", false}});
    changed(sessionPath, session, {{"IdleHint", true}});
    changed(sessionPath, session, {{"Active", false}});
    changed(sessionPath, session, {{"Active", true}});
    ASSERT_TRUE(runUntil([&] { return events.size() >= 2; }));
    EXPECT_EQ(events, (std::vector{DisplayEvent::sessionDidResignActive,
                                   DisplayEvent::sessionDidBecomeActive}));
}

}  // namespace
}  // namespace corvane
