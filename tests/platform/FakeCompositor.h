#pragma once

#include "tests/platform/ForeignProgram.h"

#include <string>

namespace ravlin::tests {

/// A compositor without a screen, in a process of its own, with seats that come and go, data control under its newer
/// name, and the core protocol's clipboard. The clipboard of each new seat holds the text "text", which the compositor
/// itself serves.
///
/// Either every client that has a surface has keyboard focus, or none has. Like real ones, it accepts a copy through
/// the core protocol only with the focus, and with the serial number of input that is later than the last copy; it
/// drops others silently.
class FakeCompositor : private ForeignProgram {
public:
    struct Plan {
        bool hasDataControl = true;
        bool hasCoreClipboard = true;
        bool hasSeat = true;
        bool hasKeyboard = true;
    };
    explicit FakeCompositor(const Plan& plan);

    const std::string& display() const { return display_; }

    // Each returns once the compositor has done it.
    void addSeat() { command('+'); }
    void removeSeat() { command('-'); }  // the oldest
    void select() { command('p'); }      // as if the user had selected "selected" on the oldest seat
    void giveFocus() { command('f'); }   // of the keyboard of the oldest seat
    void takeFocus() { command('u'); }
    void pressKey() { command('k'); }
    void addKeyboard() { command('K'); }
    void removeKeyboard() { command('N'); }

    void stop() { process().stop(); }
    void resume() { process().resume(); }

private:
    FakeCompositor(const Plan& plan, const std::string& display);

    std::string display_;
};

}  // namespace ravlin::tests
