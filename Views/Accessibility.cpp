#include "Views/Accessibility.h"

#include "Views/Announcer.h"
#include "Views/MenuView.h"
#include "Views/ReleaseNotes.h"
#include "Views/SectionHeader.h"
#include "Views/TransformSection.h"

#include <QAbstractScrollArea>
#include <QAccessible>
#include <QAccessibleWidget>

#include <optional>

namespace ravlin {
namespace {

std::optional<QAccessible::Role> roleOf(const QObject* object) {
    if (qobject_cast<const MenuView*>(object) != nullptr) return QAccessible::Window;
    if (const auto* const header = qobject_cast<const SectionHeader*>(object);
        header != nullptr && header->kind() == SectionHeader::Kind::inList)
        return QAccessible::Heading;
    if (qobject_cast<const TransformSection*>(object) != nullptr) return QAccessible::Grouping;
    if (qobject_cast<const Announcer*>(object) != nullptr) return QAccessible::Notification;
    // Qt's own description of a scroll area crashes if a scroll bar is counted and then hidden before it is asked for.
    if (qobject_cast<const ReleaseNotes*>(object) != nullptr) return QAccessible::Document;
    if (qobject_cast<const QAbstractScrollArea*>(object) != nullptr) return QAccessible::Client;
    return std::nullopt;
}

QAccessibleInterface* makeInterface(const QString& /*className*/, QObject* object) {
    const std::optional<QAccessible::Role> role = roleOf(object);
    return role ? new QAccessibleWidget(qobject_cast<QWidget*>(object), *role) : nullptr;
}

}  // namespace

void installAccessibleRoles() {
    QAccessible::installFactory(makeInterface);
}

}  // namespace ravlin
