#pragma once

#include "Engine/Support/NonCopyable.h"

#include <wayland-client-core.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// The Wayland protocols through which a program reaches the clipboard. Data control needs no keyboard focus; it goes
/// by two names with the same messages, "ext-data-control-v1" and the older "zwlr_data_control_manager_v1". If a
/// compositor does not offer it, there is the core protocol, which reports the clipboard to the program whose window
/// has keyboard focus, and lets it copy in response to input.
///
/// Every object that is destroyed asks the compositor to destroy its counterpart. None waits for anything: requests go
/// out with the next flush of the connection, and events arrive while it dispatches.
namespace ravlin::WaylandSelection {

enum class Protocol : std::uint8_t { extDataControl, zwlrDataControl, core };

/// The name of the global object through which a compositor offers the protocol.
std::string_view managerName(Protocol protocol) noexcept;

/// The version of the protocol that is used here, and so the lowest that must be offered.
std::uint32_t versionOf(Protocol protocol) noexcept;

/// Destroys a protocol object that has no destroy request.
struct ProxyDeleter {
    void operator()(wl_proxy* proxy) const noexcept { wl_proxy_destroy(proxy); }
};

/// The content of the clipboard as a program offers it, in one or more types.
class Offer : NonCopyable {
public:
    Offer(wl_proxy* proxy, Protocol protocol);
    ~Offer();

    wl_proxy* proxy() const noexcept { return proxy_; }

    /// The MIME types, in the program's order; complete once the offer has been announced as the clipboard's content.
    const std::vector<std::string>& types() const noexcept { return types_; }

    /// Asks the program to write the content as `type` into a pipe. The descriptor stays the caller's; close it once
    /// the request has been flushed.
    void receive(const std::string& type, int descriptor);

private:
    static void onType(void* self, wl_proxy* proxy, const char* type);

    wl_proxy* proxy_;
    Protocol protocol_;
    std::vector<std::string> types_;
};

/// Our own content for the clipboard.
class Source : NonCopyable {
public:
    struct Events {
        std::function<void(std::string_view type, int descriptor)> send;  // the descriptor is now the callee's
        std::function<void()> cancelled;                                  // another program has copied
    };

    Source(wl_proxy* proxy, Protocol protocol, Events events);
    ~Source();

    wl_proxy* proxy() const noexcept { return proxy_; }
    void offer(const std::string& type);

private:
    static void onSend(void* self, wl_proxy* proxy, const char* type, std::int32_t descriptor);
    static void onCancelled(void* self, wl_proxy* proxy);
    static void onTarget(void* self, wl_proxy* proxy, const char* type);

    wl_proxy* proxy_;
    Events events_;
};

/// The clipboard of a seat.
class Device : NonCopyable {
public:
    struct Events {
        std::function<void(std::shared_ptr<Offer>)> selection;  // each change of the clipboard; null: it is empty
        std::function<void()> finished;                         // the seat has gone
    };

    Device(wl_proxy* proxy, Protocol protocol, Events events);
    ~Device();

    /// Makes `source` the clipboard's content; null empties it. The core protocol wants the serial number of the input
    /// that this responds to, and does nothing if other input, or another copy, has come since.
    void setSelection(const Source* source, std::uint32_t serial = 0);

    /// Asks the compositor to send no more events. If the connection outlives this object, destroy it only once the
    /// compositor has answered: the compositor numbers the objects that its events announce, and a connection on which
    /// one of these numbers was not taken in breaks at the next.
    void retire();

private:
    static void onOffer(void* self, wl_proxy* proxy, wl_proxy* offer);
    static void onSelection(void* self, wl_proxy* proxy, wl_proxy* offer);
    static void onFinished(void* self, wl_proxy* proxy);
    static void onPrimarySelection(void* self, wl_proxy* proxy, wl_proxy* offer);
    static void onDragEnter(void* self, wl_proxy* proxy, std::uint32_t serial, wl_proxy* surface, wl_fixed_t x,
                            wl_fixed_t y, wl_proxy* offer);
    static void onDragLeave(void* self, wl_proxy* proxy);
    static void onDragMotion(void* self, wl_proxy* proxy, std::uint32_t time, wl_fixed_t x, wl_fixed_t y);
    static void onDrop(void* self, wl_proxy* proxy);
    std::shared_ptr<Offer> take(wl_proxy* offer);

    wl_proxy* proxy_;
    Protocol protocol_;
    Events events_;
    bool isRetired_ = false;
    std::vector<std::shared_ptr<Offer>> announced_;  // that no event has put to use yet
    std::shared_ptr<Offer> dragged_;                 // over one of the program's windows
};

/// The compositor's end of the protocol.
class Manager : NonCopyable {
public:
    /// Binds the global object `name`, whose interface must be that of `protocol`.
    Manager(wl_proxy* registry, std::uint32_t name, Protocol protocol);
    ~Manager();

    std::unique_ptr<Source> createSource(Source::Events events);
    std::unique_ptr<Device> deviceOf(wl_proxy* seat, Device::Events events);

private:
    Protocol protocol_;
    wl_proxy* proxy_;
};

}  // namespace ravlin::WaylandSelection
