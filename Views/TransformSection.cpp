#include "Views/TransformSection.h"

#include "Views/QtText.h"
#include "Views/SectionHeader.h"

namespace ravlin {

TransformSection::TransformSection(TransformCategory category, QWidget* parent)
    : QWidget(parent), header_(new SectionHeader(category, SectionHeader::Kind::inList, this)) {
    setAccessibleName(toQString(category.title()));
}

void TransformSection::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    header_->setGeometry(0, 0, width(), header_->sizeHint().height());
}

}  // namespace ravlin
