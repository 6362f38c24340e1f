#pragma once

#include "Engine/Support/NonCopyable.h"
#include "Platform/Clipboard/Descriptor.h"

#include <wayland-client-core.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace ravlin {

/// A connection to a Wayland compositor. Every wait has a limit, and losing the connection ends nothing else.
///
/// It watches the compositor's socket and the descriptors added to it, and combines them all into one descriptor.
class WaylandConnection : NonCopyable {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    /// How long the compositor may take to answer before it counts as not answering.
    static constexpr std::chrono::milliseconds kServerLimit{2000};

    /// Called as the compositor's global objects come and go; those that are there already appear in the first
    /// `synchronise`.
    struct Globals {
        std::function<void(std::uint32_t name, std::string_view interface, std::uint32_t version)> appeared;
        std::function<void(std::uint32_t name)> removed;
    };

    /// Connects to `displayName` (null: the one that WAYLAND_DISPLAY names). Null if that fails, with the reason in
    /// `whyNot`.
    static std::unique_ptr<WaylandConnection> open(const char* displayName, Globals globals, std::string& whyNot);

    /// Shares a connection that belongs to someone else and must outlive this object. Each side handles only its own
    /// events, no matter which of the two has read them from the socket, and in which thread; so this side's events may
    /// arrive without the descriptor becoming readable: call `processEvents` whenever the other side has read.
    static std::unique_ptr<WaylandConnection> share(wl_display* display, Globals globals);

    ~WaylandConnection();

    wl_proxy* registry() const noexcept { return registry_; }
    bool isLost() const;

    /// Readable when there is something to do; -1 once the connection is lost or closed.
    int fileDescriptor() const;

    /// The socket, and what watches it: a forked process that continues this connection needs both.
    std::vector<int> descriptors() const { return {socket(), watcher_.get()}; }

    /// Waits until the compositor has done everything it was asked to, and handles the resulting events. False if it
    /// does not answer in time.
    bool synchronise();

    /// Sends what is waiting, and handles the events that have arrived; never waits.
    void processEvents();

    /// Sends what is waiting.
    void flush();

    /// Asks the compositor for a meaningless answer, which makes the descriptor readable.
    void askForWakeUp();

    /// Sleeps until `descriptor` is readable or there is something else to do, and handles the events that have
    /// arrived. False at the deadline.
    bool waitFor(int descriptor, TimePoint deadline);

    /// Starts or stops watching for `descriptor` to become writable.
    void watchWritable(int descriptor) const;
    void unwatch(int descriptor) const;

    /// Those of the watched descriptors that have become writable, or have failed; some of them if there are many.
    std::vector<int> writable() const;

    /// Ends the connection on this side; a forked process may continue it. All its objects must be gone by then.
    void close();

private:
    struct QueueDeleter {
        void operator()(wl_event_queue* queue) const noexcept { wl_event_queue_destroy(queue); }
    };

    WaylandConnection(wl_display* display, bool isOwn, Globals globals);
    int socket() const { return wl_display_get_fd(display_); }
    void listenToRegistry();
    bool readAndDispatch(int descriptor, int watcher, TimePoint deadline);

    wl_display* display_;  // null once closed
    bool isOwn_;
    std::unique_ptr<wl_event_queue, QueueDeleter> queue_;
    wl_display* queuedDisplay_;  // the same, for requests whose answers go into the queue
    wl_proxy* registry_ = nullptr;
    Globals globals_;
    Descriptor watcher_;
};

}  // namespace ravlin
