#pragma once

#include <QColor>
#include <QFont>
#include <QPoint>
#include <QString>
#include <QTextLayout>

class QPainter;

namespace ravlin {

/// A plain text broken into lines of a given width: at word boundaries, and inside a word that is wider than a line, so
/// that nothing is ever cut off. Blanks are kept as they are.
class TextBlock {
public:
    static constexpr int kUnlimited = 0;

    /// Breaks `text` in `font` into lines of at most `width` pixels. Beyond `maxLines` lines, the last one ends in "…".
    TextBlock(const QString& text, const QFont& font, int width, int maxLines = kUnlimited);

    QFont font() const { return layout_.font(); }
    int height() const { return height_; }
    int lineCount() const { return lineCount_; }

    /// The height of the first line, on which an icon beside the text is centred.
    int firstLineHeight() const;

    /// The width of the widest line.
    int naturalWidth() const;

    /// Whether text is missing at the end.
    bool isElided() const { return !elidedLine_.isNull(); }

    /// The visible text, with the elided last line in place of what is missing.
    QString shownText() const;

    void paint(QPainter& painter, const QPoint& topLeft, const QColor& color) const;

private:
    int layOut(int width, int maxLines);

    QTextLayout layout_;
    int lineCount_ = 0;
    int height_ = 0;
    QString elidedLine_;  // null unless text is missing
};

}  // namespace ravlin
