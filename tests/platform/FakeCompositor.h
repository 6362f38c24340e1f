#pragma once

#include "tests/platform/Processes.h"

#include <memory>
#include <string>

namespace ravlin::tests {

/// A compositor without a screen, in a process of its own, that has seats which come and go, and data control under its
/// newer name, if at all. The clipboard of each new seat holds the text "text", which the compositor itself serves.
class FakeCompositor {
public:
    struct Plan {
        bool hasDataControl = true;
        bool hasSeat = true;
    };
    explicit FakeCompositor(Plan plan);
    FakeCompositor(const FakeCompositor&) = delete;
    FakeCompositor& operator=(const FakeCompositor&) = delete;
    FakeCompositor(FakeCompositor&&) = delete;
    FakeCompositor& operator=(FakeCompositor&&) = delete;
    ~FakeCompositor();

    const std::string& display() const { return display_; }

    // Each returns when the compositor has done it.
    void addSeat() { command('+'); }
    void removeSeat() { command('-'); }  // the oldest
    void select() { command('p'); }      // as if somebody had selected "selected" on the oldest seat

private:
    void command(char letter);
    void awaitReply();

    std::string display_;
    int commands_ = -1;
    int replies_ = -1;
    std::unique_ptr<Process> process_;
};

}  // namespace ravlin::tests
