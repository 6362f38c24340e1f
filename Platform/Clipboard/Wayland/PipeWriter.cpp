#include "Platform/Clipboard/Wayland/PipeWriter.h"

#include "Platform/Clipboard/Polling.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace ravlin {
namespace {

// NOLINTBEGIN(cppcoreguidelines-pro-type-vararg): there is no other way to call fcntl and open

/// Whether writes wait is a property of the open file, which a reader that has kept a descriptor of it shares: it could
/// make us wait at any time. Opening the pipe once more gives an open file that only we have. Fails with another user's
/// pipe. A pipe with a name is never opened: its file system may be the reader's own, and never answer.
Descriptor reopened(int pipe) {
    const std::string link = "/proc/self/fd/" + std::to_string(pipe);
    std::error_code error;
    if (!std::filesystem::read_symlink(link, error).native().starts_with("pipe:")) return {};
    return Descriptor(open(link.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC));
}

bool isPipe(int descriptor) {
    return fcntl(descriptor, F_GETPIPE_SZ) >= 0;
}

void makeNonBlocking(int descriptor) {
    fcntl(descriptor, F_SETFL, fcntl(descriptor, F_GETFL) | O_NONBLOCK);
}

// NOLINTEND(cppcoreguidelines-pro-type-vararg)

bool isSocket(int descriptor) {
    int type = 0;
    socklen_t size = sizeof(type);
    return getsockopt(descriptor, SOL_SOCKET, SO_TYPE, &type, &size) == 0;
}

/// A pipe that has room takes this many bytes at once, even if writes wait.
ssize_t writeIfThereIsRoom(int pipe, std::string_view bytes) {
    makeNonBlocking(pipe);
    if (!isReady(pipe, POLLOUT, std::chrono::steady_clock::time_point::min())) {
        errno = EAGAIN;
        return -1;
    }
    return ::write(pipe, bytes.data(), std::min<std::size_t>(bytes.size(), PIPE_BUF));
}

}  // namespace

PipeWriter::PipeWriter(int descriptor, OfferedText::Bytes text)
    : descriptor_(descriptor), kind_(kindOf(descriptor_)), text_(std::move(text)) {}

/// Replaces the descriptor by one that only we have, if possible.
PipeWriter::Kind PipeWriter::kindOf(Descriptor& descriptor) {
    if (isSocket(descriptor.get())) return Kind::socket;
    if (!isPipe(descriptor.get())) return Kind::unusable;
    Descriptor own = reopened(descriptor.get());
    if (own.get() < 0) return Kind::sharedPipe;
    descriptor = std::move(own);
    return Kind::ownPipe;
}

PipeWriter::Progress PipeWriter::proceed() {
    if (kind_ == Kind::unusable) return Progress::finished;
    const std::size_t begin = offset_;
    const std::size_t end = std::min(text_->size(), begin + kTurnSize);
    while (offset_ < end) {
        const ssize_t written = write(std::string_view(*text_).substr(offset_, end - offset_));
        if (written < 0 && errno == EINTR) continue;
        if (written < 0 && errno == EAGAIN) return offset_ > begin ? Progress::some : Progress::none;
        if (written < 0) return Progress::finished;
        offset_ += static_cast<std::size_t>(written);
    }
    return offset_ < text_->size() ? Progress::some : Progress::finished;
}

ssize_t PipeWriter::write(std::string_view bytes) const {
    switch (kind_) {
        case Kind::ownPipe: return ::write(descriptor_.get(), bytes.data(), bytes.size());
        case Kind::sharedPipe: return writeIfThereIsRoom(descriptor_.get(), bytes);
        case Kind::socket: return send(descriptor_.get(), bytes.data(), bytes.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
        case Kind::unusable: break;
    }
    return -1;
}

}  // namespace ravlin
