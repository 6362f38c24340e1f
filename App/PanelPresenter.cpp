#include "App/PanelPresenter.h"

#include "Platform/PanelPlacement.h"
#include "Views/MenuView.h"

#include <QCursor>
#include <QGuiApplication>

namespace ravlin {
namespace {

/// A click on the icon takes the focus from the panel, which closes, before the click itself is told: it is told when
/// the button is released, and through another process.
constexpr qint64 kClickDuration = 500;  // ms

bool isWayland() {
    return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

}  // namespace

PanelPresenter::PanelPresenter(UpdaterController& updater, QObject* parent) : QObject(parent), updater_(updater) {}

PanelPresenter::~PanelPresenter() = default;

void PanelPresenter::toggle(const QRect& icon, const QString& activationToken) {
    if (isOpen()) {
        panel_->hide();
    } else if (!wasClosedByThisClick()) {
        openAt(icon.isNull() ? QRect(QCursor::pos(), QSize(1, 1)) : icon, activationToken);
    }
}

void PanelPresenter::open(const QString& activationToken) {
    openAt(isOpen() ? anchor_ : QRect(QCursor::pos(), QSize(1, 1)), activationToken);
}

bool PanelPresenter::isOpen() const {
    return panel_ != nullptr && panel_->isVisible();
}

/// Each closing answers for one click at most.
bool PanelPresenter::wasClosedByThisClick() {
    const bool wasClosed = sinceDismissal_.isValid() && !sinceDismissal_.hasExpired(kClickDuration);
    sinceDismissal_.invalidate();
    return wasClosed;
}

MenuView& PanelPresenter::panel() {
    if (panel_ == nullptr) {
        panel_ = std::make_unique<MenuView>(updater_);
        connect(panel_.get(), &MenuView::resized, this, &PanelPresenter::place);
        connect(panel_.get(), &MenuView::quitRequested, this, &PanelPresenter::quitRequested);
        connect(panel_.get(), &MenuView::dismissedByFocusLoss, this, [this] { sinceDismissal_.start(); });
    }
    return *panel_;
}

void PanelPresenter::openAt(const QRect& anchor, const QString& activationToken) {
    // Qt's Wayland plugin takes it from here when a window asks to be activated.
    if (isWayland() && !activationToken.isEmpty()) qputenv("XDG_ACTIVATION_TOKEN", activationToken.toUtf8());
    sinceDismissal_.invalidate();
    Q_EMIT opening();
    anchor_ = anchor;
    panel().adjustSize();
    place();
    panel().show();
    panel().raise();
    panel().activateWindow();
}

void PanelPresenter::place() {
    if (isWayland()) return;  // the compositor does
    panel_->move(PanelPlacement::position(panel_->size(), anchor_, PanelPlacement::currentScreens()));
}

}  // namespace ravlin
