#include "tests/platform/BackEnd.h"

#include <gtest/gtest.h>

namespace ravlin::tests {

bool serveUntil(SystemPasteboard& pasteboard, const std::function<bool()>& condition) {
    const auto deadline = Clock::now() + kGenerously;
    while (!condition()) {
        if (Clock::now() > deadline) return false;
        if (isReadable(pasteboard.fileDescriptor(), std::chrono::milliseconds(2))) pasteboard.processEvents();
    }
    return true;
}

std::string outputOf(const std::vector<std::string>& command, SystemPasteboard& pasteboard) {
    Process program(command);
    EXPECT_TRUE(serveUntil(pasteboard, [&] { return !program.readOutput(); })) << command.front() << " does not end";
    return program.output();
}

CopyingProgram::CopyingProgram(SystemPasteboard& pasteboard, const std::vector<std::string>& command,
                               const std::string& text)
    : countBefore_(pasteboard.changeCount()), process_(command, text) {
    EXPECT_TRUE(waitForChange(pasteboard, countBefore_)) << command.front() << " does not copy";
}

void letServerTimePass() {
    for (const auto end = Clock::now() + std::chrono::milliseconds(3); Clock::now() < end;) continue;
}

bool waitForChange(SystemPasteboard& pasteboard, std::int64_t countBefore) {
    return serveUntil(pasteboard, [&] { return pasteboard.changeCount() != countBefore; });
}

}  // namespace ravlin::tests
