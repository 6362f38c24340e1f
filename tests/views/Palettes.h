#pragma once

#include <QPalette>

namespace ravlin::tests {

/// What desktops give programs in their light and their dark appearance.
inline QPalette lightPalette() {
    QPalette palette(QColor(0xef, 0xf0, 0xf1));
    palette.setColor(QPalette::WindowText, QColor(0x23, 0x26, 0x29));
    palette.setColor(QPalette::Text, QColor(0x23, 0x26, 0x29));
    palette.setColor(QPalette::ButtonText, QColor(0x23, 0x26, 0x29));
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::Button, QColor(0xfc, 0xfc, 0xfc));
    palette.setColor(QPalette::Highlight, QColor(0x3d, 0xae, 0xe9));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(0x29, 0x80, 0xb9));
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, QColor(0xa0, 0xa1, 0xa3));
    return palette;
}

inline QPalette darkPalette() {
    QPalette palette(QColor(0x2a, 0x2e, 0x32));
    palette.setColor(QPalette::WindowText, QColor(0xfc, 0xfc, 0xfc));
    palette.setColor(QPalette::Text, QColor(0xfc, 0xfc, 0xfc));
    palette.setColor(QPalette::ButtonText, QColor(0xfc, 0xfc, 0xfc));
    palette.setColor(QPalette::Base, QColor(0x1b, 0x1e, 0x20));
    palette.setColor(QPalette::Button, QColor(0x31, 0x36, 0x3b));
    palette.setColor(QPalette::Highlight, QColor(0x3d, 0xae, 0xe9));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(0x1d, 0x99, 0xf3));
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, QColor(0x70, 0x74, 0x78));
    return palette;
}

}  // namespace ravlin::tests
