#include "Views/UpdatePage.h"

#include "Views/Metrics.h"
#include "Views/TextLabel.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QPainter>
#include <QPushButton>
#include <QSvgRenderer>
#include <QVBoxLayout>

#include <utility>

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

TextLabel* makeLabel(const QString& text, TextStyle style, const QString& name, QWidget* parent) {
    auto* const label = new TextLabel(text, {.style = style, .width = Metrics::kNoticeTextWidth}, parent);
    label->setObjectName(name);
    return label;
}

}  // namespace

UpdatePage::UpdatePage(const Content& content, QWidget* window)
    : QWidget(window), content_(content), column_(new QVBoxLayout), buttons_(new QDialogButtonBox) {
    setObjectName(content.name);
    auto* const layout = new QGridLayout(this);
    layout->setContentsMargins(Metrics::kNoticePadding, Metrics::kNoticePadding, Metrics::kNoticePadding,
                               Metrics::kNoticePadding);
    layout->setHorizontalSpacing(Metrics::kNoticeSpacing);
    layout->setVerticalSpacing(Metrics::kPanelSpacing);
    layout->addWidget(new ApplicationIcon(this), 0, 0, Qt::AlignTop);
    layout->addLayout(column_, 0, 1);
    column_->setSpacing(Metrics::kPanelSpacing);
    add(makeLabel(content.heading, TextStyle::headline, QStringLiteral("headingLabel"), this));
    if (!content.text.isEmpty()) add(makeLabel(content.text, TextStyle::callout, QStringLiteral("textLabel"), this));
    layout->setRowMinimumHeight(1, Metrics::kPanelSpacing);
    layout->addWidget(buttons_, 2, 0, 1, 2);
}

void UpdatePage::add(QWidget* widget) {
    column_->addWidget(widget);
}

QPushButton* UpdatePage::addButton(const QString& text, const QString& name, std::function<void()> action) {
    auto* const button = new QPushButton(text, this);
    button->setObjectName(name);
    button->setAccessibleName(text);
    buttons_->addButton(button, QDialogButtonBox::ActionRole);
    connect(button, &QPushButton::clicked, this, [this, action = std::move(action)] {
        window()->hide();
        if (action) action();
    });
    return button;
}

void UpdatePage::setDefault(QPushButton* button) {
    button->setDefault(true);
    button->setFocus();  // else the first button has it, and Return presses that
}

}  // namespace ravlin
