#pragma once

#include "Platform/Clipboard/Descriptor.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>

namespace ravlin {

/// Writes a text into a pipe whose reader takes it at its own pace. Never waits for the reader.
class PipeWriter {
public:
    /// Takes ownership of `descriptor`, the pipe to write into.
    PipeWriter(int descriptor, std::shared_ptr<const std::string> text);

    /// Writes what the pipe takes now. False once there is nothing left to write, or no reader left.
    bool proceed();

    int descriptor() const noexcept { return descriptor_.get(); }

    /// When the reader last took something.
    std::chrono::steady_clock::time_point lastStep() const noexcept { return lastStep_; }

private:
    Descriptor descriptor_;
    std::shared_ptr<const std::string> text_;
    std::size_t offset_ = 0;
    std::chrono::steady_clock::time_point lastStep_ = std::chrono::steady_clock::now();
};

}  // namespace ravlin
