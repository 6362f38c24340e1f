#pragma once

#include "Platform/Clipboard/Descriptor.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace ravlin {

/// Collects what another program writes into a pipe, as it arrives. Never waits for that program.
class PipeReader {
public:
    enum class State : std::uint8_t {
        open,     // more may arrive
        ended,    // everything has arrived
        tooLarge  // more than the limit has arrived
    };

    /// Opens a pipe from which at most `byteLimit` bytes will be read. If the system has none left, it is at its end at
    /// once, and nothing can be requested.
    explicit PipeReader(std::size_t byteLimit);

    /// Takes what is in the pipe now.
    State proceed();

    /// The end for the other program; close it here once it has been handed over. -1 if there is no pipe.
    int writingEnd() const noexcept { return writing_.get(); }
    void closeWritingEnd() noexcept { writing_.reset(); }

    /// Readable when there is something to take.
    int descriptor() const noexcept { return reading_.get(); }

    /// What has arrived so far.
    std::string& bytes() noexcept { return bytes_; }

private:
    std::size_t byteLimit_;
    Descriptor reading_;
    Descriptor writing_;
    std::string bytes_;
};

}  // namespace ravlin
