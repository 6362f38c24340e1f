#pragma once

#include <QColor>
#include <QPalette>

namespace ravlin {

/// The contrast ratio of the two colours, from 1 to 21 (WCAG 2.1, relative luminance). Texts need 4.5, signs 3.
qreal contrast(const QColor& one, const QColor& other);

/// The panel's colours, all opaque, derived from the desktop's palette. Each is legible on every background it is used
/// on, whatever the palette: a colour with too little contrast is moved towards the text colour until it has enough.
struct PanelColors {
    explicit PanelColors(const QPalette& palette);

    // Backgrounds.
    QColor window;
    QColor bar;        // under section headers
    QColor field;      // under the search text: the secondary colour at 10 %
    QColor hover;      // under a row that the mouse points at
    QColor pressed;    // under a row that is being pressed
    QColor highlight;  // under the row that the keyboard chose

    // Texts and signs.
    QColor text;
    QColor secondary;
    QColor tertiary;  // signs only
    QColor accent;
    QColor success;

    // Lines.
    QColor divider;
    QColor border;
    QColor focusRing;
};

}  // namespace ravlin
