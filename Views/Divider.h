#pragma once

#include <QWidget>

namespace ravlin {

/// A hairline across the panel's content.
class Divider final : public QWidget {
    Q_OBJECT

public:
    explicit Divider(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace ravlin
