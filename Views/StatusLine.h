#pragma once

#include "Views/Feedback.h"

#include <QWidget>

namespace ravlin {

class SymbolView;
class TextLabel;

/// The outcome of the last run: a divider, and under it a pictogram and at most two lines of text.
class StatusLine final : public QWidget {
    Q_OBJECT

public:
    explicit StatusLine(QWidget* parent = nullptr);

    /// Shows `feedback` in place of what was shown before.
    void setFeedback(const Feedback& feedback);

    TextLabel& label() const { return *label_; }
    SymbolView& symbol() const { return *symbol_; }

protected:
    void changeEvent(QEvent* event) override;

private:
    void fit();

    QWidget* divider_;
    SymbolView* symbol_;
    TextLabel* label_;
};

}  // namespace ravlin
