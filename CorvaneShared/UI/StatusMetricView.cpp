#include "CorvaneShared/UI/StatusMetricView.h"

#include <QFont>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPaintDevice>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

#include "CorvaneShared/MeterAppearance.h"
#include "CorvaneShared/UI/SvgSymbols.h"

namespace corvane {

namespace {

using namespace MeterLayout;

constexpr int readoutPixelSize = 11;
constexpr int smallestPixelSize = 6;
// Readouts are set a little condensed: the columns are narrow, and desktop fonts are wider
// than the ones they were measured for. Never narrower than the second value.
constexpr int readoutStretch = 87;
constexpr int narrowestStretch = 60;
constexpr int letterPixelSize = 7;
// Between the stacked letters, in points.
constexpr qreal letterSpacing = 1.5;
// The wave's area under the curve, over the track.
constexpr qreal waveAreaAlpha = 0.45;
constexpr qreal waveLineWidth = 1;

QColor toQColor(const SRGBColor& color) {
    return QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                            static_cast<float>(color.blue), static_cast<float>(color.alpha));
}

// Positions on the device's pixel grid. Every edge a meter draws goes through it: an edge
// between two pixels is sharp, an edge inside one is a blur.
struct PixelGrid {
    qreal ratio = 1;

    int pixels(qreal points) const { return static_cast<int>(std::lround(points * ratio)); }
    qreal points(int pixels) const { return pixels / ratio; }
    qreal snap(qreal points) const { return this->points(pixels(points)); }
    // A rectangle whose edges are the pixel boundaries nearest to those of `rect`.
    QRectF snapped(const QRectF& rect) const {
        const int left = pixels(rect.left());
        const int top = pixels(rect.top());
        return {points(left), points(top), points(pixels(rect.right()) - left),
                points(pixels(rect.bottom()) - top)};
    }
    // `rect` shrunk by `inset` points on every side, rounded to whole pixels.
    QRectF inset(const QRectF& rect, qreal inset) const {
        const qreal by = points(pixels(inset));
        return rect.adjusted(by, by, -by, -by);
    }
};

PixelGrid gridOf(const QPainter& painter) {
    const QPaintDevice* device = painter.device();
    return {device != nullptr ? device->devicePixelRatioF() : 1.0};
}

// The outline's box: the graph column, from the outline's top to its bottom.
QRectF frameBox(const MeterColumns& columns, const PixelGrid& grid) {
    return grid.snapped(
        QRectF(columns.graphX, (itemHeight - frameHeight) / 2, columns.graphWidth, frameHeight));
}

// A pill is rounded by pillRadius, or by half its width when it is narrower than that.
qreal pillRadiusOf(const QRectF& box) {
    return std::min(pillRadius, std::min(box.width(), box.height()) / 2);
}

void fillRounded(QPainter& painter, const QRectF& rect, qreal radius, const QColor& color) {
    if (rect.width() <= 0 || rect.height() <= 0) {
        return;
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(rect, radius, radius);
}

// A vertical bar in `rect` filled from the bottom to `level` of `full`.
void drawVerticalBar(QPainter& painter, const QRectF& rect, int level, int full, MeterShape shape,
                     const QColor& track, const QColor& fill, const PixelGrid& grid) {
    fillRounded(painter, rect, fillRadius(shape, rect.width(), rect.height()), track);
    const int heightPixels = grid.pixels(rect.height());
    const int filledPixels = full > 0
                                 ? static_cast<int>(std::lround(static_cast<double>(heightPixels) *
                                                                std::clamp(level, 0, full) / full))
                                 : 0;
    if (filledPixels <= 0) {
        return;
    }
    const qreal filled = grid.points(filledPixels);
    const QRectF part(rect.left(), rect.bottom() - filled, rect.width(), filled);
    fillRounded(painter, part, fillRadius(shape, part.width(), part.height()), fill);
}

void drawBars(QPainter& painter, const MeterContent& content, const QRectF& inner,
              const MeterColors& colors, const PixelGrid& grid) {
    const auto count = static_cast<int>(content.levels.size());
    if (count == 0) {
        return;
    }
    const int left = grid.pixels(inner.left());
    const int span = grid.pixels(inner.right()) - left;
    const int gap = std::max(1, grid.pixels(barGap));
    // Bars share the span evenly; the pixels that do not divide go one each to some bars, so
    // every edge stays on the grid and no bar differs from another by more than one pixel.
    const QColor accent = toQColor(content.accent);
    const QColor fastAccent = toQColor(content.fastAccent);
    const int full = fullLevel(content.graph);
    for (int i = 0; i < count; ++i) {
        const int start = left + static_cast<int>(static_cast<long long>(i) * (span + gap) / count);
        const int end =
            left + static_cast<int>(static_cast<long long>(i + 1) * (span + gap) / count) - gap;
        if (end <= start) {
            continue;
        }
        const auto index = static_cast<std::size_t>(i);
        const bool fast = index < content.fastCores.size() && content.fastCores[index];
        const QRectF bar(grid.points(start), inner.top(), grid.points(end - start), inner.height());
        drawVerticalBar(painter, bar, content.levels[index], full, content.shape, colors.track,
                        fast ? fastAccent : accent, grid);
    }
}

void drawWave(QPainter& painter, const MeterContent& content, const QRectF& inner, qreal radius,
              const MeterColors& colors, const PixelGrid& grid) {
    fillRounded(painter, inner, radius, colors.track);
    const auto count = content.levels.size();
    if (count < 2) {
        return;
    }
    const qreal full = fullLevel(content.graph);
    const qreal step = inner.width() / static_cast<qreal>(count - 1);
    QPainterPath line;
    for (std::size_t i = 0; i < count; ++i) {
        const QPointF point(inner.left() + step * static_cast<qreal>(i),
                            inner.bottom() - inner.height() * content.levels[i] / full);
        if (i == 0) {
            line.moveTo(point);
        } else {
            line.lineTo(point);
        }
    }
    QPainterPath area = line;
    area.lineTo(inner.bottomRight());
    area.lineTo(inner.bottomLeft());
    area.closeSubpath();

    QPainterPath clip;
    clip.addRoundedRect(inner, radius, radius);
    painter.save();
    painter.setClipPath(clip, Qt::IntersectClip);
    QColor areaColor = toQColor(content.accent);
    areaColor.setAlphaF(areaColor.alphaF() * waveAreaAlpha);
    painter.setPen(Qt::NoPen);
    painter.setBrush(areaColor);
    painter.drawPath(area);
    QPen pen(toQColor(content.accent), grid.points(std::max(1, grid.pixels(waveLineWidth))));
    pen.setJoinStyle(Qt::RoundJoin);
    pen.setCapStyle(Qt::RoundCap);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(line);
    painter.restore();
}

void drawCompact(QPainter& painter, const MeterContent& content, const QRectF& inner, qreal radius,
                 const MeterColors& colors, const PixelGrid& grid) {
    fillRounded(painter, inner, radius, colors.track);
    const int full = fullLevel(content.graph);
    const int level = content.levels.empty() ? 0 : std::clamp<int>(content.levels.front(), 0, full);
    const int filledPixels =
        full > 0 ? static_cast<int>(
                       std::lround(static_cast<double>(grid.pixels(inner.width())) * level / full))
                 : 0;
    if (filledPixels <= 0) {
        return;
    }
    const QRectF part(inner.left(), inner.top(), grid.points(filledPixels), inner.height());
    fillRounded(painter, part,
                std::min(radius, fillRadius(content.shape, part.width(), part.height())),
                toQColor(content.accent));
}

void drawGraph(QPainter& painter, const MeterContent& content, const MeterColors& colors,
               const PixelGrid& grid) {
    if (content.graph == MeterGraph::none) {
        return;
    }
    const QRectF box = frameBox(content.columns, grid);
    const qreal pill = pillRadiusOf(box);
    const qreal radius = frameRadius(content.shape, squareRadius, pill);
    if (content.graph == MeterGraph::fill) {
        const QRectF inner = grid.inset(box, fillBarInset);
        drawVerticalBar(painter, inner, content.levels.empty() ? 0 : content.levels.front(),
                        fullLevel(content.graph), content.shape, colors.track,
                        toQColor(content.accent), grid);
    } else {
        const QRectF inner = grid.inset(box, graphInset);
        const qreal innerRadius = std::max<qreal>(0, radius - grid.points(grid.pixels(graphInset)));
        switch (content.graph) {
            case MeterGraph::bars: drawBars(painter, content, inner, colors, grid); break;
            case MeterGraph::wave:
                drawWave(painter, content, inner, innerRadius, colors, grid);
                break;
            case MeterGraph::compact:
                drawCompact(painter, content, inner, innerRadius, colors, grid);
                break;
            case MeterGraph::none:
            case MeterGraph::fill: break;
        }
    }
    StatusMetricView::strokeFrame(painter, box, content.shape, squareRadius, pill);
}

QFont meterFont(int pixelSize, int stretch = QFont::Unstretched) {
    QFont font = QGuiApplication::font();
    font.setPixelSize(pixelSize);
    font.setWeight(QFont::DemiBold);
    font.setStretch(stretch);
    return font;
}

// A readout font with what laying out tabular digits needs, built once per size and stretch:
// the meters redraw every second.
struct ReadoutFace {
    QFont font;
    QFontMetricsF metrics;
    // Every digit stands in a cell this wide, so a changing number never shifts the rest.
    qreal digitCell = 0;

    // The width of `text` with every digit in a digit cell.
    qreal width(const QString& text) const {
        qreal total = 0;
        for (QChar c : text) {
            total += c.isDigit() ? digitCell : metrics.horizontalAdvance(c);
        }
        return total;
    }
};

const ReadoutFace& readoutFace(int pixelSize, int stretch) {
    static std::map<std::pair<int, int>, ReadoutFace> faces;
    const auto key = std::pair(pixelSize, stretch);
    auto found = faces.find(key);
    if (found == faces.end()) {
        const QFont font = meterFont(pixelSize, stretch);
        ReadoutFace face{font, QFontMetricsF(font)};
        for (char digit = '0'; digit <= '9'; ++digit) {
            face.digitCell =
                std::max(face.digitCell, face.metrics.horizontalAdvance(QLatin1Char(digit)));
        }
        found = faces.emplace(key, std::move(face)).first;
    }
    return found->second;
}

// The face a readout is drawn in. Its width comes from the readout's template (its widest
// ordinary text), not from the text of the moment, so the size stays put as the value
// changes; a column too narrow for the template gets narrower letters, not smaller ones.
// Only a text wider than its template (a value out of the ordinary) is made smaller still.
const ReadoutFace& faceFor(const QString& text, const QString& widest, qreal columnWidth) {
    int stretch = readoutStretch;
    const ReadoutFace* face = &readoutFace(readoutPixelSize, stretch);
    const qreal templateWidth = face->width(widest.isEmpty() ? text : widest);
    if (templateWidth > columnWidth) {
        stretch = std::max(narrowestStretch,
                           static_cast<int>(std::floor(stretch * columnWidth / templateWidth)));
        face = &readoutFace(readoutPixelSize, stretch);
    }
    for (int pixelSize = readoutPixelSize;
         face->width(text) > columnWidth && pixelSize > smallestPixelSize;) {
        face = &readoutFace(--pixelSize, stretch);
    }
    return *face;
}

// The readout, right-aligned in its column and centred on the item's height. A text too wide
// even at the smallest size is cut at the column's edge rather than drawn over the next item.
void drawReadout(QPainter& painter, const MeterContent& content, const MeterColors& colors,
                 const PixelGrid& grid) {
    if (content.text.empty() || content.columns.textWidth <= 0) {
        return;
    }
    const QString text = QString::fromStdString(content.text);
    const qreal columnWidth = content.columns.textWidth;
    const ReadoutFace& face =
        faceFor(text, QString::fromStdString(content.textTemplate), columnWidth);
    const qreal right = content.columns.textX + columnWidth;
    const qreal baseline = grid.snap((itemHeight + face.metrics.capHeight()) / 2);

    painter.save();
    painter.setClipRect(QRectF(content.columns.textX, 0, columnWidth, itemHeight),
                        Qt::IntersectClip);
    painter.setFont(face.font);
    painter.setPen(colors.foreground);
    qreal x = right - face.width(text);
    for (QChar c : text) {
        const qreal advance = face.metrics.horizontalAdvance(c);
        const qreal glyphX = c.isDigit() ? x + (face.digitCell - advance) / 2 : x;
        painter.drawText(QPointF(grid.snap(glyphX), baseline), QString(c));
        x += c.isDigit() ? face.digitCell : advance;
    }
    painter.restore();
}

// The label's letters, one under the other, centred in the label column.
void drawLetters(QPainter& painter, const MeterContent& content, const MeterColors& colors,
                 const PixelGrid& grid) {
    const QString letters = QString::fromStdString(content.letters);
    if (letters.isEmpty()) {
        return;
    }
    const QFont font = meterFont(letterPixelSize);
    const QFontMetricsF metrics(font);
    const qreal capHeight = metrics.capHeight();
    const qreal pitch = capHeight + letterSpacing;
    const qreal blockHeight = pitch * static_cast<qreal>(letters.size()) - letterSpacing;
    const qreal top = (itemHeight - blockHeight) / 2;
    const qreal centre = content.columns.labelX + content.columns.labelWidth / 2;
    painter.setFont(font);
    painter.setPen(colors.foreground);
    for (qsizetype i = 0; i < letters.size(); ++i) {
        const QString letter(letters[i]);
        const qreal x = centre - metrics.horizontalAdvance(letter) / 2;
        const qreal baseline = top + capHeight + pitch * static_cast<qreal>(i);
        painter.drawText(QPointF(grid.snap(x), grid.snap(baseline)), letter);
    }
}

void drawSymbol(QPainter& painter, std::string_view name, qreal x, const MeterColors& colors,
                const PixelGrid& grid) {
    const QImage image = SvgSymbols::shared().image(name, colors.foreground, grid.ratio);
    if (image.isNull()) {
        return;
    }
    const qreal height = image.height() / grid.ratio;
    painter.drawImage(QPointF(grid.snap(x), grid.snap((itemHeight - height) / 2)), image);
}

void drawLabel(QPainter& painter, const MeterContent& content, const MeterColors& colors,
               const PixelGrid& grid) {
    if (!content.letters.empty()) {
        drawLetters(painter, content, colors, grid);
        if (!content.symbol.empty()) {
            drawSymbol(painter, content.symbol, content.columns.symbolX, colors, grid);
        }
    } else if (!content.symbol.empty()) {
        drawSymbol(painter, content.symbol, content.columns.labelX, colors, grid);
    }
}

}  // namespace

MeterColors meterColors(MeterPalette palette) {
    switch (palette) {
        case MeterPalette::lightOnDark:
            return {QColor::fromRgbF(1, 1, 1, 0.92f), QColor::fromRgbF(1, 1, 1, 0.16f)};
        case MeterPalette::darkOnLight:
            return {QColor::fromRgbF(0, 0, 0, 0.85f), QColor::fromRgbF(0, 0, 0, 0.12f)};
    }
    return meterColors(MeterPalette::lightOnDark);
}

namespace StatusMetricView {

void draw(QPainter& painter, const MeterContent& content) {
    const PixelGrid grid = gridOf(painter);
    const MeterColors colors = meterColors(content.palette);
    painter.save();
    painter.setClipRect(QRectF(0, 0, content.columns.width, itemHeight), Qt::IntersectClip);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    drawLabel(painter, content, colors, grid);
    drawGraph(painter, content, colors, grid);
    drawReadout(painter, content, colors, grid);
    painter.restore();
}

QImage render(const MeterContent& content, qreal devicePixelRatio) {
    const qreal ratio = devicePixelRatio > 0 ? devicePixelRatio : 1;
    QImage image(static_cast<int>(std::ceil(content.columns.width * ratio - 1e-9)),
                 static_cast<int>(std::ceil(itemHeight * ratio - 1e-9)),
                 QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    draw(painter, content);
    return image;
}

void strokeFrame(QPainter& painter, const QRectF& rect, MeterShape shape, double square,
                 double pill) {
    const PixelGrid grid = gridOf(painter);
    const qreal width = grid.points(std::max(1, grid.pixels(frameLineWidth)));
    // Along the inside, so the line's outer edge is the rectangle's and falls between pixels.
    const QRectF path = rect.adjusted(width / 2, width / 2, -width / 2, -width / 2);
    const qreal radius = std::max<qreal>(0, frameRadius(shape, square, pill) - width / 2);
    painter.save();
    QPen pen(toQColor(frameColor), width);
    pen.setJoinStyle(Qt::MiterJoin);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(path, radius, radius);
    painter.restore();
}

}  // namespace StatusMetricView

}  // namespace corvane
