#pragma once

#include "Platform/Clipboard/Descriptor.h"
#include "Platform/Clipboard/SystemPasteboard.h"

#include <QClipboard>
#include <QObject>

#include <cstdint>
#include <string>
#include <vector>

namespace ravlin {

/// Qt's own clipboard, for platforms of Qt that have no other: it reaches as far as Qt's platform plugin does. Belongs
/// to the application object's thread, and must not be used after that object's end.
class QtClipboard final : public SystemPasteboard {
public:
    QtClipboard();

    /// Counts what the clipboard signals.
    std::int64_t changeCount() override;
    std::optional<std::string> string() override;
    std::optional<std::string> data(Type type) override;
    std::optional<std::size_t> itemCount() override;
    void clearContents() override;
    bool setString(std::string_view text) override;
    int fileDescriptor() const override { return wakeUp_.get(); }
    void processEvents() override;

    /// Nothing lingers.
    void lingerIfOwner() override {}

private:
    std::vector<std::string> types();
    void completeClear();

    QClipboard* clipboard_;
    Descriptor wakeUp_;
    std::int64_t changeCount_ = 0;
    bool isClearPending_ = false;
    QObject listener_;
};

}  // namespace ravlin
