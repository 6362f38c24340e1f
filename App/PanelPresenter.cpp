#include "App/PanelPresenter.h"

#include "Platform/Desktop/LayerShell.h"
#include "Platform/Desktop/PanelPlacement.h"
#include "Views/MenuView.h"

#include <QCursor>
#include <QEvent>
#include <QGuiApplication>
#include <QWindow>

namespace ravlin {
namespace {

/// A click on the icon takes the focus from the panel, which closes, before the click itself is told: it is told when
/// the button is released, and through another process.
constexpr qint64 kClickDuration = 500;  // ms

bool isWayland() {
    return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

}  // namespace

PanelPresenter::PanelPresenter(UpdaterController& updater, QObject* parent) : QObject(parent), updater_(updater) {
    leaving_.setSingleShot(true);
    connect(&leaving_, &QTimer::timeout, this, &PanelPresenter::leaveLayer);
}

PanelPresenter::~PanelPresenter() {
    if (panel_ != nullptr) panel_->removeEventFilter(this);
    layerShell_.reset();  // before the surface whose role it is
}

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
        layerShell_ = LayerShell::connectToCompositor();
        if (layerShell_ != nullptr) {
            panel_->setWindowFlag(Qt::BypassWindowManagerHint);
            panel_->installEventFilter(this);
            connect(layerShell_.get(), &LayerShell::closed, panel_.get(), &MenuView::hide);
        }
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
    panel();
    leaveLayer();
    panel().adjustSize();
    place();
    if (layerShell_ != nullptr) showInLayer();
    panel().show();
    panel().raise();
    panel().activateWindow();
}

void PanelPresenter::place() {
    if (layerShell_ != nullptr) layerShell_->resize(panel_->size());
    if (isWayland()) return;  // the compositor does
    panel_->move(PanelPlacement::position(panel_->size(), anchor_, PanelPlacement::currentScreens()));
}

/// Gives the panel, which is about to be shown, its corner of the screen. Where that fails it becomes an ordinary
/// window.
void PanelPresenter::showInLayer() {
    if (panel_->isVisible()) return;
    panel_->winId();  // makes the window that the corner is for
    if (layerShell_->attach(*panel_->windowHandle(), panel_->size())) return;
    panel_->removeEventFilter(this);
    layerShell_.reset();
    panel_->setWindowFlag(Qt::BypassWindowManagerHint, false);
}

bool PanelPresenter::eventFilter(QObject* watched, QEvent* event) {
    // Not within the event: what it is about must not be destroyed meanwhile.
    if (watched == panel_.get() && event->type() == QEvent::Hide) leaving_.start(0);
    return false;
}

/// A surface that has had its place cannot have another one: the next opening makes a new window.
void PanelPresenter::leaveLayer() {
    if (layerShell_ == nullptr || isOpen()) return;
    layerShell_->detach();
    if (panel_->windowHandle() != nullptr) panel_->windowHandle()->destroy();
}

}  // namespace ravlin
