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

/// A connection to a Wayland compositor. Every wait has an end, and the loss of the connection ends nothing but the
/// connection.
///
/// Besides the compositor's socket it watches descriptors that its user adds, and makes one descriptor of them all.
class WaylandConnection : NonCopyable {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    /// How long the compositor may take for an answer before it counts as not answering.
    static constexpr std::chrono::milliseconds kServerLimit{2000};

    /// The compositor's global objects, as they come and go. To be told from the beginning, set them before the first
    /// `synchronise`.
    struct Globals {
        std::function<void(std::uint32_t name, std::string_view interface, std::uint32_t version)> appeared;
        std::function<void(std::uint32_t name)> removed;
    };

    /// Connects to `displayName` (null: to the one that WAYLAND_DISPLAY names). Null where that fails, with the reason
    /// in `whyNot`.
    static std::unique_ptr<WaylandConnection> open(const char* displayName, Globals globals, std::string& whyNot);

    /// Takes part in the connection of somebody else, which must outlive this object. Each side handles its own events
    /// only, whoever of the two has read them from the socket, and in whatever thread; so events of this side may
    /// arrive without the descriptor telling: `processEvents` is due whenever the other side has read.
    static std::unique_ptr<WaylandConnection> share(wl_display* display, Globals globals);

    ~WaylandConnection();

    wl_proxy* registry() const noexcept { return registry_; }
    bool isLost() const;

    /// Readable when there is something to do; -1 once the connection is lost or closed.
    int fileDescriptor() const;

    /// The socket, and what watches it: a forked process that goes on with this connection needs both.
    std::vector<int> descriptors() const { return {socket(), watcher_.get()}; }

    /// Waits until the compositor has done all it was asked, and handles what it told about that. False where it does
    /// not answer in time.
    bool synchronise();

    /// Sends what is waiting, and handles the events that have arrived; never waits.
    void processEvents();

    /// Sends what is waiting.
    void flush();

    /// Asks the compositor for an answer that means nothing: it makes the descriptor readable.
    void askForWakeUp();

    /// Sleeps until `descriptor` is readable or there is something else to do, and handles the events that have
    /// arrived. False at the deadline.
    bool waitFor(int descriptor, TimePoint deadline);

    /// Counts `descriptor` in, which is waited for to become writable, or leaves it out again.
    void watchWritable(int descriptor) const;
    void unwatch(int descriptor) const;

    /// Ends the connection on this side; a forked process may go on with it. All objects must be gone before.
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
    wl_display* queuedDisplay_;  // the same, for requests whose answers come into the queue
    wl_proxy* registry_ = nullptr;
    Globals globals_;
    Descriptor watcher_;
};

}  // namespace ravlin
