#pragma once

#include "Platform/Clipboard/Wayland/WaylandConnection.h"

#include <QObject>
#include <QSize>

#include <cstdint>
#include <memory>
#include <optional>

class QWindow;

namespace ravlin {

/// Puts one window at the top right corner of a Wayland screen, above all windows, by the protocol wlr-layer-shell: a
/// compositor lets no ordinary window choose its place. The window takes the keyboard when it appears, and gives it
/// away when the user clicks elsewhere, where the compositor knows the protocol's version 4; before that it keeps the
/// keyboard until it closes.
class LayerShell final : public QObject {
    Q_OBJECT

public:
    /// To be called before the application object is made: lets windows without a role of Qt's exist.
    static void prepare();

    /// Null where Qt does not run on Wayland, or the compositor has no such protocol.
    static std::unique_ptr<LayerShell> connectToCompositor();

    ~LayerShell() override;

    /// Gives `window`, which has the flag Qt::BypassWindowManagerHint and is about to be shown for the first time or
    /// again, its place; `resize` has to follow. The result is how high a window of this width may be there, or nothing
    /// where that fails: it would stay invisible.
    std::optional<int> attach(QWindow& window, int width);

    /// The window will have another size. Its top right corner stays where it is.
    void resize(QSize size);

    /// To be called when the window has been hidden: takes its place back. It has to be destroyed before it is shown
    /// again, since its surface has had a role.
    void detach();

Q_SIGNALS:
    /// The compositor has taken the window off the screen, for example because that screen has gone.
    void closed();

private:
    LayerShell() = default;
    bool connectTo(wl_display* display);
    bool request(QSize size, std::uint32_t edges);
    static void onConfigure(void* self, wl_proxy* proxy, std::uint32_t serial, std::uint32_t width,
                            std::uint32_t height);
    static void onClosed(void* self, wl_proxy* proxy);

    std::unique_ptr<WaylandConnection> connection_;
    std::uint32_t name_ = 0;
    std::uint32_t version_ = 0;
    wl_proxy* shell_ = nullptr;
    wl_proxy* surface_ = nullptr;  // of the window; Qt's
    wl_proxy* place_ = nullptr;    // the surface's role
    QWindow* window_ = nullptr;    // while it has its place
    std::optional<int> height_;    // what the compositor has last asked for
};

}  // namespace ravlin
