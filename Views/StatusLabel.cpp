#include "Views/StatusLabel.h"

#include <QAccessible>

namespace ravlin {

// Screen readers read a notification when it comes into sight; they are told so for each new text in the same place.
void StatusLabel::announce() {
    QAccessibleEvent shown(this, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&shown);
}

}  // namespace ravlin
