#include "CorvaneAgent/UI/PanelWindow.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QVBoxLayout>
#include <QWidget>
#include <QWindow>

#include <algorithm>
#include <cmath>
#include <vector>

#include "CorvaneAgent/PanelPlacement.h"
#include "Platform/Qt/X11WindowState.h"

namespace corvane {

namespace {

constexpr int panelWidth = 300;

ScreenRect screenRect(const QRect& rect) {
    return {static_cast<double>(rect.x()), static_cast<double>(rect.y()),
            static_cast<double>(rect.width()), static_cast<double>(rect.height())};
}

std::vector<ScreenArea> screenAreas() {
    std::vector<ScreenArea> areas;
    for (const QScreen* screen : QGuiApplication::screens()) {
        areas.push_back({screenRect(screen->geometry()), screenRect(screen->availableGeometry())});
    }
    return areas;
}

}  // namespace

/// The top-level widget: closes on Escape, and reports every close, the window manager's
/// included, after it is hidden.
class PanelFrame final : public QWidget {
public:
    std::function<void()> onClosed;

    PanelFrame() : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint) {
        setFixedWidth(panelWidth);
        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(0);
    }

protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Escape) {
            close();
            return;
        }
        QWidget::keyPressEvent(event);
    }

    void closeEvent(QCloseEvent* event) override {
        // Hidden here rather than by the default handling, so that handlers see it closed.
        event->ignore();
        if (!isVisible()) {
            return;
        }
        hide();
        if (onClosed) {
            onClosed();  // may destroy the PanelWindow: nothing of it is touched after
        }
    }
};

PanelWindow::PanelWindow(const QString& title, ContentFactory makeContent)
    : makeContent(std::move(makeContent)), frame(new PanelFrame, [](PanelFrame* frame) {
          frame->onClosed = nullptr;
          frame->hide();
          frame->deleteLater();
      }) {
    frame->setWindowTitle(title);
    frame->onClosed = [this] { didClose(); };
}

PanelWindow::~PanelWindow() = default;

bool PanelWindow::hasContent() const {
    return content != nullptr;
}

void PanelWindow::setContent(const PanelMetrics& metrics, std::optional<double> scrollHeight) {
    removeContent();
    contentMetrics = metrics;
    contentScrollHeight = scrollHeight;
    content = makeContent ? makeContent(metrics, scrollHeight) : nullptr;
    if (content != nullptr) {
        frame->layout()->addWidget(content);
    }
}

void PanelWindow::removeContent() {
    // Deleted at once: the fit measures fresh content right after replacing the old.
    delete content;
    content = nullptr;
}

double PanelWindow::fittingHeight() const {
    if (content == nullptr) {
        return 0;
    }
    if (content->hasHeightForWidth()) {
        return content->heightForWidth(panelWidth);
    }
    return content->sizeHint().height();
}

void PanelWindow::show(const ScreenRect& anchor) {
    lastAnchor = anchor;
    placeBelow(anchor);
    if (!frame->isVisible()) {
        frame->winId();  // creates the native window the states are set on
        keepAboveOnEveryWorkspace(*frame->windowHandle());
        frame->show();
    }
    frame->raise();
    // Focus, so that Escape reaches it.
    frame->activateWindow();
}

void PanelWindow::placeBelow(const ScreenRect& anchor) {
    const int height = std::max(1, static_cast<int>(std::ceil(fittingHeight())));
    frame->setFixedHeight(height);
    const ScreenPoint origin = panelOrigin(anchor, screenAreas(), panelWidth, height);
    frame->move(static_cast<int>(std::lround(origin.x)), static_cast<int>(std::lround(origin.y)));
}

void PanelWindow::close() {
    frame->close();
}

bool PanelWindow::isShown() const {
    return frame->isVisible();
}

std::optional<ScreenRect> PanelWindow::windowFrame() const {
    if (!frame->isVisible()) {
        return std::nullopt;
    }
    return screenRect(frame->frameGeometry());
}

void PanelWindow::refreshAppearance() {
    if (content == nullptr) {
        return;
    }
    setContent(contentMetrics, contentScrollHeight);
    if (frame->isVisible() && lastAnchor) {
        placeBelow(*lastAnchor);
    }
}

Subscription PanelWindow::observeDidClose(std::function<void()> handler) {
    return didCloseObservers.add(std::move(handler));
}

QWidget& PanelWindow::window() {
    return *frame;
}

void PanelWindow::didClose() {
    didCloseObservers.notify();
}

}  // namespace corvane
