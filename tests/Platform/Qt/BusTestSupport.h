#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDeadlineTimer>

#include <algorithm>
#include <functional>

namespace corvane::testing {

/// A fixture on the private session bus of `dbus-run-session`; without one every test fails
/// rather than passing with nothing delivered.
class BusTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        static int argc = 1;
        static char name[] = "corvane-dbus-tests";
        static char* argv[] = {name, nullptr};
        static QCoreApplication application(argc, argv);
    }

    void SetUp() override {
        ASSERT_TRUE(QDBusConnection::sessionBus().isConnected())
            << "no D-Bus session bus: run this under dbus-run-session";
    }

    /// A connection that never reaches a bus.
    static QDBusConnection noBus() {
        return QDBusConnection::connectToBus(QStringLiteral("unix:path=/nonexistent/corvane-bus"),
                                             QStringLiteral("corvane-nowhere"));
    }

    /// Runs the event loop until `done` holds or twenty seconds pass (generous, since CI runs the
    /// suite two at a time on a loaded machine); answers `done()`.
    static bool runUntil(const std::function<bool()>& done) {
        QDeadlineTimer deadline(20000);
        while (!done() && !deadline.hasExpired()) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        }
        return done();
    }

    /// Waits until some connection's match rule on the session bus contains `fragment`, so a
    /// signal sent afterwards is routed to it (dbus-daemon's statistics interface).
    static bool waitForMatchRule(const QString& fragment) {
        return runUntil([&] {
            QDBusMessage reply = QDBusConnection::sessionBus().call(QDBusMessage::createMethodCall(
                QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                QStringLiteral("org.freedesktop.DBus.Debug.Stats"),
                QStringLiteral("GetAllMatchRules")));
            QMap<QString, QStringList> rules;
            reply.arguments().value(0).value<QDBusArgument>() >> rules;
            return std::any_of(rules.begin(), rules.end(), [&](const QStringList& list) {
                return !list.filter(fragment).isEmpty();
            });
        });
    }
};

}  // namespace corvane::testing
