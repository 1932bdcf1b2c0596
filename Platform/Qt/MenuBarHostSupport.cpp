#include "Platform/Qt/MenuBarHostSupport.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QGuiApplication>

#include <cstdlib>
#include <cstring>

namespace corvane {

QImage qImageFromItemImage(const ItemImage& image) {
    if (image.pixelWidth <= 0 || image.pixelHeight <= 0 ||
        image.pixels.size() != static_cast<std::size_t>(image.pixelWidth) *
                                   static_cast<std::size_t>(image.pixelHeight)) {
        return {};
    }
    QImage result(image.pixelWidth, image.pixelHeight, QImage::Format_ARGB32_Premultiplied);
    for (int row = 0; row < image.pixelHeight; ++row) {
        std::memcpy(result.scanLine(row),
                    image.pixels.data() + static_cast<std::size_t>(row) * image.pixelWidth,
                    static_cast<std::size_t>(image.pixelWidth) * sizeof(std::uint32_t));
    }
    result.setDevicePixelRatio(image.devicePixelRatio > 0 ? image.devicePixelRatio : 1);
    return result;
}

}  // namespace corvane

namespace corvane {

void preferX11WhenDisplayIsSet() {
    const char* display = std::getenv("DISPLAY");
    if (display && *display && !std::getenv("QT_QPA_PLATFORM")) {
        setenv("QT_QPA_PLATFORM", "xcb", 0);
    }
}

bool hasSessionBus() {
    return QDBusConnection::sessionBus().isConnected();
}

bool hasStatusNotifierWatcher() {
    const QDBusConnectionInterface* bus = QDBusConnection::sessionBus().interface();
    return bus && bus->isServiceRegistered(QStringLiteral("org.kde.StatusNotifierWatcher")).value();
}

bool isX11Platform() {
    return QGuiApplication::platformName() == QLatin1String("xcb");
}

}  // namespace corvane
