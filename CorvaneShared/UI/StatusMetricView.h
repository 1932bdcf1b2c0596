#pragma once

#include <QColor>
#include <QImage>
#include <QRectF>

#include "CorvaneShared/MeterContent.h"

class QPainter;

namespace corvane {

/// The colours of a meter's foreground on one kind of menu bar. The outline keeps its one
/// colour on both, and the fills keep their accents.
struct MeterColors {
    /// Text, letters and symbols.
    QColor foreground;
    /// The empty part of a bar.
    QColor track;
};

/// The colours for `palette`.
MeterColors meterColors(MeterPalette palette);

/// Draws the menu-bar meters. Every edge is placed on the device's pixel grid, so a meter is as
/// sharp at 1.25 or 1.5 device pixels per point as at 1 or 2; digits stand in cells of one
/// width, so a changing number never shifts the rest. Main thread only (it needs the
/// application's fonts).
namespace StatusMetricView {

/// Draws `content` with the item's top-left corner at the painter's origin, in points, on
/// the pixel grid of the painter's device. Nothing is drawn outside the item's width and
/// height.
void draw(QPainter& painter, const MeterContent& content);

/// `content` on a transparent image of the item's size at `devicePixelRatio` (its pixel width
/// rounded up).
QImage render(const MeterContent& content, qreal devicePixelRatio);

/// Strokes a meter's outline along the inside of `rect` (points, on the pixel grid) with the
/// corner radius `frameRadius(shape, square, pill)`, in the outline colour; the line width is
/// rounded to whole device pixels (at least one) so that straight edges stay sharp.
void strokeFrame(QPainter& painter, const QRectF& rect, MeterShape shape, double square,
                 double pill);

}  // namespace StatusMetricView

}  // namespace corvane
