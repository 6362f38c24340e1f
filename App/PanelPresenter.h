#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QRect>
#include <QString>
#include <QTimer>

#include <memory>

namespace ravlin {

class LayerShell;
class MenuView;
class UpdaterController;

/// Opens and closes the panel at the tray icon. The panel is built when it is first opened, and kept from then on.
class PanelPresenter final : public QObject {
    Q_OBJECT

public:
    /// `updater` must outlive the presenter.
    explicit PanelPresenter(UpdaterController& updater, QObject* parent = nullptr);
    ~PanelPresenter() override;

    /// Handles a click on the icon: closes the panel if it is open, otherwise opens it under `icon`.
    void toggle(const QRect& icon, const QString& activationToken);

    /// Opens the panel at the pointer, or brings it to the front if it is open already, with keyboard focus in its
    /// search field.
    void open(const QString& activationToken);

Q_SIGNALS:
    /// The panel is about to be shown.
    void opening();

    /// "Quit" was pressed.
    void quitRequested();

private:
    MenuView& panel();
    bool isOpen() const;
    bool wasClosedByThisClick();
    void openAt(const QRect& anchor, const QString& activationToken);
    void place(const QRect& anchor);
    bool placeInLayer();
    bool eventFilter(QObject* watched, QEvent* event) override;
    void leaveLayer();

    UpdaterController& updater_;
    std::unique_ptr<LayerShell> layerShell_;  // if the compositor has one
    std::unique_ptr<MenuView> panel_;
    QElapsedTimer sinceDismissal_;
    QTimer leaving_;
};

}  // namespace ravlin
