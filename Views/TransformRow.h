#pragma once

#include "Engine/TextTransform.h"
#include "Views/PanelButton.h"
#include "Views/PanelColors.h"
#include "Views/TextBlock.h"

#include <QAbstractButton>

namespace ravlin {

/// One transform in the list: its title over its subtitle, and an arrow. All of it is one button.
class TransformRow final : public PanelButton<QAbstractButton> {
    Q_OBJECT

public:
    explicit TransformRow(TextTransform transform, QWidget* parent = nullptr);

    TextTransform transform() const { return transform_; }

    /// The height of the row for `transform` in a list of `width`, known without making the row. A title too wide for
    /// one line takes two.
    static int heightFor(TextTransform transform, int width, const QFont& base);

    /// The texts as they are laid out now. The subtitle has one line, and ends in "…" where that is too short.
    TextBlock titleBlock() const;
    TextBlock subtitleBlock() const;

    QSize sizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void paintGround(QPainter& painter, const PanelColors& colors) const;

    TextTransform transform_;
};

}  // namespace ravlin
