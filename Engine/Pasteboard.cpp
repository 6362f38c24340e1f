#include "Engine/Pasteboard.h"

namespace ravlin {
namespace {

/// Stands in if no desktop's clipboard has been installed: always empty, refuses every write.
class AbsentPasteboard final : public Pasteboard {
public:
    std::int64_t changeCount() override { return 0; }
    std::optional<std::string> string() override { return std::nullopt; }
    std::optional<std::string> data(Type /*type*/) override { return std::nullopt; }
    std::optional<std::size_t> itemCount() override { return std::nullopt; }
    void clearContents() override {}
    bool setString(std::string_view /*text*/) override { return false; }
    bool replaceIfUnchanged(std::int64_t /*count*/, std::string_view /*text*/) override { return false; }
};

Pasteboard*& installedPasteboard() noexcept {
    static Pasteboard* installed = nullptr;
    return installed;
}

}  // namespace

Pasteboard::~Pasteboard() = default;

Pasteboard& Pasteboard::general() noexcept {
    static AbsentPasteboard absent;
    return installedPasteboard() == nullptr ? absent : *installedPasteboard();
}

void Pasteboard::setGeneral(Pasteboard* pasteboard) noexcept {
    installedPasteboard() = pasteboard;
}

}  // namespace ravlin
