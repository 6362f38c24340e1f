#pragma once

#include "Engine/TextTransform.h"
#include "Views/PanelButton.h"
#include "Views/PanelColors.h"
#include "Views/TextBlock.h"

#include <QAbstractButton>

#include <cstdint>

namespace ravlin {

/// One transform in the list: its title over its subtitle, and an arrow. All of it is one button.
class TransformRow final : public PanelButton<QAbstractButton> {
    Q_OBJECT

public:
    explicit TransformRow(TextTransform transform, QWidget* parent = nullptr);

    /// How the row stands out: the pointer is on it, or Return runs it. The list ensures that at most one row does.
    enum class Mark : std::uint8_t { none, hovered, marked };

    TextTransform transform() const { return transform_; }

    Mark mark() const { return mark_; }
    void setMark(Mark mark);

    /// The height of the row for `transform` in a list of `width`, known without making the row. A title too wide for
    /// one line takes two.
    static int heightFor(TextTransform transform, int width, const QFont& base);

    /// The texts as they are laid out now. The subtitle has one line, and ends in "…" if that is too short.
    TextBlock titleBlock() const;
    TextBlock subtitleBlock() const;

    QSize sizeHint() const override;

Q_SIGNALS:
    /// The pointer moved on the row, or pressed it. A row that came under a resting pointer does not count.
    void pointedAt();

    void pointerLeft();

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    void paintGround(QPainter& painter, const PanelColors& colors) const;
    void paintBar(QPainter& painter, const PanelColors& colors) const;

    TextTransform transform_;
    Mark mark_ = Mark::none;
};

}  // namespace ravlin
