#pragma once

#include <QKeyEvent>

namespace ravlin {

/// A button of class `Button` that handles only the space bar: every other key means the same throughout the panel, and
/// is passed on to it.
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
