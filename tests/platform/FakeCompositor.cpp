#include "tests/platform/FakeCompositor.h"

#include <wayland-server.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <list>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "ext-data-control-server.h"
#include <fcntl.h>
#include <unistd.h>

namespace ravlin::tests {
namespace {

struct Seat;

/// What is on a clipboard: the compositor's own text, or a client's source.
struct Content {
    std::string text;
    wl_resource* source = nullptr;
    std::vector<std::string> types = {"text/plain;charset=utf-8"};
    Seat* seat = nullptr;
};

struct Seat {
    wl_display* display = nullptr;
    bool hasKeyboard = true;
    wl_global* global = nullptr;
    std::list<wl_resource*> resources = {};
    std::list<wl_resource*> devices = {};      // of data control
    std::list<wl_resource*> coreDevices = {};  // of the core protocol
    std::list<wl_resource*> keyboards = {};
    std::shared_ptr<Content> content = std::make_shared<Content>(Content{.text = "text"});
    bool hasFocus = false;
    std::uint32_t selectionSerial = 0;
};

template <class Type>
Type* dataOf(wl_resource* resource) {
    return static_cast<Type*>(wl_resource_get_user_data(resource));
}

void destroyResource(wl_client* /*client*/, wl_resource* resource) {
    wl_resource_destroy(resource);
}

/// Makes an object that is in one of its seat's lists until its end.
template <std::list<wl_resource*> Seat::*kList>
wl_resource* createListed(wl_client* client, const wl_interface& interface, std::uint32_t id, const void* requests,
                          Seat& seat) {
    const int version = &interface == &wl_data_device_interface ? 2 : 1;
    wl_resource* const resource = wl_resource_create(client, &interface, version, id);
    wl_resource_set_implementation(resource, requests, &seat, [](wl_resource* gone) {
        if (Seat* const seatOfGone = dataOf<Seat>(gone)) (seatOfGone->*kList).remove(gone);
    });
    (seat.*kList).push_back(resource);
    return resource;
}

// ---- Offers --------------------------------------------------------------------------------------------------------

bool isCore(wl_resource* resource) {
    return std::string_view(wl_resource_get_class(resource)).starts_with("wl_");
}

void receive(wl_client* /*client*/, wl_resource* offer, const char* type, std::int32_t descriptor) {
    const Content& content = **dataOf<std::shared_ptr<Content>>(offer);
    if (content.source != nullptr) {
        const auto send = isCore(content.source) ? wl_data_source_send_send : ext_data_control_source_v1_send_send;
        send(content.source, type, descriptor);
    } else if (write(descriptor, content.text.data(), content.text.size()) < 0) {
        _exit(1);
    }
    close(descriptor);
}

constexpr struct ext_data_control_offer_v1_interface kOffer = {.receive = receive, .destroy = destroyResource};
constexpr struct wl_data_offer_interface kCoreOffer = {
    .accept = nullptr, .receive = receive, .destroy = destroyResource, .finish = nullptr, .set_actions = nullptr};

wl_resource* createOffer(wl_resource* device, const wl_interface& interface, const void* requests,
                         const std::shared_ptr<Content>& content) {
    wl_resource* const offer = wl_resource_create(wl_resource_get_client(device), &interface, 1, 0);
    wl_resource_set_implementation(offer, requests, new std::shared_ptr<Content>(content),
                                   [](wl_resource* gone) { delete dataOf<std::shared_ptr<Content>>(gone); });
    return offer;
}

wl_resource* sendOffer(wl_resource* device, const std::shared_ptr<Content>& content) {
    wl_resource* const offer = createOffer(device, ext_data_control_offer_v1_interface, &kOffer, content);
    ext_data_control_device_v1_send_data_offer(device, offer);
    for (const std::string& type : content->types) ext_data_control_offer_v1_send_offer(offer, type.c_str());
    return offer;
}

wl_resource* sendCoreOffer(wl_resource* device, const std::shared_ptr<Content>& content) {
    wl_resource* const offer = createOffer(device, wl_data_offer_interface, &kCoreOffer, content);
    wl_data_device_send_data_offer(device, offer);
    for (const std::string& type : content->types) wl_data_offer_send_offer(offer, type.c_str());
    return offer;
}

void announce(wl_resource* device, const Seat& seat) {
    ext_data_control_device_v1_send_selection(device, seat.content ? sendOffer(device, seat.content) : nullptr);
}

void announceToCore(wl_resource* device, const Seat& seat) {
    wl_data_device_send_selection(device, seat.content ? sendCoreOffer(device, seat.content) : nullptr);
}

// ---- The clipboard -------------------------------------------------------------------------------------------------

void setContent(Seat& seat, std::shared_ptr<Content> content) {
    if (!seat.content && !content) return;
    seat.content = std::move(content);
    if (seat.content) seat.content->seat = &seat;
    for (wl_resource* const each : seat.devices) announce(each, seat);
    if (!seat.hasFocus) return;
    for (wl_resource* const each : seat.coreDevices) announceToCore(each, seat);
}

void copy(Seat& seat, wl_resource* source) {
    if (seat.content && seat.content->source != nullptr && seat.content->source != source) {
        const auto cancel =
            isCore(seat.content->source) ? wl_data_source_send_cancelled : ext_data_control_source_v1_send_cancelled;
        cancel(seat.content->source);
    }
    setContent(seat, source != nullptr ? *dataOf<std::shared_ptr<Content>>(source) : nullptr);
}

// ---- Sources -------------------------------------------------------------------------------------------------------

void addType(wl_client* /*client*/, wl_resource* source, const char* type) {
    (*dataOf<std::shared_ptr<Content>>(source))->types.emplace_back(type);
}

constexpr struct ext_data_control_source_v1_interface kSource = {.offer = addType, .destroy = destroyResource};
constexpr struct wl_data_source_interface kCoreSource = {
    .offer = addType, .destroy = destroyResource, .set_actions = nullptr};

/// The content goes with its source.
void forgetSource(wl_resource* gone) {
    auto* const holder = dataOf<std::shared_ptr<Content>>(gone);
    const std::shared_ptr<Content> content = *holder;
    delete holder;
    content->source = nullptr;
    if (content->seat != nullptr && content->seat->content == content) setContent(*content->seat, nullptr);
}

template <const auto& kInterface, const auto& kRequests>
void createSource(wl_client* client, wl_resource* /*manager*/, std::uint32_t id) {
    wl_resource* const source = wl_resource_create(client, &kInterface, 1, id);
    auto content = std::make_shared<Content>(Content{.text = "", .source = source, .types = {}});
    wl_resource_set_implementation(source, &kRequests, new std::shared_ptr<Content>(content), forgetSource);
}

// ---- Devices -------------------------------------------------------------------------------------------------------

void setSelection(wl_client* /*client*/, wl_resource* device, wl_resource* source) {
    Seat* const seat = dataOf<Seat>(device);
    if (seat == nullptr) return;
    seat->selectionSerial = wl_display_next_serial(seat->display);
    copy(*seat, source);
}

void setCoreSelection(wl_client* /*client*/, wl_resource* device, wl_resource* source, std::uint32_t serial) {
    Seat* const seat = dataOf<Seat>(device);
    if (seat == nullptr || !seat->hasFocus || serial <= seat->selectionSerial) return;
    seat->selectionSerial = serial;
    copy(*seat, source);
}

constexpr struct ext_data_control_device_v1_interface kDevice = {
    .set_selection = setSelection, .destroy = destroyResource, .set_primary_selection = nullptr};
constexpr struct wl_data_device_interface kCoreDevice = {
    .start_drag = nullptr, .set_selection = setCoreSelection, .release = destroyResource};

void getDevice(wl_client* client, wl_resource* /*manager*/, std::uint32_t id, wl_resource* seatResource) {
    Seat& seat = *dataOf<Seat>(seatResource);
    announce(createListed<&Seat::devices>(client, ext_data_control_device_v1_interface, id, &kDevice, seat), seat);
}

void getCoreDevice(wl_client* client, wl_resource* /*manager*/, std::uint32_t id, wl_resource* seatResource) {
    Seat& seat = *dataOf<Seat>(seatResource);
    wl_resource* const device =
        createListed<&Seat::coreDevices>(client, wl_data_device_interface, id, &kCoreDevice, seat);
    if (seat.hasFocus) announceToCore(device, seat);
}

constexpr struct ext_data_control_manager_v1_interface kManager = {
    .create_data_source = createSource<ext_data_control_source_v1_interface, kSource>,
    .get_data_device = getDevice,
    .destroy = destroyResource};
constexpr struct wl_data_device_manager_interface kCoreManager = {
    .create_data_source = createSource<wl_data_source_interface, kCoreSource>, .get_data_device = getCoreDevice};

// ---- Windows and their input ---------------------------------------------------------------------------------------

std::list<wl_resource*>& surfaces() {
    static std::list<wl_resource*> all;
    return all;
}

void createSurface(wl_client* client, wl_resource* /*compositor*/, std::uint32_t id) {
    wl_resource* const surface = wl_resource_create(client, &wl_surface_interface, 1, id);
    wl_resource_set_implementation(surface, nullptr, nullptr, [](wl_resource* gone) { surfaces().remove(gone); });
    surfaces().push_back(surface);
}

constexpr struct wl_compositor_interface kCompositor = {.create_surface = createSurface, .create_region = nullptr};

wl_resource* surfaceOf(wl_resource* keyboard) {
    const auto found = std::ranges::find(surfaces(), wl_resource_get_client(keyboard), wl_resource_get_client);
    return found != surfaces().end() ? *found : nullptr;
}

void enter(wl_resource* keyboard, const Seat& seat) {
    wl_resource* const surface = surfaceOf(keyboard);
    if (surface == nullptr) return;
    wl_array none = {};
    wl_keyboard_send_enter(keyboard, wl_display_next_serial(seat.display), surface, &none);
}

void getKeyboard(wl_client* client, wl_resource* seatResource, std::uint32_t id) {
    Seat& seat = *dataOf<Seat>(seatResource);
    wl_resource* const keyboard = createListed<&Seat::keyboards>(client, wl_keyboard_interface, id, nullptr, seat);
    const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
    wl_keyboard_send_keymap(keyboard, WL_KEYBOARD_KEYMAP_FORMAT_NO_KEYMAP, nothing, 0);
    close(nothing);
    if (seat.hasFocus) enter(keyboard, seat);
}

constexpr struct wl_seat_interface kSeat = {
    .get_pointer = nullptr, .get_keyboard = getKeyboard, .get_touch = nullptr, .release = nullptr};

void sendCapabilities(wl_resource* resource, const Seat& seat) {
    wl_seat_send_capabilities(resource, seat.hasKeyboard ? WL_SEAT_CAPABILITY_KEYBOARD : 0);
}

template <const auto& kInterface, const auto& kRequests>
void offerGlobal(wl_display* display, int version = 1) {
    wl_global_create(display, &kInterface, version, nullptr,
                     [](wl_client* client, void* /*data*/, std::uint32_t bound, std::uint32_t id) {
                         wl_resource* const resource =
                             wl_resource_create(client, &kInterface, static_cast<int>(bound), id);
                         wl_resource_set_implementation(resource, &kRequests, nullptr, nullptr);
                     });
}

// ---- The compositor ------------------------------------------------------------------------------------------------

class Compositor {
public:
    Compositor(FakeCompositor::Plan plan, const std::string& path, int commands, int replies)
        : hasKeyboard_(plan.hasKeyboard), display_(wl_display_create()), commands_(commands), replies_(replies) {
        offerGlobal<wl_compositor_interface, kCompositor>(display_);
        if (plan.hasDataControl) offerGlobal<ext_data_control_manager_v1_interface, kManager>(display_);
        if (plan.hasCoreClipboard) offerGlobal<wl_data_device_manager_interface, kCoreManager>(display_, 2);
        if (plan.hasSeat) addSeat();
        if (wl_display_add_socket(display_, path.c_str()) != 0) _exit(1);
        wl_event_loop_add_fd(
            wl_display_get_event_loop(display_), commands_, WL_EVENT_READABLE,
            [](int /*descriptor*/, std::uint32_t mask, void* self) {
                static_cast<Compositor*>(self)->obey(mask);
                return 0;
            },
            this);
        reply();
    }

    void run() { wl_display_run(display_); }

private:
    void addSeat() {
        Seat& seat = seats_.emplace_back(Seat{.display = display_, .hasKeyboard = hasKeyboard_});
        seat.content->seat = &seat;
        seat.global = wl_global_create(
            display_, &wl_seat_interface, 1, &seat,
            [](wl_client* client, void* data, std::uint32_t /*version*/, std::uint32_t id) {
                Seat& bound = *static_cast<Seat*>(data);
                sendCapabilities(createListed<&Seat::resources>(client, wl_seat_interface, id, &kSeat, bound), bound);
            });
    }

    void removeSeat() {
        Seat& seat = seats_.front();
        for (wl_resource* const each : seat.devices) ext_data_control_device_v1_send_finished(each);
        for (const auto& list : {seat.resources, seat.devices, seat.coreDevices, seat.keyboards}) {
            for (wl_resource* const each : list) wl_resource_set_user_data(each, nullptr);
        }
        if (seat.content) seat.content->seat = nullptr;
        wl_global_destroy(seat.global);
        seats_.pop_front();
    }

    void giveFocus() {
        Seat& seat = seats_.front();
        seat.hasFocus = true;
        for (wl_resource* const each : seat.coreDevices) announceToCore(each, seat);
        for (wl_resource* const each : seat.keyboards) enter(each, seat);
    }

    void takeFocus() {
        Seat& seat = seats_.front();
        seat.hasFocus = false;
        for (wl_resource* const each : seat.keyboards) {
            if (wl_resource* const surface = surfaceOf(each)) {
                wl_keyboard_send_leave(each, wl_display_next_serial(display_), surface);
            }
        }
    }

    void pressKey() {
        for (wl_resource* const each : seats_.front().keyboards) {
            wl_keyboard_send_key(each, wl_display_next_serial(display_), 0, 1, WL_KEYBOARD_KEY_STATE_PRESSED);
        }
    }

    void setKeyboard(bool isThere) {
        seats_.front().hasKeyboard = isThere;
        for (wl_resource* const each : seats_.front().resources) sendCapabilities(each, seats_.front());
    }

    void select() {
        for (wl_resource* const each : seats_.front().devices) {
            const auto selected = std::make_shared<Content>(Content{.text = "selected"});
            ext_data_control_device_v1_send_primary_selection(each, sendOffer(each, selected));
        }
    }

    void obey(std::uint32_t mask) {
        char letter = 0;
        if ((mask & WL_EVENT_HANGUP) != 0 || read(commands_, &letter, 1) != 1) {
            wl_display_terminate(display_);
            return;
        }
        switch (letter) {
            case '+': addSeat(); break;
            case '-': removeSeat(); break;
            case 'p': select(); break;
            case 'f': giveFocus(); break;
            case 'u': takeFocus(); break;
            case 'k': pressKey(); break;
            case 'K': setKeyboard(true); break;
            case 'N': setKeyboard(false); break;
            default: break;
        }
        wl_display_flush_clients(display_);
        reply();
    }

    void reply() const {
        if (write(replies_, &ForeignProgram::kObeyed, 1) != 1) _exit(1);
    }

    bool hasKeyboard_;
    wl_display* display_;
    int commands_;
    int replies_;
    std::list<Seat> seats_;
};

std::string nextDisplay() {
    static int count = 0;
    return std::string(getenv("XDG_RUNTIME_DIR")) + "/fake-" + std::to_string(++count);
}

}  // namespace

FakeCompositor::FakeCompositor(const Plan& plan) : FakeCompositor(plan, nextDisplay()) {}

FakeCompositor::FakeCompositor(const Plan& plan, const std::string& display)
    : ForeignProgram([&](int commands, int replies) { Compositor(plan, display, commands, replies).run(); }),
      display_(display) {}

}  // namespace ravlin::tests
