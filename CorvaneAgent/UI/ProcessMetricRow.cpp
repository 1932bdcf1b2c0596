#include "CorvaneAgent/UI/ProcessMetricRow.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>

#include "CorvaneShared/UI/PopoverColors.h"
#include "CorvaneShared/UI/PopoverPainting.h"

namespace corvane {

namespace {

constexpr double iconSize = 14;
constexpr double spacing = 6;

}  // namespace

QString processName(const std::string& name) {
    return QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
}

ProcessMetricRow::ProcessMetricRow(ProcessIconLookup iconLookup, QWidget* parent)
    : QWidget(parent), iconLookup(std::move(iconLookup)) {
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void ProcessMetricRow::setProcess(const ProcessMetric& process, std::vector<QString> shown) {
    const QString shownName = processName(process.name);
    // A pid keeps its icon: looking it up again for every refresh would cost more than a row.
    const bool newProcess = !hasProcess || process.pid != pid || shownName != name;
    if (!newProcess && shown == values) {
        return;
    }
    if (newProcess) {
        pid = process.pid;
        name = shownName;
        icon = iconLookup ? iconLookup(process) : QIcon();
        hasProcess = true;
    }
    values = std::move(shown);
    update();
}

QSize ProcessMetricRow::sizeHint() const {
    return {
        0, std::max(static_cast<int>(iconSize), PopoverPainting::rowHeight(QFontMetricsF(font())))};
}

void ProcessMetricRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const PopoverColors& colors = colorsOf(*this);
    const QRectF iconRect(0, (height() - iconSize) / 2, iconSize, iconSize);
    if (!icon.isNull()) {
        icon.paint(&painter, iconRect.toAlignedRect());
    } else {
        PopoverPainting::drawSymbol(painter, "terminal", iconRect, colors.secondaryText);
    }
    QFont valueFont = font();
    valueFont.setWeight(QFont::Medium);
    painter.setFont(valueFont);
    double right = width();
    if (values.size() >= 2) {
        for (auto value = values.rbegin(); value != values.rend(); ++value) {
            right -= columnWidth;
            PopoverPainting::drawText(painter, QRectF(right, 0, columnWidth, height()), *value,
                                      Qt::AlignRight, Qt::ElideLeft, colors.primaryText);
        }
    } else if (!values.empty()) {
        const double valueWidth =
            std::min(QFontMetricsF(valueFont).horizontalAdvance(values.front()) + 1, right / 2);
        right -= valueWidth;
        PopoverPainting::drawText(painter, QRectF(right, 0, valueWidth, height()), values.front(),
                                  Qt::AlignRight, Qt::ElideLeft, colors.primaryText);
    }
    painter.setFont(font());
    const double left = iconSize + spacing;
    PopoverPainting::drawText(painter, QRectF(left, 0, right - spacing - left, height()), name,
                              Qt::AlignLeft, Qt::ElideMiddle, colors.primaryText);
}

ProcessList::ProcessList(ProcessIconLookup iconLookup, Values values, int rowSpacing,
                         QWidget* parent)
    : QWidget(parent),
      iconLookup(std::move(iconLookup)),
      values(std::move(values)),
      layout(new QVBoxLayout(this)) {
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(rowSpacing);
}

void ProcessList::setProcesses(const std::vector<ProcessMetric>& processes) {
    while (rows.size() > processes.size()) {
        delete rows.back();
        rows.pop_back();
    }
    while (rows.size() < processes.size()) {
        rows.push_back(new ProcessMetricRow(iconLookup, this));
        layout->addWidget(rows.back());
    }
    for (std::size_t index = 0; index < processes.size(); ++index) {
        rows[index]->setProcess(processes[index], values(processes[index]));
    }
    setVisible(!processes.empty());
}

}  // namespace corvane
