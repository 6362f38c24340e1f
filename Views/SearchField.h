#pragma once

#include <QWidget>

class QAbstractButton;

namespace ravlin {

class SearchLine;

/// The search text on a rounded background, with a magnifying glass before it and, while there is any text, a button
/// that clears it.
class SearchField final : public QWidget {
    Q_OBJECT

public:
    explicit SearchField(QWidget* parent = nullptr);

    /// The search text exactly as typed.
    QString query() const;

    /// Clears the search text, and moves the keyboard focus to where typing continues.
    void clear();

    SearchLine& line() const { return *line_; }
    QAbstractButton& clearButton() const { return *clearButton_; }

Q_SIGNALS:
    void queryChanged(const QString& query);

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    void buildLayout();
    void adoptFontAndPalette();
    void handleTextChanged(const QString& query);

    SearchLine* line_;
    QAbstractButton* clearButton_;
};

}  // namespace ravlin
