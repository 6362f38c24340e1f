#pragma once

#include "Engine/Support/NonCopyable.h"
#include "tests/platform/Processes.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace ravlin::tests {

/// A program that copies: what it offers, and how it misbehaves.
struct OwnerPlan {
    struct Representation {
        std::string target;
        std::string bytes;
        std::string type = "";  // of the answer, if there is such a thing; empty: the target itself
        int format = 8;         // of the answer, if there is such a thing
    };
    std::vector<Representation> content = {};
    bool listsTargets = true;
    bool listsNothing = false;           // an empty list, if there is such a thing
    std::size_t unknownTargetCount = 0;  // which it lists before the others, if that is possible
    bool answers = true;                 // with content; it lists its targets anyway
    std::chrono::milliseconds pauseBeforeAnswer{0};
    std::size_t incrementSize = 0;  // 0: everything in one piece
    int stopsAfterIncrements = -1;  // with SIGSTOP, the first time
    int diesAfterIncrements = -1;   // with SIGKILL
    int copiesAgainAfterIncrements = -1;
    std::chrono::milliseconds pauseBeforeIncrement{0};
};

/// Another program, a process of its own, which owns the clipboard as soon as this object exists.
class ForeignProgram : NonCopyable {
public:
    static constexpr char kObeyed = 'o';
    static constexpr char kTransferEnded = 't';
    static constexpr int kManyTimes = 5000;

    /// Runs `program` in another process, until the pipe of its commands is closed. It writes `kObeyed` into its
    /// replies when it owns the clipboard and after each command.
    explicit ForeignProgram(const std::function<void(int commands, int replies)>& program);
    virtual ~ForeignProgram();

    Process& process() { return *process_; }

    /// Whether a transfer in increments has ended.
    bool hasEndedTransfer();

    // Each returns once it has happened.
    void copyAgain() { command('c'); }
    void copyManyTimes() { command('m'); }  // kManyTimes
    void select() { command('p'); }         // takes PRIMARY
    void clear() { command('0'); }

protected:
    void command(char letter);

private:
    char nextReply();

    int commands_ = -1;
    int replies_ = -1;
    std::unique_ptr<Process> process_;
};

}  // namespace ravlin::tests
