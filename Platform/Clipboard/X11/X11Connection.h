#pragma once

#include "Engine/Support/NonCopyable.h"
#include "Platform/Clipboard/TextFormats.h"

#include <xcb/xcb.h>

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ravlin {

/// The atoms that the clipboard protocol (ICCCM, section 2) needs, and others that are not those of the formats.
enum class X11Atom : std::uint8_t {
    clipboard,
    targets,
    multiple,
    timestamp,
    incr,
    passwordHint,
    clock,  // a property of our own window whose changes carry the server's time
};
inline constexpr std::size_t kX11AtomCount = 7;

/// Frees what libxcb returns, which it allocates with malloc.
struct X11Deleter {
    void operator()(void* memory) const noexcept { std::free(memory); }  // NOLINT(cppcoreguidelines-no-malloc)
};
using X11Event = std::unique_ptr<xcb_generic_event_t, X11Deleter>;
template <class Reply>
using X11Reply = std::unique_ptr<Reply, X11Deleter>;

/// A connection to an X server with one invisible window, which requests data and owns selections. Every wait has a
/// limit, and neither an X error nor the loss of the connection ends the program.
class X11Connection : NonCopyable {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    /// How long the server may take to answer before it counts as not answering. It takes microseconds, unless another
    /// program has grabbed it.
    static constexpr std::chrono::milliseconds kServerLimit{2000};

    /// Connects to `displayName` (null: the one that DISPLAY names). Null if that fails, with the reason in `whyNot`.
    static std::unique_ptr<X11Connection> open(const char* displayName, std::string& whyNot);

    ~X11Connection();

    xcb_connection_t* get() const { return connection_; }
    xcb_window_t window() const { return window_; }
    xcb_atom_t atom(X11Atom atom) const { return atoms_.at(static_cast<std::size_t>(atom)); }

    /// The target for `format`, which must be one of `TextFormats::kAll`; and the format of a target, null for others.
    xcb_atom_t atom(const TextFormat& format) const { return formatAtoms_.at(indexOf(format)); }
    const TextFormat* formatOf(xcb_atom_t atom) const;

    /// The type of the event that reports a change of the clipboard's owner.
    int ownerChangeEvent() const { return ownerChangeEvent_; }

    /// How much data one request may carry, in bytes.
    std::size_t maximumDataSize() const { return maximumDataSize_; }

    bool isLost() const { return xcb_connection_has_error(connection_) != 0; }

    /// The socket; -1 once the connection is lost or given away.
    int fileDescriptor() const;

    /// Leaves the connection to a forked process; from now on this process has none. Closing it the usual way would
    /// shut down the shared socket for both.
    void giveAway();

    /// The reply to the request behind `cookie`; null for an X error, a lost connection or a server that does not
    /// answer.
    template <class Reply, class Cookie>
    X11Reply<Reply> await(Cookie cookie) {
        return X11Reply<Reply>(static_cast<Reply*>(awaitReply(cookie.sequence)));
    }

    /// The next event, waiting until `deadline` at most; null if there was none or the connection is lost.
    X11Event waitForEvent(TimePoint deadline);

    /// The next event that has arrived at the socket; never waits.
    X11Event pollEvent() { return X11Event(xcb_poll_for_event(connection_)); }

    /// The next event that libxcb has read along with something else; the socket does not become readable for these.
    X11Event queuedEvent() { return X11Event(xcb_poll_for_queued_event(connection_)); }

    void flush() { xcb_flush(connection_); }

    /// The atom of that name; XCB_ATOM_NONE if the server does not answer.
    xcb_atom_t intern(const std::string& name);

    /// The names of `atoms`, in order; "" for what is not an atom, and for all if the server does not answer.
    std::vector<std::string> namesOf(std::span<const xcb_atom_t> atoms);

    /// Replaces a property of any window with bytes, or with 32-bit values.
    void putBytes(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::string_view bytes);
    void putValues(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::span<const std::uint32_t> values);

private:
    friend class X11WindowWatch;

    static std::size_t indexOf(const TextFormat& format) {
        return static_cast<std::size_t>(&format - TextFormats::kAll.data());
    }

    explicit X11Connection(xcb_connection_t* connection);
    bool selectOwnerChanges();
    bool internAtoms();
    void createWindow(int screenNumber);
    void* awaitReply(unsigned int sequence);
    void watch(xcb_window_t window);
    void unwatch(xcb_window_t window);

    xcb_connection_t* connection_;
    xcb_window_t window_ = XCB_WINDOW_NONE;
    std::array<xcb_atom_t, kX11AtomCount> atoms_{};
    std::array<xcb_atom_t, TextFormats::kAll.size()> formatAtoms_{};
    int ownerChangeEvent_ = 0;
    std::size_t maximumDataSize_ = 0;
    std::map<xcb_window_t, int> watchCounts_;
};

/// Receives events about another program's window while this object exists: changes of its properties, and its
/// destruction. One window may be watched for several reasons at once: a clipboard manager both owns and requests.
class X11WindowWatch : NonCopyable {
public:
    X11WindowWatch(X11Connection& connection, xcb_window_t window) : connection_(connection), window_(window) {
        connection_.watch(window_);
    }
    ~X11WindowWatch() { connection_.unwatch(window_); }

    xcb_window_t window() const { return window_; }

private:
    X11Connection& connection_;
    xcb_window_t window_;
};

/// The kind of what comes in an event's place if a request that has no reply fails.
inline constexpr int kX11Error = 0;

/// The kind of event, an XCB_... number, no matter whether the server or another program sent it.
inline int x11EventType(const xcb_generic_event_t& event) {
    return event.response_type & 0x7F;
}

/// Whether another program sent this event with SendEvent.
inline bool x11EventIsSent(const xcb_generic_event_t& event) {
    return (event.response_type & 0x80) != 0;
}

/// `event` as what its type says it is.
template <class Event>
const Event& x11EventAs(const xcb_generic_event_t& event) {
    return reinterpret_cast<const Event&>(event);
}

}  // namespace ravlin
