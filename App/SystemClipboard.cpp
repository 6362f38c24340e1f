#include "App/SystemClipboard.h"

#include "Platform/Clipboard/PasteboardFactory.h"
#include "Platform/Desktop/QClipboardPasteboard.h"
#include "Platform/Desktop/QtWaylandPasteboard.h"
#include "Platform/Desktop/WindowSystem.h"

#include <vector>

namespace ravlin {
namespace {

/// The last resort if nothing else reaches the desktop's clipboard: whatever Qt's windows have.
std::unique_ptr<SystemPasteboard> openThroughQt(std::string& whyNot) {
    if (wl_display* const display = WindowSystem::waylandDisplay()) return QtWaylandPasteboard::open(display, whyNot);
    if (!WindowSystem::isX11()) return std::make_unique<QClipboardPasteboard>();
    whyNot = "has no other display";
    return nullptr;
}

/// All ways to the clipboard, best first.
std::vector<PasteboardBackEnd> backEnds() {
    const auto better = pasteboardBackEnds();
    std::vector<PasteboardBackEnd> all(better.begin(), better.end());
    all.push_back({.name = "Qt", .open = openThroughQt});
    return all;
}

}  // namespace

SystemClipboard::SystemClipboard() {
    connect(&qtCopies_, &QtCopies::copied, this, &SystemClipboard::takeOverFromQt);
    ensureOpen();
}

SystemClipboard::~SystemClipboard() {
    release();
}

void SystemClipboard::ensureOpen() {
    if (pasteboard_ != nullptr && pasteboard_->fileDescriptor() >= 0) return;
    release();
    pasteboard_ = openSystemPasteboard(backEnds());
    Pasteboard::setGeneral(pasteboard_.get());
    if (pasteboard_ == nullptr) return;
    notifier_ = std::make_unique<QSocketNotifier>(pasteboard_->fileDescriptor(), QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, &SystemClipboard::processEvents);
}

std::unique_ptr<SystemPasteboard> SystemClipboard::release() {
    notifier_.reset();
    Pasteboard::setGeneral(nullptr);
    return std::move(pasteboard_);
}

/// A broken connection is left alone until the panel opens again: one that keeps breaking must not keep the program
/// busy.
void SystemClipboard::processEvents() {
    pasteboard_->processEvents();
    if (pasteboard_->fileDescriptor() < 0) notifier_->setEnabled(false);
}

void SystemClipboard::takeOverFromQt(const QString& text) {
    if (pasteboard_ == nullptr || dynamic_cast<const QClipboardPasteboard*>(pasteboard_.get()) != nullptr) return;
    pasteboard_->replaceIfUnchanged(pasteboard_->changeCount(), text.toStdString());
}

}  // namespace ravlin
