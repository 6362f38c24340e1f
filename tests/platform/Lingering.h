#pragma once

#include "tests/platform/BackEnd.h"

#include <optional>
#include <string>

#include <gtest/gtest.h>
#include <sys/types.h>

namespace ravlin::tests {

/// The process that keeps the text on the clipboard after the program's end. Processes whose parents have ended become
/// children of the test, so that their ends can be waited for.
class Lingering : public testing::Test {
protected:
    Lingering();
    ~Lingering() override;

    /// Runs the program that copies `text` and ends. False where it does not end well.
    static bool copyAndQuit(const std::string& text);

    /// The one child of this process, or 0.
    static pid_t child();

    /// Waits for the end of a child; its exit status, or nothing where it does not end or ends by a signal.
    static std::optional<int> exitStatusOf(pid_t id);

    /// What another program gets.
    static std::string paste();
};

}  // namespace ravlin::tests
