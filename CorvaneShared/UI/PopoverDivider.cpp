#include "CorvaneShared/UI/PopoverDivider.h"

#include <QPainter>

#include "CorvaneShared/UI/PopoverColors.h"

namespace corvane {

PopoverDivider::PopoverDivider(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void PopoverDivider::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), colorsOf(*this).divider);
}

}  // namespace corvane
