#include "Views/UpdateWindows.h"

#include "Views/Metrics.h"
#include "Views/TextLabel.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QVBoxLayout>

namespace ravlin {
namespace {

/// A window with a heading, a text and "OK".
std::unique_ptr<QDialog> makeNotice(const QString& heading, const QString& text) {
    auto window = std::make_unique<QDialog>();
    window->setModal(false);
    window->setWindowTitle(QStringLiteral("Software Update"));

    auto* const headingLabel =
        new TextLabel(heading, {.style = TextStyle::headline, .width = Metrics::kNoticeTextWidth}, window.get());
    auto* const textLabel =
        new TextLabel(text, {.style = TextStyle::callout, .width = Metrics::kNoticeTextWidth}, window.get());
    auto* const buttons = new QDialogButtonBox(window.get());
    QPushButton* const ok = buttons->addButton(QStringLiteral("OK"), QDialogButtonBox::AcceptRole);

    headingLabel->setObjectName(QStringLiteral("headingLabel"));
    textLabel->setObjectName(QStringLiteral("textLabel"));
    ok->setObjectName(QStringLiteral("okButton"));
    ok->setAccessibleName(ok->text());
    window->setAccessibleName(heading);
    window->setAccessibleDescription(text);
    QObject::connect(buttons, &QDialogButtonBox::accepted, window.get(), &QDialog::accept);

    auto* const layout = new QVBoxLayout(window.get());
    layout->setContentsMargins(Metrics::kNoticePadding, Metrics::kNoticePadding, Metrics::kNoticePadding,
                               Metrics::kNoticePadding);
    layout->setSpacing(Metrics::kPanelSpacing);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addWidget(headingLabel);
    layout->addWidget(textLabel);
    layout->addSpacing(Metrics::kPanelSpacing);
    layout->addWidget(buttons);
    return window;
}

void bringToFront(QWidget& window) {
    window.show();
    window.raise();
    window.activateWindow();
}

}  // namespace

UpdateWindows::UpdateWindows() = default;
UpdateWindows::~UpdateWindows() = default;

void UpdateWindows::showUpdatesComeWithSystem() {
    if (!updatesComeWithSystem_) {
        updatesComeWithSystem_ = makeNotice(
            QStringLiteral("Updates come with your system"),
            QStringLiteral("This copy of Ravlin is updated by your system’s software updater, together with your "
                           "other software."));
        updatesComeWithSystem_->setObjectName(QStringLiteral("updatesComeWithSystem"));
    }
    bringToFront(*updatesComeWithSystem_);
}

}  // namespace ravlin
