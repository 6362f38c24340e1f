#pragma once

#include "Engine/TextTransform.h"

#include <QWidget>

#include <cstdint>

namespace ravlin {

/// The title of one section of the list, in capitals, on an opaque bar. The one that stays pinned to the top while its
/// section scrolls is a copy, which assistive technology does not read a second time.
class SectionHeader final : public QWidget {
    Q_OBJECT

public:
    enum class Kind : std::uint8_t { inList, pinned };

    explicit SectionHeader(TransformCategory category, Kind kind, QWidget* parent = nullptr);

    Kind kind() const { return kind_; }
    TransformCategory category() const { return category_; }
    void setCategory(TransformCategory category);

    /// The title as it is shown, for example "ENCODE / DEV".
    QString text() const;

    /// The height of every header.
    static int heightFor(const QFont& base);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    TransformCategory category_;
    Kind kind_;
};

}  // namespace ravlin
