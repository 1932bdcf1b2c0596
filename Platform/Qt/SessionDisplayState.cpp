#include "Platform/Qt/SessionDisplayState.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include <utility>

namespace corvane {

namespace {

struct ScreensaverService {
    const char* name;
    const char* interface;
};

// KDE, Xfce, Cinnamon and others own the freedesktop name; GNOME Shell announces its lock
// under its own. Where both exist the monitor is told twice, which it tolerates.
constexpr ScreensaverService screensaverServices[] = {
    {"org.freedesktop.ScreenSaver", "org.freedesktop.ScreenSaver"},
    {"org.gnome.ScreenSaver", "org.gnome.ScreenSaver"},
};

const QString logindService = QStringLiteral("org.freedesktop.login1");
const QString logindSessionInterface = QStringLiteral("org.freedesktop.login1.Session");
const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

}  // namespace

// QtDBus delivers to slots named at run time, so the receiving end has to be a QObject.
class SessionDisplayState::Receiver final : public QObject {
    Q_OBJECT

public:
    Receiver(QDBusConnection sessionBus, QDBusConnection systemBus,
             std::function<void(DisplayEvent)> report)
        : systemBus(std::move(systemBus)), report(std::move(report)) {
        for (const auto& service : screensaverServices) {
            // An empty path: KDE sends from /ScreenSaver as well as /org/freedesktop/ScreenSaver.
            sessionBus.connect(QString::fromLatin1(service.name), QString(),
                               QString::fromLatin1(service.interface),
                               QStringLiteral("ActiveChanged"), this,
                               SLOT(screensaverActiveChanged(bool)));
        }
        findLogindSession();
    }

public Q_SLOTS:
    void screensaverActiveChanged(bool active) {
        report(active ? DisplayEvent::screensDidSleep : DisplayEvent::screensDidWake);
    }

    void sessionPropertiesChanged(const QString& interface, const QVariantMap& changed,
                                  const QStringList&) {
        // logind sends Active with its value (it "emits change"), never as invalidated only.
        const auto active = changed.find(QStringLiteral("Active"));
        if (interface != logindSessionInterface || active == changed.end()) {
            return;
        }
        report(active->toBool() ? DisplayEvent::sessionDidBecomeActive
                                : DisplayEvent::sessionDidResignActive);
    }

private:
    // "auto" is the caller's session, or the user's display session for a process started
    // outside one (a systemd user service), which is the session whose switches matter here.
    // Asked asynchronously so that a slow or absent logind never holds up the start.
    void findLogindSession() {
        if (!systemBus.isConnected()) {
            return;
        }
        QDBusMessage call = QDBusMessage::createMethodCall(
            logindService, QStringLiteral("/org/freedesktop/login1"),
            QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("GetSession"));
        call << QStringLiteral("auto");
        auto* watcher = new QDBusPendingCallWatcher(systemBus.asyncCall(call), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this,
                [this](QDBusPendingCallWatcher* finished) {
                    finished->deleteLater();
                    QDBusPendingReply<QDBusObjectPath> reply = *finished;
                    if (!reply.isError()) {
                        watchSession(reply.value().path());
                    }
                });
    }

    void watchSession(const QString& path) {
        systemBus.connect(logindService, path, propertiesInterface,
                          QStringLiteral("PropertiesChanged"), this,
                          SLOT(sessionPropertiesChanged(QString, QVariantMap, QStringList)));
    }

    QDBusConnection systemBus;
    std::function<void(DisplayEvent)> report;
};

SessionDisplayState::SessionDisplayState(QDBusConnection sessionBus, QDBusConnection systemBus)
    : receiver(
          std::make_unique<Receiver>(std::move(sessionBus), std::move(systemBus),
                                     [this](DisplayEvent event) { observers.notify(event); })) {}

SessionDisplayState::~SessionDisplayState() = default;

Subscription SessionDisplayState::observe(std::function<void(DisplayEvent)> handler) {
    return observers.add(std::move(handler));
}

}  // namespace corvane

#include "SessionDisplayState.moc"
