#include "Views/ReleaseNotes.h"

#include "Views/Metrics.h"

#include <QDesktopServices>

namespace ravlin {

ReleaseNotes::ReleaseNotes(const QString& notes, bool isMarkdown, QWidget* parent) : QTextBrowser(parent) {
    setObjectName(QStringLiteral("releaseNotes"));
    setAccessibleName(QStringLiteral("Release Notes"));
    setOpenLinks(false);
    setUndoRedoEnabled(false);
    setFixedSize(Metrics::kNoticeTextWidth, Metrics::kNotesHeight);
    if (isMarkdown) {
        constexpr QTextDocument::MarkdownFeatures kNoHTML{QTextDocument::MarkdownNoHTML};
        document()->setMarkdown(notes, kNoHTML | QTextDocument::MarkdownDialectCommonMark);
    } else {
        setPlainText(notes);
    }
    setAccessibleDescription(toPlainText());
    connect(this, &QTextBrowser::anchorClicked, this, [](const QUrl& link) {
        if (mayOpen(link)) QDesktopServices::openUrl(link);
    });
}

bool ReleaseNotes::mayOpen(const QUrl& link) {
    return link.isValid() && link.scheme() == QLatin1String("https") && !link.host().isEmpty();
}

QVariant ReleaseNotes::loadResource(int /*type*/, const QUrl& /*name*/) {
    return {};
}

}  // namespace ravlin
