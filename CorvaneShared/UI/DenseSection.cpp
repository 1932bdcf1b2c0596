#include "CorvaneShared/UI/DenseSection.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QVBoxLayout>

#include <cmath>

#include "CorvaneShared/UI/PopoverColors.h"
#include "CorvaneShared/UI/PopoverPainting.h"

namespace corvane {

class DenseSection::Title final : public QWidget {
public:
    Title(QString text, QWidget* parent) : QWidget(parent), text(std::move(text)) {
        setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    }
    void setText(const QString& updated) {
        if (updated != text) {
            text = updated;
            update();
        }
    }
    QSize sizeHint() const override {
        return {0, PopoverPainting::rowHeight(QFontMetricsF(titleFont()))};
    }
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setFont(titleFont());
        PopoverPainting::drawText(painter, rect(), text, Qt::AlignHCenter, Qt::ElideRight,
                                  colorsOf(*this).accent);
    }

private:
    QFont titleFont() const { return popoverFont(font(), 10, QFont::DemiBold); }
    QString text;
};

DenseSection::DenseSection(std::optional<QString> titleText, PanelSpacing spacing, QWidget* parent)
    : QWidget(parent), layout(new QVBoxLayout(this)) {
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    const int vertical = static_cast<int>(std::lround(spacing.sectionPadding));
    layout->setContentsMargins(horizontalMargin, vertical, horizontalMargin, vertical);
    layout->setSpacing(static_cast<int>(std::lround(spacing.rowSpacing)));
    if (titleText) {
        title = new Title(std::move(*titleText), this);
        layout->addWidget(title);
    }
}

void DenseSection::addRow(QWidget* row) {
    layout->addWidget(row);
}

void DenseSection::setTitle(const QString& text) {
    if (title != nullptr) {
        title->setText(text);
    }
}

}  // namespace corvane
