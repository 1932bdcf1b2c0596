#include "Platform/Qt/TrayMenuBarHost.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QMenu>
#include <QObject>
#include <QScreen>
#include <QTimer>

#include <algorithm>
#include <deque>
#include <utility>
#include <vector>

#include "Platform/Qt/StatusNotifierTypes.h"

namespace corvane {

namespace {

const QString watcherService = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");
const QString itemPath = QStringLiteral("/StatusNotifierItem");
const QString menuPath = QStringLiteral("/MenuBar");

/// Trays lay their icons out in a bar about this many points high and scale what they get.
constexpr double trayBarHeight = 22;
/// The scales offered: 22 and 44 pixels high, which covers ordinary and doubled panels.
constexpr double trayScales[] = {1, 2};
/// A registration that gets no answer must not hold up the items after it for long.
constexpr int registrationTimeoutMilliseconds = 3000;

constexpr int menuRoot = 0;
constexpr int settingsEntry = 1;
constexpr int quitEntry = 2;

ScreenRect toScreenRect(const QRect& rect) {
    return {static_cast<double>(rect.x()), static_cast<double>(rect.y()),
            static_cast<double>(rect.width()), static_cast<double>(rect.height())};
}

/// The autosave name without a trailing generation number, so that a tray remembering
/// per-item choices by Id keeps them across rebuilds.
QString stableId(const std::string& autosaveName) {
    QString id = QString::fromStdString(autosaveName);
    const qsizetype dot = id.lastIndexOf(u'.');
    if (dot > 0 && dot + 1 < id.size() &&
        std::all_of(id.begin() + dot + 1, id.end(), [](QChar c) { return c.isDigit(); })) {
        id.truncate(dot);
    }
    return id;
}

/// dbusmenu reads an underscore as the start of a mnemonic.
QString menuLabel(const std::string& text) {
    return QString::fromStdString(text).replace(u'_', QStringLiteral("__"));
}

}  // namespace

class TrayItem;

// QtDBus exports what moc describes, so the two bus-facing faces of an item are QObjects that
// forward to it.
class StatusNotifierItemObject final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category)
    Q_PROPERTY(QString Id READ id)
    Q_PROPERTY(QString Title READ title)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(int WindowId READ windowId)
    Q_PROPERTY(QString IconThemePath READ emptyText)
    Q_PROPERTY(QString IconName READ emptyText)
    Q_PROPERTY(corvane::StatusNotifierPixmaps IconPixmap READ iconPixmap)
    Q_PROPERTY(QString OverlayIconName READ emptyText)
    Q_PROPERTY(corvane::StatusNotifierPixmaps OverlayIconPixmap READ noPixmaps)
    Q_PROPERTY(QString AttentionIconName READ emptyText)
    Q_PROPERTY(corvane::StatusNotifierPixmaps AttentionIconPixmap READ noPixmaps)
    Q_PROPERTY(QString AttentionMovieName READ emptyText)
    Q_PROPERTY(corvane::StatusNotifierToolTip ToolTip READ toolTip)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu)
    Q_PROPERTY(QDBusObjectPath Menu READ menu)

public:
    explicit StatusNotifierItemObject(TrayItem& item) : item(item) {}

    QString category() const { return QStringLiteral("ApplicationStatus"); }
    QString id() const;
    QString title() const;
    QString status() const { return QStringLiteral("Active"); }
    int windowId() const { return 0; }
    QString emptyText() const { return {}; }
    StatusNotifierPixmaps iconPixmap() const;
    StatusNotifierPixmaps noPixmaps() const { return {}; }
    StatusNotifierToolTip toolTip() const;
    // A left click is the item's own action, not a menu.
    bool itemIsMenu() const { return false; }
    QDBusObjectPath menu() const { return QDBusObjectPath(menuPath); }

public Q_SLOTS:
    void Activate(int x, int y);
    void SecondaryActivate(int x, int y);
    void ContextMenu(int x, int y);
    void Scroll(int, const QString&) {}

Q_SIGNALS:
    void NewTitle();
    void NewIcon();
    void NewToolTip();
    void NewStatus(const QString&);

private:
    TrayItem& item;
};

// The "Settings" and "Quit" menu for trays that draw an item's menu themselves (Plasma,
// GNOME's extension, waybar and Xfce read `Menu` and never call ContextMenu).
class DBusMenuObject final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version)
    Q_PROPERTY(QString TextDirection READ textDirection)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath)

public:
    explicit DBusMenuObject(TrayItem& item) : item(item) {}

    uint version() const { return 3; }
    QString textDirection() const {
        return QGuiApplication::isRightToLeft() ? QStringLiteral("rtl") : QStringLiteral("ltr");
    }
    QString status() const { return QStringLiteral("normal"); }
    QStringList iconThemePath() const { return {}; }

public Q_SLOTS:
    uint GetLayout(int parentId, int recursionDepth, const QStringList& propertyNames,
                   corvane::DBusMenuLayoutItem& layout);
    corvane::DBusMenuItemPropertiesList GetGroupProperties(const QList<int>& ids,
                                                           const QStringList& propertyNames);
    QDBusVariant GetProperty(int id, const QString& name);
    void Event(int id, const QString& eventId, const QDBusVariant& data, uint timestamp);
    bool AboutToShow(int) { return false; }
    QList<int> AboutToShowGroup(const QList<int>&, QList<int>& idErrors) {
        idErrors.clear();
        return {};
    }

Q_SIGNALS:
    void LayoutUpdated(uint, int);

private:
    QVariantMap entryProperties(int id) const;

    TrayItem& item;
};

class TrayMenuBarHost::Registry final : public QObject {
public:
    Registry(PreferredPositionLookup preferredPosition, MenuBarHostMenu menu)
        : preferredPosition(std::move(preferredPosition)),
          menu(std::move(menu)),
          watcher(watcherService, QDBusConnection::sessionBus(),
                  QDBusServiceWatcher::WatchForRegistration) {
        connect(&watcher, &QDBusServiceWatcher::serviceRegistered, this,
                [this] { registerAgain(); });
    }

    std::optional<double> lookUpPreferredPosition(const std::string& autosaveName) const {
        return preferredPosition ? preferredPosition(autosaveName) : std::nullopt;
    }

    int nextSerial() { return ++serials; }

    void add(TrayItem& item);
    void forget(TrayItem& item);
    void showMenu(QPoint location);
    void runMenuEntry(int id) {
        const auto& command = id == settingsEntry ? menu.openSettings : menu.quit;
        if (command) {
            // Not from inside the bus call or the menu's own event handling.
            QTimer::singleShot(0, this, command);
        }
    }
    const MenuBarHostMenu& commands() const { return menu; }

private:
    void scheduleRegistration();
    void registerAgain();
    void registerNext();
    std::vector<TrayItem*> inRegistrationOrder(bool unregisteredOnly) const;

    PreferredPositionLookup preferredPosition;
    MenuBarHostMenu menu;
    QDBusServiceWatcher watcher;
    std::unique_ptr<QMenu> contextMenu;
    std::vector<TrayItem*> items;
    std::deque<TrayItem*> queue;
    bool registrationScheduled = false;
    bool registrationInFlight = false;
    int serials = 0;
};

class TrayItem final : public MenuBarItem {
public:
    TrayItem(const std::shared_ptr<TrayMenuBarHost::Registry>& registry, double length,
             std::string autosaveName)
        : registry(registry),
          name(std::move(autosaveName)),
          itemLength(length),
          preferred(registry->lookUpPreferredPosition(name)),
          serial(registry->nextSerial()),
          serviceName(QStringLiteral("org.kde.StatusNotifierItem-%1-%2")
                          .arg(QCoreApplication::applicationPid())
                          .arg(serial)),
          connection(QDBusConnection::connectToBus(QDBusConnection::SessionBus, serviceName)),
          itemObject(*this),
          menuObject(*this) {
        // Each item owns its bus name on its own connection: trays expect one item per name
        // at the well-known path, and a name registered this way works with every watcher.
        exported =
            connection.isConnected() && connection.registerService(serviceName) &&
            connection.registerObject(itemPath, &itemObject, QDBusConnection::ExportAllContents) &&
            connection.registerObject(menuPath, &menuObject, QDBusConnection::ExportAllContents);
    }

    ~TrayItem() override {
        if (auto live = registry.lock()) {
            live->forget(*this);
        }
        connection.unregisterObject(menuPath);
        connection.unregisterObject(itemPath);
        connection.unregisterService(serviceName);
        QDBusConnection::disconnectFromBus(serviceName);
    }

    const std::string& autosaveName() const override { return name; }
    void setLength(double points) override {
        if (points != itemLength) {
            itemLength = points;
            setNeedsDisplay();
        }
    }
    double length() const override { return itemLength; }
    void setAccessibilityLabel(const std::string& label) override {
        accessibilityLabel = QString::fromStdString(label);
        Q_EMIT itemObject.NewTitle();
        Q_EMIT itemObject.NewToolTip();
    }
    void setToolTip(const std::string& text) override {
        const QString updated = QString::fromStdString(text);
        if (updated != toolTipText) {
            toolTipText = updated;
            Q_EMIT itemObject.NewToolTip();
        }
    }
    void setDrawing(std::function<ItemImage(double, double)> draw) override {
        drawing = std::move(draw);
        setNeedsDisplay();
    }
    void setNeedsDisplay() override {
        pixmaps.reset();
        if (iconChangePending) {
            return;
        }
        // Several changes in one turn make one NewIcon, and the tray asks once.
        iconChangePending = true;
        QTimer::singleShot(0, &itemObject, [this] {
            iconChangePending = false;
            Q_EMIT itemObject.NewIcon();
        });
    }
    void setAction(std::function<void()> action) override { itemAction = std::move(action); }
    bool hasButton() const override { return exported; }
    std::optional<ScreenRect> windowFrame() const override { return frame; }
    bool isWindowVisible() const override { return frame.has_value(); }
    std::optional<ScreenRect> screenVisibleFrame() const override {
        QScreen* screen = frame ? QGuiApplication::screenAt(QPoint(static_cast<int>(frame->x),
                                                                   static_cast<int>(frame->y)))
                                : nullptr;
        if (!screen) {
            screen = QGuiApplication::primaryScreen();
        }
        if (!screen) {
            return std::nullopt;
        }
        return toScreenRect(screen->availableGeometry());
    }

    QString id() const { return stableId(name); }
    QString title() const {
        return accessibilityLabel.isEmpty() ? QString::fromStdString(name) : accessibilityLabel;
    }
    StatusNotifierToolTip toolTip() const { return {{}, {}, title(), toolTipText}; }

    StatusNotifierPixmaps iconPixmaps() {
        if (!pixmaps) {
            pixmaps.emplace();
            for (const double scale : trayScales) {
                if (!drawing) {
                    break;
                }
                const QImage image = qImageFromItemImage(drawing(scale, trayBarHeight));
                if (!image.isNull()) {
                    pixmaps->append(statusNotifierPixmap(image));
                }
            }
        }
        return *pixmaps;
    }

    void activate(int x, int y) {
        const ScreenPoint point = clickPoint(x, y);
        if (QScreen* screen = QGuiApplication::screenAt(
                QPoint(static_cast<int>(point.x), static_cast<int>(point.y)))) {
            frame = trayActivationFrame(point, itemLength, toScreenRect(screen->geometry()),
                                        toScreenRect(screen->availableGeometry()));
        } else {
            frame = ScreenRect{point.x - itemLength / 2, point.y - trayBarHeight / 2, itemLength,
                               trayBarHeight};
        }
        if (itemAction) {
            QTimer::singleShot(0, &itemObject, itemAction);
        }
    }

    void showMenu(int x, int y) {
        if (auto live = registry.lock()) {
            const ScreenPoint point = clickPoint(x, y);
            live->showMenu(QPoint(static_cast<int>(point.x), static_cast<int>(point.y)));
        }
    }

    void runMenuEntry(int id) {
        if (auto live = registry.lock()) {
            live->runMenuEntry(id);
        }
    }

    QString menuEntryLabel(int id) const {
        const auto live = registry.lock();
        if (!live) {
            return {};
        }
        return menuLabel(id == settingsEntry ? live->commands().settingsLabel
                                             : live->commands().quitLabel);
    }

    std::optional<double> preferredPosition() const { return preferred; }
    int installSerial() const { return serial; }
    const QDBusConnection& bus() const { return connection; }
    const QString& busName() const { return serviceName; }
    bool registered = false;

private:
    /// Some trays send 0, 0 when they do not know where the click was.
    static ScreenPoint clickPoint(int x, int y) {
        if (x == 0 && y == 0) {
            return currentPointerLocation();
        }
        return {static_cast<double>(x), static_cast<double>(y)};
    }

    std::weak_ptr<TrayMenuBarHost::Registry> registry;
    std::string name;
    double itemLength;
    std::optional<double> preferred;
    int serial;
    QString serviceName;
    QDBusConnection connection;
    StatusNotifierItemObject itemObject;
    DBusMenuObject menuObject;
    bool exported = false;
    QString accessibilityLabel;
    QString toolTipText;
    std::function<ItemImage(double, double)> drawing;
    std::function<void()> itemAction;
    std::optional<StatusNotifierPixmaps> pixmaps;
    bool iconChangePending = false;
    std::optional<ScreenRect> frame;
};

QString StatusNotifierItemObject::id() const {
    return item.id();
}
QString StatusNotifierItemObject::title() const {
    return item.title();
}
StatusNotifierPixmaps StatusNotifierItemObject::iconPixmap() const {
    return item.iconPixmaps();
}
StatusNotifierToolTip StatusNotifierItemObject::toolTip() const {
    return item.toolTip();
}
void StatusNotifierItemObject::Activate(int x, int y) {
    item.activate(x, y);
}
void StatusNotifierItemObject::SecondaryActivate(int x, int y) {
    item.showMenu(x, y);
}
void StatusNotifierItemObject::ContextMenu(int x, int y) {
    item.showMenu(x, y);
}

uint DBusMenuObject::GetLayout(int parentId, int recursionDepth, const QStringList&,
                               DBusMenuLayoutItem& layout) {
    layout = {parentId, entryProperties(parentId), {}};
    if (parentId == menuRoot && recursionDepth != 0) {
        for (const int entry : {settingsEntry, quitEntry}) {
            layout.children.append(
                QVariant::fromValue(DBusMenuLayoutItem{entry, entryProperties(entry), {}}));
        }
    }
    // The menu never changes, so its layout has one revision.
    return 1;
}

DBusMenuItemPropertiesList DBusMenuObject::GetGroupProperties(const QList<int>& ids,
                                                              const QStringList&) {
    DBusMenuItemPropertiesList result;
    for (const int id : ids) {
        result.append({id, entryProperties(id)});
    }
    return result;
}

QDBusVariant DBusMenuObject::GetProperty(int id, const QString& name) {
    return QDBusVariant(entryProperties(id).value(name));
}

void DBusMenuObject::Event(int id, const QString& eventId, const QDBusVariant&, uint) {
    if (eventId == QLatin1String("clicked") && (id == settingsEntry || id == quitEntry)) {
        item.runMenuEntry(id);
    }
}

QVariantMap DBusMenuObject::entryProperties(int id) const {
    if (id == menuRoot) {
        return {{QStringLiteral("children-display"), QStringLiteral("submenu")}};
    }
    if (id == settingsEntry || id == quitEntry) {
        return {{QStringLiteral("label"), item.menuEntryLabel(id)}};
    }
    return {};
}

void TrayMenuBarHost::Registry::add(TrayItem& item) {
    items.push_back(&item);
    scheduleRegistration();
}

void TrayMenuBarHost::Registry::forget(TrayItem& item) {
    std::erase(items, &item);
    std::erase(queue, &item);
}

void TrayMenuBarHost::Registry::showMenu(QPoint location) {
    if (!contextMenu) {
        contextMenu = std::make_unique<QMenu>();
        contextMenu->addAction(
            QString::fromStdString(menu.settingsLabel).replace(u'&', QStringLiteral("&&")),
            [this] { runMenuEntry(settingsEntry); });
        contextMenu->addAction(
            QString::fromStdString(menu.quitLabel).replace(u'&', QStringLiteral("&&")),
            [this] { runMenuEntry(quitEntry); });
    }
    contextMenu->popup(location);
}

// The controller installs a batch right to left, one call after the other; waiting for the
// next turn sees the whole batch and registers it left to right.
void TrayMenuBarHost::Registry::scheduleRegistration() {
    if (registrationScheduled) {
        return;
    }
    registrationScheduled = true;
    QTimer::singleShot(0, this, [this] {
        registrationScheduled = false;
        for (TrayItem* item : inRegistrationOrder(true)) {
            item->registered = true;
            queue.push_back(item);
        }
        registerNext();
    });
}

// A watcher that starts (again) knows nothing of the items; it gets all of them in order.
void TrayMenuBarHost::Registry::registerAgain() {
    queue.clear();
    for (TrayItem* item : inRegistrationOrder(false)) {
        item->registered = true;
        queue.push_back(item);
    }
    registerNext();
}

// One at a time: each item calls from its own connection, and the bus keeps no order between
// connections, so the next call waits for the watcher's answer to the last.
void TrayMenuBarHost::Registry::registerNext() {
    if (registrationInFlight || queue.empty()) {
        return;
    }
    TrayItem* item = queue.front();
    queue.pop_front();
    QDBusMessage call = QDBusMessage::createMethodCall(
        watcherService, watcherPath, watcherService, QStringLiteral("RegisterStatusNotifierItem"));
    call << item->busName();
    registrationInFlight = true;
    auto* pending = new QDBusPendingCallWatcher(
        item->bus().asyncCall(call, registrationTimeoutMilliseconds), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                registrationInFlight = false;
                registerNext();
            });
}

std::vector<TrayItem*> TrayMenuBarHost::Registry::inRegistrationOrder(bool unregisteredOnly) const {
    std::vector<TrayItem*> order;
    std::copy_if(items.begin(), items.end(), std::back_inserter(order),
                 [&](const TrayItem* item) { return !unregisteredOnly || !item->registered; });
    // Larger preferred positions go further left; without one, a later item goes left of an
    // earlier one, as items are installed right to left.
    std::stable_sort(order.begin(), order.end(), [](const TrayItem* a, const TrayItem* b) {
        const auto left = a->preferredPosition();
        const auto right = b->preferredPosition();
        if (left.has_value() != right.has_value()) {
            return left.has_value();
        }
        if (left && *left != *right) {
            return *left > *right;
        }
        return a->installSerial() > b->installSerial();
    });
    return order;
}

MenuBarHostCreation TrayMenuBarHost::create(PreferredPositionLookup preferredPosition,
                                            MenuBarHostMenu menu) {
    if (!QDBusConnection::sessionBus().isConnected()) {
        return {nullptr, "no D-Bus session bus for the tray: " +
                             QDBusConnection::sessionBus().lastError().message().toStdString()};
    }
    return {std::unique_ptr<MenuBarHost>(
                new TrayMenuBarHost(std::move(preferredPosition), std::move(menu))),
            {}};
}

TrayMenuBarHost::TrayMenuBarHost(PreferredPositionLookup preferredPosition, MenuBarHostMenu menu)
    : registry(std::make_shared<Registry>(std::move(preferredPosition), std::move(menu))) {
    registerStatusNotifierTypes();
}

TrayMenuBarHost::~TrayMenuBarHost() = default;

std::unique_ptr<MenuBarItem> TrayMenuBarHost::addItem(double length,
                                                      const std::string& autosaveName) {
    auto item = std::make_unique<TrayItem>(registry, length, autosaveName);
    registry->add(*item);
    return item;
}

void TrayMenuBarHost::removeItem(MenuBarItem& item) {
    // Dropping the item's bus name is what tells the watcher; the caller destroys it next.
    registry->forget(static_cast<TrayItem&>(item));
}

std::optional<ScreenRect> TrayMenuBarHost::primaryScreenVisibleFrame() const {
    if (QScreen* screen = QGuiApplication::primaryScreen()) {
        return toScreenRect(screen->availableGeometry());
    }
    return std::nullopt;
}

PointerState TrayMenuBarHost::pointerState() const {
    return currentPointerState();
}

Subscription TrayMenuBarHost::observeItemMoved(std::function<void(MenuBarItem&)> handler) {
    return itemMoved.add(std::move(handler));
}

Subscription TrayMenuBarHost::observeScreensChanged(std::function<void()> handler) {
    return events.observeScreensChanged(std::move(handler));
}

Subscription TrayMenuBarHost::observeWorkspaceChanged(std::function<void()> handler) {
    return events.observeWorkspaceChanged(std::move(handler));
}

Subscription TrayMenuBarHost::observePointerPresses(
    std::function<void(ScreenPoint, bool)> handler) {
    // Tray icons are drawn by the tray, never in a window of ours.
    return events.observePointerPresses(
        [handler = std::move(handler)](ScreenPoint location) { handler(location, false); });
}

ScreenRect trayActivationFrame(ScreenPoint point, double length, const ScreenRect& screen,
                               const ScreenRect& workArea) {
    const double left = point.x - length / 2;
    const double workBottom = workArea.y + workArea.height;
    const double screenBottom = screen.y + screen.height;
    if (point.y < workArea.y) {
        return {left, screen.y, length, workArea.y - screen.y};
    }
    if (point.y >= workBottom) {
        return {left, workBottom, length, screenBottom - workBottom};
    }
    return {left, point.y - trayBarHeight / 2, length, trayBarHeight};
}

}  // namespace corvane

#include "TrayMenuBarHost.moc"
