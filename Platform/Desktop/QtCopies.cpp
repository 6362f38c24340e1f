#include "Platform/Desktop/QtCopies.h"

#include "Platform/Desktop/WindowSystem.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include <wayland-client-core.h>

namespace ravlin {

QtCopies::QtCopies() {
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, &QtCopies::look);
}

void QtCopies::look() {
    const QClipboard* const clipboard = QGuiApplication::clipboard();
    if (!clipboard->ownsClipboard() || !clipboard->mimeData()->hasText()) return;
    // A compositor may not have heard of it yet, and would take what comes on another connection for the older copy.
    if (wl_display* const display = WindowSystem::waylandDisplay()) wl_display_roundtrip(display);
    Q_EMIT copied(clipboard->text());
}

}  // namespace ravlin
