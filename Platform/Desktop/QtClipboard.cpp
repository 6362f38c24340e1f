#include "Platform/Desktop/QtClipboard.h"

#include "Platform/Clipboard/ClipboardTypes.h"

#include <QGuiApplication>
#include <QMimeData>

#include <sys/eventfd.h>

namespace ravlin {

QtClipboard::QtClipboard() : clipboard_(QGuiApplication::clipboard()), wakeUp_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    QObject::connect(clipboard_, &QClipboard::dataChanged, &listener_, [this] { ++changeCount_; });
}

std::int64_t QtClipboard::changeCount() {
    completeClear();
    return changeCount_;
}

std::optional<std::string> QtClipboard::string() {
    return data(Type::string);
}

/// By the names of the types: Qt's own idea of "has text" includes lists of files.
std::optional<std::string> QtClipboard::data(Type type) {
    const std::vector<std::string> offered = types();
    const std::string* const name = ClipboardTypes::best(type, offered);
    if (name == nullptr) return std::nullopt;
    std::string bytes = clipboard_->mimeData()->data(QString::fromStdString(*name)).toStdString();
    return type == Type::string ? ClipboardTypes::decoded(*name, std::move(bytes)) : std::optional(std::move(bytes));
}

std::optional<std::size_t> QtClipboard::itemCount() {
    return types().empty() ? 0 : 1;
}

/// What is on offer.
std::vector<std::string> QtClipboard::types() {
    completeClear();
    std::vector<std::string> names;
    const QMimeData* const content = clipboard_->mimeData();
    if (content == nullptr) return names;
    const QStringList formats = content->formats();
    for (const QString& each : formats) names.push_back(each.toStdString());
    return names;
}

void QtClipboard::clearContents() {
    isClearPending_ = true;
    eventfd_write(wakeUp_.get(), 1);  // so that `processEvents` comes even if nothing else happens
}

bool QtClipboard::setString(std::string_view text) {
    isClearPending_ = false;
    const std::int64_t before = changeCount_;
    clipboard_->setText(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
    return changeCount_ != before;
}

void QtClipboard::processEvents() {
    eventfd_t count = 0;
    eventfd_read(wakeUp_.get(), &count);
    completeClear();
}

void QtClipboard::completeClear() {
    if (!std::exchange(isClearPending_, false)) return;
    clipboard_->clear();
}

}  // namespace ravlin
