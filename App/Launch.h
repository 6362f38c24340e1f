#pragma once

#include <QByteArray>
#include <QString>

namespace ravlin {

/// What a desktop hands over when it starts a program or asks a running one for a window: the rights to take the focus,
/// and the "starting" feedback to end. Both may be empty.
struct Launch {
    QString activationToken;  // Wayland
    QByteArray startupId;     // X11

    /// How this process was started.
    static Launch fromEnvironment() {
        return {qEnvironmentVariable("XDG_ACTIVATION_TOKEN"), qgetenv("DESKTOP_STARTUP_ID")};
    }
};

}  // namespace ravlin
