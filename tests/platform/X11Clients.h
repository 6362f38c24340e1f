#pragma once

#include "Engine/Support/NonCopyable.h"
#include "Platform/Clipboard/X11/X11Pasteboard.h"
#include "tests/platform/BackEnd.h"

#include <xcb/xcb.h>

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ravlin::tests {

/// The X11 pasteboard of the display that the test runs on; the test fails if there is none.
std::unique_ptr<X11Pasteboard> openPasteboard(ReadLimits limits = {}, const char* displayName = nullptr);

/// A plain X client with a window of its own; its calls wait for the server.
class X11Client : NonCopyable {
public:
    explicit X11Client(const char* displayName = nullptr);
    ~X11Client();

    xcb_connection_t* get() const { return connection_; }
    xcb_window_t window() const { return window_; }
    xcb_atom_t atom(const std::string& name);
    std::string nameOf(xcb_atom_t atom);
    xcb_window_t owner(const std::string& selection = "CLIPBOARD");

    /// Takes a selection with the server's current time, or leaves it without an owner.
    void own(const std::string& selection = "CLIPBOARD");
    void disown();

    /// The names of the properties that a window has, sorted.
    std::vector<std::string> propertiesOf(xcb_window_t window);

    /// Waits until the server has done everything asked so far.
    void synchronise();

private:
    xcb_connection_t* connection_;
    xcb_window_t window_;
    std::map<std::string, xcb_atom_t> atoms_;
};

/// Another program, a process of its own, which owns the clipboard as soon as this object exists.
class ForeignOwner : public ForeignProgram {
public:
    explicit ForeignOwner(const OwnerPlan& plan);
    /// The owner of one plain UTF-8 text.
    explicit ForeignOwner(const std::string& text) : ForeignOwner(OwnerPlan{.content = {{"UTF8_STRING", text}}}) {}
};

/// A program that pastes, step by step, in the test's own process.
class Requestor : public X11Client {
public:
    struct Answer {
        xcb_atom_t property = XCB_ATOM_NONE;  // none: refused
        xcb_timestamp_t time = 0;
    };
    struct Property {
        std::string type;
        int format = 0;
        std::string bytes;
        std::vector<std::uint32_t> values() const;
        friend bool operator==(const Property&, const Property&) = default;
    };

    explicit Requestor(SystemPasteboard& pasteboard) : pasteboard_(pasteboard) {}

    /// Requests the clipboard as `target` and waits for the answer.
    std::optional<Answer> ask(const std::string& target, const std::string& property = "ANSWER",
                              xcb_timestamp_t time = XCB_CURRENT_TIME);

    /// The content of a property of this client's window, which is deleted; nothing if there is none.
    std::optional<Property> take(const std::string& property = "ANSWER");

    /// Everything that arrives as `target`, increments put together; nothing if it is refused.
    std::optional<Property> read(const std::string& target, const std::string& property = "ANSWER");

    /// Requests something large: on return the increments are announced, and the first one has been requested.
    void begin(const std::string& target, const std::string& property = "ANSWER");

    /// What is in a property, or what is announced there and arrives in increments.
    std::optional<Property> takeAnnounced(const std::string& property = "ANSWER");

    /// All increments up to the end, put together.
    Property takeIncrements(const std::string& property = "ANSWER");

    /// Waits for the next increment in a property; nothing if none comes.
    std::optional<Property> takeIncrement(const std::string& property = "ANSWER");

    /// The names in the answer to TARGETS, sorted.
    std::vector<std::string> targets();

private:
    void noteEvents();

    SystemPasteboard& pasteboard_;
    std::optional<Answer> answer_;
    std::map<xcb_atom_t, int> newValueCounts_;
};

/// A program that watches the clipboard's owners come and go.
class Observer : public X11Client {
public:
    Observer();
    /// The owners since the last call, in order: 0 for none.
    std::vector<xcb_window_t> newOwners();

    /// The server time since which the current owner has owned it.
    xcb_timestamp_t ownedSince();

private:
    xcb_timestamp_t ownedSince_ = 0;
    int firstEvent_ = 0;
};

}  // namespace ravlin::tests
