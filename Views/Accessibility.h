#pragma once

namespace ravlin {

/// Tells assistive technology what the panel's own widgets are: a window, headings, and a status that is announced.
/// Everything else describes itself. May be called more than once.
void installAccessibleRoles();

}  // namespace ravlin
