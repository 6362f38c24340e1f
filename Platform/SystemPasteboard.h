#pragma once

#include "Engine/Pasteboard.h"

namespace ravlin {

/// The clipboard of a desktop session. Besides what every pasteboard does it serves the text it owns to other
/// applications, from events that arrive on a descriptor which the application watches.
class SystemPasteboard : public Pasteboard {
public:
    /// Becomes readable when `processEvents` has something to do. -1 where the connection has been lost.
    virtual int fileDescriptor() const = 0;

    /// Serves the requests that have arrived. Never blocks.
    virtual void processEvents() = 0;

    /// To be called as the program's last act, after the user interface is gone. Where this pasteboard owns the
    /// clipboard, a child process of its own session goes on serving the text until another program copies or the
    /// desktop session ends; the child never returns from this call.
    virtual void lingerIfOwner() = 0;
};

}  // namespace ravlin
