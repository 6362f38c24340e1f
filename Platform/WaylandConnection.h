#pragma once

#include <wayland-client-core.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace ravlin {

/// A connection to a Wayland compositor. Every wait has an end, and the loss of the connection ends nothing but the
/// connection.
///
/// Besides the compositor's socket it watches descriptors that its user adds, and makes one descriptor of them all.
class WaylandConnection {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    /// How long the compositor may take for an answer before it counts as not answering.
    static constexpr std::chrono::milliseconds kServerLimit{2000};

    /// The compositor's global objects, as they come and go. To be told from the beginning, set them before the first
    /// `synchronise`.
    struct Globals {
        std::function<void(std::uint32_t name, std::string_view interface)> appeared;
        std::function<void(std::uint32_t name)> removed;
    };

    /// Connects to `displayName` (null: to the one that WAYLAND_DISPLAY names). Null where that fails, with the reason
    /// in `whyNot`.
    static std::unique_ptr<WaylandConnection> open(const char* displayName, Globals globals, std::string& whyNot);

    WaylandConnection(const WaylandConnection&) = delete;
    WaylandConnection& operator=(const WaylandConnection&) = delete;
    WaylandConnection(WaylandConnection&&) = delete;
    WaylandConnection& operator=(WaylandConnection&&) = delete;
    ~WaylandConnection();

    wl_proxy* registry() const noexcept { return registry_; }
    bool isLost() const;

    /// Readable when there is something to do; -1 once the connection is lost or given away.
    int fileDescriptor() const;

    /// The socket, and what watches it: a forked process that goes on with this connection needs both.
    int socket() const { return wl_display_get_fd(display_); }
    int watcher() const { return watcher_; }

    /// Waits until the compositor has done all it was asked, and handles what it told about that. False where it does
    /// not answer in time.
    bool synchronise();

    /// Sends what is waiting, and handles the events that have arrived; never waits.
    void processEvents();

    /// Asks the compositor for an answer that means nothing: it makes the descriptor readable.
    void askForWakeUp();

    /// Sleeps until `descriptor` is readable or there are events to process. False at the deadline.
    bool waitFor(int descriptor, TimePoint deadline) const;

    /// Counts `descriptor` in, which is waited for to become writable, or leaves it out again.
    void watchWritable(int descriptor) const;
    void unwatch(int descriptor) const;

    /// Leaves the compositor with a forked process: from now on this one is without a connection.
    void giveAway();

private:
    WaylandConnection(wl_display* display, Globals globals);
    void listenToRegistry();
    void readAndDispatch();
    bool waitForSocket(TimePoint deadline);

    wl_display* display_;
    wl_proxy* registry_ = nullptr;
    Globals globals_;
    int watcher_ = -1;
    bool isGivenAway_ = false;
};

}  // namespace ravlin
