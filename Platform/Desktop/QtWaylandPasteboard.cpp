#include "Platform/Desktop/QtWaylandPasteboard.h"

#include "Platform/Desktop/QClipboardPasteboard.h"

#include <QAbstractEventDispatcher>
#include <QGuiApplication>

#include <chrono>

namespace ravlin {
namespace {

/// How long those who have asked for our text may take for it when the program ends.
constexpr std::chrono::milliseconds kFarewell{100};

}  // namespace

std::unique_ptr<QtWaylandPasteboard> QtWaylandPasteboard::open(wl_display* display, std::string& whyNot) {
    std::unique_ptr<QtWaylandPasteboard> pasteboard(new QtWaylandPasteboard);
    return pasteboard->start(display, whyNot) ? std::move(pasteboard) : nullptr;
}

QtWaylandPasteboard::QtWaylandPasteboard() : FocusPasteboard(ReadLimits{}) {
    // Qt reads from the connection in a thread of its own, and wakes this one each time, but knows of no other events
    // than its own. Those of this object are handled by the time this thread goes to sleep again.
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, &listener_,
                     [this] { processEvents(); });
    QObject::connect(qGuiApp, &QCoreApplication::aboutToQuit, &listener_, [this] {
        finishTransfers(std::chrono::steady_clock::now() + kFarewell);
        letGo();
    });
}

/// What the clipboard offers to a program Weston lets be read once only: from the latest of the program's offers. The
/// others are at their end at once. So what is empty here may have been for Qt to read.
std::optional<std::string> QtWaylandPasteboard::read(Type type) {
    const std::optional<std::string> content = FocusPasteboard::read(type);
    return content == "" ? QClipboardPasteboard().data(type).value_or("") : content;
}

}  // namespace ravlin
