#include "Platform/Clipboard/Wayland/WaylandConnection.h"

#include "Engine/Support/NonCopyable.h"
#include "Platform/Clipboard/Polling.h"

#include <wayland-client-protocol.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <utility>

#include <poll.h>
#include <sys/epoll.h>

namespace ravlin {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kSocketItself = -1;   // in place of a watched descriptor
constexpr int kMaximumEvents = 64;  // of one look; the next one begins with the others

/// An answer to wl_display.sync, which comes after everything requested before it.
class SyncCallback : NonCopyable {
public:
    explicit SyncCallback(wl_display* display) : callback_(wl_display_sync(display)) {
        static constexpr wl_callback_listener kListener = {
            .done = [](void* self, wl_callback* /*callback*/, std::uint32_t /*serial*/) {
                static_cast<SyncCallback*>(self)->isDone_ = true;
            }};
        wl_callback_add_listener(callback_, &kListener, this);
    }
    ~SyncCallback() { wl_callback_destroy(callback_); }

    bool isDone() const noexcept { return isDone_; }

private:
    wl_callback* callback_;
    bool isDone_ = false;
};

}  // namespace

std::unique_ptr<WaylandConnection> WaylandConnection::open(const char* displayName, Globals globals,
                                                           std::string& whyNot) {
    // Without a name libwayland would try a default, and so might reach a compositor that this session does not run on.
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
    return std::unique_ptr<WaylandConnection>(new WaylandConnection(display, /*isOwn=*/true, std::move(globals)));
}

std::unique_ptr<WaylandConnection> WaylandConnection::share(wl_display* display, Globals globals) {
    return std::unique_ptr<WaylandConnection>(new WaylandConnection(display, /*isOwn=*/false, std::move(globals)));
}

WaylandConnection::WaylandConnection(wl_display* display, bool isOwn, Globals globals)
    : display_(display),
      isOwn_(isOwn),
      queue_(wl_display_create_queue(display)),
      queuedDisplay_(static_cast<wl_display*>(wl_proxy_create_wrapper(display))),
      globals_(std::move(globals)),
      watcher_(epoll_create1(EPOLL_CLOEXEC)) {
    wl_proxy_set_queue(reinterpret_cast<wl_proxy*>(queuedDisplay_), queue_.get());
    epoll_event event = {};
    event.events = EPOLLIN;
    event.data.fd = kSocketItself;
    epoll_ctl(watcher_.get(), EPOLL_CTL_ADD, socket(), &event);
    listenToRegistry();
}

WaylandConnection::~WaylandConnection() {
    close();
}

void WaylandConnection::close() {
    if (display_ == nullptr) return;
    // A forked process shares the watcher: anything removed from it here would be removed there, too.
    watcher_.reset();
    wl_proxy_destroy(registry_);
    wl_proxy_wrapper_destroy(queuedDisplay_);
    queue_.reset();
    if (isOwn_) wl_display_disconnect(display_);
    display_ = nullptr;
}

void WaylandConnection::listenToRegistry() {
    static constexpr wl_registry_listener kListener = {
        .global =
            [](void* self, wl_registry* /*registry*/, std::uint32_t name, const char* interface,
               std::uint32_t version) {
                static_cast<WaylandConnection*>(self)->globals_.appeared(name, interface, version);
            },
        .global_remove = [](void* self, wl_registry* /*registry*/,
                            std::uint32_t name) { static_cast<WaylandConnection*>(self)->globals_.removed(name); }};
    wl_registry* const registry = wl_display_get_registry(queuedDisplay_);
    wl_registry_add_listener(registry, &kListener, this);
    registry_ = reinterpret_cast<wl_proxy*>(registry);
}

bool WaylandConnection::isLost() const {
    return display_ == nullptr || wl_display_get_error(display_) != 0;
}

int WaylandConnection::fileDescriptor() const {
    return isLost() ? -1 : watcher_.get();
}

bool WaylandConnection::synchronise() {
    if (isLost()) return false;
    const SyncCallback callback(queuedDisplay_);
    const TimePoint deadline = Clock::now() + kServerLimit;
    while (!callback.isDone() && !isLost()) {
        if (!readAndDispatch(-1, -1, deadline)) break;
    }
    return callback.isDone();
}

void WaylandConnection::processEvents() {
    if (!isLost()) readAndDispatch(-1, -1, Clock::time_point::min());
}

void WaylandConnection::askForWakeUp() {
    if (isLost()) return;
    const SyncCallback answerIsOfNoUse(queuedDisplay_);
    flush();
}

void WaylandConnection::flush() {
    if (!isLost()) wl_display_flush(display_);
}

bool WaylandConnection::waitFor(int descriptor, TimePoint deadline) {
    return !isLost() && readAndDispatch(descriptor, watcher_.get(), deadline);
}

/// One round: sends what is waiting, sleeps until something arrives (from the compositor or two other descriptors, -1
/// for none) and handles events. False at the deadline.
///
/// Throughout the sleep this object is one of the connection's readers: no other reader can take what arrives meanwhile
/// out of the socket and leave this one asleep.
bool WaylandConnection::readAndDispatch(int descriptor, int watcher, TimePoint deadline) {
    // libwayland accepts no reader before everything read so far has been dispatched.
    while (wl_display_prepare_read_queue(display_, queue_.get()) != 0) {
        if (wl_display_dispatch_queue_pending(display_, queue_.get()) < 0) return false;  // the connection is lost
        deadline = Clock::time_point::min();  // what is waited for may have been among it
    }
    // The socket is full if the compositor reads nothing; then wait until it takes more.
    const bool isSent = wl_display_flush(display_) >= 0 || errno != EAGAIN;
    const auto events = static_cast<short>(isSent ? POLLIN : POLLIN | POLLOUT);
    std::array<pollfd, 3> waited = {pollfd{.fd = socket(), .events = events, .revents = 0},
                                    pollfd{.fd = descriptor, .events = POLLIN, .revents = 0},
                                    pollfd{.fd = watcher, .events = POLLIN, .revents = 0}};
    const bool isReady = isAnyReady(waited, deadline) || deadline == Clock::time_point::min();
    if ((waited[0].revents & ~POLLOUT) != 0) {
        wl_display_read_events(display_);
    } else {
        wl_display_cancel_read(display_);
    }
    wl_display_dispatch_queue_pending(display_, queue_.get());
    wl_display_flush(display_);
    return isReady;
}

void WaylandConnection::watchWritable(int descriptor) const {
    epoll_event event = {};
    event.events = EPOLLOUT;
    event.data.fd = descriptor;
    epoll_ctl(watcher_.get(), EPOLL_CTL_ADD, descriptor, &event);
}

void WaylandConnection::unwatch(int descriptor) const {
    epoll_ctl(watcher_.get(), EPOLL_CTL_DEL, descriptor, nullptr);
}

std::vector<int> WaylandConnection::writable() const {
    std::array<epoll_event, kMaximumEvents> events = {};
    const int count = epoll_wait(watcher_.get(), events.data(), kMaximumEvents, /*timeout=*/0);
    std::vector<int> descriptors;
    for (std::size_t i = 0; count > 0 && i < static_cast<std::size_t>(count); ++i) {
        if (events.at(i).data.fd != kSocketItself) descriptors.push_back(events.at(i).data.fd);
    }
    return descriptors;
}

}  // namespace ravlin
