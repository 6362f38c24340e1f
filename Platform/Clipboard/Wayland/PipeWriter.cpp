#include "Platform/Clipboard/Wayland/PipeWriter.h"

#include <cerrno>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace ravlin {

PipeWriter::PipeWriter(int descriptor, std::shared_ptr<const std::string> text)
    : descriptor_(descriptor), text_(std::move(text)) {
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): there is no other way to call it
    fcntl(descriptor, F_SETFL, fcntl(descriptor, F_GETFL) | O_NONBLOCK);
}

bool PipeWriter::proceed() {
    while (offset_ < text_->size()) {
        const std::string_view rest = std::string_view(*text_).substr(offset_);
        const ssize_t written = write(descriptor_.get(), rest.data(), rest.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return errno == EAGAIN;
        offset_ += static_cast<std::size_t>(written);
        lastStep_ = std::chrono::steady_clock::now();
    }
    return false;
}

}  // namespace ravlin
