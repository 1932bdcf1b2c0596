#include "Platform/Qt/DesktopColorScheme.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QPalette>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

namespace corvane {

namespace {

const QString portalService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearanceNamespace = QStringLiteral("org.freedesktop.appearance");
const QString colorSchemeKey = QStringLiteral("color-scheme");
// A desktop without a portal must not hold up the first panel.
constexpr int portalTimeoutMilliseconds = 500;

std::optional<QVariant> readPortal(const QString& method) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return std::nullopt;
    }
    QDBusMessage call =
        QDBusMessage::createMethodCall(portalService, portalPath, settingsInterface, method);
    call << appearanceNamespace << colorSchemeKey;
    const QDBusMessage reply = bus.call(call, QDBus::Block, portalTimeoutMilliseconds);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) {
        return std::nullopt;
    }
    return reply.arguments().constFirst();
}

}  // namespace

DesktopColorScheme::DesktopColorScheme(QObject* parent) : QObject(parent) {
    // ReadOne is the current method; portals before version 2 only have the deprecated Read,
    // which wraps the value in one more variant.
    std::optional<QVariant> value = readPortal(QStringLiteral("ReadOne"));
    if (!value) {
        value = readPortal(QStringLiteral("Read"));
    }
    if (value) {
        current = fromPortalValue(*value);
    }
    QDBusConnection::sessionBus().connect(
        portalService, portalPath, settingsInterface, QStringLiteral("SettingChanged"), this,
        SLOT(portalSettingChanged(QString, QString, QDBusVariant)));
}

bool DesktopColorScheme::prefersDark() const {
    switch (current) {
        case Preference::dark: return true;
        case Preference::light: return false;
        case Preference::none: break;
    }
    return QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
}

DesktopColorScheme::Preference DesktopColorScheme::fromPortalValue(const QVariant& value) {
    QVariant inner = value;
    while (inner.canConvert<QDBusVariant>() && inner.userType() == qMetaTypeId<QDBusVariant>()) {
        inner = inner.value<QDBusVariant>().variant();
    }
    bool isNumber = false;
    const uint number = inner.toUInt(&isNumber);
    if (!isNumber) {
        return Preference::none;
    }
    return number == 1 ? Preference::dark : number == 2 ? Preference::light : Preference::none;
}

void DesktopColorScheme::portalSettingChanged(const QString& nameSpace, const QString& key,
                                              const QDBusVariant& value) {
    if (nameSpace != appearanceNamespace || key != colorSchemeKey) {
        return;
    }
    const Preference updated = fromPortalValue(value.variant());
    if (updated != current) {
        current = updated;
        emit changed();
    }
}

bool desktopCompositorRunning() {
    const QString platform = QGuiApplication::platformName();
    if (platform.startsWith(QStringLiteral("wayland"))) {
        return true;
    }
    if (platform != QStringLiteral("xcb")) {
        return false;
    }
    auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    xcb_connection_t* connection = x11 != nullptr ? x11->connection() : nullptr;
    if (connection == nullptr) {
        return false;
    }
    // A compositing manager owns _NET_WM_CM_S<n> for the screen it composites (EWMH).
    int screen = 0;
    if (const char* display = std::getenv("DISPLAY")) {
        const std::string text(display);
        const std::size_t dot = text.rfind('.');
        if (dot != std::string::npos && dot > text.rfind(':')) {
            screen = std::atoi(text.c_str() + dot + 1);
        }
    }
    const std::string atomName = "_NET_WM_CM_S" + std::to_string(screen);
    xcb_intern_atom_cookie_t cookie =
        xcb_intern_atom(connection, 1, static_cast<uint16_t>(atomName.size()), atomName.c_str());
    std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> atom(
        xcb_intern_atom_reply(connection, cookie, nullptr), &std::free);
    if (!atom || atom->atom == XCB_ATOM_NONE) {
        return false;
    }
    std::unique_ptr<xcb_get_selection_owner_reply_t, decltype(&std::free)> owner(
        xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, atom->atom),
                                      nullptr),
        &std::free);
    return owner && owner->owner != XCB_NONE;
}

}  // namespace corvane
