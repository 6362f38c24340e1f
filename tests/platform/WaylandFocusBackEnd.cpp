// The back end that needs the keyboard focus, on a compositor where every window has it, and programs that use the data
// control that this compositor also offers.

#include "tests/platform/FakeCompositor.h"
#include "tests/platform/WaylandClients.h"
#include "tests/platform/WaylandWindow.h"

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

namespace ravlin::tests {
namespace {

FakeCompositor& compositor() {
    static FakeCompositor running({});
    static const bool isReady = [] {
        running.giveFocus();
        return setenv("WAYLAND_DISPLAY", running.display().c_str(), 1) == 0;
    }();
    static_cast<void>(isReady);
    return running;
}

struct WithWindow {
    WaylandWindow window{compositor().display()};
};

/// A pasteboard with its own window, in which the user presses a key before each copy.
class InUse final : private WithWindow, public FocusPasteboard {
public:
    explicit InUse(ReadLimits limits) : FocusPasteboard(limits) {
        std::string whyNot;
        if (!start(window.display(), whyNot)) throw std::runtime_error("no pasteboard: " + whyNot);
    }

private:
    bool write(const Text& text, std::int64_t count) override {
        compositor().pressKey();
        return FocusPasteboard::write(text, count);
    }
};

}  // namespace

std::unique_ptr<SystemPasteboard> openBackEnd(ReadLimits limits) {
    return std::make_unique<InUse>(limits);
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

const std::vector<std::string> kCopyingProgram = {CLIPBOARD_PROGRAM, "copy"};
const std::vector<std::string> kPastingProgram = {CLIPBOARD_PROGRAM, "paste"};

}  // namespace ravlin::tests
