#pragma once

#include <QColor>
#include <QRectF>
#include <QString>

#include <string_view>

class QPainter;
class QFontMetricsF;

/// Drawing helpers the panel parts share. Main thread only.
namespace corvane::PopoverPainting {

/// Draws Corvane's symbol `name` fitted into `rect` (keeping its proportions, centred) in
/// `color`, sharp at the painter's device pixel ratio. Draws nothing for an unknown name.
void drawSymbol(QPainter& painter, std::string_view name, const QRectF& rect, const QColor& color);

/// The line height of a row set in `metrics`, in whole points.
int rowHeight(const QFontMetricsF& metrics);

/// Draws `text` in `rect`, vertically centred, aligned by `alignment`, elided in `mode` when
/// too wide, in `color`.
void drawText(QPainter& painter, const QRectF& rect, const QString& text, int alignment,
              Qt::TextElideMode mode, const QColor& color);

}  // namespace corvane::PopoverPainting
