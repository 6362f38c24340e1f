#include "Platform/Desktop/LayerShell.h"

#include "Engine/Support/NonCopyable.h"
#include "Platform/Clipboard/Wayland/WaylandRequests.h"
#include "Platform/Desktop/WindowSystem.h"

#include <QAbstractEventDispatcher>
#include <QGuiApplication>
#include <QWindow>
#include <QtGui/private/qhighdpiscaling_p.h>
#include <qpa/qplatformnativeinterface.h>

#include <wayland-client-protocol.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace ravlin {
namespace {

using WaylandRequests::create;
using WaylandRequests::destroy;
using WaylandRequests::handler;
using WaylandRequests::listen;
using WaylandRequests::send;

constexpr std::string_view kShellName = "zwlr_layer_shell_v1";
constexpr std::uint32_t kNewestVersion = 4;
constexpr std::uint32_t kShellDestroySince = 3;
constexpr std::uint32_t kKeyboardOnDemandSince = 4;

// The numbers of the requests: their positions in the protocol's description.
constexpr std::uint32_t kShellGetLayerSurface = 0;
constexpr std::uint32_t kShellDestroy = 1;
constexpr std::uint32_t kSetSize = 0;
constexpr std::uint32_t kSetAnchor = 1;
constexpr std::uint32_t kSetMargin = 3;
constexpr std::uint32_t kSetKeyboard = 4;
constexpr std::uint32_t kAckConfigure = 6;
constexpr std::uint32_t kDestroy = 7;

// The protocol's numbers.
constexpr std::uint32_t kOverlayLayer = 3;
constexpr std::uint32_t kAnchorTop = 1;
constexpr std::uint32_t kAnchorBottom = 2;
constexpr std::uint32_t kAnchorRight = 8;
constexpr std::uint32_t kKeyboardExclusive = 1;
constexpr std::uint32_t kKeyboardOnDemand = 2;

constexpr int kMargin = 4;  // from the screen's edge, or from a bar that has reserved it

/// The description of the protocol, in the form that libwayland wants: "u" an unsigned number, "i" a signed one, "s" a
/// string, "o" an object, "?" if it may be missing, "n" a new one; a number is the version that introduced the message.
class Protocol : NonCopyable {
public:
    const wl_interface& shell() const noexcept { return shell_; }
    const wl_interface& surface() const noexcept { return surface_; }

private:
    static constexpr int kShellRequestCount = 2;
    static constexpr int kSurfaceRequestCount = 8;
    static constexpr int kSurfaceEventCount = 2;

    std::array<const wl_interface*, 4> none_{};
    std::array<const wl_interface*, 5> ofSurface_{&surface_, &wl_surface_interface, &wl_output_interface};

    std::array<wl_message, kShellRequestCount> shellRequests_{
        {{"get_layer_surface", "no?ous", ofSurface_.data()}, {"destroy", "3", none_.data()}}};
    std::array<wl_message, kSurfaceRequestCount> surfaceRequests_{{{"set_size", "uu", none_.data()},
                                                                   {"set_anchor", "u", none_.data()},
                                                                   {"set_exclusive_zone", "i", none_.data()},
                                                                   {"set_margin", "iiii", none_.data()},
                                                                   {"set_keyboard_interactivity", "u", none_.data()},
                                                                   {"get_popup", "o", none_.data()},
                                                                   {"ack_configure", "u", none_.data()},
                                                                   {"destroy", "", none_.data()}}};
    std::array<wl_message, kSurfaceEventCount> surfaceEvents_{
        {{"configure", "uuu", none_.data()}, {"closed", "", none_.data()}}};

    wl_interface shell_{kShellName.data(), kNewestVersion, kShellRequestCount, shellRequests_.data(), 0, nullptr};
    wl_interface surface_{"zwlr_layer_surface_v1", kNewestVersion,     kSurfaceRequestCount,
                          surfaceRequests_.data(), kSurfaceEventCount, surfaceEvents_.data()};
};

const Protocol& protocol() {
    static const Protocol kProtocol;
    return kProtocol;
}

}  // namespace

void LayerShell::prepare() {
    // Otherwise Qt's Wayland plugin gives windows that bypass the window manager a role like all others.
    qputenv("QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT", "1");
}

std::unique_ptr<LayerShell> LayerShell::connectToCompositor() {
    wl_display* const display = WindowSystem::waylandDisplay();
    std::unique_ptr<LayerShell> shell(new LayerShell);
    return display != nullptr && shell->connectTo(display) ? std::move(shell) : nullptr;
}

bool LayerShell::connectTo(wl_display* display) {
    connection_ = WaylandConnection::share(
        display, {.appeared =
                      [this](std::uint32_t name, std::string_view interface, std::uint32_t version) {
                          if (interface != kShellName) return;
                          name_ = name;
                          version_ = std::min(version, kNewestVersion);
                      },
                  .removed = [](std::uint32_t /*name*/) {}});
    if (!connection_->synchronise() || name_ == 0) return false;
    auto* const registry = reinterpret_cast<wl_registry*>(connection_->registry());
    shell_ = static_cast<wl_proxy*>(wl_registry_bind(registry, name_, &protocol().shell(), version_));
    // Qt reads from the connection in a thread of its own, and wakes this one each time.
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
            [this] { connection_->processEvents(); });
    return true;
}

LayerShell::~LayerShell() {
    detach();
    if (shell_ == nullptr) return;
    version_ >= kShellDestroySince ? destroy(shell_, kShellDestroy) : wl_proxy_destroy(shell_);
}

std::optional<int> LayerShell::attach(QWindow& window, int width) {
    detach();
    window.create();
    surface_ =
        static_cast<wl_proxy*>(QGuiApplication::platformNativeInterface()->nativeResourceForWindow("surface", &window));
    if (surface_ == nullptr || connection_->isLost()) return std::nullopt;
    window_ = &window;
    wl_proxy* const anyOutput = nullptr;
    place_ = create(shell_, kShellGetLayerSurface, protocol().surface(), surface_, anyOutput, kOverlayLayer, "ravlin");
    static const std::array kListener = {handler(&LayerShell::onConfigure), handler(&LayerShell::onClosed)};
    listen(place_, kListener, this);
    send(place_, kSetMargin, kMargin, kMargin, kMargin, kMargin);
    send(place_, kSetKeyboard, version_ >= kKeyboardOnDemandSince ? kKeyboardOnDemand : kKeyboardExclusive);
    // A surface that is anchored to the top and the bottom is told how much lies between them.
    if (!request(QSize(width, 0), kAnchorTop | kAnchorBottom | kAnchorRight)) return std::nullopt;
    return QHighDpi::fromNativePixels(*height_, window_);
}

/// Whether the compositor has answered.
bool LayerShell::request(QSize size, std::uint32_t edges) {
    const QSize onSurface = QHighDpi::toNativePixels(size, window_);
    send(place_, kSetAnchor, edges);
    send(place_, kSetSize, static_cast<std::uint32_t>(onSurface.width()),
         static_cast<std::uint32_t>(onSurface.height()));
    wl_surface_commit(reinterpret_cast<wl_surface*>(surface_));
    height_.reset();
    return connection_->synchronise() && height_;
}

void LayerShell::resize(QSize size) {
    if (place_ != nullptr) request(size, kAnchorTop | kAnchorRight);
}

void LayerShell::detach() {
    if (place_ == nullptr) return;
    destroy(place_, kDestroy);
    place_ = nullptr;
    surface_ = nullptr;
    window_ = nullptr;
}

// The parameters are the protocol's.
void LayerShell::onConfigure(  // NOLINT(readability-function-size)
    void* self, wl_proxy* proxy, std::uint32_t serial, std::uint32_t /*width*/, std::uint32_t height) {
    send(proxy, kAckConfigure, serial);
    static_cast<LayerShell*>(self)->height_ = static_cast<int>(height);
}

void LayerShell::onClosed(void* self, wl_proxy* /*proxy*/) {
    Q_EMIT static_cast<LayerShell*>(self)->closed();
}

}  // namespace ravlin
