// A StatusNotifierWatcher that only records: owns the watcher's name on the session bus and
// prints the bus name of each item that registers, one per line, in the order they came. It
// stands in for a desktop's tray in the end-to-end tray test.
#include <QCoreApplication>
#include <QDBusConnection>
#include <QObject>
#include <QString>

#include <cstdio>

class RecordingWatcher final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ isHostRegistered)
    Q_PROPERTY(int ProtocolVersion READ protocolVersion)

public:
    bool isHostRegistered() const { return true; }
    int protocolVersion() const { return 0; }

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString& service) {
        std::printf("%s\n", service.toUtf8().constData());
        std::fflush(stdout);
    }
    void RegisterStatusNotifierHost(const QString&) {}
};

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    RecordingWatcher watcher;
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.registerObject(
            QStringLiteral("/StatusNotifierWatcher"), &watcher,
            QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllProperties) ||
        !bus.registerService(QStringLiteral("org.kde.StatusNotifierWatcher"))) {
        std::fputs("recording-watcher: cannot own org.kde.StatusNotifierWatcher\n", stderr);
        return 1;
    }
    std::fputs("ready\n", stderr);
    return QCoreApplication::exec();
}

#include "RecordingWatcher.moc"
