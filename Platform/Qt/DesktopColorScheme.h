#pragma once

#include <QObject>
#include <QString>
#include <QVariant>

class QDBusVariant;

namespace corvane {

/// The desktop's light-or-dark preference, as the XDG desktop portal publishes it
/// (org.freedesktop.appearance color-scheme), followed live through the portal's change signal.
/// Without a portal or a stated preference, the application palette decides. Main thread only.
class DesktopColorScheme final : public QObject {
    Q_OBJECT

public:
    /// What the desktop asks for.
    enum class Preference { none, dark, light };

    /// Reads the portal once (a missing portal or bus answers `none` quickly) and subscribes to
    /// its changes.
    explicit DesktopColorScheme(QObject* parent = nullptr);

    /// The preference last read or announced.
    Preference preference() const { return current; }
    /// Dark when the desktop prefers dark; with no preference, when the application palette's
    /// window colour is dark.
    bool prefersDark() const;

    /// The portal's value: 1 is dark, 2 is light, anything else (0 included) no preference.
    /// Values the portal wraps in further variants are unwrapped.
    static Preference fromPortalValue(const QVariant& value);

signals:
    /// The preference changed.
    void changed();

private slots:
    void portalSettingChanged(const QString& nameSpace, const QString& key,
                              const QDBusVariant& value);

private:
    Preference current = Preference::none;
};

/// Whether windows can be really translucent: always under Wayland, on X11 when a compositing
/// manager holds the screen's _NET_WM_CM selection, never on other platforms (offscreen).
bool desktopCompositorRunning();

}  // namespace corvane
