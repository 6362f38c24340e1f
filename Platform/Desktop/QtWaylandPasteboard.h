#pragma once

#include "Platform/Clipboard/Wayland/FocusPasteboard.h"

#include <QObject>

#include <memory>
#include <optional>
#include <string>

namespace ravlin {

/// The clipboard on the Wayland connection of Qt's windows, while one of them has the keyboard's focus.
///
/// Lives as long as the application runs: when that is about to quit it lets go of Qt's connection, and from then on
/// has nothing to read or to write. What keeps the text then is the compositor, if it does.
class QtWaylandPasteboard final : public FocusPasteboard {
public:
    /// `display` is that connection. Null where it has no clipboard, with the reason in `whyNot`.
    static std::unique_ptr<QtWaylandPasteboard> open(wl_display* display, std::string& whyNot);

private:
    QtWaylandPasteboard();

    std::optional<std::string> read(Type type) override;

    QObject listener_;
};

}  // namespace ravlin
