#pragma once

#include <QDBusConnection>
#include <QString>

#include <map>
#include <memory>

#include "Foundation/ObserverList.h"
#include "Platform/SignalBus.h"

namespace corvane {

/// Signals as D-Bus signals on one connection (the session bus unless told otherwise): sent
/// from signalObjectPath on signalInterface, the member named by signalMemberName. Without a
/// connected bus every subscription is refused and every post dropped, silently. Create, use
/// and destroy on the main thread, inside a QCoreApplication's lifetime; deliveries need its
/// event loop. A handler must not destroy the bus it runs on.
class QtDBusSignalBus final : public SignalBus {
public:
    explicit QtDBusSignalBus(QDBusConnection connection = QDBusConnection::sessionBus());
    ~QtDBusSignalBus() override;

    QtDBusSignalBus(const QtDBusSignalBus&) = delete;
    QtDBusSignalBus& operator=(const QtDBusSignalBus&) = delete;

    /// False when there is no bus to talk to.
    bool isConnected() const { return connection.isConnected(); }

    void post(std::string_view name) override;
    Subscription subscribe(std::string_view name, std::function<void()> handler) override;

    /// Blocks (up to a second) until the bus daemon has taken every post and subscription made
    /// so far, for a process that is about to exit or to tell others it is listening.
    void flush();

private:
    class Receiver;
    using Subscribers = std::map<QString, ObserverList<>>;

    void deliver(const QString& member);
    void unsubscribe(const QString& member);
    bool connectMember(const QString& member);
    void disconnectMember(const QString& member);

    QDBusConnection connection;
    std::unique_ptr<Receiver> receiver;
    // The handlers of each member, in the order they subscribed; one bus-level connection per
    // member, shared by all of them. Reached weakly by the subscriptions, which may outlive it.
    std::shared_ptr<Subscribers> subscribers = std::make_shared<Subscribers>();
};

}  // namespace corvane
