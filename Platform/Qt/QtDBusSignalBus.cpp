#include "Platform/Qt/QtDBusSignalBus.h"

#include <QDBusMessage>
#include <QObject>

#include <utility>
#include <vector>

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
    for (const auto& [member, count] : subscriberCounts) {
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

std::optional<SignalToken> QtDBusSignalBus::subscribe(std::string_view name,
                                                      std::function<void()> handler) {
    const QString member = memberOf(name);
    int& count = subscriberCounts[member];
    if (count == 0 && !connectMember(member)) {
        subscriberCounts.erase(member);
        return std::nullopt;
    }
    ++count;
    const SignalToken token = nextToken++;
    registrations.emplace(
        token, Registration{member, std::make_shared<std::function<void()>>(std::move(handler))});
    return token;
}

void QtDBusSignalBus::cancel(SignalToken token) {
    auto found = registrations.find(token);
    if (found == registrations.end()) {
        return;
    }
    const QString member = found->second.member;
    registrations.erase(found);
    auto count = subscriberCounts.find(member);
    if (--count->second == 0) {
        disconnectMember(member);
        subscriberCounts.erase(count);
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
    // A handler may cancel any subscription, its own included, or add new ones: take the
    // subscribers as they are now and skip those cancelled on the way.
    std::vector<SignalToken> subscribers;
    for (const auto& [token, registration] : registrations) {
        if (registration.member == member) {
            subscribers.push_back(token);
        }
    }
    for (SignalToken token : subscribers) {
        auto found = registrations.find(token);
        if (found == registrations.end()) {
            continue;
        }
        // Held here so that cancelling inside the handler does not destroy it mid-call.
        const auto handler = found->second.handler;
        (*handler)();
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
