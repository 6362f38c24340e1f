#pragma once

#include "Platform/Clipboard/Wayland/FocusPasteboard.h"

#include <QObject>

#include <memory>
#include <optional>
#include <string>

namespace ravlin {

/// The clipboard on the Wayland connection of Qt's windows, while one of them has keyboard focus.
///
/// Works as long as the application runs: when that is about to quit, it lets go of Qt's connection, and from then on
/// has nothing to read or to write. If anything keeps the text then, it is the compositor.
class QtWaylandPasteboard final : public FocusPasteboard {
public:
    /// `display` is that connection. Null if it has no clipboard, with the reason in `whyNot`.
    static std::unique_ptr<QtWaylandPasteboard> open(wl_display* display, std::string& whyNot);

private:
    QtWaylandPasteboard();

    std::optional<std::string> read(Type type) override;

    QObject listener_;
};

}  // namespace ravlin
