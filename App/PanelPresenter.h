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

/// Opens and closes the panel at the tray icon. The panel is built when it is first opened, and lives from then on.
class PanelPresenter final : public QObject {
    Q_OBJECT

public:
    /// `updater` must outlive the presenter.
    explicit PanelPresenter(UpdaterController& updater, QObject* parent = nullptr);
    ~PanelPresenter() override;

    /// What a click on the icon does: closes the panel where it is open, opens it under `icon` where it is not.
    void toggle(const QRect& icon, const QString& activationToken);

    /// Opens the panel at the pointer, or brings it to the front where it is open already, with the keyboard in its
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
    std::unique_ptr<LayerShell> layerShell_;  // where the compositor has one
    std::unique_ptr<MenuView> panel_;
    QElapsedTimer sinceDismissal_;
    QTimer leaving_;
};

}  // namespace ravlin
