#pragma once

#include "Platform/Clipboard/SystemPasteboard.h"

#include <QObject>

#include <memory>
#include <string>

namespace ravlin {

class WaylandPasteboard;

/// The clipboard as Qt reaches it: the last resort, where no other way leads to the desktop's. On Wayland that is
/// through the connection of Qt's windows, while one of them has the keyboard's focus (see
/// `WaylandPasteboard::openOn`), elsewhere whatever Qt's platform plugin has.
///
/// Lives as long as the application runs: when that is about to quit it lets go of Qt's connection, and from then on
/// has nothing to read or to write. So nothing lingers here; what keeps the text is the compositor, if it does.
class QtPasteboard final : public SystemPasteboard {
public:
    /// There must be an application object. Null where this is no help, with the reason in `whyNot`: on X11 an own
    /// connection is as good as Qt's, and better than Qt's clipboard.
    static std::unique_ptr<SystemPasteboard> open(std::string& whyNot);

    QtPasteboard(const QtPasteboard&) = delete;
    QtPasteboard& operator=(const QtPasteboard&) = delete;
    QtPasteboard(QtPasteboard&&) = delete;
    QtPasteboard& operator=(QtPasteboard&&) = delete;
    ~QtPasteboard() override;

    std::int64_t changeCount() override;
    std::optional<std::string> string() override;
    std::optional<std::string> data(Type type) override;
    std::optional<std::size_t> itemCount() override;
    void clearContents() override;
    bool setString(std::string_view text) override;
    int fileDescriptor() const override;
    void processEvents() override;
    void lingerIfOwner() override {}

private:
    explicit QtPasteboard(std::unique_ptr<WaylandPasteboard> clipboard);
    void letGo();

    std::unique_ptr<WaylandPasteboard> clipboard_;
    QObject listener_;
};

}  // namespace ravlin
