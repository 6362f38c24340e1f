#pragma once

#include <QWidget>

class QPushButton;

namespace ravlin {

/// The panel's two commands.
class Footer final : public QWidget {
    Q_OBJECT

public:
    explicit Footer(QWidget* parent = nullptr);

    void setCanCheckForUpdates(bool canCheck);

    QPushButton& checkForUpdatesButton() const { return *checkForUpdatesButton_; }
    QPushButton& quitButton() const { return *quitButton_; }

Q_SIGNALS:
    void checkForUpdatesRequested();
    void quitRequested();

protected:
    void changeEvent(QEvent* event) override;

private:
    void adoptFont();
    void setButtonFont(const QFont& font);

    QPushButton* checkForUpdatesButton_;
    QPushButton* quitButton_;
};

}  // namespace ravlin
