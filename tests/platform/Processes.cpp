#include "tests/platform/Processes.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ravlin::tests {
namespace {

/// In the child: ends together with the test program, whatever happens to that.
void endWithParent(pid_t parent) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) _exit(1);
}

[[noreturn]] void execute(const std::vector<std::string>& command) {
    std::vector<char*> arguments;
    for (const std::string& each : command) arguments.push_back(const_cast<char*>(each.c_str()));
    arguments.push_back(nullptr);
    execvp(arguments.front(), arguments.data());
    _exit(127);
}

/// A file without a name that holds `content`, open at its beginning.
int openFileWith(std::string_view content) {
    std::string path = "/tmp/ravlin-test-XXXXXX";
    const int file = mkostemp(path.data(), O_CLOEXEC);
    unlink(path.c_str());
    while (!content.empty()) {
        const ssize_t size = write(file, content.data(), content.size());
        if (size < 0) throw std::runtime_error("cannot write " + path);
        content.remove_prefix(static_cast<std::size_t>(size));
    }
    lseek(file, 0, SEEK_SET);
    return file;
}

}  // namespace

bool isReadable(int descriptor, std::chrono::milliseconds atMost) {
    pollfd waited = {.fd = descriptor, .events = POLLIN, .revents = 0};
    return poll(&waited, 1, static_cast<int>(atMost.count())) > 0;
}

Process::Process(const std::vector<std::string>& command, std::string_view standardInput) {
    const int input = openFileWith(standardInput);
    std::array<int, 2> output = {};
    if (pipe2(output.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    const pid_t parent = getpid();
    id_ = fork();
    if (id_ == 0) {
        endWithParent(parent);
        dup2(input, STDIN_FILENO);
        dup2(output[1], STDOUT_FILENO);
        dup2(open("/dev/null", O_WRONLY | O_CLOEXEC), STDERR_FILENO);
        execute(command);
    }
    close(input);
    close(output[1]);
    output_ = output[0];
    fcntl(output_, F_SETFL, O_NONBLOCK);
}

Process::Process(const std::function<void()>& body) {
    const pid_t parent = getpid();
    id_ = fork();
    if (id_ != 0) return;
    endWithParent(parent);
    body();
    _exit(0);
}

Process::~Process() {
    kill();
    if (output_ >= 0) close(output_);
}

void Process::stop() {
    ::kill(id_, SIGSTOP);
    waitForStop();
}

bool Process::waitForStop() {
    int status = 0;
    return waitpid(id_, &status, WUNTRACED) == id_ && WIFSTOPPED(status);
}

void Process::resume() {
    ::kill(id_, SIGCONT);
}

void Process::kill() {
    if (isEnded_) return;
    ::kill(id_, SIGKILL);
    waitpid(id_, nullptr, 0);
    isEnded_ = true;
}

void Process::end() {
    if (isEnded_) return;
    ::kill(id_, SIGTERM);
    waitForEnd();
}

bool Process::readOutput() {
    std::array<char, 65536> block = {};
    for (;;) {
        const ssize_t size = read(output_, block.data(), block.size());
        if (size > 0) outputText_.append(block.data(), static_cast<std::size_t>(size));
        if (size == 0) return false;
        if (size < 0 && errno == EAGAIN) return true;
    }
}

bool Process::hasEnded() {
    isEnded_ = isEnded_ || waitpid(id_, &status_, WNOHANG) == id_;
    return isEnded_;
}

std::optional<int> Process::waitForEnd() {
    const auto deadline = Clock::now() + kGenerously;
    while (!hasEnded()) {
        if (Clock::now() > deadline) return std::nullopt;
        isReadable(-1, std::chrono::milliseconds(2));
    }
    return WIFEXITED(status_) ? std::optional(WEXITSTATUS(status_)) : std::nullopt;
}

PrivateServer::PrivateServer()
    : process_({"Xvfb", "-displayfd", "1", "-screen", "0", "640x480x24", "-nolisten", "tcp", "-noreset"}) {
    const auto deadline = Clock::now() + kGenerously;
    while (process_.output().find('\n') == std::string::npos) {
        if (Clock::now() > deadline) throw std::runtime_error("Xvfb does not start");
        isReadable(process_.outputDescriptor(), std::chrono::milliseconds(100));
        process_.readOutput();
    }
    display_ = ":" + process_.output().substr(0, process_.output().find('\n'));
}

std::string textOfSize(std::size_t byteSize) {
    std::string text;
    text.reserve(byteSize + 32);
    for (std::size_t line = 0; text.size() < byteSize; ++line) text += "line " + std::to_string(line) + '\n';
    text.resize(byteSize);
    return text;
}

}  // namespace ravlin::tests
