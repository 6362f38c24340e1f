#include "Platform/WaylandConnection.h"

#include "Platform/Polling.h"

#include <wayland-client-protocol.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <utility>

#include <poll.h>
#include <sys/epoll.h>
#include <unistd.h>

namespace ravlin {
namespace {

using Clock = std::chrono::steady_clock;

/// An answer to wl_display.sync, which comes after all that was asked before.
class SyncCallback {
public:
    explicit SyncCallback(wl_display* display) : callback_(wl_display_sync(display)) {
        static constexpr wl_callback_listener kListener = {
            .done = [](void* self, wl_callback* /*callback*/, std::uint32_t /*serial*/) {
                static_cast<SyncCallback*>(self)->isDone_ = true;
            }};
        wl_callback_add_listener(callback_, &kListener, this);
    }
    SyncCallback(const SyncCallback&) = delete;
    SyncCallback& operator=(const SyncCallback&) = delete;
    SyncCallback(SyncCallback&&) = delete;
    SyncCallback& operator=(SyncCallback&&) = delete;
    ~SyncCallback() { wl_callback_destroy(callback_); }

    bool isDone() const noexcept { return isDone_; }

private:
    wl_callback* callback_;
    bool isDone_ = false;
};

}  // namespace

std::unique_ptr<WaylandConnection> WaylandConnection::open(const char* displayName, Globals globals,
                                                           std::string& whyNot) {
    // Without a name libwayland would try a usual one, and so reach a compositor that this session does not run on.
    if (displayName == nullptr) displayName = std::getenv("WAYLAND_DISPLAY");  // NOLINT(concurrency-mt-unsafe)
    if (displayName == nullptr || *displayName == '\0') {
        whyNot = "WAYLAND_DISPLAY is not set";
        return nullptr;
    }
    wl_display* const display = wl_display_connect(displayName);
    if (display == nullptr) {
        whyNot = "no compositor answers";
        return nullptr;
    }
    return std::unique_ptr<WaylandConnection>(new WaylandConnection(display, std::move(globals)));
}

WaylandConnection::WaylandConnection(wl_display* display, Globals globals)
    : display_(display), globals_(std::move(globals)), watcher_(epoll_create1(EPOLL_CLOEXEC)) {
    epoll_event event = {};
    event.events = EPOLLIN;
    epoll_ctl(watcher_, EPOLL_CTL_ADD, socket(), &event);
    listenToRegistry();
}

WaylandConnection::~WaylandConnection() {
    if (watcher_ >= 0) close(watcher_);
    wl_proxy_destroy(registry_);
    wl_display_disconnect(display_);
}

void WaylandConnection::listenToRegistry() {
    static constexpr wl_registry_listener kListener = {
        .global =
            [](void* self, wl_registry* /*registry*/, std::uint32_t name, const char* interface,
               std::uint32_t /*version*/) {
                static_cast<WaylandConnection*>(self)->globals_.appeared(name, interface);
            },
        .global_remove = [](void* self, wl_registry* /*registry*/,
                            std::uint32_t name) { static_cast<WaylandConnection*>(self)->globals_.removed(name); }};
    wl_registry* const registry = wl_display_get_registry(display_);
    wl_registry_add_listener(registry, &kListener, this);
    registry_ = reinterpret_cast<wl_proxy*>(registry);
}

bool WaylandConnection::isLost() const {
    return isGivenAway_ || wl_display_get_error(display_) != 0;
}

int WaylandConnection::fileDescriptor() const {
    return isLost() ? -1 : watcher_;
}

bool WaylandConnection::synchronise() {
    if (isLost()) return false;
    const SyncCallback callback(display_);
    const TimePoint deadline = Clock::now() + kServerLimit;
    while (!callback.isDone() && !isLost()) {
        if (!waitForSocket(deadline)) return false;
        readAndDispatch();
    }
    return callback.isDone();
}

void WaylandConnection::processEvents() {
    if (!isLost()) readAndDispatch();
}

void WaylandConnection::askForWakeUp() {
    if (isLost()) return;
    const SyncCallback answerIsOfNoUse(display_);
    wl_display_flush(display_);
}

/// One round: libwayland lets nobody read before all that has been read is dispatched.
void WaylandConnection::readAndDispatch() {
    while (wl_display_prepare_read(display_) != 0) {
        if (wl_display_dispatch_pending(display_) < 0) return;  // the connection is lost
    }
    wl_display_flush(display_);
    if (isReady(socket(), POLLIN, Clock::time_point::min())) {
        wl_display_read_events(display_);
    } else {
        wl_display_cancel_read(display_);
    }
    wl_display_dispatch_pending(display_);
    wl_display_flush(display_);
}

/// Sends what is waiting and sleeps until something arrives. A compositor that reads nothing takes nothing, either.
bool WaylandConnection::waitForSocket(TimePoint deadline) {
    const bool isSent = wl_display_flush(display_) >= 0 || errno != EAGAIN;
    return isReady(socket(), isSent ? POLLIN : POLLIN | POLLOUT, deadline);
}

bool WaylandConnection::waitFor(int descriptor, TimePoint deadline) const {
    std::array<pollfd, 2> waited = {pollfd{.fd = descriptor, .events = POLLIN, .revents = 0},
                                    pollfd{.fd = fileDescriptor(), .events = POLLIN, .revents = 0}};
    return isAnyReady(waited, deadline);
}

void WaylandConnection::watchWritable(int descriptor) const {
    epoll_event event = {};
    event.events = EPOLLOUT;
    epoll_ctl(watcher_, EPOLL_CTL_ADD, descriptor, &event);
}

void WaylandConnection::unwatch(int descriptor) const {
    epoll_ctl(watcher_, EPOLL_CTL_DEL, descriptor, nullptr);
}

void WaylandConnection::giveAway() {
    // The other process has the same watcher: what is taken out here would be taken out there.
    if (watcher_ >= 0) close(std::exchange(watcher_, -1));
    isGivenAway_ = true;
}

}  // namespace ravlin
