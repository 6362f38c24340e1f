#include "Platform/Clipboard/X11/X11Connection.h"

#include "Platform/Clipboard/Polling.h"

#include <xcb/xcbext.h>
#include <xcb/xfixes.h>

#include <algorithm>

#include <fcntl.h>
#include <unistd.h>

namespace ravlin {
namespace {

using Clock = std::chrono::steady_clock;

// In the order of X11Atom.
constexpr std::array<std::string_view, kX11AtomCount> kAtomNames = {
    "CLIPBOARD", "TARGETS", "MULTIPLE", "TIMESTAMP", "INCR", TextFormats::kPasswordHint, "RAVLIN_CLOCK"};
static_assert(!kAtomNames.back().empty());

constexpr std::size_t kRequestUnit = 4;           // bytes; the unit of the server's maximum
constexpr std::size_t kRequestHeaderSize = 64;    // bytes; more than ChangeProperty's
constexpr std::uint32_t kXFixesMajorVersion = 2;  // has had selections since version 1

}  // namespace

std::unique_ptr<X11Connection> X11Connection::open(const char* displayName, std::string& whyNot) {
    // libxcb checks that the server is still there before it writes, but the server may go away at that moment.
    surviveBrokenPipes();
    int screenNumber = 0;
    std::unique_ptr<X11Connection> connection(new X11Connection(xcb_connect(displayName, &screenNumber)));
    if (connection->isLost()) {
        whyNot = "no display answers";
        return nullptr;
    }
    if (!connection->internAtoms()) {
        whyNot = "the display does not answer in time";
        return nullptr;
    }
    connection->createWindow(screenNumber);
    if (!connection->selectOwnerChanges()) {
        whyNot = "the display has no XFixes extension";
        return nullptr;
    }
    return connection;
}

X11Connection::X11Connection(xcb_connection_t* connection) : connection_(connection) {}

X11Connection::~X11Connection() {
    xcb_disconnect(connection_);
}

bool X11Connection::internAtoms() {
    std::vector<std::string_view> names(kAtomNames.begin(), kAtomNames.end());
    for (const TextFormat& each : TextFormats::kAll) names.push_back(each.name);
    std::vector<xcb_intern_atom_cookie_t> cookies;
    cookies.reserve(names.size());
    for (const std::string_view each : names) {
        cookies.push_back(xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(each.size()), each.data()));
    }
    for (std::size_t i = 0; i < cookies.size(); ++i) {
        const auto reply = await<xcb_intern_atom_reply_t>(cookies[i]);
        if (!reply) return false;
        (i < kX11AtomCount ? atoms_.at(i) : formatAtoms_.at(i - kX11AtomCount)) = reply->atom;
    }
    maximumDataSize_ = xcb_get_maximum_request_length(connection_) * kRequestUnit - kRequestHeaderSize;
    return true;
}

void X11Connection::createWindow(int screenNumber) {
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection_));
    for (; screens.rem > 1 && screenNumber > 0; --screenNumber) xcb_screen_next(&screens);
    window_ = xcb_generate_id(connection_);
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_, screens.data->root, -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
}

bool X11Connection::selectOwnerChanges() {
    const xcb_query_extension_reply_t* const extension = xcb_get_extension_data(connection_, &xcb_xfixes_id);
    if (extension == nullptr || extension->present == 0) return false;
    // The server accepts no other request of the extension before it knows the version.
    const auto version =
        await<xcb_xfixes_query_version_reply_t>(xcb_xfixes_query_version(connection_, kXFixesMajorVersion, 0));
    if (!version || version->major_version < 1) return false;
    ownerChangeEvent_ = extension->first_event + XCB_XFIXES_SELECTION_NOTIFY;
    xcb_xfixes_select_selection_input(connection_, window_, atom(X11Atom::clipboard),
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    return true;
}

const TextFormat* X11Connection::formatOf(xcb_atom_t atom) const {
    const auto* const found = std::ranges::find(formatAtoms_, atom);
    return found != formatAtoms_.end() ? &TextFormats::kAll[static_cast<std::size_t>(found - formatAtoms_.begin())]
                                       : nullptr;
}

int X11Connection::fileDescriptor() const {
    return isLost() ? -1 : xcb_get_file_descriptor(connection_);
}

void X11Connection::giveAway() {
    // xcb_disconnect calls shutdown(), which ends the connection for every process that holds the socket. With the
    // descriptor redirected to /dev/null it closes only this process's share; reading from there makes libxcb consider
    // the connection lost.
    const int nowhere = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (nowhere < 0) return;
    dup3(nowhere, xcb_get_file_descriptor(connection_), O_CLOEXEC);
    close(nowhere);
    pollEvent();
}

void* X11Connection::awaitReply(unsigned int sequence) {
    flush();
    const TimePoint deadline = Clock::now() + kServerLimit;
    void* reply = nullptr;
    xcb_generic_error_t* error = nullptr;
    while (xcb_poll_for_reply(connection_, sequence, &reply, &error) == 0) {
        if (!isReady(xcb_get_file_descriptor(connection_), POLLIN, deadline)) {
            xcb_discard_reply(connection_, sequence);
            return nullptr;
        }
    }
    X11Deleter()(error);
    return reply;
}

X11Event X11Connection::waitForEvent(TimePoint deadline) {
    flush();
    while (!isLost()) {
        if (X11Event event = pollEvent()) return event;
        if (!isReady(xcb_get_file_descriptor(connection_), POLLIN, deadline)) return nullptr;
    }
    return nullptr;
}

xcb_atom_t X11Connection::intern(const std::string& name) {
    const auto reply = await<xcb_intern_atom_reply_t>(
        xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

std::vector<std::string> X11Connection::namesOf(std::span<const xcb_atom_t> atoms) {
    std::vector<xcb_get_atom_name_cookie_t> cookies;
    for (const xcb_atom_t each : atoms) cookies.push_back(xcb_get_atom_name(connection_, each));
    // The answer to this comes last, so after it no other has to be waited for. A server that hangs is waited for only
    // once.
    const bool isAnswered = await<xcb_get_input_focus_reply_t>(xcb_get_input_focus(connection_)) != nullptr;
    std::vector<std::string> names(atoms.size());
    for (std::size_t i = 0; i < cookies.size(); ++i) {
        if (!isAnswered) {
            xcb_discard_reply(connection_, cookies[i].sequence);
        } else if (const auto reply = await<xcb_get_atom_name_reply_t>(cookies[i])) {
            names[i].assign(xcb_get_atom_name_name(reply.get()), reply->name_len);
        }
    }
    return names;
}

void X11Connection::putBytes(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::string_view bytes) {
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, property, type, 8,
                        static_cast<std::uint32_t>(bytes.size()), bytes.data());
}

void X11Connection::putValues(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                              std::span<const std::uint32_t> values) {
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, property, type, 32,
                        static_cast<std::uint32_t>(values.size()), values.data());
}

void X11Connection::watch(xcb_window_t window) {
    if (++watchCounts_[window] > 1) return;
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection_, window, XCB_CW_EVENT_MASK, &events);
}

void X11Connection::unwatch(xcb_window_t window) {
    if (--watchCounts_[window] > 0) return;
    watchCounts_.erase(window);
    const std::uint32_t events = XCB_EVENT_MASK_NO_EVENT;
    xcb_change_window_attributes(connection_, window, XCB_CW_EVENT_MASK, &events);
}

}  // namespace ravlin
