#pragma once

#include <QAbstractNativeEventFilter>
#include <QByteArray>
#include <QColor>
#include <QObject>

#include <cstdint>
#include <optional>

struct xcb_connection_t;

namespace ravlin {

/// The colours of the XEmbed tray on an X11 desktop, as it states them in `_NET_SYSTEM_TRAY_COLORS`. The tray may come
/// late, be replaced, or change its colours.
class TrayColors final : public QObject, private QAbstractNativeEventFilter {
    Q_OBJECT

public:
    explicit TrayColors(QObject* parent = nullptr);
    ~TrayColors() override;

    /// The colour for single-coloured icons there; nullopt if no tray states one.
    std::optional<QColor> foreground() const { return foreground_; }

Q_SIGNALS:
    void changed();

private:
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    Q_SLOT void watchTray();
    void readColors();

    xcb_connection_t* connection_ = nullptr;  // Qt's; null on other desktops
    std::uint32_t selection_ = 0;
    std::uint32_t colors_ = 0;
    std::uint32_t manager_ = 0;
    std::uint32_t tray_ = 0;
    std::optional<QColor> foreground_;
};

}  // namespace ravlin
