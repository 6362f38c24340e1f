#pragma once

#include "Platform/Clipboard/Wayland/WaylandInput.h"
#include "Platform/Clipboard/Wayland/WaylandPasteboard.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace ravlin {

/// The clipboard by Wayland's core protocol, on the connection of the program's windows.
///
/// While none of them has the keyboard's focus the compositor tells nothing, and takes nothing. What cannot be known
/// then is not told, either: nothing is there to read, each look at the counter finds another number, and nothing is
/// written. Only text of our own is known to be there for as long as nobody has copied. Nothing lingers: the clipboard
/// ends with the windows.
class FocusPasteboard : public WaylandPasteboard {
public:
    /// `display` must outlive this object and may have other readers: see `WaylandConnection::share`. Null where it
    /// has no clipboard.
    static std::unique_ptr<FocusPasteboard> open(wl_display* display, std::string& whyNot, ReadLimits limits = {});

    ~FocusPasteboard() override;

    /// Goes on serving until everybody who has asked for our text has it, or until `deadline`.
    void finishTransfers(WaylandConnection::TimePoint deadline);

protected:
    explicit FocusPasteboard(ReadLimits limits);
    bool start(wl_display* display, std::string& whyNot);

    /// Leaves the connection to the windows; there is nothing to read or to write any more.
    void letGo();

    /// The compositor tells what is on the clipboard to the window with the focus.
    bool hasAccess() const override;

private:
    void followSeat(wl_seat* seat) override;
    bool hasAskedSeat() override { return input_ && input_->takeNewDevice(); }
    bool mayCopy() const override { return input_->hasFocus(); }
    std::uint32_t inputSerial() const override { return input_->latestSerial(); }
    std::string nextMark() override;
    std::vector<int> servingDescriptors() const override { return {}; }

    std::unique_ptr<WaylandInput> input_;  // there while there is a seat
    int copyCount_ = 0;
};

}  // namespace ravlin
