#pragma once

#include <QScrollBar>

namespace ravlin {

/// A slim vertical scroll bar in the panel's padding, so that rows are equally wide with and without it. It behaves
/// like the desktop's own; only the handle is drawn.
class PanelScrollBar final : public QScrollBar {
    Q_OBJECT

public:
    explicit PanelScrollBar(QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace ravlin
