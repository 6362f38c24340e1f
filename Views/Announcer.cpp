#include "Views/Announcer.h"

#include <QAccessible>

#include <chrono>

namespace ravlin {
namespace {

constexpr std::chrono::milliseconds kPause{500};

}  // namespace

Announcer::Announcer(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("announcer"));
    setFixedSize(0, 0);
    hide();
    pause_.setSingleShot(true);
    pause_.setInterval(kPause);
    connect(&pause_, &QTimer::timeout, this, [this] { say(next_); });
}

// Screen readers read a notification when it comes into view.
void Announcer::say(const QString& text) {
    silence();
    setAccessibleName(spoken(text));
    show();
}

void Announcer::saySoon(const QString& text) {
    if (!QAccessible::isActive() || !parentWidget()->isVisible()) return;
    next_ = text;
    pause_.start();
}

void Announcer::silence() {
    pause_.stop();
    hide();
}

QString spoken(QString text) {
    return text.replace(QStringLiteral("⌘V"), QStringLiteral("Control V"));
}

}  // namespace ravlin
