#include "CorvaneShared/UI/ValueRow.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

#include "CorvaneShared/UI/ByteText.h"
#include "CorvaneShared/UI/PopoverPainting.h"

namespace corvane {

namespace {

constexpr double swatchSize = 7;
constexpr double spacing = 6;

}  // namespace

ValueRow::ValueRow(QString title, QString value, std::optional<PopoverHue> swatch, QWidget* parent)
    : QWidget(parent), titleText(std::move(title)), valueText(std::move(value)), swatch(swatch) {
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

ValueRow::ValueRow(QString title, std::uint64_t bytes, const QLocale& locale,
                   std::optional<PopoverHue> swatch, QWidget* parent)
    : ValueRow(std::move(title), ByteText::format(bytes, ByteText::Style::memory, locale), swatch,
               parent) {}

void ValueRow::setTitle(const QString& text) {
    if (text != titleText) {
        titleText = text;
        update();
    }
}

void ValueRow::setValue(const QString& text) {
    if (text != valueText) {
        valueText = text;
        update();
    }
}

void ValueRow::setBytes(std::uint64_t bytes, const QLocale& locale) {
    setValue(ByteText::format(bytes, ByteText::Style::memory, locale));
}

QSize ValueRow::sizeHint() const {
    return {0, PopoverPainting::rowHeight(QFontMetricsF(font()))};
}

void ValueRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const PopoverColors& colors = colorsOf(*this);
    const QRectF area = rect();
    double left = 0;
    if (swatch) {
        QPainterPath path;
        path.addRoundedRect(QRectF(0, (area.height() - swatchSize) / 2, swatchSize, swatchSize), 1,
                            1);
        painter.fillPath(path, colorOf(colors, *swatch));
        left = swatchSize + spacing;
    }
    // The value keeps its full width; only the title is shortened when both do not fit.
    const double valueWidth =
        std::min(QFontMetricsF(font()).horizontalAdvance(valueText) + 1, area.width() - left);
    PopoverPainting::drawText(painter,
                              QRectF(area.right() - valueWidth, 0, valueWidth, area.height()),
                              valueText, Qt::AlignRight, Qt::ElideLeft, colors.primaryText);
    const double titleWidth = area.width() - left - valueWidth - spacing;
    PopoverPainting::drawText(painter, QRectF(left, 0, titleWidth, area.height()), titleText,
                              Qt::AlignLeft, Qt::ElideRight, colors.secondaryText);
}

}  // namespace corvane
