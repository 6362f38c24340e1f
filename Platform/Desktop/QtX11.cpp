#include "Platform/Desktop/QtX11.h"

#include <QGuiApplication>
#include <QWindow>

#include <array>

namespace ravlin::QtX11 {

xcb_connection_t* connection() {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 == nullptr ? nullptr : x11->connection();
}

xcb_atom_t atom(xcb_connection_t* connection, std::string_view name) {
    const auto cookie = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const ReplyPointer<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr), &std::free);
    return reply == nullptr ? xcb_atom_t{XCB_ATOM_NONE} : reply->atom;
}

/// Qt adds its own states to those that it finds.
void keepOutOfTaskBars(const QWindow& window) {
    xcb_connection_t* const x11 = connection();
    if (x11 == nullptr) return;
    const std::array states = {atom(x11, "_NET_WM_STATE_SKIP_TASKBAR"), atom(x11, "_NET_WM_STATE_SKIP_PAGER")};
    xcb_change_property(x11, XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(window.winId()),
                        atom(x11, "_NET_WM_STATE"), XCB_ATOM_ATOM, 32, states.size(), states.data());
}

}  // namespace ravlin::QtX11
