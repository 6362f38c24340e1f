#include "Platform/Desktop/QtWaylandPasteboard.h"

#include "Platform/Desktop/QClipboardPasteboard.h"

#include <QAbstractEventDispatcher>
#include <QGuiApplication>

#include <chrono>

namespace ravlin {
namespace {

/// How long programs that have asked for our text may take to read it when this one ends.
constexpr std::chrono::milliseconds kFarewell{100};

}  // namespace

std::unique_ptr<QtWaylandPasteboard> QtWaylandPasteboard::open(wl_display* display, std::string& whyNot) {
    std::unique_ptr<QtWaylandPasteboard> pasteboard(new QtWaylandPasteboard);
    return pasteboard->start(display, whyNot) ? std::move(pasteboard) : nullptr;
}

QtWaylandPasteboard::QtWaylandPasteboard() : FocusPasteboard(ReadLimits{}) {
    // Qt reads from the connection in a thread of its own, and wakes this one each time, but handles no events other
    // than its own. Those of this object are handled before this thread goes back to sleep.
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, &listener_,
                     [this] { processEvents(); });
    QObject::connect(qGuiApp, &QCoreApplication::aboutToQuit, &listener_, [this] {
        finishTransfers(std::chrono::steady_clock::now() + kFarewell);
        letGo();
    });
}

/// Weston lets a program read the clipboard through only one of its offers, the latest. The others end at once. So what
/// is empty here may be there for Qt to read.
std::optional<std::string> QtWaylandPasteboard::read(Type type) {
    const std::optional<std::string> content = FocusPasteboard::read(type);
    return content == "" ? QClipboardPasteboard().data(type).value_or("") : content;
}

}  // namespace ravlin
