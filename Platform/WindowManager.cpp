#include "Platform/WindowManager.h"

#include <QGuiApplication>

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace ravlin::WindowManager {
namespace {

xcb_connection_t* connection() {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 == nullptr ? nullptr : x11->connection();
}

xcb_window_t rootWindow(xcb_connection_t* connection) {
    return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

xcb_atom_t atom(xcb_connection_t* connection, std::string_view name) {
    const auto cookie = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
        xcb_intern_atom_reply(connection, cookie, nullptr), &std::free);
    return reply == nullptr ? xcb_atom_t{XCB_ATOM_NONE} : reply->atom;
}

void sendToRoot(xcb_connection_t* connection, const xcb_client_message_event_t& message, std::uint32_t eventMask) {
    xcb_send_event(connection, 0, rootWindow(connection), eventMask,
                   reinterpret_cast<const char*>(&message));  // NOLINT(cppcoreguidelines-pro-type-reinterpret-cast)
}

}  // namespace

void activate(const QWindow& window) {
    xcb_connection_t* const x11 = connection();
    if (x11 == nullptr) return;
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = static_cast<xcb_window_t>(window.winId());
    message.type = atom(x11, "_NET_ACTIVE_WINDOW");
    message.data.data32[0] = 2;  // the user's own doing, as from a task bar
    sendToRoot(x11, message, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT);
    xcb_flush(x11);
}

void finishLaunch(const QByteArray& startupId) {
    xcb_connection_t* const x11 = startupId.isEmpty() ? nullptr : connection();
    if (x11 == nullptr) return;
    // The text goes out in messages of 20 bytes, its terminating NUL included, that belong together by their window.
    QByteArray text = startupId;
    text = "remove: ID=\"" + text.replace('\\', "\\\\").replace('"', "\\\"") + "\"";
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 8;
    message.window = xcb_generate_id(x11);
    xcb_create_window(x11, XCB_COPY_FROM_PARENT, message.window, rootWindow(x11), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    message.type = atom(x11, "_NET_STARTUP_INFO_BEGIN");
    for (qsizetype sent = 0; sent <= text.size(); sent += qsizetype(sizeof(message.data.data8))) {
        const QByteArray part = text.mid(sent, qsizetype(sizeof(message.data.data8)));
        std::ranges::fill(message.data.data8, std::uint8_t{0});
        std::ranges::copy(part, message.data.data8);
        sendToRoot(x11, message, XCB_EVENT_MASK_PROPERTY_CHANGE);
        message.type = atom(x11, "_NET_STARTUP_INFO");
    }
    xcb_destroy_window(x11, message.window);
    xcb_flush(x11);
}

}  // namespace ravlin::WindowManager
