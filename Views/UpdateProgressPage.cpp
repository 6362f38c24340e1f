#include "Views/UpdateProgressPage.h"

#include "Views/Metrics.h"
#include "Views/TextLabel.h"

#include <QLocale>
#include <QProgressBar>
#include <QPushButton>

#include <utility>

namespace ravlin {
namespace {

constexpr int kBarSteps = 1000;  // a file may have more bytes than an int can count

}  // namespace

QString progressText(qint64 receivedBytes, qint64 totalBytes) {
    const auto size = [](qint64 bytes) { return QLocale::c().formattedDataSize(bytes, 1, QLocale::DataSizeSIFormat); };
    if (totalBytes <= 0) return size(receivedBytes);
    return QStringLiteral("%1 of %2").arg(size(receivedBytes), size(totalBytes));
}

UpdateProgressPage::UpdateProgressPage(const QString& activity, std::function<void()> cancel, QWidget* window)
    : UpdatePage({.name = QStringLiteral("updateProgress"),
                  .heading = activity,
                  .text = {},
                  .title = QStringLiteral("Updating Ravlin")},
                 window),
      amount_(new TextLabel(QString(), {.style = TextStyle::callout, .width = Metrics::kNoticeTextWidth}, this)),
      bar_(new QProgressBar(this)) {
    amount_->setObjectName(QStringLiteral("amountLabel"));
    amount_->hide();
    bar_->setObjectName(QStringLiteral("progressBar"));
    bar_->setAccessibleName(activity);
    bar_->setTextVisible(false);
    bar_->setRange(0, 0);
    bar_->setFixedWidth(Metrics::kNoticeTextWidth);
    // The keyboard is where nothing can be pressed by accident, and where screen readers tell how far it is.
    bar_->setFocusPolicy(Qt::TabFocus);
    bar_->setFocus();
    add(bar_);
    add(amount_);
    cancel_ = addButton(QStringLiteral("Cancel"), QStringLiteral("cancelButton"), cancel);
    cancel_->setAutoDefault(false);  // Return, typed on, would cancel
    setCloseAction(std::move(cancel));
}

void UpdateProgressPage::setProgress(qint64 receivedBytes, qint64 totalBytes) {
    bar_->setRange(0, totalBytes > 0 ? kBarSteps : 0);
    if (totalBytes > 0) bar_->setValue(static_cast<int>(receivedBytes * kBarSteps / totalBytes));
    amount_->setText(progressText(receivedBytes, totalBytes));
    amount_->setAccessibleName(amount_->text());
    amount_->show();
}

void UpdateProgressPage::setFinalActivity(const QString& activity) {
    findChild<TextLabel*>(QStringLiteral("headingLabel"))->setText(activity);
    bar_->setAccessibleName(activity);
    bar_->setRange(0, 0);
    amount_->hide();
    cancel_->setEnabled(false);
}

bool UpdateProgressPage::canClose() const {
    return cancel_->isEnabled();
}

}  // namespace ravlin
