#include "CorvaneShared/UI/NoteRow.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "CorvaneShared/UI/PopoverColors.h"
#include "CorvaneShared/UI/PopoverPainting.h"

namespace corvane {

namespace {

constexpr int textFlags = Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap;

}  // namespace

NoteRow::NoteRow(QString text, int wrapWidth, QWidget* parent)
    : QWidget(parent), noteText(std::move(text)), wrapWidth(std::max(wrapWidth, 1)) {
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

QSize NoteRow::sizeHint() const {
    const QFontMetricsF metrics(font());
    const QRectF lines = metrics.boundingRect(
        QRectF(0, 0, wrapWidth, std::numeric_limits<int>::max()), textFlags, noteText);
    // Never lower than a row, so a note of one line sits exactly where a row would.
    return {0, std::max(PopoverPainting::rowHeight(metrics),
                        static_cast<int>(std::ceil(lines.height())))};
}

void NoteRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(colorsOf(*this).secondaryText);
    painter.drawText(QRectF(0, 0, wrapWidth, height()), textFlags, noteText);
}

}  // namespace corvane
