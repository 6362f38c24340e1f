#pragma once

#include "Platform/Clipboard/SystemPasteboard.h"
#include "Platform/Desktop/QtCopies.h"

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <memory>

namespace ravlin {

/// The desktop's clipboard as the program's general pasteboard: connects it to the event loop, and reopens it if its
/// connection is lost. Our text survives that, and the end of the program by Qt's hand as well.
///
/// Text that Qt's own widgets or a screen reader put on Qt's clipboard is moved to this one at once. Qt serves its
/// clipboard from the event loop, and this program's next read, which waits for the owner, would wait for itself.
class SystemClipboard final : public QObject {
    Q_OBJECT

public:
    SystemClipboard();
    ~SystemClipboard() override;

    /// Opens the clipboard if it is not open, for example because its connection broke.
    void ensureOpen();

    /// Leaves our text to a child that goes on serving it, if there is any. For when the program is ended from within,
    /// without `release`; in the child, this never returns.
    static void linger();

    /// Takes the clipboard out of the event loop, for the program's end; null if there is none.
    std::unique_ptr<SystemPasteboard> release();

private:
    void processEvents();
    void takeOverFromQt(const QString& text);
    void watchDeadline();
    Q_INVOKABLE void saveText();
    void reopen();

    QtCopies qtCopies_;
    std::unique_ptr<SystemPasteboard> pasteboard_;
    std::unique_ptr<QSocketNotifier> notifier_;
    int savingsLeft_ = 0;
    QTimer deadline_;  // runs only while another program reads our text
};

}  // namespace ravlin
