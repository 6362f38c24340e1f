#include "Platform/Desktop/TrayColors.h"

#include "Platform/Desktop/QtX11.h"

#include <QCoreApplication>

#include <xcb/xcb.h>

#include <cstdlib>

namespace ravlin {
namespace {

constexpr std::uint32_t kColorChannels = 12;  // of four colours: foreground, error, warning, success; 16 bits each

using QtX11::atom;
using QtX11::ReplyPointer;

}  // namespace

TrayColors::TrayColors(QObject* parent) : QObject(parent) {
    connection_ = QtX11::connection();
    if (connection_ == nullptr) return;
    selection_ = atom(connection_, "_NET_SYSTEM_TRAY_S0");
    colors_ = atom(connection_, "_NET_SYSTEM_TRAY_COLORS");
    manager_ = atom(connection_, "MANAGER");
    QCoreApplication::instance()->installNativeEventFilter(this);
    watchTray();
}

TrayColors::~TrayColors() = default;

bool TrayColors::nativeEventFilter(const QByteArray& /*eventType*/, void* message, qintptr* /*result*/) {
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    const int type = event->response_type & 0x7f;
    if (type == XCB_CLIENT_MESSAGE) {
        const auto* announcement = static_cast<const xcb_client_message_event_t*>(message);
        // Later, because Qt handles the same message, and then selects its own events of the tray's window.
        if (announcement->type == manager_ && announcement->data.data32[1] == selection_)
            QMetaObject::invokeMethod(this, "watchTray", Qt::QueuedConnection);
    } else if (type == XCB_PROPERTY_NOTIFY) {
        const auto* change = static_cast<const xcb_property_notify_event_t*>(message);
        if (change->window == tray_ && change->atom == colors_) readColors();
    }
    return false;
}

void TrayColors::watchTray() {
    const ReplyPointer<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(connection_, xcb_get_selection_owner(connection_, selection_), nullptr),
        &std::free);
    tray_ = owner == nullptr ? xcb_window_t{XCB_WINDOW_NONE} : owner->owner;
    const ReplyPointer<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(connection_, xcb_get_window_attributes(connection_, tray_), nullptr),
        &std::free);
    if (attributes != nullptr) {
        // In addition to what Qt listens for on the same connection.
        const std::uint32_t mask = attributes->your_event_mask | XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(connection_, tray_, XCB_CW_EVENT_MASK, &mask);
    }
    readColors();
}

void TrayColors::readColors() {
    const auto cookie = xcb_get_property(connection_, 0, tray_, colors_, XCB_ATOM_CARDINAL, 0, kColorChannels);
    const ReplyPointer<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_, cookie, nullptr),
                                                       &std::free);
    std::optional<QColor> foreground;
    if (reply != nullptr && reply->format == 32 && reply->value_len == kColorChannels) {
        const auto* channels = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
        foreground = QColor(int(channels[0] >> 8 & 0xff), int(channels[1] >> 8 & 0xff), int(channels[2] >> 8 & 0xff));
    }
    if (foreground == foreground_) return;
    foreground_ = foreground;
    Q_EMIT changed();
}

}  // namespace ravlin
