#include "CorvaneShared/UI/MonitorPopover.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFontMetricsF>
#include <QHBoxLayout>
#include <QPainter>
#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

#include "CorvaneShared/UI/CompactHeader.h"
#include "CorvaneShared/UI/PopoverDivider.h"
#include "CorvaneShared/UI/PopoverPainting.h"
#include "CorvaneShared/UI/PopoverSurface.h"
#include "CorvaneShared/UI/SvgSymbols.h"

namespace corvane {

namespace {

// A flat footer button: an optional symbol and a label in the text colour, no frame.
class FooterButton final : public QAbstractButton {
public:
    FooterButton(const QString& text, std::string symbol, QWidget* parent)
        : QAbstractButton(parent), symbol(std::move(symbol)) {
        setText(text);
        setCursor(Qt::PointingHandCursor);
        setFocusPolicy(Qt::NoFocus);
        setAttribute(Qt::WA_Hover);
    }
    QSize sizeHint() const override {
        const int symbolWidth = symbol.empty() ? 0 : 16;
        const auto textWidth =
            static_cast<int>(std::ceil(QFontMetricsF(font()).horizontalAdvance(text())));
        return {symbolWidth + textWidth + 8, 22};
    }
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const PopoverColors& colors = colorsOf(*this);
        if (underMouse() || isDown()) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(colors.divider);
            painter.drawRoundedRect(rect(), 4, 4);
        }
        double left = 4;
        if (!symbol.empty()) {
            PopoverPainting::drawSymbol(painter, symbol, QRectF(left, height() / 2.0 - 6, 12, 12),
                                        colors.primaryText);
            left += 16;
        }
        PopoverPainting::drawText(painter, QRectF(left, 0, width() - left - 4, height()), text(),
                                  Qt::AlignLeft, Qt::ElideRight, colors.primaryText);
    }

private:
    std::string symbol;
};

QWidget* footer(const PopoverTexts& texts, const PopoverActions& actions, QWidget* parent) {
    auto* row = new QWidget(parent);
    row->setFixedHeight(34);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(12, 0, 12, 0);
    auto* settings = new FooterButton(texts.settings, "gearshape", row);
    auto* quit = new FooterButton(texts.quit, "", row);
    // Close first, so the popover is gone before the settings window comes up.
    QObject::connect(settings, &QAbstractButton::clicked, row, [actions] {
        if (actions.requestClose) {
            actions.requestClose();
        }
        if (actions.openSettings) {
            actions.openSettings();
        }
    });
    QObject::connect(quit, &QAbstractButton::clicked, row, [actions] {
        if (actions.quit) {
            actions.quit();
        }
    });
    layout->addWidget(settings);
    layout->addStretch(1);
    layout->addWidget(quit);
    return row;
}

QWidget* scrolling(QWidget* panel, double height, QWidget* parent) {
    auto* area = new QScrollArea(parent);
    area->setFrameShape(QFrame::NoFrame);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    area->setWidgetResizable(true);
    area->setWidget(panel);
    // The surface shows through the region, as it does around it.
    area->setAutoFillBackground(false);
    area->viewport()->setAutoFillBackground(false);
    panel->setAutoFillBackground(false);
    // A negative budget leaves no room at all; the region cannot be less than empty.
    area->setFixedHeight(static_cast<int>(std::lround(std::max(0.0, height))));
    return area;
}

}  // namespace

MonitorPopover::MonitorPopover(const PopoverTexts& texts, QWidget* panel,
                               std::optional<double> scrollHeight, const PopoverActions& actions,
                               PopoverLook panelLook, QWidget* parent)
    : QWidget(parent), look(std::move(panelLook)), surface(new PopoverSurface(this)) {
    setFixedWidth(panelWidth);
    setFont(popoverFont(QApplication::font(), 10));
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->setSpacing(0);
    outer->addWidget(surface);
    auto* stack = new QVBoxLayout(surface);
    stack->setContentsMargins(0, 0, 0, 0);
    stack->setSpacing(0);
    stack->addWidget(new CompactHeader(texts.title, texts.icon, surface));
    stack->addWidget(new PopoverDivider(surface));
    stack->addWidget(scrollHeight ? scrolling(panel, *scrollHeight, surface) : panel);
    stack->addWidget(new PopoverDivider(surface));
    stack->addWidget(footer(texts, actions, surface));
    applyAppearance();
}

void MonitorPopover::applyAppearance() {
    const std::optional<PopoverScheme> forced =
        preferredScheme(look.appearance ? look.appearance() : std::string());
    const bool desktopDark = look.desktopPrefersDark ? look.desktopPrefersDark() : true;
    currentScheme = forced.value_or(desktopDark ? PopoverScheme::dark : PopoverScheme::light);
    surface->setBackground(look.background ? look.background() : std::string());
    surface->setCompositorRunning(look.compositorRunning && look.compositorRunning());
    // The palette reaches every part, each of which repaints in the new scheme.
    setPalette(popoverPalette(currentScheme));
}

bool MonitorPopover::wantsTranslucentWindow() const {
    return surface->isTranslucent();
}

int MonitorPopover::heightForWidth(int) const {
    // Sections come and go with the model also while the panel is not shown, when no layout
    // request runs to refresh the sizes the layouts keep: measure afresh. Not while shown: the
    // layouts are current then, and every refresh posts a layout request whose handling asks
    // for this height again, which would never end.
    if (!isVisible()) {
        for (QWidget* part : findChildren<QWidget*>()) {
            part->updateGeometry();
        }
        for (QLayout* inner : findChildren<QLayout*>()) {
            inner->invalidate();
        }
    }
    return layout()->sizeHint().height();
}

QSize MonitorPopover::sizeHint() const {
    return {panelWidth, heightForWidth(panelWidth)};
}

}  // namespace corvane
