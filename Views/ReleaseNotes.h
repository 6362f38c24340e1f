#pragma once

#include <QTextBrowser>

namespace ravlin {

/// What is new in a version, as its makers wrote it. Nothing is loaded for it, neither from the web nor from the disk,
/// and a link opens only when it is clicked, only in the user's browser, and only over https.
class ReleaseNotes final : public QTextBrowser {
    Q_OBJECT

public:
    /// HTML in Markdown is shown as the text it is.
    ReleaseNotes(const QString& notes, bool isMarkdown, QWidget* parent = nullptr);

    /// Whether a click on `link` may open it.
    static bool mayOpen(const QUrl& link);

protected:
    QVariant loadResource(int type, const QUrl& name) override;
};

}  // namespace ravlin
