// The Qt event loop drives the bus clients of the screen and session state; what they believe
// is covered by the Qt-free SessionDisplayState test, this covers that the loop delivers it.

#include <gtest/gtest.h>

#include <QDBusConnectionInterface>

#include <cstdlib>
#include <memory>
#include <vector>

#include "Platform/Linux/WatchedDisplayState.h"
#include "Platform/Qt/QtDescriptorWatch.h"
#include "Platform/Qt/QtRuntime.h"
#include "tests/Platform/Qt/BusTestSupport.h"

namespace corvane {
namespace {

class QtDescriptorWatchTest : public testing::BusTest {};

TEST_F(QtDescriptorWatchTest, ScreensaverSignalsArriveThroughTheEventLoop) {
    const QString service = QStringLiteral("org.freedesktop.ScreenSaver");
    QDBusConnection owner = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "owner");
    ASSERT_TRUE(owner.registerService(service));
    std::vector<DisplayEvent> events;
    {
        QtRuntime runtime;
        WatchedDisplayState state(
            std::make_unique<SessionDisplayState>(
                BusAddress::at(std::getenv("DBUS_SESSION_BUS_ADDRESS")), BusAddress::none()),
            watchDescriptor, runtime);
        Subscription subscription = state.observe([&](DisplayEvent e) { events.push_back(e); });
        // Several signals, so that some arrive together and some after the loop went idle.
        for (const bool active : {true, false, true}) {
            QDBusMessage message =
                QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/ScreenSaver"), service,
                                           QStringLiteral("ActiveChanged"));
            message << active;
            owner.send(message);
            const auto expected = events.size() + 1;
            ASSERT_TRUE(runUntil([&] { return events.size() >= expected; }));
        }
        EXPECT_EQ(events, (std::vector{DisplayEvent::screensDidSleep, DisplayEvent::screensDidWake,
                                       DisplayEvent::screensDidSleep}));
    }
    // Destroyed with its notifiers: the loop runs on without it.
    QCoreApplication::processEvents();
    owner.unregisterService(service);
}

}  // namespace
}  // namespace corvane
