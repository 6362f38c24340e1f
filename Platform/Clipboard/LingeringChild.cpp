#include "Platform/Clipboard/LingeringChild.h"

#include <algorithm>
#include <csignal>
#include <initializer_list>
#include <utility>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace ravlin {
namespace {

/// All other connections must end with the program: a bus name, for one, stays taken as long as any process holds the
/// socket.
void closeDescriptorsExcept(std::vector<int> kept) {
    std::ranges::sort(kept);
    int next = STDERR_FILENO + 1;
    for (const int descriptor : kept) {
        for (; next < descriptor; ++next) close(next);
        next = descriptor + 1;
    }
    closefrom(next);
}

void redirectStandardStreamsToNull() {
    const int null = open("/dev/null", O_RDWR | O_CLOEXEC);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (null < 0 || dup2(null, stream) < 0) close(stream);
    }
}

/// From now on the process can start no program or process, and neither write to a file nor leave its memory in one.
void giveUpRights() {
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): there is no other way to call it
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    const rlimit none = {.rlim_cur = 0, .rlim_max = 0};
    setrlimit(RLIMIT_NPROC, &none);
    setrlimit(RLIMIT_FSIZE, &none);
    setrlimit(RLIMIT_CORE, &none);
}

void resetSignals() {
    for (const int number : {SIGTERM, SIGINT, SIGHUP, SIGQUIT}) std::signal(number, SIG_DFL);  // NOLINT(cert-err33-c)
    std::signal(SIGPIPE, SIG_IGN);  // NOLINT(cert-err33-c): cannot fail for these signals
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

}  // namespace

ForkSide forkLingeringChild(std::vector<int> keptDescriptors) {
    const pid_t child = fork();
    if (child < 0) return ForkSide::failed;
    if (child > 0) return ForkSide::parent;
    setsid();
    resetSignals();
    closeDescriptorsExcept(std::move(keptDescriptors));
    const bool keepsNoFolderBusy = chdir("/") == 0;
    static_cast<void>(keepsNoFolderBusy);  // a courtesy
    giveUpRights();
    // Last of all, so that a program waiting for our output to end finds everything done.
    redirectStandardStreamsToNull();
    return ForkSide::child;
}

}  // namespace ravlin
