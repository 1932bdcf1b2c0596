#include "CorvaneAgent/UI/SensorRows.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>

#include "CorvaneAgent/PanelRules.h"
#include "CorvaneShared/UI/PopoverPainting.h"

namespace corvane {

namespace {

constexpr double iconColumn = 13;
constexpr double iconSize = 9;
constexpr double spacing = 6;
constexpr double percentColumn = 30;

void drawIcon(QPainter& painter, std::string_view icon, double height, const QColor& color) {
    PopoverPainting::drawSymbol(
        painter, icon,
        QRectF((iconColumn - iconSize) / 2, (height - iconSize) / 2, iconSize, iconSize), color);
}

}  // namespace

SensorRow::SensorRow(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void SensorRow::set(std::string updatedIcon, const QString& updatedTitle,
                    const QString& updatedValue, PopoverHue updatedHue) {
    if (updatedIcon == icon && updatedTitle == title && updatedValue == value &&
        updatedHue == valueHue) {
        return;
    }
    icon = std::move(updatedIcon);
    title = updatedTitle;
    value = updatedValue;
    valueHue = updatedHue;
    update();
}

QSize SensorRow::sizeHint() const {
    return {0, PopoverPainting::rowHeight(QFontMetricsF(font()))};
}

void SensorRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const PopoverColors& colors = colorsOf(*this);
    drawIcon(painter, icon, height(), colors.accent);
    const double left = iconColumn + spacing;
    const double valueWidth =
        std::min(QFontMetricsF(font()).horizontalAdvance(value) + 1, width() - left);
    PopoverPainting::drawText(painter, QRectF(width() - valueWidth, 0, valueWidth, height()), value,
                              Qt::AlignRight, Qt::ElideLeft, colorOf(colors, valueHue));
    PopoverPainting::drawText(painter,
                              QRectF(left, 0, width() - valueWidth - spacing - left, height()),
                              title, Qt::AlignLeft, Qt::ElideRight, colors.secondaryText);
}

FanRow::FanRow(double rpmColumn, QWidget* parent) : QWidget(parent), speedWidth(rpmColumn) {
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void FanRow::set(const QString& updatedTitle, const QString& updatedSpeed,
                 const QString& updatedPercent) {
    if (updatedTitle == title && updatedSpeed == speed && updatedPercent == percent) {
        return;
    }
    title = updatedTitle;
    speed = updatedSpeed;
    percent = updatedPercent;
    update();
}

double FanRow::rpmColumn(const QFont& panelFont, const UnitSources& sources) {
    const QFontMetricsF metrics(popoverFont(panelFont, 10));
    return rpmColumnWidth(
        [&metrics](const std::string& text) {
            return metrics.horizontalAdvance(QString::fromStdString(text));
        },
        sources);
}

QSize FanRow::sizeHint() const {
    return {0, PopoverPainting::rowHeight(QFontMetricsF(font()))};
}

void FanRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const PopoverColors& colors = colorsOf(*this);
    drawIcon(painter, "fan", height(), colors.accent);
    const double percentLeft = width() - percentColumn;
    const double speedLeft = percentLeft - speedWidth;
    PopoverPainting::drawText(painter, QRectF(percentLeft, 0, percentColumn, height()), percent,
                              Qt::AlignRight, Qt::ElideLeft, colors.primaryText);
    PopoverPainting::drawText(painter, QRectF(speedLeft, 0, speedWidth, height()), speed,
                              Qt::AlignRight, Qt::ElideLeft, colors.primaryText);
    const double left = iconColumn + spacing;
    PopoverPainting::drawText(painter, QRectF(left, 0, speedLeft - spacing - left, height()), title,
                              Qt::AlignLeft, Qt::ElideRight, colors.secondaryText);
}

}  // namespace corvane
