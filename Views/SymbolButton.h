#pragma once

#include "Views/PanelButton.h"
#include "Views/SymbolView.h"

#include <QAbstractButton>

namespace ravlin {

/// A borderless button that consists only of a pictogram.
class SymbolButton final : public PanelButton<QAbstractButton> {
    Q_OBJECT

public:
    explicit SymbolButton(const SymbolView::Look& look, QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    SymbolView::Look look_;
};

}  // namespace ravlin
