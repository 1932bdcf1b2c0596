#include "Platform/Qt/QtDBusSignalBus.h"

#include <QDBusMessage>
#include <QObject>

#include <utility>

#include "Platform/Qt/DBusSignalMember.h"

namespace corvane {

namespace {

constexpr int flushTimeoutMilliseconds = 1000;

QString memberOf(std::string_view name) {
    return QString::fromStdString(signalMemberName(name));
}

}  // namespace

// QtDBus delivers to a slot named at run time, so the receiving end has to be a QObject.
class QtDBusSignalBus::Receiver final : public QObject {
    Q_OBJECT

public:
    explicit Receiver(std::function<void(const QString&)> deliver) : deliver(std::move(deliver)) {}

public Q_SLOTS:
    void receive(const QDBusMessage& message) { deliver(message.member()); }

private:
    std::function<void(const QString&)> deliver;
};

QtDBusSignalBus::QtDBusSignalBus(QDBusConnection connection)
    : connection(std::move(connection)),
      receiver(std::make_unique<Receiver>([this](const QString& member) { deliver(member); })) {}

QtDBusSignalBus::~QtDBusSignalBus() {
    for (const auto& [member, handlers] : *subscribers) {
        disconnectMember(member);
    }
}

void QtDBusSignalBus::post(std::string_view name) {
    if (!connection.isConnected()) {
        return;
    }
    connection.send(QDBusMessage::createSignal(QString::fromLatin1(signalObjectPath),
                                               QString::fromLatin1(signalInterface),
                                               memberOf(name)));
}

Subscription QtDBusSignalBus::subscribe(std::string_view name, std::function<void()> handler) {
    const QString member = memberOf(name);
    const auto [handlers, isFirst] = subscribers->try_emplace(member);
    if (isFirst && !connectMember(member)) {
        subscribers->erase(handlers);
        return {};
    }
    // Shared, because a subscription's ending is a copyable function.
    auto registration = std::make_shared<Subscription>(handlers->second.add(std::move(handler)));
    // The subscribers belong to this bus alone: while they live, so does the bus.
    return Subscription([this, weakSubscribers = std::weak_ptr(subscribers), member, registration] {
        registration->reset();
        if (weakSubscribers.lock()) {
            unsubscribe(member);
        }
    });
}

void QtDBusSignalBus::unsubscribe(const QString& member) {
    const auto handlers = subscribers->find(member);
    if (handlers != subscribers->end() && handlers->second.empty()) {
        disconnectMember(member);
        subscribers->erase(handlers);
    }
}

void QtDBusSignalBus::flush() {
    if (!connection.isConnected()) {
        return;
    }
    // The daemon handles one connection's messages in order, so once it has answered this
    // call it has routed every signal and installed every match sent before it.
    QDBusMessage ping = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus.Peer"), QStringLiteral("Ping"));
    connection.call(ping, QDBus::Block, flushTimeoutMilliseconds);
}

void QtDBusSignalBus::deliver(const QString& member) {
    // A handler may end any subscription, the last of this member's included (which removes
    // its list), or add new ones; the list allows all of that while it tells.
    if (const auto handlers = subscribers->find(member); handlers != subscribers->end()) {
        handlers->second.notify();
    }
}

bool QtDBusSignalBus::connectMember(const QString& member) {
    // Any sender: the companion and the agent are both ordinary session clients.
    return connection.isConnected() &&
           connection.connect(QString(), QString::fromLatin1(signalObjectPath),
                              QString::fromLatin1(signalInterface), member, receiver.get(),
                              SLOT(receive(QDBusMessage)));
}

void QtDBusSignalBus::disconnectMember(const QString& member) {
    connection.disconnect(QString(), QString::fromLatin1(signalObjectPath),
                          QString::fromLatin1(signalInterface), member, receiver.get(),
                          SLOT(receive(QDBusMessage)));
}

}  // namespace corvane

#include "QtDBusSignalBus.moc"
