#pragma once

#include "tests/platform/BackEnd.h"

#include <optional>
#include <string>

#include <gtest/gtest.h>
#include <sys/types.h>

namespace ravlin::tests {

/// The process that keeps the text on the clipboard after the program's end. Processes whose parents have ended become
/// children of the test, so that the test can wait for them to end.
class Lingering : public testing::Test {
protected:
    Lingering();
    ~Lingering() override;

    /// Runs the program that copies `text` and ends. False if it does not end well.
    static bool copyAndQuit(const std::string& text);

    /// The one child of this process, or 0.
    static pid_t child();

    /// Waits for a child to end; its exit status, or nothing if it does not end or is ended by a signal.
    static std::optional<int> exitStatusOf(pid_t id);

    /// What another program gets when it pastes.
    static std::string paste();
};

}  // namespace ravlin::tests
