#include "Platform/Clipboard/Wayland/PipeReader.h"

#include <array>
#include <cerrno>
#include <new>

#include <fcntl.h>
#include <unistd.h>

namespace ravlin {

PipeReader::PipeReader(std::size_t byteLimit) : byteLimit_(byteLimit) {
    std::array<int, 2> ends = {};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) return;
    // Only this end: the program at the other one may rely on blocking writes.
    fcntl(ends[0], F_SETFL, O_NONBLOCK);  // NOLINT(cppcoreguidelines-pro-type-vararg): there is no other way to call it
    reading_ = Descriptor(ends[0]);
    writing_ = Descriptor(ends[1]);
}

PipeReader::State PipeReader::proceed() {
    std::array<char, 65536> block;  // NOLINT(cppcoreguidelines-pro-type-member-init): written before it is read
    for (;;) {
        const ssize_t size = ::read(reading_.get(), block.data(), block.size());
        if (size < 0 && errno == EINTR) continue;
        if (size < 0 && errno == EAGAIN) return State::open;
        if (size <= 0) return State::ended;
        if (bytes_.size() + static_cast<std::size_t>(size) > byteLimit_) return State::tooLarge;
        try {
            bytes_.append(block.data(), static_cast<std::size_t>(size));
        } catch (const std::bad_alloc&) {
            return State::tooLarge;
        }
    }
}

}  // namespace ravlin
