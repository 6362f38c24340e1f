#pragma once

#include "Platform/Clipboard/Wayland/WaylandConnection.h"

#include <QObject>
#include <QSize>

#include <cstdint>
#include <memory>

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

    LayerShell(const LayerShell&) = delete;
    LayerShell& operator=(const LayerShell&) = delete;
    LayerShell(LayerShell&&) = delete;
    LayerShell& operator=(LayerShell&&) = delete;
    ~LayerShell() override;

    /// Gives `window`, which has the flag Qt::BypassWindowManagerHint and is about to be shown for the first time or
    /// again, its place. False where that fails: it would stay invisible.
    bool attach(QWindow& window, QSize size);

    /// The window will have another size, in device-independent pixels.
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
    void requestSize(QSize size);
    static void onConfigure(void* self, wl_proxy* proxy, std::uint32_t serial, std::uint32_t width,
                            std::uint32_t height);
    static void onClosed(void* self, wl_proxy* proxy);

    std::unique_ptr<WaylandConnection> connection_;
    std::uint32_t name_ = 0;
    std::uint32_t version_ = 0;
    wl_proxy* shell_ = nullptr;
    wl_proxy* surface_ = nullptr;  // of the window; Qt's
    wl_proxy* place_ = nullptr;    // the surface's role
    bool isConfigured_ = false;
};

}  // namespace ravlin
