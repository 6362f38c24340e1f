#pragma once

#include "Engine/TextTransform.h"

#include <QWidget>

namespace ravlin {

class SectionHeader;

/// One section of the list: its header, and below it its rows, which the list makes when they are needed. Assistive
/// technology finds it as a group with the category's title.
class TransformSection final : public QWidget {
    Q_OBJECT

public:
    explicit TransformSection(TransformCategory category, QWidget* parent = nullptr);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    SectionHeader* header_;
};

}  // namespace ravlin
