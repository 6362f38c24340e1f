#pragma once

#include "Platform/Clipboard/Descriptor.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace ravlin {

/// What another program writes into a pipe, taken as it comes. No look into the pipe ever waits for that program.
class PipeReader {
public:
    enum class State : std::uint8_t {
        open,     // more may come
        ended,    // all is there
        tooLarge  // more than the limit has come
    };

    /// Opens a pipe of which not more than `byteLimit` bytes will be read. Where the system has none left it is at its
    /// end at once, and nothing can be asked for.
    explicit PipeReader(std::size_t byteLimit);

    /// Takes what is in the pipe at present.
    State proceed();

    /// The end for the other program, to be closed here once it has been handed over; -1 where there is no pipe.
    int writingEnd() const noexcept { return writing_.get(); }
    void closeWritingEnd() noexcept { writing_.reset(); }

    /// Readable when there is something to take.
    int descriptor() const noexcept { return reading_.get(); }

    /// What has come so far.
    std::string& bytes() noexcept { return bytes_; }

private:
    std::size_t byteLimit_;
    Descriptor reading_;
    Descriptor writing_;
    std::string bytes_;
};

}  // namespace ravlin
