#include "Views/UpdateWindows.h"

#include "Views/Metrics.h"
#include "Views/TextLabel.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QPainter>
#include <QPushButton>
#include <QSvgRenderer>

namespace ravlin {
namespace {

/// The application's icon, crisp at every scale of the screen.
class ApplicationIcon final : public QWidget {
public:
    explicit ApplicationIcon(QWidget* parent)
        : QWidget(parent), picture_(QStringLiteral(":/icons/org.ravlin.ravlin.svg")) {
        setFixedSize(Metrics::kNoticeIconSize, Metrics::kNoticeIconSize);
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        picture_.render(&painter, rect());
    }

private:
    QSvgRenderer picture_;
};

QLabel* makeLabel(const QString& text, TextStyle style, const QString& name, QWidget* parent) {
    auto* const label = new TextLabel(text, {.style = style, .width = Metrics::kNoticeTextWidth}, parent);
    label->setObjectName(name);
    return label;
}

QDialogButtonBox* makeButtons(QDialog* window) {
    auto* const buttons = new QDialogButtonBox(window);
    QPushButton* const ok = buttons->addButton(QStringLiteral("OK"), QDialogButtonBox::AcceptRole);
    ok->setObjectName(QStringLiteral("okButton"));
    ok->setAccessibleName(ok->text());
    QObject::connect(buttons, &QDialogButtonBox::accepted, window, &QDialog::accept);
    return buttons;
}

/// A window with the application's icon, a heading, a text and "OK".
std::unique_ptr<QDialog> makeNotice(const QString& heading, const QString& text) {
    auto window = std::make_unique<QDialog>();
    window->setModal(false);
    window->setWindowTitle(QStringLiteral("Software Update"));
    window->setAccessibleName(heading);
    window->setAccessibleDescription(text);
    window->setLayoutDirection(Qt::LeftToRight);  // its texts are English in every locale

    auto* const layout = new QGridLayout(window.get());
    layout->setContentsMargins(Metrics::kNoticePadding, Metrics::kNoticePadding, Metrics::kNoticePadding,
                               Metrics::kNoticePadding);
    layout->setHorizontalSpacing(Metrics::kNoticeSpacing);
    layout->setVerticalSpacing(Metrics::kPanelSpacing);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addWidget(new ApplicationIcon(window.get()), 0, 0, 2, 1, Qt::AlignTop);
    layout->addWidget(makeLabel(heading, TextStyle::headline, QStringLiteral("headingLabel"), window.get()), 0, 1);
    layout->addWidget(makeLabel(text, TextStyle::callout, QStringLiteral("textLabel"), window.get()), 1, 1);
    layout->setRowMinimumHeight(2, Metrics::kPanelSpacing);
    layout->addWidget(makeButtons(window.get()), 3, 1);
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
