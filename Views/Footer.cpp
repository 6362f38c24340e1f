#include "Views/Footer.h"

#include "Views/Metrics.h"
#include "Views/PanelButton.h"
#include "Views/PanelColors.h"
#include "Views/TextStyle.h"

#include <QEvent>
#include <QFontInfo>
#include <QHBoxLayout>
#include <QPainter>
#include <QPushButton>

namespace ravlin {
namespace {

/// A small push button, as narrow as its text allows.
class FooterButton final : public PanelButton<QPushButton> {
public:
    using PanelButton::PanelButton;

    QSize sizeHint() const override {
        return {fontMetrics().horizontalAdvance(text()) + 2 * Metrics::kFooterButtonPaddingX,
                QPushButton::sizeHint().height()};
    }

protected:
    // Many styles mark the focus so faintly that it gets lost.
    void paintEvent(QPaintEvent* event) override {
        QPushButton::paintEvent(event);
        if (!hasFocus()) return;
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(PanelColors(palette()).focusRing, Metrics::kFocusRingWidth));
        constexpr qreal kInset = Metrics::kFocusRingWidth / 2;
        painter.drawRoundedRect(QRectF(rect()).adjusted(kInset, kInset, -kInset, -kInset), Metrics::kFooterRadius,
                                Metrics::kFooterRadius);
    }
};

QPushButton* makeButton(const QString& text, const QString& name, QWidget* parent) {
    auto* const button = new FooterButton(text, parent);
    button->setObjectName(name);
    button->setAccessibleName(text);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

}  // namespace

Footer::Footer(QWidget* parent)
    : QWidget(parent),
      checkForUpdatesButton_(
          makeButton(QStringLiteral("Check for Updates…"), QStringLiteral("checkForUpdatesButton"), this)),
      quitButton_(makeButton(QStringLiteral("Quit"), QStringLiteral("quitButton"), this)) {
    setFixedWidth(Metrics::kContentWidth);
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Metrics::kFooterSpacing);
    layout->addWidget(checkForUpdatesButton_);
    layout->addStretch();
    layout->addWidget(quitButton_);
    adoptFont();
    connect(checkForUpdatesButton_, &QPushButton::clicked, this, &Footer::checkForUpdatesRequested);
    connect(quitButton_, &QPushButton::clicked, this, &Footer::quitRequested);
}

void Footer::setCanCheckForUpdates(bool canCheck) {
    checkForUpdatesButton_->setEnabled(canCheck);
}

void Footer::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange) adoptFont();
}

// In a very large font the two buttons would be wider than the panel, so they use a smaller one.
void Footer::adoptFont() {
    constexpr qreal kShrink = 0.95;
    QFont caption = fontFor(TextStyle::caption, font());
    setButtonFont(caption);
    while (layout()->minimumSize().width() > Metrics::kContentWidth && QFontInfo(caption).pixelSize() > 1) {
        caption.setPixelSize(static_cast<int>(QFontInfo(caption).pixelSize() * kShrink));
        setButtonFont(caption);
    }
}

void Footer::setButtonFont(const QFont& font) {
    checkForUpdatesButton_->setFont(font);
    quitButton_->setFont(font);
    layout()->invalidate();
}

}  // namespace ravlin
