#pragma once

#include "Engine/Support/NonCopyable.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

namespace ravlin::tests {

/// How long a test waits for what must happen. Far longer than it ever takes, so that no test fails on a busy machine.
inline constexpr std::chrono::seconds kGenerously{20};

using Clock = std::chrono::steady_clock;

/// Sleeps until `descriptor` is readable (-1: nothing is), for `atMost` at the longest.
bool isReadable(int descriptor, std::chrono::milliseconds atMost);

/// A child process that ends with this object at the latest.
class Process : NonCopyable {
public:
    /// Starts a program with `standardInput` as its input; what it writes is collected by `readOutput`.
    explicit Process(const std::vector<std::string>& command, std::string_view standardInput = "");

    /// Runs `body` in a copy of this process, which ends with it.
    explicit Process(const std::function<void()>& body);

    ~Process();

    pid_t id() const { return id_; }

    void stop();    // SIGSTOP, and waits until it has stopped
    void resume();  // SIGCONT
    void kill();    // SIGKILL, and waits for its end
    void end();     // SIGTERM, and waits for its end
    int outputDescriptor() const { return output_; }

    /// Takes what the program has written since; false once it has closed its output.
    bool readOutput();
    const std::string& output() const { return outputText_; }

    bool hasEnded();

    /// Waits until the process has ended by itself: its exit status, or nothing if it does not end.
    std::optional<int> waitForEnd();

    /// Waits until the process has stopped itself with SIGSTOP.
    bool waitForStop();

private:
    bool isEnded_ = false;
    int status_ = 0;
    pid_t id_ = -1;
    int output_ = -1;
    std::string outputText_;
};

/// A private X server, for tests that do something to it.
class PrivateServer {
public:
    PrivateServer();
    const std::string& display() const { return display_; }
    Process& process() { return process_; }

private:
    Process process_;
    std::string display_;
};

/// A text of that many bytes whose pieces all differ, so that a lost, doubled or swapped piece shows.
std::string textOfSize(std::size_t byteSize);

}  // namespace ravlin::tests
