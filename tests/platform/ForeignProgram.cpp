#include "tests/platform/ForeignProgram.h"

#include <array>
#include <stdexcept>

#include <fcntl.h>
#include <unistd.h>

namespace ravlin::tests {

ForeignProgram::ForeignProgram(const std::function<void(int commands, int replies)>& program) {
    std::array<int, 2> commands = {};
    std::array<int, 2> replies = {};
    if (pipe2(commands.data(), O_CLOEXEC) != 0 || pipe2(replies.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipes");
    }
    process_ = std::make_unique<Process>([&] {
        close(commands[1]);
        close(replies[0]);
        program(commands[0], replies[1]);
    });
    close(commands[0]);
    close(replies[1]);
    commands_ = commands[1];
    replies_ = replies[0];
    nextReply();
}

ForeignProgram::~ForeignProgram() {
    close(commands_);
    close(replies_);
}

void ForeignProgram::command(char letter) {
    if (write(commands_, &letter, 1) != 1) throw std::runtime_error("the program takes no commands");
    while (nextReply() != kObeyed) continue;
}

bool ForeignProgram::hasEndedTransfer() {
    return isReadable(replies_, std::chrono::milliseconds(0)) && nextReply() == kTransferEnded;
}

char ForeignProgram::nextReply() {
    char letter = 0;
    if (read(replies_, &letter, 1) != 1) throw std::runtime_error("the program has gone");
    return letter;
}

}  // namespace ravlin::tests
