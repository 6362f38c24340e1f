#pragma once

#include "Engine/Pasteboard.h"

namespace ravlin {

/// The clipboard of a desktop session. Besides what every pasteboard does it serves the text it owns to other
/// applications, from events that arrive on a descriptor which the application watches.
///
/// `clearContents` takes effect with the next operation or at the next `processEvents`: a `setString` that comes first
/// takes its place, so that nobody sees an empty clipboard in between, which clipboard managers hasten to fill.
class SystemPasteboard : public Pasteboard {
public:
    /// Becomes readable when `processEvents` has something to do; no operation leaves anything behind that it would not
    /// tell. -1 once the connection is lost: look after each `processEvents`, and stop watching then, since a lost
    /// connection stays readable for ever.
    virtual int fileDescriptor() const = 0;

    /// Serves the requests that have arrived, and completes a `clearContents` that no `setString` followed. Waits for
    /// no other application.
    virtual void processEvents() = 0;

    /// To be called as the program's last act, after the user interface is gone. Where this pasteboard owns the
    /// clipboard, a child process of its own session goes on serving the text until another program copies or the
    /// desktop session ends; the child never returns from this call. Afterwards this object has no connection any more.
    virtual void lingerIfOwner() = 0;
};

}  // namespace ravlin
