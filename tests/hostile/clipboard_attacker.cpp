// clipboard_attacker ATTACK TARGET COUNT: a program that reads the clipboard, and wrongs its owner. Writes "done" when
// it has done so, and stays until its input ends. The attacks:
//
//   x11-vanish      asks from COUNT windows, each of which is gone by the time that the request arrives
//   x11-stall       asks from COUNT windows, and takes nothing
//   x11-flood       asks COUNT times in a row, and looks at no answer
//   wayland-stall   asks COUNT times, with a pipe for each answer, and takes nothing
//   wayland-burst   asks COUNT times at once

#include "Platform/Clipboard/Descriptor.h"
#include "Platform/Clipboard/Wayland/WaylandConnection.h"
#include "Platform/Clipboard/Wayland/WaylandSelection.h"

#include <wayland-client-protocol.h>
#include <xcb/xcb.h>

#include <array>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace {

using namespace ravlin;

[[noreturn]] void fail(const std::string& why) {
    std::cerr << "clipboard_attacker: " << why << std::endl;
    std::exit(1);
}

// ---- X11 -----------------------------------------------------------------------------------------------------------

class X11Reader {
public:
    X11Reader() : connection_(xcb_connect(nullptr, nullptr)) {
        if (xcb_connection_has_error(connection_) != 0) fail("no display");
        clipboard_ = atom("CLIPBOARD");
        property_ = atom("ANSWER");
    }
    X11Reader(const X11Reader&) = delete;
    X11Reader& operator=(const X11Reader&) = delete;
    ~X11Reader() { xcb_disconnect(connection_); }

    xcb_atom_t atom(std::string_view name) {
        const auto cookie = xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data());
        const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
            xcb_intern_atom_reply(connection_, cookie, nullptr), &std::free);
        return reply->atom;
    }

    xcb_window_t createWindow() {
        const xcb_window_t window = xcb_generate_id(connection_);
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
        xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                          XCB_COPY_FROM_PARENT, 0, nullptr);
        return window;
    }

    void ask(xcb_window_t window, xcb_atom_t target) {
        xcb_convert_selection(connection_, window, clipboard_, target, property_, XCB_CURRENT_TIME);
    }

    void destroy(xcb_window_t window) { xcb_destroy_window(connection_, window); }

    void synchronise() { std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr)); }

private:
    xcb_connection_t* connection_;
    xcb_atom_t clipboard_ = XCB_ATOM_NONE;
    xcb_atom_t property_ = XCB_ATOM_NONE;
};

void attackOnX11(const std::function<void(X11Reader&, xcb_atom_t target)>& once, const std::string& target, int count) {
    static X11Reader reader;  // until the end of the program
    const xcb_atom_t atom = reader.atom(target);
    for (int i = 0; i < count; ++i) once(reader, atom);
    reader.synchronise();
}

void vanish(const std::string& target, int count) {
    attackOnX11(
        [](X11Reader& reader, xcb_atom_t atom) {
            const xcb_window_t window = reader.createWindow();
            reader.ask(window, atom);
            reader.destroy(window);
        },
        target, count);
}

void stallOnX11(const std::string& target, int count) {
    attackOnX11([](X11Reader& reader, xcb_atom_t atom) { reader.ask(reader.createWindow(), atom); }, target, count);
}

void flood(const std::string& target, int count) {
    std::optional<xcb_window_t> window;
    attackOnX11(
        [&window](X11Reader& reader, xcb_atom_t atom) {
            if (!window) window = reader.createWindow();
            reader.ask(*window, atom);
        },
        target, count);
}

// ---- Wayland -------------------------------------------------------------------------------------------------------

class WaylandReader {
public:
    WaylandReader() {
        std::string whyNot;
        connection_ = WaylandConnection::open(
            nullptr,
            {.appeared = [this](std::uint32_t name, std::string_view interface,
                                std::uint32_t /*version*/) { globals_[std::string(interface)] = name; },
             .removed = [](std::uint32_t /*name*/) {}},
            whyNot);
        if (!connection_ || !connection_->synchronise()) fail("no compositor");
        const auto manager = globals_.find(std::string(managerName(kProtocol)));
        if (manager == globals_.end()) fail("no data control");
        manager_ = std::make_unique<WaylandSelection::Manager>(connection_->registry(), manager->second, kProtocol);
        auto* const registry = reinterpret_cast<wl_registry*>(connection_->registry());
        auto* const seat = wl_registry_bind(registry, globals_["wl_seat"], &wl_seat_interface, 1);
        device_ = manager_->deviceOf(
            static_cast<wl_proxy*>(seat),
            {.selection = [this](std::shared_ptr<WaylandSelection::Offer> offer) { offer_ = std::move(offer); },
             .finished = [] {}});
        if (!connection_->synchronise() || !offer_) fail("nothing is on the clipboard");
    }

    void ask(const std::string& target, int pipe) { offer_->receive(target, pipe); }
    void synchronise() { connection_->synchronise(); }

private:
    static constexpr auto kProtocol = WaylandSelection::Protocol::zwlrDataControl;

    std::map<std::string, std::uint32_t> globals_;
    std::unique_ptr<WaylandConnection> connection_;
    std::unique_ptr<WaylandSelection::Manager> manager_;
    std::unique_ptr<WaylandSelection::Device> device_;
    std::shared_ptr<WaylandSelection::Offer> offer_;
};

std::pair<Descriptor, Descriptor> createPipe() {
    std::array<int, 2> ends = {-1, -1};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) fail("no pipe");
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

void stallOnWayland(const std::string& target, int count) {
    static WaylandReader reader;
    static std::vector<Descriptor> pipes;
    for (int i = 0; i < count; ++i) {
        auto [reading, writing] = createPipe();
        reader.ask(target, writing.get());
        reader.synchronise();
        pipes.push_back(std::move(reading));
    }
}

void burst(const std::string& target, int count) {
    static WaylandReader reader;
    static const auto pipe = createPipe();
    for (int i = 0; i < count; ++i) reader.ask(target, pipe.second.get());
    reader.synchronise();
}

}  // namespace

int main(int argc, char** argv) {
    static const std::map<std::string_view, void (*)(const std::string& target, int count)> kAttacks = {
        {"x11-vanish", vanish},
        {"x11-stall", stallOnX11},
        {"x11-flood", flood},
        {"wayland-stall", stallOnWayland},
        {"wayland-burst", burst}};
    const auto attack = kAttacks.find(argc == 4 ? argv[1] : "");
    if (attack == kAttacks.end()) fail("unknown attack");
    attack->second(argv[2], std::stoi(argv[3]));
    std::cout << "done" << std::endl;
    while (std::cin.get() != std::char_traits<char>::eof()) continue;
    std::_Exit(0);
}
