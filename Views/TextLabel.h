#pragma once

#include "Views/PanelColors.h"
#include "Views/TextBlock.h"
#include "Views/TextStyle.h"

#include <QLabel>

namespace ravlin {

/// A plain text in one of the panel's styles and colours. It follows the desktop's font and palette, and is always as
/// high as its text needs.
class TextLabel : public QLabel {
    Q_OBJECT

public:
    static constexpr int kNaturalWidth = 0;  // one line, as wide as the text

    struct Look {
        TextStyle style = TextStyle::caption;
        QColor PanelColors::*color = &PanelColors::text;
        int width = kNaturalWidth;
        int maxLines = TextBlock::kUnlimited;
    };

    TextLabel(const QString& text, const Look& look, QWidget* parent = nullptr);

    void setColor(QColor PanelColors::*color);
    void setTextWidth(int width);

    /// The text as it is laid out now.
    TextBlock block() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    Look look_;
};

}  // namespace ravlin
