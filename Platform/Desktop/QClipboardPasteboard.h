#pragma once

#include "Platform/Clipboard/Descriptor.h"
#include "Platform/Clipboard/SystemPasteboard.h"

#include <QClipboard>
#include <QObject>

#include <string>
#include <vector>

namespace ravlin {

/// QClipboard, for Qt platforms that have no other clipboard: it reaches as far as Qt's platform plugin does, and
/// counts the changes that Qt signals. Belongs to the application object's thread, and must not be used after that
/// object is gone. Nothing lingers.
class QClipboardPasteboard final : public SystemPasteboard {
public:
    QClipboardPasteboard();
    int fileDescriptor() const override { return wakeUp_.get(); }

private:
    std::optional<std::string> read(Type type) override;
    bool awaitAnswer() override { return true; }
    bool isEmpty() const override { return types().empty(); }
    Text ownText() const override { return nullptr; }  // Qt has it at hand
    bool write(const Text& text, std::int64_t count) override;
    void clear() override { clipboard_->clear(); }
    void wakeUp() override;
    void handleEvents() override;
    void settle() override {}
    std::vector<std::string> types() const;

    QClipboard* clipboard_;
    Descriptor wakeUp_;
    QObject listener_;
};

}  // namespace ravlin
