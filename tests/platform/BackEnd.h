#pragma once

#include "Engine/Support/NonCopyable.h"
#include "Platform/Clipboard/ReadLimits.h"
#include "Platform/Clipboard/SystemPasteboard.h"
#include "tests/platform/ForeignProgram.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ravlin::tests {

// What tests for every clipboard need from the one they run on; each test program implements it.

/// The pasteboard of the display that the test runs on; the test fails if there is none.
std::unique_ptr<SystemPasteboard> openBackEnd(ReadLimits limits = {});

/// A program that has copied.
std::unique_ptr<ForeignProgram> copyElsewhere(const OwnerPlan& plan);

/// What a program gets that pastes as `target` while `pasteboard` serves; nothing if that is not on the clipboard.
std::optional<std::string> pasteElsewhere(const std::string& target, SystemPasteboard& pasteboard);

/// A program that asks for our text time and again, takes what comes first, and never reads any of it to the end.
class StallingReader : NonCopyable {
public:
    virtual ~StallingReader() = default;
    virtual void ask(const std::string& target) = 0;
    /// The same; returns once the first part has come.
    virtual void begin(const std::string& target) = 0;
};
std::unique_ptr<StallingReader> stallElsewhere(SystemPasteboard& pasteboard);

/// Whether a text that its program did not deliver to the end can always be distinguished from a whole one.
extern const bool kTellsTheEndOfATextFromADeath;

/// Whether a copy made at the moment of a write is never overwritten.
extern const bool kKeepsCopiesInTheMomentOfAWrite;

/// Programs of the system. The first copies its input and stays to serve it; the second writes the clipboard's text.
extern const std::vector<std::string> kCopyingProgram;
extern const std::vector<std::string> kPastingProgram;

// What they share.

/// Does what the application's event loop does, until `condition` holds: handles events whenever the descriptor says
/// that there are some, and never otherwise. False if the condition is never met.
bool serveUntil(SystemPasteboard& pasteboard, const std::function<bool()>& condition);

/// What a program writes to its standard output while the pasteboard serves it.
std::string outputOf(const std::vector<std::string>& command, SystemPasteboard& pasteboard);

/// A program of the system that copies `text`, in the foreground so that it ends with this object.
class CopyingProgram {
public:
    CopyingProgram(SystemPasteboard& pasteboard, const std::vector<std::string>& command, const std::string& text);
    Process& process() { return process_; }

private:
    std::int64_t countBefore_;
    Process process_;
};

/// Waits until another program's copy, made in that program's own time, is on the clipboard.
bool waitForChange(SystemPasteboard& pasteboard, std::int64_t countBefore);

/// X servers count milliseconds: they know no order of what happens in the same one or the next.
void letServerTimePass();

/// How long `action` takes.
template <class Action>
std::chrono::milliseconds durationOf(Action action) {
    const auto start = Clock::now();
    action();
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);
}

}  // namespace ravlin::tests
