#pragma once

#include "Platform/Clipboard/Wayland/WaylandInput.h"
#include "Platform/Clipboard/Wayland/WaylandPasteboard.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace ravlin {

/// The clipboard through Wayland's core protocol, on the connection of the program's windows.
///
/// While none of them has keyboard focus, the compositor reports nothing and accepts nothing. This object then claims
/// no knowledge, either: there is nothing to read, the change count differs at every look, and nothing is written. Only
/// our own text is known to be there for as long as no other program has copied. Nothing lingers: the clipboard ends
/// with the windows.
class FocusPasteboard : public WaylandPasteboard {
public:
    /// `display` must outlive this object and may have other readers: see `WaylandConnection::share`. Null if it has no
    /// clipboard.
    static std::unique_ptr<FocusPasteboard> open(wl_display* display, std::string& whyNot, ReadLimits limits = {});

    ~FocusPasteboard() override;

    /// Goes on serving until every program that has asked for our text has it, or until `deadline`.
    void finishTransfers(WaylandConnection::TimePoint deadline);

protected:
    explicit FocusPasteboard(ReadLimits limits);
    bool start(wl_display* display, std::string& whyNot);

    /// Leaves the connection to the windows; from then on there is nothing to read or to write.
    void letGo();

    /// The compositor reports what is on the clipboard only to the window with the focus.
    bool hasAccess() const override;

private:
    void followSeat(wl_seat* seat) override;
    bool hasAskedSeat() override { return input_ && input_->takeNewDevice(); }
    bool mayCopy() const override { return input_->hasFocus(); }
    std::uint32_t inputSerial() const override { return input_->latestSerial(); }
    std::string nextMark() override;
    std::vector<int> servingDescriptors() const override { return {}; }

    std::unique_ptr<WaylandInput> input_;  // null while there is no seat
    int copyCount_ = 0;
};

}  // namespace ravlin
