#pragma once

#include <QKeyEvent>

namespace ravlin {

/// A button of class `Button` that keeps only the space bar to itself: every other key means the same all over the
/// panel, and goes on to it.
template <class Button>
class PanelButton : public Button {
public:
    using Button::Button;

protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Space || event->key() == Qt::Key_Select) {
            Button::keyPressEvent(event);
        } else {
            event->ignore();
        }
    }
};

}  // namespace ravlin
