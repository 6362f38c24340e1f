#include "Platform/Clipboard/Wayland/WaylandSelection.h"

#include "Engine/Support/NonCopyable.h"
#include "Platform/Clipboard/Wayland/WaylandRequests.h"

#include <wayland-client-protocol.h>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace ravlin::WaylandSelection {
namespace {

using WaylandRequests::create;
using WaylandRequests::handler;
using WaylandRequests::listen;
using WaylandRequests::send;

// --- The messages ----------------------------------------------------------------------------------------------------

// The numbers of the requests: their positions in the protocol's description.
constexpr std::uint32_t kManagerCreateSource = 0;
constexpr std::uint32_t kManagerGetDevice = 1;
constexpr std::uint32_t kSourceOffer = 0;
constexpr std::uint32_t kSourceDestroy = 1;

/// Those that differ in the core protocol, which has none for destroying the manager.
struct Requests {
    std::optional<std::uint32_t> managerDestroy;
    std::uint32_t deviceSetSelection;
    std::uint32_t deviceDestroy;
    std::uint32_t offerReceive;
    std::uint32_t offerDestroy;
};
constexpr Requests kDataControlRequests = {
    .managerDestroy = 2, .deviceSetSelection = 0, .deviceDestroy = 1, .offerReceive = 0, .offerDestroy = 1};
constexpr Requests kCoreRequests = {
    .managerDestroy = std::nullopt, .deviceSetSelection = 1, .deviceDestroy = 2, .offerReceive = 1, .offerDestroy = 2};

constexpr const Requests& requestsOf(Protocol protocol) {
    return protocol == Protocol::core ? kCoreRequests : kDataControlRequests;
}

// Version 1 of data control and version 2 of the core protocol have everything that is needed here.
constexpr int kDataControlVersion = 1;
constexpr int kCoreVersion = 2;

/// A manager, and what it makes.
struct Interfaces {
    const wl_interface& manager;
    const wl_interface& device;
    const wl_interface& source;
};

/// The description of data control under one of its names, in the form that libwayland wants: a letter for each
/// argument ("n" a new object, "o" an object, "?" one that may be missing, "s" a string, "h" a descriptor), and its
/// interface, if it has one.
class Description : NonCopyable {
public:
    explicit Description(const std::string& prefix)
        : managerName_(prefix + "manager_v1"),
          deviceName_(prefix + "device_v1"),
          sourceName_(prefix + "source_v1"),
          offerName_(prefix + "offer_v1") {}
    ~Description() = default;

    Interfaces interfaces() const noexcept { return {manager_, device_, source_}; }

private:
    template <std::size_t kRequestCount, std::size_t kEventCount>
    static wl_interface interface(const std::string& name, const std::array<wl_message, kRequestCount>& requests,
                                  const std::array<wl_message, kEventCount>& events) {
        return {name.c_str(),    kDataControlVersion, static_cast<int>(kRequestCount),
                requests.data(), int{kEventCount},    events.data()};
    }

    std::string managerName_;
    std::string deviceName_;
    std::string sourceName_;
    std::string offerName_;

    std::array<const wl_interface*, 2> none_{};
    std::array<const wl_interface*, 1> ofSource_{&source_};
    std::array<const wl_interface*, 1> ofOffer_{&offer_};
    std::array<const wl_interface*, 2> ofDeviceAndSeat_{&device_, &wl_seat_interface};

    std::array<wl_message, 3> managerRequests_{{{"create_data_source", "n", ofSource_.data()},
                                                {"get_data_device", "no", ofDeviceAndSeat_.data()},
                                                {"destroy", "", none_.data()}}};
    std::array<wl_message, 3> deviceRequests_{{{"set_selection", "?o", ofSource_.data()},
                                               {"destroy", "", none_.data()},
                                               {"set_primary_selection", "?o", ofSource_.data()}}};
    std::array<wl_message, 4> deviceEvents_{{{"data_offer", "n", ofOffer_.data()},
                                             {"selection", "?o", ofOffer_.data()},
                                             {"finished", "", none_.data()},
                                             {"primary_selection", "?o", ofOffer_.data()}}};
    std::array<wl_message, 2> sourceRequests_{{{"offer", "s", none_.data()}, {"destroy", "", none_.data()}}};
    std::array<wl_message, 2> sourceEvents_{{{"send", "sh", none_.data()}, {"cancelled", "", none_.data()}}};
    std::array<wl_message, 2> offerRequests_{{{"receive", "sh", none_.data()}, {"destroy", "", none_.data()}}};
    std::array<wl_message, 1> offerEvents_{{{"offer", "s", none_.data()}}};

    wl_interface manager_{interface(managerName_, managerRequests_, std::array<wl_message, 0>{})};
    wl_interface device_{interface(deviceName_, deviceRequests_, deviceEvents_)};
    wl_interface source_{interface(sourceName_, sourceRequests_, sourceEvents_)};
    wl_interface offer_{interface(offerName_, offerRequests_, offerEvents_)};
};

Interfaces interfacesOf(Protocol protocol) {
    static const Description kExt("ext_data_control_");
    static const Description kZwlr("zwlr_data_control_");
    switch (protocol) {
        case Protocol::extDataControl: return kExt.interfaces();
        case Protocol::zwlrDataControl: return kZwlr.interfaces();
        case Protocol::core: break;
    }
    return {wl_data_device_manager_interface, wl_data_device_interface, wl_data_source_interface};
}

/// An object that has no destroy request is destroyed on this side only.
void destroy(wl_proxy* proxy, std::optional<std::uint32_t> request) {
    request ? WaylandRequests::destroy(proxy, *request) : wl_proxy_destroy(proxy);
}

}  // namespace

std::string_view managerName(Protocol protocol) noexcept {
    return interfacesOf(protocol).manager.name;
}

std::uint32_t versionOf(Protocol protocol) noexcept {
    return protocol == Protocol::core ? kCoreVersion : kDataControlVersion;
}

// --- Offer -----------------------------------------------------------------------------------------------------------

Offer::Offer(wl_proxy* proxy, Protocol protocol) : proxy_(proxy), protocol_(protocol) {
    // Version 2 of the core protocol has no other event, either.
    static const std::array kListener = {handler(&Offer::onType)};
    listen(proxy_, kListener, this);
}

Offer::~Offer() {
    destroy(proxy_, requestsOf(protocol_).offerDestroy);
}

void Offer::receive(const std::string& type, int descriptor) {
    send(proxy_, requestsOf(protocol_).offerReceive, type.c_str(), descriptor);
}

void Offer::onType(void* self, wl_proxy* /*proxy*/, const char* type) {
    static_cast<Offer*>(self)->types_.emplace_back(type);
}

// --- Source ----------------------------------------------------------------------------------------------------------

Source::Source(wl_proxy* proxy, Protocol protocol, Events events) : proxy_(proxy), events_(std::move(events)) {
    static const std::array kListener = {handler(&Source::onSend), handler(&Source::onCancelled)};
    static const std::array kCoreListener = {handler(&Source::onTarget), handler(&Source::onSend),
                                             handler(&Source::onCancelled)};
    protocol == Protocol::core ? listen(proxy_, kCoreListener, this) : listen(proxy_, kListener, this);
}

Source::~Source() {
    destroy(proxy_, kSourceDestroy);
}

void Source::offer(const std::string& type) {
    send(proxy_, kSourceOffer, type.c_str());
}

void Source::onSend(void* self, wl_proxy* /*proxy*/, const char* type, std::int32_t descriptor) {
    static_cast<Source*>(self)->events_.send(type, descriptor);
}

void Source::onCancelled(void* self, wl_proxy* /*proxy*/) {
    static_cast<Source*>(self)->events_.cancelled();
}

/// Our text is never dragged.
void Source::onTarget(void* /*self*/, wl_proxy* /*proxy*/, const char* /*type*/) {}

// --- Device ----------------------------------------------------------------------------------------------------------

Device::Device(wl_proxy* proxy, Protocol protocol, Events events)
    : proxy_(proxy), protocol_(protocol), events_(std::move(events)) {
    static const std::array kListener = {handler(&Device::onOffer), handler(&Device::onSelection),
                                         handler(&Device::onFinished), handler(&Device::onPrimarySelection)};
    static const std::array kCoreListener = {handler(&Device::onOffer),     handler(&Device::onDragEnter),
                                             handler(&Device::onDragLeave), handler(&Device::onDragMotion),
                                             handler(&Device::onDrop),      handler(&Device::onSelection)};
    protocol == Protocol::core ? listen(proxy_, kCoreListener, this) : listen(proxy_, kListener, this);
}

Device::~Device() {
    isRetired_ ? wl_proxy_destroy(proxy_) : destroy(proxy_, requestsOf(protocol_).deviceDestroy);
}

void Device::retire() {
    if (!std::exchange(isRetired_, true)) send(proxy_, requestsOf(protocol_).deviceDestroy);
}

void Device::setSelection(const Source* source, std::uint32_t serial) {
    const std::uint32_t request = requestsOf(protocol_).deviceSetSelection;
    wl_proxy* const content = source != nullptr ? source->proxy() : nullptr;
    protocol_ == Protocol::core ? send(proxy_, request, content, serial) : send(proxy_, request, content);
}

void Device::onOffer(void* self, wl_proxy* /*proxy*/, wl_proxy* offer) {
    auto* const device = static_cast<Device*>(self);
    device->announced_.push_back(std::make_shared<Offer>(offer, device->protocol_));
}

void Device::onSelection(void* self, wl_proxy* /*proxy*/, wl_proxy* offer) {
    auto* const device = static_cast<Device*>(self);
    device->events_.selection(device->take(offer));
}

void Device::onFinished(void* self, wl_proxy* /*proxy*/) {
    static_cast<Device*>(self)->events_.finished();
}

/// Text that is selected rather than copied is none of our business.
void Device::onPrimarySelection(void* self, wl_proxy* /*proxy*/, wl_proxy* offer) {
    static_cast<Device*>(self)->take(offer);
}

/// What is dragged over the program's windows is kept as long as it is there, and otherwise ignored.
// NOLINTNEXTLINE(readability-function-size): the protocol has that many arguments
void Device::onDragEnter(void* self, wl_proxy* /*proxy*/, std::uint32_t /*serial*/, wl_proxy* /*surface*/,
                         wl_fixed_t /*x*/, wl_fixed_t /*y*/, wl_proxy* offer) {
    auto* const device = static_cast<Device*>(self);
    device->dragged_ = device->take(offer);
}

void Device::onDragLeave(void* self, wl_proxy* /*proxy*/) {
    static_cast<Device*>(self)->dragged_.reset();
}

void Device::onDragMotion(void* /*self*/, wl_proxy* /*proxy*/, std::uint32_t /*time*/, wl_fixed_t /*x*/,
                          wl_fixed_t /*y*/) {}

void Device::onDrop(void* /*self*/, wl_proxy* /*proxy*/) {}

/// Takes the announced offer with this proxy off the list; null if there is none.
std::shared_ptr<Offer> Device::take(wl_proxy* offer) {
    const auto found = std::ranges::find(announced_, offer, [](const auto& each) { return each->proxy(); });
    if (found == announced_.end()) return nullptr;
    std::shared_ptr<Offer> taken = std::move(*found);
    announced_.erase(found);
    return taken;
}

// --- Manager ---------------------------------------------------------------------------------------------------------

Manager::Manager(wl_proxy* registry, std::uint32_t name, Protocol protocol)
    : protocol_(protocol),
      proxy_(reinterpret_cast<wl_proxy*>(wl_registry_bind(reinterpret_cast<wl_registry*>(registry), name,
                                                          &interfacesOf(protocol).manager, versionOf(protocol)))) {}

Manager::~Manager() {
    destroy(proxy_, requestsOf(protocol_).managerDestroy);
}

std::unique_ptr<Source> Manager::createSource(Source::Events events) {
    wl_proxy* const source = create(proxy_, kManagerCreateSource, interfacesOf(protocol_).source);
    return std::make_unique<Source>(source, protocol_, std::move(events));
}

std::unique_ptr<Device> Manager::deviceOf(wl_proxy* seat, Device::Events events) {
    wl_proxy* const device = create(proxy_, kManagerGetDevice, interfacesOf(protocol_).device, seat);
    return std::make_unique<Device>(device, protocol_, std::move(events));
}

}  // namespace ravlin::WaylandSelection
