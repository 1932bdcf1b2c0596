#include "CorvaneShared/UI/PopoverPainting.h"

#include <QFontMetricsF>
#include <QImage>
#include <QPaintDevice>
#include <QPainter>

#include <algorithm>
#include <cmath>

#include "CorvaneShared/UI/SvgSymbols.h"

namespace corvane::PopoverPainting {

void drawSymbol(QPainter& painter, std::string_view name, const QRectF& rect, const QColor& color) {
    const std::optional<SymbolSize> size = SvgSymbols::shared().imageSize(name);
    if (!size || size->width <= 0 || size->height <= 0) {
        return;
    }
    const double scale = std::min(rect.width() / size->width, rect.height() / size->height);
    const qreal ratio = painter.device() != nullptr ? painter.device()->devicePixelRatioF() : 1.0;
    const QImage image = SvgSymbols::shared().image(name, color, ratio, scale);
    const QSizeF drawn(size->width * scale, size->height * scale);
    const QPointF origin(rect.center().x() - drawn.width() / 2,
                         rect.center().y() - drawn.height() / 2);
    painter.drawImage(QRectF(origin, drawn), image);
}

int rowHeight(const QFontMetricsF& metrics) {
    return static_cast<int>(std::ceil(metrics.height()));
}

void drawText(QPainter& painter, const QRectF& rect, const QString& text, int alignment,
              Qt::TextElideMode mode, const QColor& color) {
    const QString shown = painter.fontMetrics().elidedText(
        text, mode, static_cast<int>(std::floor(std::max(0.0, rect.width()))));
    painter.setPen(color);
    painter.drawText(rect, alignment | Qt::AlignVCenter | Qt::TextSingleLine, shown);
}

}  // namespace corvane::PopoverPainting
