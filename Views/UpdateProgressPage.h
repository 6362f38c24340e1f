#pragma once

#include "Views/UpdatePage.h"

#include <QString>

#include <functional>

class QProgressBar;

namespace ravlin {

class TextLabel;

/// Tells what the update component is busy with, and how far it is.
class UpdateProgressPage final : public UpdatePage {
    Q_OBJECT

public:
    UpdateProgressPage(const QString& activity, std::function<void()> cancel, QWidget* window);

    /// How many bytes have come. `totalBytes` of 0 means that nobody knows how many there will be.
    void setProgress(qint64 receivedBytes, qint64 totalBytes);

    /// What it is busy with now, which can not be cancelled any more.
    void setFinalActivity(const QString& activity);

    bool canClose() const override;

private:
    TextLabel* amount_;
    QProgressBar* bar_;
    QPushButton* cancel_;
};

/// "1.2 MB of 3.4 MB"; "1.2 MB" where the total is not known.
QString progressText(qint64 receivedBytes, qint64 totalBytes);

}  // namespace ravlin
