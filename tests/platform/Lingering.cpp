#include "tests/platform/Lingering.h"

#include <chrono>
#include <csignal>
#include <fstream>

#include <sys/prctl.h>
#include <sys/wait.h>

namespace ravlin::tests {

Lingering::Lingering() {
    prctl(PR_SET_CHILD_SUBREAPER, 1);
}

Lingering::~Lingering() {
    if (const pid_t left = child(); left != 0) {
        kill(left, SIGKILL);
        waitpid(left, nullptr, 0);
    }
}

bool Lingering::copyAndQuit(const std::string& text) {
    Process program({LINGERING_OWNER}, text);
    // The output ends when no process holds it any more, not even the lingering child.
    while (program.readOutput()) {
        if (!isReadable(program.outputDescriptor(), kGenerously)) return false;
    }
    EXPECT_EQ(program.output(), "descriptor -1\n");
    return program.waitForEnd() == 0;
}

pid_t Lingering::child() {
    std::ifstream file("/proc/thread-self/children");
    pid_t id = 0;
    file >> id;
    return id;
}

std::optional<int> Lingering::exitStatusOf(pid_t id) {
    const auto deadline = Clock::now() + kGenerously;
    int status = 0;
    while (waitpid(id, &status, WNOHANG) == 0) {
        if (Clock::now() > deadline) return std::nullopt;
        isReadable(-1, std::chrono::milliseconds(2));
    }
    return WIFEXITED(status) ? std::optional(WEXITSTATUS(status)) : std::nullopt;
}

std::string Lingering::paste() {
    Process program(kPastingProgram);
    while (program.readOutput()) {
        if (!isReadable(program.outputDescriptor(), kGenerously)) return "nothing comes";
    }
    return program.output();
}

}  // namespace ravlin::tests
