#include "App/QuitSignals.h"

#include <array>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace ravlin {
namespace {

constexpr std::array kSignals = {SIGTERM, SIGINT, SIGHUP};

// A pipe from the handler to the event loop: a handler may do little more than write.
std::array<int, 2> pipeEnds = {-1, -1};  // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

void passOn(int /*signal*/) {
    const int savedError = errno;
    const char wakeUp = 0;
    [[maybe_unused]] const ssize_t written = write(pipeEnds[1], &wakeUp, 1);  // a full pipe wakes it up, too
    errno = savedError;
}

/// A signal that was ignored when the program started stays ignored: that is what nohup asks for.
void handleWith(void (*handler)(int)) {
    struct sigaction action = {};
    action.sa_handler = handler;  // NOLINT(cppcoreguidelines-pro-type-union-access)
    action.sa_flags = SA_RESTART;
    for (const int signal : kSignals) {
        struct sigaction before = {};
        sigaction(signal, nullptr, &before);
        if (before.sa_handler != SIG_IGN) sigaction(signal, &action, nullptr);
    }
}

}  // namespace

QuitSignals::QuitSignals() {
    if (pipe2(pipeEnds.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;
    notifier_ = std::make_unique<QSocketNotifier>(pipeEnds[0], QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, [this] {
        notifier_->setEnabled(false);  // quitting once is enough
        Q_EMIT received();
    });
    handleWith(&passOn);
}

QuitSignals::~QuitSignals() {
    if (notifier_ == nullptr) return;
    // The program is already quitting; a second signal must not end it before it has handed over the clipboard.
    handleWith(SIG_IGN);
    notifier_.reset();
    for (const int end : pipeEnds) close(end);
}

}  // namespace ravlin
