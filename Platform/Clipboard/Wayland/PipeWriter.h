#pragma once

#include "Platform/Clipboard/Descriptor.h"
#include "Platform/Clipboard/OfferedText.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

#include <sys/types.h>

namespace ravlin {

/// Writes a text into a pipe or socket whose reader takes it at its own pace. Never waits for the reader, whatever that
/// does with its own descriptors of the same pipe.
class PipeWriter {
public:
    /// At most this much is written in one go, in bytes: other programs and the user interface want their turn, too.
    static constexpr std::size_t kTurnSize = std::size_t{256} << 10;

    enum class Progress : std::uint8_t {
        none,  // the reader has taken nothing yet
        some,
        finished,  // there is nothing left to write, or no reader left
    };

    /// Takes ownership of `descriptor`. Anything but a pipe or a socket counts as a reader that has gone.
    PipeWriter(int descriptor, OfferedText::Bytes text);

    /// Writes what the pipe takes now.
    Progress proceed();

    /// Writable when there is something to do; not always the descriptor that was handed over.
    int descriptor() const noexcept { return descriptor_.get(); }

private:
    enum class Kind : std::uint8_t { ownPipe, sharedPipe, socket, unusable };

    static Kind kindOf(Descriptor& descriptor);
    ssize_t write(std::string_view bytes) const;

    Descriptor descriptor_;
    Kind kind_;
    OfferedText::Bytes text_;
    std::size_t offset_ = 0;
};

}  // namespace ravlin
