#include "Platform/Qt/StripMenuBarHost.h"

#include <QColor>
#include <QGuiApplication>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPalette>
#include <QPointer>
#include <QRect>
#include <QScreen>
#include <QTimer>
#include <QWidget>
#include <QWindow>

#include <xcb/xcb.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <utility>
#include <vector>

namespace corvane {

namespace {

constexpr int barHeight = 24;
constexpr int rightMargin = 8;
constexpr int itemSpacing = 4;
/// Qt's xcb platform reads this window property to set _NET_WM_WINDOW_TYPE before mapping;
/// 0x4 is its "dock" type.
constexpr char windowTypeProperty[] = "_q_xcb_wm_window_type";
constexpr int dockWindowType = 0x4;

ScreenRect toScreenRect(const QRect& rect) {
    return {static_cast<double>(rect.x()), static_cast<double>(rect.y()),
            static_cast<double>(rect.width()), static_cast<double>(rect.height())};
}

xcb_atom_t internAtom(xcb_connection_t* connection, const char* name) {
    const auto cookie =
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(connection, cookie, nullptr);
    const xcb_atom_t atom = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    std::free(reply);
    return atom;
}

}  // namespace

class StripItem;

/// The item's button: draws the item's picture and turns presses into clicks or drags.
class ItemButton final : public QWidget {
public:
    ItemButton(StripItem& item, QWidget* parent) : QWidget(parent), item(item) {
        setAttribute(Qt::WA_OpaquePaintEvent, false);
    }

    void invalidate() {
        picture = QImage();
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    StripItem& item;
    QImage picture;
    std::optional<double> grabOffset;
};

class StripMenuBarHost::Bar final : public QWidget {
public:
    Bar(PreferredPositionLookup preferredPosition, MenuBarHostMenu menu,
        ObserverList<MenuBarItem&>& itemMoved)
        : preferredPosition(std::move(preferredPosition)),
          menu(std::move(menu)),
          itemMoved(itemMoved) {
        setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
        setAttribute(Qt::WA_X11DoNotAcceptFocus);
        setWindowTitle(QStringLiteral("Corvane"));
        // A dark bar, like the top bars of the common desktops; the meters on it are drawn
        // light on dark.
        QPalette dark = palette();
        dark.setColor(QPalette::Window, QColor(0x1e, 0x1e, 0x1e));
        setPalette(dark);
        setAutoFillBackground(true);
        winId();
        // Qt applies the type property when the window's flags change, so one flag is set
        // only now; the window is not mapped yet, so the window manager sees a dock from the
        // start.
        windowHandle()->setProperty(windowTypeProperty, dockWindowType);
        windowHandle()->setFlags(windowHandle()->flags() | Qt::WindowDoesNotAcceptFocus);
        place();
        show();
        reserveHeight();
    }

    ItemButton* insert(StripItem& item, std::optional<double> preferred) {
        auto* button = new ItemButton(item, this);
        // Before the first item with a smaller preferred position; without one, leftmost.
        auto place = order.begin();
        if (preferred) {
            place = std::find_if(order.begin(), order.end(), [&](const Entry& entry) {
                return entry.preferred && *entry.preferred < *preferred;
            });
        }
        order.insert(place, Entry{&item, button, preferred});
        button->show();
        layOut();
        return button;
    }

    void remove(const StripItem& item) {
        std::erase_if(order, [&](const Entry& entry) { return entry.item == &item; });
        layOut();
    }

    void layOut();
    void report(StripItem& item);
    void settleAfterDrag();

    /// Follows the primary screen; leaves its place alone when the work area already ends
    /// where the bar does, since that is the bar's own reservation.
    void place() {
        QScreen* screen = QGuiApplication::primaryScreen();
        if (!screen) {
            return;
        }
        if (windowHandle()) {
            windowHandle()->setScreen(screen);
        }
        const QRect area = screen->geometry();
        const QRect workArea = screen->availableGeometry();
        const bool ownReservation = isVisible() && workArea.top() == geometry().bottom() + 1;
        const int top = ownReservation ? geometry().top() : workArea.top();
        const QRect wanted(area.left(), top, area.width(), barHeight);
        if (wanted != geometry()) {
            setGeometry(wanted);
            setFixedSize(wanted.size());
            reserveHeight();
            layOut();
            reportAll();
        }
    }

    bool isOnItem(ScreenPoint point) const;
    const MenuBarHostMenu& commands() const { return menu; }
    void showMenu(QPoint location) {
        if (!contextMenu) {
            contextMenu = std::make_unique<QMenu>();
            addCommand(menu.settingsLabel, menu.openSettings);
            addCommand(menu.quitLabel, menu.quit);
        }
        contextMenu->popup(location);
    }

private:
    struct Entry {
        StripItem* item;
        QPointer<ItemButton> button;
        std::optional<double> preferred;
    };

    void addCommand(const std::string& label, const std::function<void()>& command) {
        contextMenu->addAction(QString::fromStdString(label).replace(u'&', QStringLiteral("&&")),
                               [this, command] {
                                   if (command) {
                                       QTimer::singleShot(0, this, command);
                                   }
                               });
    }

    void reportAll() {
        for (const Entry& entry : std::vector<Entry>(order)) {
            report(*entry.item);
        }
    }

    /// Tells the window manager to keep other windows out of the bar's height.
    void reserveHeight() {
        const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
        if (!x11 || !x11->connection()) {
            return;
        }
        xcb_connection_t* connection = x11->connection();
        const double scale = devicePixelRatioF();
        const QRect frame = geometry();
        const auto native = [scale](int value) {
            return static_cast<std::uint32_t>(std::lround(std::max(0, value) * scale));
        };
        // left, right, top, bottom, then the start and end of each: only the top is reserved.
        const std::uint32_t strut[12] = {0,
                                         0,
                                         native(frame.bottom() + 1),
                                         0,
                                         0,
                                         0,
                                         0,
                                         0,
                                         native(frame.left()),
                                         native(frame.right() + 1) - 1,
                                         0,
                                         0};
        const auto window = static_cast<xcb_window_t>(winId());
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window,
                            internAtom(connection, "_NET_WM_STRUT_PARTIAL"), XCB_ATOM_CARDINAL, 32,
                            12, strut);
        // Older window managers read only the first four numbers, under the older name.
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window,
                            internAtom(connection, "_NET_WM_STRUT"), XCB_ATOM_CARDINAL, 32, 4,
                            strut);
        xcb_flush(connection);
    }

    PreferredPositionLookup preferredPosition;
    MenuBarHostMenu menu;
    ObserverList<MenuBarItem&>& itemMoved;
    std::vector<Entry> order;
    std::unique_ptr<QMenu> contextMenu;

    friend class StripMenuBarHost;
};

class StripItem final : public MenuBarItem {
public:
    StripItem(StripMenuBarHost::Bar& bar, double length, std::string autosaveName,
              std::optional<double> preferred)
        : name(std::move(autosaveName)), itemLength(length), bar(&bar) {
        button = bar.insert(*this, preferred);
    }

    ~StripItem() override { detach(); }

    void detach() {
        if (bar) {
            bar->remove(*this);
        }
        delete button.data();
        bar.clear();
    }

    const std::string& autosaveName() const override { return name; }
    void setLength(double points) override {
        if (points != itemLength) {
            itemLength = points;
            if (bar) {
                bar->layOut();
            }
            setNeedsDisplay();
        }
    }
    double length() const override { return itemLength; }
    void setAccessibilityLabel(const std::string& label) override {
        title = QString::fromStdString(label);
        updateToolTip();
        if (button) {
            button->setAccessibleName(title);
        }
    }
    void setToolTip(const std::string& text) override {
        readout = QString::fromStdString(text);
        updateToolTip();
    }
    void setDrawing(std::function<ItemImage(double, double)> draw) override {
        drawing = std::move(draw);
        setNeedsDisplay();
    }
    void setNeedsDisplay() override {
        if (button) {
            button->invalidate();
        }
    }
    void setAction(std::function<void()> action) override { itemAction = std::move(action); }
    bool hasButton() const override { return !button.isNull(); }
    std::optional<ScreenRect> windowFrame() const override {
        if (!button || !button->window()->isVisible()) {
            return std::nullopt;
        }
        return toScreenRect(QRect(button->mapToGlobal(QPoint(0, 0)), button->size()));
    }
    bool isWindowVisible() const override { return button && button->isVisible(); }
    std::optional<ScreenRect> screenVisibleFrame() const override {
        QScreen* screen = button ? button->screen() : nullptr;
        if (!screen) {
            return std::nullopt;
        }
        return toScreenRect(screen->availableGeometry());
    }

    QImage draw(double devicePixelRatio) const {
        return drawing ? qImageFromItemImage(drawing(devicePixelRatio, barHeight)) : QImage();
    }
    void click() {
        if (itemAction && button) {
            // After the press has been handled, since the action may open a window.
            QTimer::singleShot(0, button, itemAction);
        }
    }
    void showMenu(QPoint location) {
        if (bar) {
            bar->showMenu(location);
        }
    }
    void moved() {
        if (bar) {
            bar->report(*this);
        }
    }
    void dragEnded() {
        if (bar) {
            bar->settleAfterDrag();
        }
    }
    int pixelWidth() const { return static_cast<int>(std::ceil(itemLength)); }

private:
    void updateToolTip() {
        if (button) {
            button->setToolTip(readout.isEmpty() ? title : title + u'\n' + readout);
        }
    }

    std::string name;
    double itemLength;
    QPointer<StripMenuBarHost::Bar> bar;
    QPointer<ItemButton> button;
    QString title;
    QString readout;
    std::function<ItemImage(double, double)> drawing;
    std::function<void()> itemAction;
};

void StripMenuBarHost::Bar::layOut() {
    int right = width() - rightMargin;
    for (auto entry = order.rbegin(); entry != order.rend(); ++entry) {
        const int itemWidth = entry->item->pixelWidth();
        const QRect slot(right - itemWidth, 0, itemWidth, barHeight);
        right = slot.left() - itemSpacing;
        if (entry->button && entry->button->geometry() != slot) {
            entry->button->setGeometry(slot);
            report(*entry->item);
        }
    }
}

void StripMenuBarHost::Bar::report(StripItem& item) {
    itemMoved.notify(item);
}

// The items take the order they show after a drag, and move into their slots.
void StripMenuBarHost::Bar::settleAfterDrag() {
    std::stable_sort(order.begin(), order.end(), [](const Entry& a, const Entry& b) {
        const int left = a.button ? a.button->geometry().center().x() : 0;
        const int right = b.button ? b.button->geometry().center().x() : 0;
        return left < right;
    });
    layOut();
}

bool StripMenuBarHost::Bar::isOnItem(ScreenPoint point) const {
    return std::any_of(order.begin(), order.end(), [&](const Entry& entry) {
        const auto frame = entry.item->windowFrame();
        return frame && frame->contains(point);
    });
}

void ItemButton::paintEvent(QPaintEvent*) {
    if (picture.isNull() || picture.devicePixelRatio() != devicePixelRatioF()) {
        picture = item.draw(devicePixelRatioF());
    }
    if (!picture.isNull()) {
        QPainter(this).drawImage(QPoint(0, 0), picture);
    }
}

void ItemButton::mousePressEvent(QMouseEvent* event) {
    // Ctrl starts a reorder, like the Command key on a Mac menu bar; it never clicks.
    if (event->modifiers().testFlag(Qt::ControlModifier) && event->button() == Qt::LeftButton) {
        grabOffset = event->position().x();
        raise();
        return;
    }
    if (event->button() == Qt::LeftButton) {
        item.click();
    } else if (event->button() == Qt::RightButton) {
        item.showMenu(event->globalPosition().toPoint());
    }
}

void ItemButton::mouseMoveEvent(QMouseEvent* event) {
    if (!grabOffset) {
        return;
    }
    const int limit = parentWidget()->width() - width();
    const int left =
        static_cast<int>(std::lround(mapToParent(event->position()).x() - *grabOffset));
    const int clamped = std::clamp(left, 0, std::max(0, limit));
    if (clamped != x()) {
        move(clamped, 0);
        item.moved();
    }
}

void ItemButton::mouseReleaseEvent(QMouseEvent* event) {
    if (grabOffset && event->button() == Qt::LeftButton) {
        grabOffset.reset();
        item.dragEnded();
    }
}

MenuBarHostCreation StripMenuBarHost::create(PreferredPositionLookup preferredPosition,
                                             MenuBarHostMenu menu) {
    if (QGuiApplication::platformName() != QLatin1String("xcb")) {
        return {nullptr, "the strip needs an X11 display, but the window system is " +
                             QGuiApplication::platformName().toStdString()};
    }
    if (!QGuiApplication::primaryScreen()) {
        return {nullptr, "the strip needs a screen, and there is none"};
    }
    return {std::unique_ptr<MenuBarHost>(
                new StripMenuBarHost(std::move(preferredPosition), std::move(menu))),
            {}};
}

StripMenuBarHost::StripMenuBarHost(PreferredPositionLookup preferredPosition, MenuBarHostMenu menu)
    : bar(std::make_unique<Bar>(std::move(preferredPosition), std::move(menu), itemMoved)),
      screensSubscription(events.observeScreensChanged([this] { bar->place(); })) {}

StripMenuBarHost::~StripMenuBarHost() {
    // Items may outlive the host; their buttons go with the bar.
    for (const Bar::Entry& entry : std::vector<Bar::Entry>(bar->order)) {
        entry.item->detach();
    }
}

std::unique_ptr<MenuBarItem> StripMenuBarHost::addItem(double length,
                                                       const std::string& autosaveName) {
    const auto preferred =
        bar->preferredPosition ? bar->preferredPosition(autosaveName) : std::nullopt;
    return std::make_unique<StripItem>(*bar, length, autosaveName, preferred);
}

void StripMenuBarHost::removeItem(MenuBarItem& item) {
    static_cast<StripItem&>(item).detach();
}

std::optional<ScreenRect> StripMenuBarHost::primaryScreenVisibleFrame() const {
    QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen) {
        return std::nullopt;
    }
    // Below the bar even before the window manager reports the height the bar reserves (Qt
    // learns of a new work area late, and sometimes not at all), or when no manager honours
    // the reservation.
    QRect area = screen->availableGeometry();
    const QRect barFrame = bar->frameGeometry();
    if (barFrame.intersects(area) && area.top() < barFrame.bottom() + 1) {
        area.setTop(barFrame.bottom() + 1);
    }
    return toScreenRect(area);
}

PointerState StripMenuBarHost::pointerState() const {
    return currentPointerState();
}

Subscription StripMenuBarHost::observeItemMoved(std::function<void(MenuBarItem&)> handler) {
    return itemMoved.add(std::move(handler));
}

Subscription StripMenuBarHost::observeScreensChanged(std::function<void()> handler) {
    return events.observeScreensChanged(std::move(handler));
}

Subscription StripMenuBarHost::observeWorkspaceChanged(std::function<void()> handler) {
    return events.observeWorkspaceChanged(std::move(handler));
}

Subscription StripMenuBarHost::observePointerPresses(
    std::function<void(ScreenPoint, bool)> handler) {
    return events.observePointerPresses([this, handler = std::move(handler)](ScreenPoint location) {
        handler(location, bar->isOnItem(location));
    });
}

}  // namespace corvane
