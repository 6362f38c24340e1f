#pragma once

#include "Updater/Signature.h"

#include <QString>
#include <QUrl>

#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

namespace ravlin {

/// How this copy of Ravlin was installed, and so how it is updated.
enum class InstallKind : std::uint8_t {
    system,    // by the system's package manager
    appimage,  // not installed: it is a single file, which replaces itself
};

/// What the packager specified about updates, in a file that is installed with the program. Neither the user nor the
/// environment can change it.
struct UpdateSettings {
    InstallKind kind = InstallKind::system;
    QUrl feed;
    std::vector<PublicKey> keys;
    std::chrono::seconds interval = kUsualInterval;  // between scheduled checks
    std::optional<bool> automaticChecks;             // unset: the user is asked
    QString provider;                                // of a system copy, for example "Debian"
    QString problem;                                 // why these settings cannot be used; else empty

    static constexpr std::chrono::seconds kUsualInterval = std::chrono::hours(24);
    static constexpr std::chrono::seconds kShortestInterval = std::chrono::hours(1);

    /// Reads an INI file. Without one, the copy is the system's.
    static UpdateSettings read(const QString& file);

    /// The settings of the program in `executable`. Inside a Flatpak or a Snap a copy is always the system's.
    static UpdateSettings forProgram(const QString& executable);
};

}  // namespace ravlin
