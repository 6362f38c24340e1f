#pragma once

#include <QObject>
#include <QString>

namespace ravlin {

/// Watches for text that Qt's own widgets, or a screen reader through Qt, put on Qt's clipboard.
class QtCopies final : public QObject {
    Q_OBJECT

public:
    QtCopies();

Q_SIGNALS:
    /// The system's clipboard has it by now, with Qt as its owner.
    void copied(const QString& text);

private:
    void look();
};

}  // namespace ravlin
