#include "Platform/Desktop/QClipboardPasteboard.h"

#include "Platform/Clipboard/TextFormats.h"

#include <QGuiApplication>
#include <QMimeData>

#include <sys/eventfd.h>

namespace ravlin {

QClipboardPasteboard::QClipboardPasteboard()
    : clipboard_(QGuiApplication::clipboard()), wakeUp_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    QObject::connect(clipboard_, &QClipboard::dataChanged, &listener_, [this] { noteChange(); });
}

/// Goes by the names of the types: Qt's own idea of "has text" includes lists of files.
std::optional<std::string> QClipboardPasteboard::read(Type type) {
    const std::optional<TextFormats::Match> match = TextFormats::best(type, types());
    if (!match) return std::nullopt;
    std::string bytes = clipboard_->mimeData()->data(QString::fromStdString(match->name)).toStdString();
    return type == Type::string ? TextFormats::decodedUntyped(match->format, std::move(bytes)) : bytes;
}

std::vector<std::string> QClipboardPasteboard::types() const {
    std::vector<std::string> names;
    const QMimeData* const content = clipboard_->mimeData();
    if (content == nullptr) return names;
    const QStringList formats = content->formats();
    for (const QString& each : formats) names.push_back(each.toStdString());
    return names;
}

/// Qt signals the change before `setText` returns.
bool QClipboardPasteboard::write(const Text& text, std::int64_t /*count*/) {
    const std::int64_t before = countSoFar();
    clipboard_->setText(QString::fromStdString(text->text()));
    return countSoFar() != before;
}

void QClipboardPasteboard::wakeUp() {
    eventfd_write(wakeUp_.get(), 1);
}

void QClipboardPasteboard::handleEvents() {
    eventfd_t count = 0;
    eventfd_read(wakeUp_.get(), &count);
}

}  // namespace ravlin
