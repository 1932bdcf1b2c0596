#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QImage>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QVariantList>
#include <QVariantMap>

namespace corvane {

/// One picture of a StatusNotifierItem icon: ARGB32, not premultiplied, each pixel's four
/// bytes in network order (alpha first), as the protocol's a(iiay) carries them.
struct StatusNotifierPixmap {
    int width = 0;
    int height = 0;
    QByteArray bytes;
};
using StatusNotifierPixmaps = QList<StatusNotifierPixmap>;

/// The protocol's (sa(iiay)ss) tooltip: icon name, icon pictures, title, text.
struct StatusNotifierToolTip {
    QString iconName;
    StatusNotifierPixmaps pixmaps;
    QString title;
    QString text;
};

/// One entry of a com.canonical.dbusmenu layout, (ia{sv}av): the children are variants that
/// each hold another entry.
struct DBusMenuLayoutItem {
    int id = 0;
    QVariantMap properties;
    QVariantList children;
};

/// One entry's properties in GetGroupProperties' answer, (ia{sv}).
struct DBusMenuItemProperties {
    int id = 0;
    QVariantMap properties;
};
using DBusMenuItemPropertiesList = QList<DBusMenuItemProperties>;

/// The picture of `image` as a tray wants it; `image` may be in any format.
StatusNotifierPixmap statusNotifierPixmap(const QImage& image);

/// Makes the types above known to QtDBus; safe to call more than once.
void registerStatusNotifierTypes();

QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierPixmap& pixmap);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierPixmap& pixmap);
QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierToolTip& toolTip);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierToolTip& toolTip);
QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuLayoutItem& item);
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuLayoutItem& item);
QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuItemProperties& item);
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuItemProperties& item);

}  // namespace corvane

Q_DECLARE_METATYPE(corvane::StatusNotifierPixmap)
Q_DECLARE_METATYPE(corvane::StatusNotifierToolTip)
Q_DECLARE_METATYPE(corvane::DBusMenuLayoutItem)
Q_DECLARE_METATYPE(corvane::DBusMenuItemProperties)
