#pragma once

#include "Platform/Clipboard/Wayland/WaylandConnection.h"

#include <QObject>
#include <QSize>

#include <cstdint>
#include <memory>
#include <optional>

class QWindow;

namespace ravlin {

/// Puts one window at the top right corner of a Wayland screen, above all other windows, through the wlr-layer-shell
/// protocol: a compositor lets no ordinary window choose its place. The window takes the keyboard when it appears and,
/// if the compositor knows version 4 of the protocol, gives it up when the user clicks elsewhere; with older versions
/// it keeps the keyboard until it closes.
class LayerShell final : public QObject {
    Q_OBJECT

public:
    /// Call this before the application object is made, so that there can be windows to which Qt gives no role.
    static void prepare();

    /// Null if Qt does not run on Wayland, or the compositor does not have the protocol.
    static std::unique_ptr<LayerShell> connectToCompositor();

    ~LayerShell() override;

    /// Gives `window`, which must have the flag Qt::BypassWindowManagerHint and is about to be shown for the first time
    /// or again, its place; call `resize` next. Returns how high a window of this width may be there, or nothing if
    /// that fails: the window would stay invisible.
    std::optional<int> attach(QWindow& window, int width);

    /// The window is about to change its size. Its top right corner stays where it is.
    void resize(QSize size);

    /// Call this when the window has been hidden; it takes the window's place away. The window has to be destroyed
    /// before it is shown again, since its surface has had a role.
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
    std::optional<int> height_;    // what the compositor last asked for
};

}  // namespace ravlin
