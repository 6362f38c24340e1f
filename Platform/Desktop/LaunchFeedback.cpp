#include "Platform/Desktop/LaunchFeedback.h"

#include <QGuiApplication>

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace ravlin::LaunchFeedback {
namespace {

xcb_connection_t* connection() {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 == nullptr ? nullptr : x11->connection();
}

xcb_window_t rootWindow(xcb_connection_t* connection) {
    return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

/// The type of the first message, and of each further one.
struct MessageTypes {
    xcb_atom_t begin;
    xcb_atom_t next;
};

xcb_atom_t atomOf(xcb_connection_t* connection, xcb_intern_atom_cookie_t question) {
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
        xcb_intern_atom_reply(connection, question, nullptr), &std::free);
    return reply == nullptr ? xcb_atom_t{XCB_ATOM_NONE} : reply->atom;
}

MessageTypes messageTypes(xcb_connection_t* connection) {
    const auto ask = [&](std::string_view name) {
        return xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    };
    const auto begin = ask("_NET_STARTUP_INFO_BEGIN");
    const auto next = ask("_NET_STARTUP_INFO");
    return {atomOf(connection, begin), atomOf(connection, next)};
}

/// Sends a text to every program on the desktop, in messages of 20 bytes that share a window to show that they belong
/// together. The terminating NUL is sent, too.
void broadcast(xcb_connection_t* connection, xcb_window_t sender, const QByteArray& text) {
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 8;
    message.window = sender;
    const MessageTypes types = messageTypes(connection);
    message.type = types.begin;
    for (qsizetype sent = 0; sent <= text.size(); sent += qsizetype(sizeof(message.data.data8))) {
        std::ranges::fill(message.data.data8, std::uint8_t{0});
        std::ranges::copy(text.mid(sent, qsizetype(sizeof(message.data.data8))), message.data.data8);
        xcb_send_event(connection, 0, rootWindow(connection), XCB_EVENT_MASK_PROPERTY_CHANGE,
                       reinterpret_cast<const char*>(&message));
        message.type = types.next;
    }
}

}  // namespace

void finish(const QByteArray& startupId) {
    const bool isId = !startupId.isEmpty() && startupId.size() <= kMaxIdSize;
    xcb_connection_t* const x11 = isId ? connection() : nullptr;
    if (x11 == nullptr) return;
    QByteArray quoted = startupId;
    quoted.replace('\\', "\\\\").replace('"', "\\\"");
    const xcb_window_t sender = xcb_generate_id(x11);
    xcb_create_window(x11, XCB_COPY_FROM_PARENT, sender, rootWindow(x11), -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    broadcast(x11, sender, "remove: ID=\"" + quoted + "\"");
    xcb_destroy_window(x11, sender);
    xcb_flush(x11);
}

}  // namespace ravlin::LaunchFeedback
