#pragma once

#include "Platform/Clipboard/Patience.h"
#include "Platform/Clipboard/TextFormats.h"
#include "Platform/Clipboard/X11/X11Connection.h"
#include "Platform/Clipboard/X11/X11Conversion.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ravlin {

/// Reads the clipboard of another program.
///
/// A reading begins with a call for plain text: the owner is asked once what it offers, and one that does not answer is
/// not waited for again until the clipboard changes or the next reading begins. All calls of a reading share one time
/// limit.
class X11SelectionReader {
public:
    /// At most this many targets that we do not know are looked up by name, those that the owner lists first. The
    /// longest lists of real programs have some fifty.
    static constexpr std::size_t kMaximumNames = 256;

    /// Handles the next event, waiting for it until `deadline` at most; false if there was none.
    using Pump = std::function<bool(X11Connection::TimePoint deadline)>;

    /// The owner of the clipboard, if there is one, and the change that made it so.
    struct Source {
        xcb_window_t owner;
        std::int64_t changeCount;
    };

    X11SelectionReader(X11Connection& connection, ReadLimits limits, Pump pump);

    /// The owner's content in the best format of `type` that it has: plain text as valid UTF-8, anything else as it is.
    ///
    /// Text that is not valid UTF-8 counts as absent, and no other format is tried then: that would be the same bytes
    /// under a label that makes them look right, or a conversion that has lost what Latin-1 cannot hold.
    std::optional<std::string> read(Source source, Pasteboard::Type type);

    /// The owner's hint that its content is a secret, if it lists one: see `TextFormats::kPasswordHint`. Belongs to the
    /// reading that `read` has begun.
    std::optional<std::string> readPasswordHint(Source source);

    void handle(const xcb_generic_event_t& event);

private:
    struct Answer {
        xcb_atom_t type = XCB_ATOM_NONE;
        int format = 0;
        std::string bytes;
    };

    /// What has been learned about the current owner.
    struct Knowledge {
        std::int64_t changeCount = -1;
        bool isSilent = false;                           // did not answer in time, ended, or sent too much
        bool isAsked = false;                            // for its targets
        std::optional<std::vector<xcb_atom_t>> targets;  // nothing if it refused to list them
        std::optional<std::vector<std::pair<std::string, xcb_atom_t>>> names;  // of those we do not know, once needed
    };

    bool learnTargets(Source source, Patience& patience);
    void learnNames();
    xcb_atom_t targetOf(const TextFormat& format);
    bool isListed(xcb_atom_t target) const;
    static bool isInBytes(const Answer& answer);
    std::optional<Answer> ask(Source source, xcb_atom_t target, Patience& patience);
    std::optional<Answer> ask(X11Conversion::Question question, Patience& patience);
    std::optional<TextFormat::Encoding> encodingOf(const TextFormat& format, const Answer& answer) const;
    void takeNewProperty();
    void discardLateAnswer(const xcb_generic_event_t& event);

    X11Connection& connection_;
    ReadLimits limits_;
    Pump pump_;
    Patience::Clock::duration timeLeft_;  // for the rest of this reading
    Knowledge knowledge_;
    std::optional<X11Conversion> conversion_;
    xcb_atom_t property_ = XCB_ATOM_NONE;
    int propertyNumber_ = 0;
};

}  // namespace ravlin
