#pragma once

#include "Engine/Pasteboard.h"
#include "Platform/Clipboard/OfferedText.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ravlin {

/// The clipboard of a desktop session. In addition to what every pasteboard does, it serves the text it owns to other
/// applications, driven by events that arrive on a descriptor which the application watches.
///
/// `clearContents` takes effect with the next operation or at the next `processEvents`: a write that comes first
/// replaces it, so that no program sees an empty clipboard in between, which clipboard managers hasten to fill.
///
/// This class does what every operation needs: it counts changes, completes a pending clear, and leaves nothing
/// unhandled that the descriptor would not report. Back ends implement the steps, which are called only within an
/// operation.
class SystemPasteboard : public Pasteboard {
public:
    using Clock = std::chrono::steady_clock;
    using Text = std::shared_ptr<const OfferedText>;

    /// Counts the changes since this object was made. Where that cannot be known, a change is assumed.
    std::int64_t changeCount() final;

    /// An owner that did not answer is asked again only by the next call of this function: `data` does not wait for it
    /// a second time.
    std::optional<std::string> string() final { return data(Type::string); }
    std::optional<std::string> data(Type type) final;
    std::optional<std::size_t> itemCount() final;

    void clearContents() final;

    /// Also false if another application copies at the moment of the write, or the system does not answer.
    bool setString(std::string_view text) final;

    /// If the content that `count` includes has been read, and is a secret, then so is `text`.
    bool replaceIfUnchanged(std::int64_t count, std::string_view text) final;

    /// Becomes readable when `processEvents` has something to do. -1 once the connection is lost: check after each
    /// `processEvents`, and stop watching then, since a lost connection stays readable forever.
    virtual int fileDescriptor() const = 0;

    /// Serves the requests that have arrived, and completes a `clearContents` that no write followed. Never waits for
    /// another application, nor long for all of them: what remains makes the descriptor readable again.
    void processEvents();

    /// When to call `processEvents` at the latest, whatever the descriptor says: another program has begun to read our
    /// text, and may never end. Nothing if there is none; look after each `processEvents`.
    virtual std::optional<Clock::time_point> nextDeadline() const { return std::nullopt; }

    /// What is lost with the connection unless another one takes it over: our text, or null if there is none, or if it
    /// was about to be cleared.
    Text textToSave() const { return isClearPending_ ? nullptr : ownText(); }

    /// Puts a text on the clipboard that another connection has lost. False if another application has copied since.
    bool saveText(const Text& text);

    /// Call this as the program's last act, after the user interface is gone. If this pasteboard owns the clipboard, a
    /// child process in a session of its own goes on serving the text until another program copies or the desktop
    /// session ends. The child takes over the connection, which this object no longer has, and never returns from this
    /// call.
    void lingerIfOwner();

protected:
    /// Whether the system lets this program know what is on the clipboard.
    virtual bool hasAccess() const { return true; }

    /// Brings what is known about the clipboard up to date. False if the system does not answer.
    bool synchronise();

    /// Back ends call this for each change that is reported to them.
    void noteChange() { ++changeCount_; }
    void forgetChanges() { changeCount_ = 0; }
    std::int64_t countSoFar() const { return changeCount_; }

    /// Whether the clipboard holds something that `count` does not include, as far as is known.
    bool isOvertaken(std::int64_t count) const { return changeCount_ != count && !isEmpty(); }

    /// Whether another program is still reading a text that was ours.
    bool isTransferring() const { return nextDeadline().has_value(); }

private:
    // The steps.

    /// Waits until the system has reported, and this object handled, all changes up to now; false if it does not
    /// answer.
    virtual bool awaitAnswer() = 0;

    /// Whether the clipboard is empty, as far as is known.
    virtual bool isEmpty() const = 0;

    /// The text on the clipboard if it is ours, or null.
    virtual Text ownText() const = 0;

    /// What another application has put on the clipboard: plain text as valid UTF-8, anything else as it is.
    virtual std::optional<std::string> read(Type type) = 0;

    /// What the application whose content `read` has just delivered calls a secret: its `TextFormats::kPasswordHint`,
    /// or null.
    virtual OfferedText::Bytes readPasswordHint() { return nullptr; }

    /// Replaces the content with `text`, unless that would overwrite a copy that `count` does not include.
    virtual bool write(const Text& text, std::int64_t count) = 0;

    virtual void clear() = 0;

    /// Makes the descriptor readable.
    virtual void wakeUp() = 0;

    /// Handles the events that have arrived.
    virtual void handleEvents() = 0;

    /// Sends what is waiting, and handles what was read on the way, which the descriptor no longer reports.
    virtual void settle() = 0;

    // For the child that lingers.

    /// All descriptors that serving needs; none if serving cannot outlive the program.
    virtual std::vector<int> servingDescriptors() const { return {}; }

    /// Leaves the connection to the child without ending it.
    virtual void giveAway() {}

    template <class Operation>
    void perform(Operation operation);
    bool catchUp();
    bool isServing() const { return ownText() != nullptr || isTransferring(); }
    [[noreturn]] void serveToTheEnd();

    /// Whether what was read last is a secret: its hint, and the change count of that time.
    struct LastRead {
        std::int64_t changeCount = -1;
        OfferedText::Bytes passwordHint;
    };

    std::int64_t changeCount_ = 0;
    LastRead lastRead_;
    bool isClearPending_ = false;
};

}  // namespace ravlin
