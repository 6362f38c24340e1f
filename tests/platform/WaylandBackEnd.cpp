// The back end that needs data control, and the programs of a desktop that has it.

#include "tests/platform/WaylandClients.h"

#include <algorithm>

namespace ravlin::tests {

std::unique_ptr<SystemPasteboard> openBackEnd(ReadLimits limits) {
    return openPasteboard(limits);
}

std::unique_ptr<ForeignProgram> copyElsewhere(const OwnerPlan& plan) {
    return std::make_unique<ForeignSource>(plan);
}

std::optional<std::string> pasteElsewhere(const std::string& target, SystemPasteboard& pasteboard) {
    Paster paster;
    return std::ranges::count(paster.types(), target) > 0 ? paster.read(target, pasteboard) : std::nullopt;
}

std::unique_ptr<StallingReader> stallElsewhere(SystemPasteboard& pasteboard) {
    return std::make_unique<StallingPaster>(pasteboard);
}

// The pipe closes either way, and the compositor may learn of the death a moment later.
const bool kTellsTheEndOfATextFromADeath = false;
const bool kKeepsCopiesInTheMomentOfAWrite = false;

const std::vector<std::string> kCopyingProgram = {"wl-copy", "--foreground"};
const std::vector<std::string> kPastingProgram = {"wl-paste", "--no-newline"};

}  // namespace ravlin::tests
