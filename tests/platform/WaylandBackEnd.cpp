// The back end that needs data control, and the programs of a desktop that has it.

#include "tests/platform/WaylandClients.h"

namespace ravlin::tests {

std::unique_ptr<SystemPasteboard> openBackEnd(ReadLimits limits) {
    return openPasteboard(limits);
}

std::unique_ptr<ForeignProgram> copyElsewhere(const OwnerPlan& plan) {
    return std::make_unique<ForeignSource>(plan);
}

const std::vector<std::string> kCopyingProgram = {"wl-copy", "--foreground"};
const std::vector<std::string> kPastingProgram = {"wl-paste", "--no-newline"};

}  // namespace ravlin::tests
