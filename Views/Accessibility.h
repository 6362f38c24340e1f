#pragma once

namespace ravlin {

/// Describes the panel's own widgets to assistive technology: a window, groups with headings, and what is announced.
/// Everything else describes itself. May be called more than once.
void installAccessibleRoles();

}  // namespace ravlin
