#include "Platform/Desktop/LaunchFeedback.h"

#include "Platform/Desktop/QtX11.h"

#include <QByteArray>

#include <xcb/xcb.h>

#include <algorithm>

namespace ravlin::LaunchFeedback {
namespace {

xcb_window_t rootWindow(xcb_connection_t* connection) {
    return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

/// Sends a text to every program on the desktop, in messages of 20 bytes that share a window to show that they belong
/// together. The terminating NUL is sent, too.
void broadcast(xcb_connection_t* connection, xcb_window_t sender, const QByteArray& text) {
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 8;
    message.window = sender;
    message.type = QtX11::atom(connection, "_NET_STARTUP_INFO_BEGIN");
    const xcb_atom_t next = QtX11::atom(connection, "_NET_STARTUP_INFO");
    for (qsizetype sent = 0; sent <= text.size(); sent += qsizetype(sizeof(message.data.data8))) {
        std::ranges::fill(message.data.data8, std::uint8_t{0});
        std::ranges::copy(text.mid(sent, qsizetype(sizeof(message.data.data8))), message.data.data8);
        xcb_send_event(connection, 0, rootWindow(connection), XCB_EVENT_MASK_PROPERTY_CHANGE,
                       reinterpret_cast<const char*>(&message));
        message.type = next;
    }
}

}  // namespace

void finish(const QByteArray& startupId) {
    const bool isId = !startupId.isEmpty() && startupId.size() <= kMaxIdSize;
    xcb_connection_t* const x11 = isId ? QtX11::connection() : nullptr;
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
