#pragma once

#include "Views/Icon.h"
#include "Views/PanelColors.h"
#include "Views/TextStyle.h"

#include <QWidget>

namespace ravlin {

/// A pictogram beside a text. It is only decoration: assistive technology reads the text.
class SymbolView final : public QWidget {
    Q_OBJECT

public:
    struct Look {
        Symbol symbol = Symbol::infoCircle;
        TextStyle style = TextStyle::caption;
        QColor PanelColors::*color = &PanelColors::text;
    };

    explicit SymbolView(const Look& look, QWidget* parent = nullptr);

    const Look& look() const { return look_; }
    void setLook(const Look& look);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    Look look_;
};

}  // namespace ravlin
