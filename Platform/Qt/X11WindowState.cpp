#include "Platform/Qt/X11WindowState.h"

#include <xcb/xcb.h>

#include <QGuiApplication>
#include <QWindow>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

namespace corvane {

namespace {

// _NET_WM_DESKTOP's value for "on all desktops".
constexpr std::uint32_t allDesktops = 0xFFFFFFFF;
constexpr xcb_atom_t noAtom = XCB_ATOM_NONE;

xcb_atom_t internAtom(xcb_connection_t* connection, const char* name) {
    const xcb_intern_atom_cookie_t cookie =
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
        xcb_intern_atom_reply(connection, cookie, nullptr), &std::free);
    return reply ? reply->atom : noAtom;
}

std::vector<xcb_atom_t> currentStates(xcb_connection_t* connection, xcb_window_t window,
                                      xcb_atom_t property) {
    const xcb_get_property_cookie_t cookie =
        xcb_get_property(connection, 0, window, property, XCB_ATOM_ATOM, 0, 1024);
    const std::unique_ptr<xcb_get_property_reply_t, decltype(&std::free)> reply(
        xcb_get_property_reply(connection, cookie, nullptr), &std::free);
    if (!reply || reply->format != 32 || reply->type != XCB_ATOM_ATOM) {
        return {};
    }
    const auto* atoms = static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get()));
    return {atoms, atoms + xcb_get_property_value_length(reply.get()) / sizeof(xcb_atom_t)};
}

}  // namespace

void keepAboveOnEveryWorkspace(QWindow& window) {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 == nullptr || x11->connection() == nullptr) {
        return;
    }
    xcb_connection_t* connection = x11->connection();
    const auto id = static_cast<xcb_window_t>(window.winId());

    const xcb_atom_t stateProperty = internAtom(connection, "_NET_WM_STATE");
    // Qt adds its own states (above, from WindowStaysOnTopHint) to what it finds on the
    // window when it maps it, so these are kept rather than replaced.
    std::vector<xcb_atom_t> states = currentStates(connection, id, stateProperty);
    for (const char* name : {"_NET_WM_STATE_ABOVE", "_NET_WM_STATE_STICKY",
                             "_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER"}) {
        const xcb_atom_t state = internAtom(connection, name);
        if (state != noAtom && std::find(states.begin(), states.end(), state) == states.end()) {
            states.push_back(state);
        }
    }
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, id, stateProperty, XCB_ATOM_ATOM, 32,
                        static_cast<std::uint32_t>(states.size()), states.data());
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, id,
                        internAtom(connection, "_NET_WM_DESKTOP"), XCB_ATOM_CARDINAL, 32, 1,
                        &allDesktops);
    xcb_flush(connection);
}

}  // namespace corvane
