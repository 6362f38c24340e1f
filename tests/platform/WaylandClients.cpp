#include "tests/platform/WaylandClients.h"

#include <wayland-client-protocol.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace ravlin::tests {
namespace {

using WaylandSelection::Offer;
using WaylandSelection::Protocol;
using Seat = std::unique_ptr<wl_proxy, WaylandSelection::ProxyDeleter>;

/// The globals that a plain client needs.
struct Globals {
    std::optional<std::pair<std::uint32_t, Protocol>> manager;
    std::uint32_t seat = 0;

    WaylandConnection::Globals noting() {
        return {.appeared =
                    [this](std::uint32_t name, std::string_view interface, std::uint32_t /*version*/) {
                        for (const auto each : {Protocol::extDataControl, Protocol::zwlrDataControl}) {
                            if (interface == WaylandSelection::managerName(each)) manager = {name, each};
                        }
                        if (interface == "wl_seat") seat = name;
                    },
                .removed = [](std::uint32_t /*name*/) {}};
    }
};

std::unique_ptr<WaylandConnection> connect(Globals& globals) {
    std::string whyNot;
    auto connection = WaylandConnection::open(nullptr, globals.noting(), whyNot);
    if (!connection || !connection->synchronise() || !globals.manager) {
        throw std::runtime_error("no compositor for the test's client: " + whyNot);
    }
    return connection;
}

Seat bindSeat(WaylandConnection& connection, std::uint32_t name) {
    auto* const registry = reinterpret_cast<wl_registry*>(connection.registry());
    return Seat(static_cast<wl_proxy*>(wl_registry_bind(registry, name, &wl_seat_interface, 1)));
}

/// What runs in the process of a ForeignSource.
class SourceProgram {
public:
    SourceProgram(const OwnerPlan& plan, int commands, int replies)
        : plan_(plan),
          commands_(commands),
          replies_(replies),
          connection_(connect(globals_)),
          manager_(connection_->registry(), globals_.manager->first, globals_.manager->second),
          seat_(bindSeat(*connection_, globals_.seat)),
          device_(
              manager_.deviceOf(seat_.get(), {.selection = [](const std::shared_ptr<Offer>&) {}, .finished = [] {}})) {
        std::signal(SIGPIPE, SIG_IGN);
        copy();
        reply(ForeignProgram::kObeyed);
    }

    void run() {
        std::array<pollfd, 2> waited = {pollfd{.fd = commands_, .events = POLLIN, .revents = 0},
                                        pollfd{connection_->fileDescriptor(), POLLIN, 0}};
        while (poll(waited.data(), waited.size(), -1) > 0 && !connection_->isLost()) {
            connection_->processEvents();
            char letter = 0;
            if ((waited[0].revents & POLLHUP) != 0) return;
            if ((waited[0].revents & POLLIN) != 0 && ::read(commands_, &letter, 1) == 1) obey(letter);
        }
    }

private:
    void copy() {
        auto source = manager_.createSource(
            {.send = [this](std::string_view type, int descriptor) { send(type, Descriptor(descriptor)); },
             .cancelled = [] {}});
        for (const auto& each : plan_.content) source->offer(each.target);
        device_->setSelection(source.get());
        sources_.push_back(std::move(source));  // the one before may still be writing
    }

    void reply(char letter) {
        connection_->synchronise();
        if (write(replies_, &letter, 1) != 1) _exit(1);
    }

    void obey(char letter) {
        switch (letter) {
            case 'c': copy(); break;
            case 'm':
                for (int i = 0; i < ForeignProgram::kManyTimes; ++i) {
                    copy();
                    connection_->synchronise();
                }
                break;
            case '0': device_->setSelection(nullptr); break;
            default: break;
        }
        reply(ForeignProgram::kObeyed);
    }

    void send(std::string_view type, Descriptor pipe) {
        if (!plan_.answers) {
            held_.push_back(std::move(pipe));
            return;
        }
        if (plan_.pauseBeforeAnswer.count() > 0) isReadable(-1, plan_.pauseBeforeAnswer);
        const auto found = std::ranges::find(plan_.content, type, &OwnerPlan::Representation::target);
        std::string_view rest = found->bytes;
        const std::size_t size = plan_.incrementSize == 0 ? rest.size() : plan_.incrementSize;
        for (int count = 0; !rest.empty(); ++count) {
            misbehave(count);
            const ssize_t written = write(pipe.get(), rest.data(), std::min(rest.size(), size));
            if (written < 0) return;
            rest.remove_prefix(static_cast<std::size_t>(written));
        }
    }

    void misbehave(int incrementCount) {
        if (incrementCount == plan_.stopsAfterIncrements) {
            plan_.stopsAfterIncrements = -1;
            raise(SIGSTOP);
        }
        if (incrementCount == plan_.diesAfterIncrements) raise(SIGKILL);
        if (incrementCount == plan_.copiesAgainAfterIncrements) {
            copy();
            connection_->processEvents();
        }
        if (plan_.pauseBeforeIncrement.count() > 0) isReadable(-1, plan_.pauseBeforeIncrement);
    }

    OwnerPlan plan_;
    int commands_;
    int replies_;
    Globals globals_;
    std::unique_ptr<WaylandConnection> connection_;
    WaylandSelection::Manager manager_;
    Seat seat_;
    std::unique_ptr<WaylandSelection::Device> device_;
    std::vector<std::unique_ptr<WaylandSelection::Source>> sources_;
    std::vector<Descriptor> held_;
};

}  // namespace

std::unique_ptr<WaylandPasteboard> openPasteboard(ReadLimits limits, const char* displayName) {
    std::string whyNot;
    auto pasteboard = WaylandPasteboard::open(displayName, whyNot, limits);
    if (!pasteboard) throw std::runtime_error("no pasteboard: " + whyNot);
    return pasteboard;
}

ForeignSource::ForeignSource(const OwnerPlan& plan)
    : ForeignProgram([&plan](int commands, int replies) { SourceProgram(plan, commands, replies).run(); }) {}

Paster::Paster() {
    Globals globals;
    connection_ = connect(globals);
    manager_ = std::make_unique<WaylandSelection::Manager>(connection_->registry(), globals.manager->first,
                                                           globals.manager->second);
    seat_ = bindSeat(*connection_, globals.seat);
    device_ = manager_->deviceOf(
        seat_.get(),
        {.selection = [this](std::shared_ptr<Offer> offer) { offer_ = std::move(offer); }, .finished = [] {}});
    connection_->synchronise();
}

std::vector<std::string> Paster::types() {
    connection_->synchronise();
    std::vector<std::string> types;
    if (offer_) types = offer_->types();
    std::ranges::sort(types);
    return types;
}

Descriptor Paster::begin(const std::string& type) {
    std::array<int, 2> ends = {};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    fcntl(ends[0], F_SETFL, O_NONBLOCK);
    beginInto(type, ends[1]);
    close(ends[1]);
    return Descriptor(ends[0]);
}

void Paster::beginInto(const std::string& type, int descriptor) {
    connection_->synchronise();
    if (!offer_) throw std::runtime_error("nothing to paste");
    offer_->receive(type, descriptor);
    connection_->synchronise();
}

std::optional<std::string> Paster::read(const std::string& type, SystemPasteboard& pasteboard) {
    const Descriptor pipe = begin(type);
    std::string bytes;
    if (!serveUntil(pasteboard, [&] { return !takeFrom(pipe.get(), bytes); })) return std::nullopt;
    return bytes;
}

void StallingPaster::begin(const std::string& target) {
    ask(target);
    EXPECT_TRUE(
        serveUntil(pasteboard_, [this] { return isReadable(pipes_.back().get(), std::chrono::milliseconds(0)); }));
}

bool takeFrom(int pipe, std::string& bytes) {
    std::array<char, 65536> block = {};
    for (;;) {
        const ssize_t size = ::read(pipe, block.data(), block.size());
        if (size > 0) bytes.append(block.data(), static_cast<std::size_t>(size));
        if (size == 0) return false;
        if (size < 0 && errno == EAGAIN) return true;
    }
}

PrivateCompositor::PrivateCompositor()
    : desktop_({PRIVATE_DESKTOP, "--wayland", "--no-bus", "--", "sh", "-c",
                "echo $XDG_RUNTIME_DIR/$WAYLAND_DISPLAY; exec sleep 1000"}) {
    const auto deadline = Clock::now() + kGenerously;
    while (desktop_.output().find('\n') == std::string::npos) {
        if (Clock::now() > deadline) throw std::runtime_error("the compositor does not start");
        isReadable(desktop_.outputDescriptor(), std::chrono::milliseconds(100));
        desktop_.readOutput();
    }
    display_ = desktop_.output().substr(0, desktop_.output().find('\n'));
}

PrivateCompositor::~PrivateCompositor() {
    if (isStopped_) resume();
    desktop_.end();
}

/// The process at the other end of the compositor's socket.
pid_t PrivateCompositor::id() const {
    const Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    display_.copy(address.sun_path, sizeof(address.sun_path) - 1);
    ucred peer = {};
    socklen_t size = sizeof(peer);
    if (::connect(socket.get(), reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0 ||
        getsockopt(socket.get(), SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0) {
        throw std::runtime_error("the compositor has gone");
    }
    return peer.pid;
}

void PrivateCompositor::stop() {
    ::kill(id(), SIGSTOP);
    isStopped_ = true;
}

void PrivateCompositor::resume() {
    ::kill(id(), SIGCONT);
    isStopped_ = false;
}

void PrivateCompositor::kill() {
    ::kill(id(), SIGKILL);
}

}  // namespace ravlin::tests
