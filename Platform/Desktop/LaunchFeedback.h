#pragma once

#include <QByteArray>

/// What an X11 desktop shows while a program starts, for example a busy pointer. Does nothing on other desktops.
namespace ravlin::LaunchFeedback {

/// In bytes; launchers' ids have about a hundred.
inline constexpr qsizetype kMaxIdSize = 1024;

/// Ends the feedback for the launch with this id; an empty id means none, and so does one longer than any real one. Qt
/// does this for the first window that it shows, but a program that shows none would seem to be starting until the
/// desktop loses patience.
void finish(const QByteArray& startupId);

}  // namespace ravlin::LaunchFeedback
