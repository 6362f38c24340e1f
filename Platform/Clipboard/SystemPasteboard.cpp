#include "Platform/Clipboard/SystemPasteboard.h"

#include "Platform/Clipboard/LingeringChild.h"
#include "Platform/Clipboard/Polling.h"

#include <new>
#include <utility>

#include <unistd.h>

namespace ravlin {

/// Every operation goes through this. One for which the memory does not suffice is left where it is, as if the content
/// were too large.
template <class Operation>
void SystemPasteboard::perform(Operation operation) {
    const bool wasTransferring = isTransferring();
    try {
        operation();
    } catch (const std::bad_alloc&) {
    }
    settle();
    if (wasTransferring || !isTransferring()) return;
    // There is a deadline now, which `processEvents` lets the application know of.
    wakeUp();
    settle();
}

/// Brings what is known up to date, which includes a pending clear. False if that is not possible.
bool SystemPasteboard::catchUp() {
    if (std::exchange(isClearPending_, false)) clear();
    if (!synchronise()) return false;
    if (!hasAccess()) noteChange();  // there may have been one
    return hasAccess();
}

bool SystemPasteboard::synchronise() {
    const bool isAnswered = awaitAnswer();
    if (!isAnswered) noteChange();
    return isAnswered;
}

std::int64_t SystemPasteboard::changeCount() {
    perform([this] { catchUp(); });
    return changeCount_;
}

std::optional<std::string> SystemPasteboard::data(Type type) {
    std::optional<std::string> content;
    perform([&] {
        if (!catchUp()) return;
        const std::int64_t count = changeCount_;
        // If we read our own text through the system, we would wait for ourselves.
        const Text own = ownText();
        if (own == nullptr) content = read(type);
        if (own != nullptr && type == Type::string) content = own->text();
        if (content) lastRead_ = {count, own != nullptr ? own->passwordHint() : readPasswordHint()};
    });
    return content;
}

std::optional<std::size_t> SystemPasteboard::itemCount() {
    std::optional<std::size_t> count;
    perform([&] {
        if (catchUp()) count = isEmpty() ? 0 : 1;
    });
    return count;
}

void SystemPasteboard::clearContents() {
    perform([this] {
        isClearPending_ = true;
        wakeUp();  // so that `processEvents` is called even if nothing else happens
    });
}

bool SystemPasteboard::setString(std::string_view text) {
    bool isWritten = false;
    perform([&] {
        isClearPending_ = false;
        isWritten = synchronise() && write(std::make_shared<const OfferedText>(text), changeCount_);
    });
    return isWritten;
}

bool SystemPasteboard::replaceIfUnchanged(std::int64_t count, std::string_view text) {
    bool isWritten = false;
    perform([&] {
        isClearPending_ = false;
        const bool isOfLastRead = count == lastRead_.changeCount;
        isWritten =
            !isOvertaken(count) &&
            write(std::make_shared<const OfferedText>(text, isOfLastRead ? lastRead_.passwordHint : nullptr), count);
    });
    return isWritten;
}

bool SystemPasteboard::saveText(const Text& text) {
    bool isWritten = false;
    perform([&] { isWritten = synchronise() && isEmpty() && write(text, changeCount_); });
    return isWritten;
}

void SystemPasteboard::processEvents() {
    perform([this] {
        handleEvents();
        if (std::exchange(isClearPending_, false)) clear();
    });
}

void SystemPasteboard::lingerIfOwner() {
    bool mayLinger = false;
    perform([&] { mayLinger = fileDescriptor() >= 0 && !servingDescriptors().empty() && catchUp() && isServing(); });
    if (!mayLinger) return;
    switch (forkLingeringChild(servingDescriptors())) {
        case ForkSide::parent: giveAway(); return;
        case ForkSide::failed: return;
        case ForkSide::child: serveToTheEnd();
    }
}

void SystemPasteboard::serveToTheEnd() {
    for (processEvents(); fileDescriptor() >= 0 && isServing(); processEvents()) {
        isReady(fileDescriptor(), POLLIN, nextDeadline().value_or(Clock::time_point::max()));
    }
    // Closing a socket while events wait in it loses the requests on their way, including a reader's last increment.
    synchronise();
    _exit(0);
}

}  // namespace ravlin
