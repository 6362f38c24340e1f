#pragma once

#include "Platform/Clipboard/ReadLimits.h"
#include "Platform/Clipboard/SystemPasteboard.h"
#include "Platform/Clipboard/Wayland/WaylandConnection.h"
#include "Platform/Clipboard/Wayland/WaylandSelection.h"
#include "Platform/Clipboard/Wayland/WaylandTransfers.h"

#include <wayland-client-protocol.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ravlin {

/// The clipboard of a Wayland compositor through data control, which needs neither a window nor keyboard focus. Where
/// there is no data control, see `FocusPasteboard`, which overrides what differs.
///
/// The compositor reports every change of the clipboard, our own included, and answers in the order in which things
/// happened. So the events before any answer say how many changes there have been: nothing is missed. It knows no order
/// of writes: a copy made at the moment of a write is overwritten.
///
/// A clipboard belongs to a seat: this is the first seat's, and the next one's when that goes.
///
/// Once the connection is lost, every operation returns nothing or false at once.
class WaylandPasteboard : public SystemPasteboard {
public:
    /// Connects to `displayName` (null: the one that WAYLAND_DISPLAY names). Null if that fails, with the reason in
    /// `whyNot`, for example "the compositor offers no data control".
    static std::unique_ptr<WaylandPasteboard> open(const char* displayName, std::string& whyNot,
                                                   ReadLimits limits = {});

    int fileDescriptor() const override { return connection_->fileDescriptor(); }
    std::optional<Clock::time_point> nextDeadline() const override { return transfers_->nextDeadline(); }

protected:
    /// Uses the best of `protocols`, listed best first and together called `name`.
    WaylandPasteboard(std::vector<WaylandSelection::Protocol> protocols, std::string_view name, ReadLimits limits)
        : protocols_(std::move(protocols)), name_(name), limits_(limits), readingTimeLeft_(limits.total) {}

    /// How the connection notifies this object.
    WaylandConnection::Globals globals();

    /// Call this first. False if there is no such protocol or no answer, with the reason in `whyNot`.
    bool start(std::unique_ptr<WaylandConnection> connection, std::string& whyNot);

    /// Ends everything on this side of the connection, and the connection itself, without telling the compositor.
    void close();

    WaylandConnection& connection() const { return *connection_; }
    WaylandSelection::Device* device() const { return seat_ ? seat_->device.get() : nullptr; }

    /// Whether the compositor has reported what is on the clipboard, or that it is empty.
    bool isTold() const { return foreign_.isTold; }

    Text ownText() const override { return own_ && own_->isAccepted ? own_->text : nullptr; }
    bool write(const Text& text, std::int64_t count) override;
    std::optional<std::string> read(Type type) override;
    OfferedText::Bytes readPasswordHint() override;
    std::vector<int> servingDescriptors() const override;

private:
    struct Seat {
        std::uint32_t name;
        std::unique_ptr<wl_proxy, WaylandSelection::ProxyDeleter> proxy;
        std::unique_ptr<WaylandSelection::Device> device;
    };

    /// What another program has copied.
    struct Foreign {
        std::shared_ptr<WaylandSelection::Offer> offer;
        bool isTold = false;
        bool isSilent = false;  // did not write in time, or wrote too much
    };

    /// What we have copied.
    struct Own {
        std::unique_ptr<WaylandSelection::Source> source;
        Text text;         // null once another program has copied
        std::string mark;  // the type that distinguishes it from every other copy, if needed
        bool isAccepted = false;
    };

    // What else a protocol may need.

    /// The seat whose clipboard this is has appeared; null: it is going.
    virtual void followSeat(wl_seat* /*seat*/) {}
    /// Whether the seat has been asked something and the answer is on its way.
    virtual bool hasAskedSeat() { return false; }
    virtual bool mayCopy() const { return true; }
    /// The serial number of the input that a copy responds to.
    virtual std::uint32_t inputSerial() const { return 0; }
    /// A type by which our next copy can be recognised, if copies may be refused.
    virtual std::string nextMark() { return ""; }

    bool awaitAnswer() override;
    bool isEmpty() const override { return ownText() == nullptr && foreign_.offer == nullptr; }
    void clear() override;
    void wakeUp() override { connection_->askForWakeUp(); }
    void giveAway() override { close(); }
    void handleEvents() override;
    void settle() override { connection_->flush(); }

    void noteGlobal(std::uint32_t name, std::string_view interface, std::uint32_t version);
    void noteRemoval(std::uint32_t name);
    void noteSelection(std::shared_ptr<WaylandSelection::Offer> offer);
    bool bindManager();
    bool chooseSeat();
    void leaveSeat();
    bool update();

    std::unique_ptr<Own> copyOf(const Text& text);
    void serve(std::string_view type, int descriptor, const Text& text);
    std::optional<std::string> receive(const std::string& name, std::size_t byteLimit);

    std::vector<WaylandSelection::Protocol> protocols_;
    std::string_view name_;
    ReadLimits limits_;
    Clock::duration readingTimeLeft_;  // for what is read after plain text
    std::unique_ptr<WaylandConnection> connection_;
    std::vector<std::pair<std::uint32_t, WaylandSelection::Protocol>> managerNames_;
    std::vector<std::uint32_t> seatNames_;
    std::unique_ptr<WaylandSelection::Manager> manager_;
    std::optional<Seat> seat_;
    bool isSeatFinished_ = false;
    Foreign foreign_;
    std::unique_ptr<Own> own_;
    std::optional<WaylandTransfers> transfers_;  // there is always one once there is a connection
};

}  // namespace ravlin
