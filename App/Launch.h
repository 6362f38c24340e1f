#pragma once

#include <QByteArray>
#include <QString>

namespace ravlin {

/// What a desktop hands over when it starts a program or asks a running one for a window: the right to take the focus,
/// and the "starting" feedback to end. Both may be empty.
struct Launch {
    QString activationToken;  // Wayland
    QByteArray startupId;     // X11

    /// What came from elsewhere; a value longer than any desktop makes it becomes empty.
    static Launch of(const QString& activationToken, const QByteArray& startupId);

    /// How this process was started.
    static Launch fromEnvironment();
};

}  // namespace ravlin
