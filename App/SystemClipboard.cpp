#include "App/SystemClipboard.h"

#include "Platform/Clipboard/PasteboardFactory.h"
#include "Platform/Desktop/QClipboardPasteboard.h"
#include "Platform/Desktop/QtWaylandPasteboard.h"
#include "Platform/Desktop/WindowSystem.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <vector>

namespace ravlin {
namespace {

/// How often our text is put back on the clipboard between two openings of the panel.
constexpr int kMaximumSavings = 3;

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
    Pasteboard::general();  // whose static objects have to outlive what is done at the exit
    [[maybe_unused]] static const int kResult = std::atexit(&linger);
    deadline_.setSingleShot(true);
    connect(&deadline_, &QTimer::timeout, this, &SystemClipboard::processEvents);
    ensureOpen();
}

SystemClipboard::~SystemClipboard() {
    release();
}

void SystemClipboard::ensureOpen() {
    savingsLeft_ = kMaximumSavings;
    if (pasteboard_ == nullptr || pasteboard_->fileDescriptor() < 0) reopen();
}

void SystemClipboard::reopen() {
    const SystemPasteboard::Text text = pasteboard_ != nullptr ? pasteboard_->textToSave() : nullptr;
    release();
    pasteboard_ = openSystemPasteboard(backEnds());
    Pasteboard::setGeneral(pasteboard_.get());
    if (pasteboard_ == nullptr) return;
    notifier_ = std::make_unique<QSocketNotifier>(pasteboard_->fileDescriptor(), QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, &SystemClipboard::processEvents);
    if (text != nullptr) pasteboard_->saveText(text);
}

void SystemClipboard::linger() {
    if (auto* const pasteboard = dynamic_cast<SystemPasteboard*>(&Pasteboard::general())) pasteboard->lingerIfOwner();
}

std::unique_ptr<SystemPasteboard> SystemClipboard::release() {
    deadline_.stop();
    notifier_.reset();
    Pasteboard::setGeneral(nullptr);
    return std::move(pasteboard_);
}

void SystemClipboard::processEvents() {
    pasteboard_->processEvents();
    watchDeadline();
    if (pasteboard_->fileDescriptor() >= 0) return;
    notifier_->setEnabled(false);
    // Not before the notifier has finished with its signal.
    QMetaObject::invokeMethod(this, "saveText", Qt::QueuedConnection);
}

/// A broken connection is left alone until the panel opens again, unless our text would be lost. Even then only so
/// often: one that keeps breaking must not keep the program busy.
void SystemClipboard::saveText() {
    const bool isBroken = pasteboard_ != nullptr && pasteboard_->fileDescriptor() < 0;
    if (!isBroken || pasteboard_->textToSave() == nullptr || savingsLeft_ == 0) return;
    --savingsLeft_;
    reopen();
}

void SystemClipboard::watchDeadline() {
    const auto deadline = pasteboard_->nextDeadline();
    if (!deadline) {
        deadline_.stop();
    } else if (!deadline_.isActive()) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(*deadline - std::chrono::steady_clock::now());
        deadline_.start(std::max(left, std::chrono::milliseconds(0)));
    }
}

void SystemClipboard::takeOverFromQt(const QString& text) {
    if (pasteboard_ == nullptr || dynamic_cast<const QClipboardPasteboard*>(pasteboard_.get()) != nullptr) return;
    pasteboard_->replaceIfUnchanged(pasteboard_->changeCount(), text.toStdString());
}

}  // namespace ravlin
