#include "App/PanelPresenter.h"

#include "Platform/Desktop/LayerShell.h"
#include "Platform/Desktop/PanelPlacement.h"
#include "Platform/Desktop/QtX11.h"
#include "Platform/Desktop/WindowSystem.h"
#include "Views/MenuView.h"

#include <QCursor>
#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#include <optional>

namespace ravlin {
namespace {

/// A click on the icon takes the focus from the panel, which closes, before the click itself is reported: that happens
/// when the button is released, and through another process.
constexpr qint64 kClickDuration = 500;  // ms

/// How thick the bars of a desktop may be, all together, if it does not say.
constexpr int kBarAllowance = 64;  // device-independent pixels

using WindowSystem::isWayland;

QRect pointer() {
    return {QCursor::pos(), QSize(1, 1)};
}

}  // namespace

PanelPresenter::PanelPresenter(UpdaterController& updater, QObject* parent) : QObject(parent), updater_(updater) {
    leaving_.setSingleShot(true);
    connect(&leaving_, &QTimer::timeout, this, &PanelPresenter::leaveLayer);
}

PanelPresenter::~PanelPresenter() {
    if (panel_ != nullptr) panel_->removeEventFilter(this);
    layerShell_.reset();  // before the surface to which it gives a role
}

void PanelPresenter::toggle(const QRect& icon, const QString& activationToken) {
    if (isOpen()) {
        panel_->hide();
    } else if (!wasClosedByThisClick()) {
        openAt(icon.isEmpty() ? pointer() : icon, activationToken);
    }
}

void PanelPresenter::open(const QString& activationToken) {
    openAt(pointer(), activationToken);
}

bool PanelPresenter::isOpen() const {
    return panel_ != nullptr && panel_->isVisible();
}

/// Each closing accounts for one click at most.
bool PanelPresenter::wasClosedByThisClick() {
    const bool wasClosed = sinceDismissal_.isValid() && !sinceDismissal_.hasExpired(kClickDuration);
    sinceDismissal_.invalidate();
    return wasClosed;
}

MenuView& PanelPresenter::panel() {
    if (panel_ == nullptr) {
        panel_ = std::make_unique<MenuView>(updater_);
        layerShell_ = LayerShell::connectToCompositor();
        if (layerShell_ != nullptr) {
            panel_->setWindowFlag(Qt::BypassWindowManagerHint);
            panel_->installEventFilter(this);
            connect(layerShell_.get(), &LayerShell::closed, panel_.get(), &MenuView::hide);
        }
        connect(panel_.get(), &MenuView::resized, this, [this] {
            if (layerShell_ != nullptr) layerShell_->resize(panel_->size());
        });
        connect(panel_.get(), &MenuView::quitRequested, this, &PanelPresenter::quitRequested);
        connect(panel_.get(), &MenuView::dismissedByFocusLoss, this, [this] { sinceDismissal_.start(); });
    }
    return *panel_;
}

void PanelPresenter::openAt(const QRect& anchor, const QString& activationToken) {
    // Qt's Wayland plugin takes it from there when a window asks to be activated.
    if (isWayland() && !activationToken.isEmpty()) qputenv("XDG_ACTIVATION_TOKEN", activationToken.toUtf8());
    sinceDismissal_.invalidate();
    Q_EMIT opening();
    if (!isOpen()) place(anchor);
    panel().show();
    panel().raise();
    panel().activateWindow();
}

/// Chooses where the panel opens, and stays. What its content needs later has to fit below, or is left out of sight, so
/// that nothing moves away under the pointer.
void PanelPresenter::place(const QRect& anchor) {
    panel();
    leaveLayer();
    if (placeInLayer()) return;
    if (isWayland()) {  // the compositor chooses, and does not say how much room its bars leave
        panel_->setRoom(panel_->screen()->availableGeometry().height() - kBarAllowance);
        return;
    }
    const QSize full(panel_->width(), panel_->fullHeight());
    const PanelPlacement::Place place = PanelPlacement::place(full, anchor, PanelPlacement::currentScreens());
    panel_->setRoom(place.room);
    panel_->move(place.topLeft);
    panel_->winId();  // creates the window
    QtX11::keepOutOfTaskBars(*panel_->windowHandle());
}

/// Gives the panel, which is about to be shown, its corner of the screen. If that fails, the panel becomes an ordinary
/// window.
bool PanelPresenter::placeInLayer() {
    if (layerShell_ == nullptr) return false;
    panel_->winId();  // creates the window that the corner is for
    if (const std::optional<int> room = layerShell_->attach(*panel_->windowHandle(), panel_->width())) {
        panel_->setRoom(*room);
        layerShell_->resize(panel_->size());
        return true;
    }
    panel_->removeEventFilter(this);
    layerShell_.reset();
    panel_->setWindowFlag(Qt::BypassWindowManagerHint, false);
    return false;
}

bool PanelPresenter::eventFilter(QObject* watched, QEvent* event) {
    // Not within the event: the window that it is about must not be destroyed meanwhile.
    if (watched == panel_.get() && event->type() == QEvent::Hide) leaving_.start(0);
    return false;
}

/// A surface that has had its place cannot get another one: the next opening makes a new window.
void PanelPresenter::leaveLayer() {
    if (layerShell_ == nullptr || isOpen()) return;
    layerShell_->detach();
    if (panel_->windowHandle() != nullptr) panel_->windowHandle()->destroy();
}

}  // namespace ravlin
