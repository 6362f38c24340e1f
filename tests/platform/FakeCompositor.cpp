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

constexpr char kDone = 'd';

/// What is on a clipboard: a text of the compositor's, or a client's source.
struct Content {
    std::string text;
    wl_resource* source = nullptr;
    std::vector<std::string> types = {"text/plain;charset=utf-8"};
};

struct Seat {
    wl_global* global = nullptr;
    std::list<wl_resource*> devices = {};
    std::shared_ptr<Content> content = std::make_shared<Content>(Content{.text = "text"});
};

template <class Type>
Type* dataOf(wl_resource* resource) {
    return static_cast<Type*>(wl_resource_get_user_data(resource));
}

void destroyResource(wl_client* /*client*/, wl_resource* resource) {
    wl_resource_destroy(resource);
}

// ---- Offers --------------------------------------------------------------------------------------------------------

void receive(wl_client* /*client*/, wl_resource* offer, const char* type, std::int32_t descriptor) {
    const Content& content = **dataOf<std::shared_ptr<Content>>(offer);
    if (content.source != nullptr) {
        ext_data_control_source_v1_send_send(content.source, type, descriptor);
    } else if (write(descriptor, content.text.data(), content.text.size()) < 0) {
        _exit(1);
    }
    close(descriptor);
}

constexpr struct ext_data_control_offer_v1_interface kOffer = {.receive = receive, .destroy = destroyResource};

wl_resource* sendOffer(wl_resource* device, const std::shared_ptr<Content>& content) {
    wl_resource* const offer =
        wl_resource_create(wl_resource_get_client(device), &ext_data_control_offer_v1_interface, 1, 0);
    wl_resource_set_implementation(offer, &kOffer, new std::shared_ptr<Content>(content),
                                   [](wl_resource* gone) { delete dataOf<std::shared_ptr<Content>>(gone); });
    ext_data_control_device_v1_send_data_offer(device, offer);
    for (const std::string& type : content->types) ext_data_control_offer_v1_send_offer(offer, type.c_str());
    return offer;
}

void announce(wl_resource* device, const Seat& seat) {
    ext_data_control_device_v1_send_selection(device, seat.content ? sendOffer(device, seat.content) : nullptr);
}

// ---- Sources -------------------------------------------------------------------------------------------------------

constexpr struct ext_data_control_source_v1_interface kSource = {
    .offer = [](wl_client* /*client*/, wl_resource* source,
                const char* type) { (*dataOf<std::shared_ptr<Content>>(source))->types.emplace_back(type); },
    .destroy = destroyResource};

void createSource(wl_client* client, wl_resource* /*manager*/, std::uint32_t id) {
    wl_resource* const source = wl_resource_create(client, &ext_data_control_source_v1_interface, 1, id);
    auto content = std::make_shared<Content>(Content{.text = "", .source = source, .types = {}});
    wl_resource_set_implementation(source, &kSource, new std::shared_ptr<Content>(content), [](wl_resource* gone) {
        auto* const contentOfGone = dataOf<std::shared_ptr<Content>>(gone);
        (*contentOfGone)->source = nullptr;
        delete contentOfGone;
    });
}

// ---- Devices -------------------------------------------------------------------------------------------------------

void setSelection(wl_client* /*client*/, wl_resource* device, wl_resource* source) {
    Seat* const seat = dataOf<Seat>(device);
    if (seat == nullptr) return;
    if (seat->content && seat->content->source != nullptr && seat->content->source != source) {
        ext_data_control_source_v1_send_cancelled(seat->content->source);
    }
    seat->content = source != nullptr ? *dataOf<std::shared_ptr<Content>>(source) : nullptr;
    for (wl_resource* const each : seat->devices) announce(each, *seat);
}

constexpr struct ext_data_control_device_v1_interface kDevice = {
    .set_selection = setSelection, .destroy = destroyResource, .set_primary_selection = nullptr};

void getDevice(wl_client* client, wl_resource* /*manager*/, std::uint32_t id, wl_resource* seatResource) {
    Seat* const seat = dataOf<Seat>(seatResource);
    wl_resource* const device = wl_resource_create(client, &ext_data_control_device_v1_interface, 1, id);
    wl_resource_set_implementation(device, &kDevice, seat, [](wl_resource* gone) {
        if (Seat* const seatOfGone = dataOf<Seat>(gone)) seatOfGone->devices.remove(gone);
    });
    seat->devices.push_back(device);
    announce(device, *seat);
}

constexpr struct ext_data_control_manager_v1_interface kManager = {
    .create_data_source = createSource, .get_data_device = getDevice, .destroy = destroyResource};

// ---- The compositor ------------------------------------------------------------------------------------------------

class Compositor {
public:
    Compositor(FakeCompositor::Plan plan, const std::string& path, int commands, int replies)
        : display_(wl_display_create()), commands_(commands), replies_(replies) {
        if (plan.hasDataControl) {
            wl_global_create(display_, &ext_data_control_manager_v1_interface, 1, nullptr,
                             [](wl_client* client, void* /*data*/, std::uint32_t /*version*/, std::uint32_t id) {
                                 wl_resource* const manager =
                                     wl_resource_create(client, &ext_data_control_manager_v1_interface, 1, id);
                                 wl_resource_set_implementation(manager, &kManager, nullptr, nullptr);
                             });
        }
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
        Seat& seat = seats_.emplace_back();
        seat.global = wl_global_create(display_, &wl_seat_interface, 1, &seat,
                                       [](wl_client* client, void* data, std::uint32_t /*version*/, std::uint32_t id) {
                                           wl_resource* const resource =
                                               wl_resource_create(client, &wl_seat_interface, 1, id);
                                           wl_resource_set_implementation(resource, nullptr, data, nullptr);
                                       });
    }

    void removeSeat() {
        Seat& seat = seats_.front();
        for (wl_resource* const each : seat.devices) {
            ext_data_control_device_v1_send_finished(each);
            wl_resource_set_user_data(each, nullptr);
        }
        wl_global_destroy(seat.global);
        seats_.pop_front();
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
            default: break;
        }
        wl_display_flush_clients(display_);
        reply();
    }

    void reply() const {
        if (write(replies_, &kDone, 1) != 1) _exit(1);
    }

    wl_display* display_;
    int commands_;
    int replies_;
    std::list<Seat> seats_;
};

}  // namespace

FakeCompositor::FakeCompositor(Plan plan) {
    static int count = 0;
    display_ = std::string(getenv("XDG_RUNTIME_DIR")) + "/fake-" + std::to_string(++count);
    std::array<int, 2> commands = {};
    std::array<int, 2> replies = {};
    if (pipe2(commands.data(), O_CLOEXEC) != 0 || pipe2(replies.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipes");
    }
    process_ = std::make_unique<Process>([&] {
        close(commands[1]);
        close(replies[0]);
        Compositor(plan, display_, commands[0], replies[1]).run();
    });
    close(commands[0]);
    close(replies[1]);
    commands_ = commands[1];
    replies_ = replies[0];
    awaitReply();
}

FakeCompositor::~FakeCompositor() {
    close(commands_);
    close(replies_);
}

void FakeCompositor::command(char letter) {
    if (write(commands_, &letter, 1) != 1) throw std::runtime_error("the compositor takes no commands");
    awaitReply();
}

void FakeCompositor::awaitReply() {
    char letter = 0;
    if (read(replies_, &letter, 1) != 1) throw std::runtime_error("the compositor has gone");
}

}  // namespace ravlin::tests
