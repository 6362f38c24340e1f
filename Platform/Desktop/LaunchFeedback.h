#pragma once

#include <QByteArray>

/// What an X11 desktop shows while a program starts, for example a busy pointer. Nothing happens on others.
namespace ravlin::LaunchFeedback {

/// In bytes; launchers make ids of about a hundred.
inline constexpr qsizetype kMaxIdSize = 1024;

/// Ends the feedback of the launch with this id; an empty id stands for none, and so does a longer one than there are.
/// Qt does so for the window that it shows first, but a program that shows none would seem to be starting for as long
/// as the desktop has patience.
void finish(const QByteArray& startupId);

}  // namespace ravlin::LaunchFeedback
