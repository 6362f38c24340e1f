#include "Platform/Desktop/QtPasteboard.h"

#include "Platform/Clipboard/Wayland/WaylandPasteboard.h"
#include "Platform/Desktop/QtClipboard.h"

#include <QAbstractEventDispatcher>
#include <QGuiApplication>
#include <qpa/qplatformnativeinterface.h>

#include <chrono>
#include <utility>

namespace ravlin {
namespace {

/// How long those who have asked for our text may take for it when the program ends.
constexpr std::chrono::milliseconds kFarewell{100};

/// The connection of Qt's windows; null where they have none.
wl_display* waylandDisplay() {
    if (!QGuiApplication::platformName().startsWith(QLatin1String("wayland"))) return nullptr;
    void* const display = QGuiApplication::platformNativeInterface()->nativeResourceForIntegration("wl_display");
    return static_cast<wl_display*>(display);
}

}  // namespace

std::unique_ptr<SystemPasteboard> QtPasteboard::open(std::string& whyNot) {
    if (wl_display* const display = waylandDisplay()) {
        auto clipboard = WaylandPasteboard::openOn(display, whyNot);
        if (!clipboard) return nullptr;
        return std::unique_ptr<SystemPasteboard>(new QtPasteboard(std::move(clipboard)));
    }
    if (QGuiApplication::platformName() == QLatin1String("xcb")) {
        whyNot = "has no other display";
        return nullptr;
    }
    return std::make_unique<QtClipboard>();
}

QtPasteboard::QtPasteboard(std::unique_ptr<WaylandPasteboard> clipboard) : clipboard_(std::move(clipboard)) {
    // Qt reads from the connection in a thread of its own, and wakes this one each time, but knows of no other events
    // than its own. Those of this object are handled by the time this thread goes to sleep again.
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, &listener_,
                     [this] { processEvents(); });
    QObject::connect(qGuiApp, &QCoreApplication::aboutToQuit, &listener_, [this] { letGo(); });
}

QtPasteboard::~QtPasteboard() = default;

void QtPasteboard::letGo() {
    if (clipboard_) clipboard_->finishTransfers(std::chrono::steady_clock::now() + kFarewell);
    clipboard_.reset();
}

std::int64_t QtPasteboard::changeCount() {
    return clipboard_ ? clipboard_->changeCount() : 0;
}

std::optional<std::string> QtPasteboard::string() {
    return data(Type::string);
}

/// What the clipboard offers to a program Weston lets be read once only: from the latest of the program's offers. The
/// others are at their end at once. So what is empty here may have been for Qt to read.
std::optional<std::string> QtPasteboard::data(Type type) {
    if (!clipboard_) return std::nullopt;
    std::optional<std::string> bytes = clipboard_->data(type);
    if (bytes != "" || clipboard_->isOwner()) return bytes;
    return QtClipboard().data(type).value_or("");
}

std::optional<std::size_t> QtPasteboard::itemCount() {
    return clipboard_ ? clipboard_->itemCount() : std::nullopt;
}

void QtPasteboard::clearContents() {
    if (clipboard_) clipboard_->clearContents();
}

bool QtPasteboard::setString(std::string_view text) {
    return clipboard_ && clipboard_->setString(text);
}

int QtPasteboard::fileDescriptor() const {
    return clipboard_ ? clipboard_->fileDescriptor() : -1;
}

void QtPasteboard::processEvents() {
    if (clipboard_) clipboard_->processEvents();
}

}  // namespace ravlin
