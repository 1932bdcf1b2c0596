#include "CorvaneShared/UI/CompactHeader.h"

#include <QPainter>

#include "CorvaneShared/UI/PopoverColors.h"
#include "CorvaneShared/UI/PopoverPainting.h"

namespace corvane {

namespace {

constexpr double padding = 12;
constexpr double iconSize = 14;
constexpr double spacing = 8;

}  // namespace

CompactHeader::CompactHeader(QString title, std::string icon, QWidget* parent)
    : QWidget(parent), title(std::move(title)), icon(std::move(icon)) {
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void CompactHeader::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const PopoverColors& colors = colorsOf(*this);
    const double middle = height() / 2.0;
    PopoverPainting::drawSymbol(
        painter, icon, QRectF(padding, middle - iconSize / 2, iconSize, iconSize), colors.accent);
    painter.setFont(popoverFont(font(), 12, QFont::DemiBold));
    const double left = padding + iconSize + spacing;
    PopoverPainting::drawText(painter, QRectF(left, 0, width() - left - padding, height()), title,
                              Qt::AlignLeft, Qt::ElideRight, colors.primaryText);
}

}  // namespace corvane
