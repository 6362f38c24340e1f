#include "Views/StatusLabel.h"

#include <QAccessible>

namespace ravlin {

// Screen readers read a notification when it appears; each new text in the same place is reported as appearing.
void StatusLabel::announce() {
    QAccessibleEvent shown(this, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&shown);
}

}  // namespace ravlin
