#pragma once

#include "Platform/Clipboard/ReadLimits.h"
#include "Platform/Clipboard/X11/X11Connection.h"
#include "Platform/Clipboard/X11/X11Conversion.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace ravlin {

/// Reads the clipboard of another program.
///
/// One reading is a call of `plainText` and the calls of `bytes` that follow it: the owner is asked once what it
/// offers, and one that did not answer is not waited for again, until the clipboard changes or the next reading begins.
class X11SelectionReader {
public:
    /// Handles the next event, waiting for it until the time given at most; false when there was none.
    using Pump = std::function<bool(X11Connection::TimePoint deadline)>;

    /// Who owns the clipboard, if anybody, and the change that made it so.
    struct Source {
        xcb_window_t owner;
        std::int64_t changeCount;
    };

    X11SelectionReader(X11Connection& connection, ReadLimits limits, Pump pump);

    /// The plain text as valid UTF-8, less one NUL at its end, which some programs count in. Begins a reading.
    ///
    /// A text that is not valid UTF-8 counts as absent, and no other plain target is tried then: it would be the same
    /// bytes under a label that makes them look right, or a conversion that has lost what Latin-1 cannot hold.
    std::optional<std::string> plainText(Source source);

    /// The bytes of the first of `targets` that the owner has.
    std::optional<std::string> bytes(Source source, std::span<const X11Atom> targets);

    void handle(const xcb_generic_event_t& event);

private:
    struct Answer {
        xcb_atom_t type = XCB_ATOM_NONE;
        int format = 0;
        std::string bytes;
    };

    /// What has been learned about the present owner.
    struct Knowledge {
        std::int64_t changeCount = -1;
        bool isSilent = false;                           // did not answer in time, ended, or sent too much
        bool isAsked = false;                            // for its targets
        std::optional<std::vector<xcb_atom_t>> targets;  // nothing where it refused to list them
    };

    bool learnTargets(Source source, Patience& patience);
    bool mayOffer(X11Atom target) const;
    std::optional<Answer> ask(Source source, X11Atom target, Patience& patience);
    std::optional<std::string> decoded(X11Atom target, Answer answer) const;
    void takeNewProperty();
    void discardLateAnswer(const xcb_generic_event_t& event);

    X11Connection& connection_;
    ReadLimits limits_;
    Pump pump_;
    Knowledge knowledge_;
    std::optional<X11Conversion> conversion_;
    xcb_atom_t property_ = XCB_ATOM_NONE;
    int propertyNumber_ = 0;
};

}  // namespace ravlin
