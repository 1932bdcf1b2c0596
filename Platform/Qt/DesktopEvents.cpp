#include "Platform/Qt/DesktopEvents.h"

#include <QAbstractNativeEventFilter>
#include <QByteArray>
#include <QCursor>
#include <QEvent>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QObject>
#include <QPointer>
#include <QScreen>
#include <QTimer>

#include <xcb/xcb.h>
#include <xcb/xinput.h>

#include <cstdlib>
#include <cstring>
#include <utility>

namespace corvane {

namespace {

constexpr std::uint32_t leftButton = 1;
constexpr std::uint32_t rightButton = 3;

xcb_atom_t internAtom(xcb_connection_t* connection, const char* name) {
    const auto cookie =
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(strlen(name)), name);
    xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(connection, cookie, nullptr);
    const xcb_atom_t atom = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    std::free(reply);
    return atom;
}

}  // namespace

class DesktopEvents::Listener final : public QObject, public QAbstractNativeEventFilter {
public:
    explicit Listener(DesktopEvents& owner) : owner(owner) {
        connect(qGuiApp, &QGuiApplication::screenAdded, this, [this](QScreen* screen) {
            watchScreen(screen);
            post([](DesktopEvents& events) { events.screens.notify(); });
        });
        connect(qGuiApp, &QGuiApplication::screenRemoved, this,
                [this] { post([](DesktopEvents& events) { events.screens.notify(); }); });
        connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this,
                [this] { post([](DesktopEvents& events) { events.screens.notify(); }); });
        for (QScreen* screen : QGuiApplication::screens()) {
            watchScreen(screen);
        }
        if (!listenToX11()) {
            // Without the window system's help only this program's own presses can be seen.
            qGuiApp->installEventFilter(this);
        }
    }

    ~Listener() override {
        if (connection) {
            qGuiApp->removeNativeEventFilter(this);
        }
    }

    bool seesPressesEverywhere() const { return xinputOpcode != 0; }

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) override {
        if (eventType != "xcb_generic_event_t") {
            return false;
        }
        const auto* event = static_cast<const xcb_generic_event_t*>(message);
        const auto kind = event->response_type & ~0x80;
        if (kind == XCB_GE_GENERIC && xinputOpcode != 0) {
            const auto* generic = static_cast<const xcb_ge_generic_event_t*>(message);
            if (generic->extension == xinputOpcode &&
                generic->event_type == XCB_INPUT_RAW_BUTTON_PRESS) {
                // Only the fixed part of the event is read, which Qt's relayout of XGE
                // events leaves in place.
                const auto* raw = static_cast<const xcb_input_raw_button_press_event_t*>(message);
                if (raw->detail == leftButton || raw->detail == rightButton) {
                    postPress();
                }
            }
        } else if (kind == XCB_PROPERTY_NOTIFY) {
            const auto* change = static_cast<const xcb_property_notify_event_t*>(message);
            if (change->window == root && change->atom == currentDesktopAtom) {
                post([](DesktopEvents& events) { events.workspace.notify(); });
            }
        }
        return false;
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        // Every press reaches the filter once per widget it propagates through; only the one
        // delivered to a window counts.
        if (event->type() == QEvent::MouseButtonPress && watched->isWindowType()) {
            const auto button = static_cast<QMouseEvent*>(event)->button();
            if (button == Qt::LeftButton || button == Qt::RightButton) {
                postPress();
            }
        }
        return false;
    }

private:
    bool listenToX11() {
        const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
        if (!x11 || !x11->connection()) {
            return false;
        }
        connection = x11->connection();
        root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
        currentDesktopAtom = internAtom(connection, "_NET_CURRENT_DESKTOP");
        addRootEventMask(XCB_EVENT_MASK_PROPERTY_CHANGE);
        selectRawButtonPresses();
        qGuiApp->installNativeEventFilter(this);
        return xinputOpcode != 0;
    }

    /// Adds to this client's event mask on the root window; Qt keeps its own selection there,
    /// which a plain replacement would drop.
    void addRootEventMask(std::uint32_t mask) {
        xcb_get_window_attributes_reply_t* attributes = xcb_get_window_attributes_reply(
            connection, xcb_get_window_attributes(connection, root), nullptr);
        const std::uint32_t values[] = {(attributes ? attributes->your_event_mask : 0) | mask};
        std::free(attributes);
        xcb_change_window_attributes(connection, root, XCB_CW_EVENT_MASK, values);
    }

    void selectRawButtonPresses() {
        const xcb_query_extension_reply_t* extension =
            xcb_get_extension_data(connection, &xcb_input_id);
        if (!extension || !extension->present) {
            return;
        }
        // Qt has already agreed on an XInput2 version on this connection. Raw events go to the
        // root window whoever holds a grab. The master pointer alone, so that each press is
        // reported once and not once more per physical device.
        struct {
            xcb_input_event_mask_t head;
            std::uint32_t mask;
        } selection{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS};
        xcb_input_xi_select_events(connection, root, 1, &selection.head);
        xcb_flush(connection);
        xinputOpcode = extension->major_opcode;
    }

    void watchScreen(QScreen* screen) {
        const auto changed = [this] {
            post([](DesktopEvents& events) { events.screens.notify(); });
        };
        connect(screen, &QScreen::geometryChanged, this, changed);
        connect(screen, &QScreen::availableGeometryChanged, this, changed);
    }

    void postPress() {
        post([](DesktopEvents& events) { events.presses.notify(currentPointerLocation()); });
    }

    template <typename Notify>
    void post(Notify notify) {
        QTimer::singleShot(0, this, [this, notify] { notify(owner); });
    }

    DesktopEvents& owner;
    xcb_connection_t* connection = nullptr;
    xcb_window_t root = XCB_WINDOW_NONE;
    xcb_atom_t currentDesktopAtom = XCB_ATOM_NONE;
    std::uint8_t xinputOpcode = 0;
};

DesktopEvents::DesktopEvents() : listener(std::make_unique<Listener>(*this)) {}

DesktopEvents::~DesktopEvents() = default;

Subscription DesktopEvents::observePointerPresses(std::function<void(ScreenPoint)> handler) {
    return presses.add(std::move(handler));
}

Subscription DesktopEvents::observeScreensChanged(std::function<void()> handler) {
    return screens.add(std::move(handler));
}

Subscription DesktopEvents::observeWorkspaceChanged(std::function<void()> handler) {
    return workspace.add(std::move(handler));
}

bool DesktopEvents::seesPressesEverywhere() const {
    return listener->seesPressesEverywhere();
}

ScreenPoint currentPointerLocation() {
    const QPoint location = QCursor::pos();
    return {static_cast<double>(location.x()), static_cast<double>(location.y())};
}

PointerState currentPointerState() {
    return {
        .reorderModifier = QGuiApplication::queryKeyboardModifiers().testFlag(Qt::ControlModifier),
        .anyButton = QGuiApplication::mouseButtons() != Qt::NoButton,
    };
}

}  // namespace corvane
