#pragma once

#include "Engine/Pasteboard.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ravlin {

/// The clipboard of a desktop session. Besides what every pasteboard does it serves the text it owns to other
/// applications, from events that arrive on a descriptor which the application watches.
///
/// `clearContents` takes effect with the next operation or at the next `processEvents`: a write that comes first takes
/// its place, so that nobody sees an empty clipboard in between, which clipboard managers hasten to fill.
///
/// What every operation has to see to is done here: it counts changes, completes a clearing, and leaves nothing behind
/// that the descriptor would not tell. Back ends fill in the steps, which are called within an operation only.
class SystemPasteboard : public Pasteboard {
public:
    /// After this time without a step a reader of our text is given up, as soon as anything else happens.
    static constexpr std::chrono::seconds kTransferLimit{30};

    /// Counts the changes since this object was made. What cannot be known is assumed to have changed.
    std::int64_t changeCount() final;

    /// An owner that did not answer is asked again only by the next call of this function: `data` does not wait for it
    /// a second time.
    std::optional<std::string> string() final { return data(Type::string); }
    std::optional<std::string> data(Type type) final;
    std::optional<std::size_t> itemCount() final;

    void clearContents() final;

    /// False also where another application copies in the very moment of the write, or the system does not answer.
    bool setString(std::string_view text) final;
    bool replaceIfUnchanged(std::int64_t count, std::string_view text) final;

    /// Becomes readable when `processEvents` has something to do. -1 once the connection is lost: look after each
    /// `processEvents`, and stop watching then, since a lost connection stays readable for ever.
    virtual int fileDescriptor() const = 0;

    /// Serves the requests that have arrived, and completes a `clearContents` that no write followed. Waits for no
    /// other application.
    void processEvents();

    /// To be called as the program's last act, after the user interface is gone. Where this pasteboard owns the
    /// clipboard, a child process of its own session goes on serving the text until another program copies or the
    /// desktop session ends; the child never returns from this call. Afterwards this object has no connection any more.
    void lingerIfOwner();

protected:
    using Text = std::shared_ptr<const std::string>;

    /// Whether the system tells this program what is on the clipboard.
    virtual bool hasAccess() const { return true; }

    /// Makes what is known about the clipboard what holds now. False where the system does not answer.
    bool synchronise();

    /// To be called by back ends for each change that they are told.
    void noteChange() { ++changeCount_; }
    void forgetChanges() { changeCount_ = 0; }
    std::int64_t countSoFar() const { return changeCount_; }

    /// Whether the clipboard holds something that `count` does not include, as far as is known.
    bool isOvertaken(std::int64_t count) const { return changeCount_ != count && !isEmpty(); }

private:
    // The steps.

    /// Waits until the system has told, and this object handled, all changes up to now; false where it does not answer.
    virtual bool awaitAnswer() = 0;

    /// Whether the clipboard holds nothing, as far as is known.
    virtual bool isEmpty() const = 0;

    /// The text that is on the clipboard if it is ours, or null.
    virtual Text ownText() const = 0;

    /// What another application has put on the clipboard: as plain text valid UTF-8, otherwise as it is.
    virtual std::optional<std::string> read(Type type) = 0;

    /// Replaces the content by `text`, if it can be done with no copy overwritten that `count` does not include.
    virtual bool write(const Text& text, std::int64_t count) = 0;

    virtual void clear() = 0;

    /// Makes the descriptor readable.
    virtual void wakeUp() = 0;

    /// Handles the events that have arrived.
    virtual void handleEvents() = 0;

    /// Sends what waits to be sent, and handles what was read on the way, of which the descriptor tells no more.
    virtual void settle() = 0;

    // For the child that lingers.

    /// Whether somebody is still reading a text that was ours.
    virtual bool isTransferring() const { return false; }

    /// All descriptors that serving needs; none where it cannot outlive the program.
    virtual std::vector<int> servingDescriptors() const { return {}; }

    /// Leaves the connection to the child, without ending it.
    virtual void giveAway() {}

    template <class Operation>
    void perform(Operation operation);
    bool catchUp();
    bool isServing() const { return ownText() != nullptr || isTransferring(); }
    [[noreturn]] void serveToTheEnd();

    std::int64_t changeCount_ = 0;
    bool isClearPending_ = false;
};

}  // namespace ravlin
