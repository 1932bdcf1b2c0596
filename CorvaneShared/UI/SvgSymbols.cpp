#include "CorvaneShared/UI/SvgSymbols.h"

#include <QPainter>
#include <QSvgRenderer>

#include <cmath>

namespace corvane {

QString symbolPath(std::string_view name) {
    return QStringLiteral(":/symbols/") +
           QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())) +
           QStringLiteral(".svg");
}

SvgSymbols& SvgSymbols::shared() {
    static SvgSymbols symbols;
    return symbols;
}

std::optional<SymbolSize> SvgSymbols::imageSize(std::string_view name) const {
    if (auto found = symbolSizes.find(name); found != symbolSizes.end()) {
        return found->second;
    }
    std::optional<SymbolSize> size;
    // A name that would leave the symbol folder is no symbol of ours.
    if (name.find('/') == std::string_view::npos) {
        QSvgRenderer renderer(symbolPath(name));
        if (renderer.isValid()) {
            const QSizeF points = renderer.viewBoxF().size();
            size = SymbolSize{points.width(), points.height()};
        }
    }
    symbolSizes.emplace(std::string(name), size);
    return size;
}

QImage SvgSymbols::image(std::string_view name, const QColor& color, qreal devicePixelRatio,
                         qreal scale) const {
    ImageKey key{std::string(name), color.rgba(), devicePixelRatio, scale};
    if (auto found = renderedSymbols.find(key); found != renderedSymbols.end()) {
        return found->second;
    }
    QImage image;
    if (const auto size = imageSize(name)) {
        const QSizeF pixels(size->width * scale * devicePixelRatio,
                            size->height * scale * devicePixelRatio);
        image = QImage(static_cast<int>(std::ceil(pixels.width())),
                       static_cast<int>(std::ceil(pixels.height())),
                       QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QSvgRenderer renderer(symbolPath(name));
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        // The exact size, not the rounded-up one: stretching the drawing to whole pixels would
        // move its lines off the pixel grid they were drawn on.
        renderer.render(&painter, QRectF(QPointF(0, 0), pixels));
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(image.rect(), color);
        painter.end();
        image.setDevicePixelRatio(devicePixelRatio);
    }
    renderedSymbols.emplace(std::move(key), image);
    return image;
}

}  // namespace corvane
