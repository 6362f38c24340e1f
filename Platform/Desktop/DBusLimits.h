#pragma once

#include <QString>

/// How much is accepted from other programs on the bus, any of which may call. What they have honest reasons to send is
/// far smaller.
namespace ravlin::DBusLimits {

inline constexpr qsizetype kMaxStringSize = 1024;  // UTF-16 units
inline constexpr qsizetype kMaxListSize = 1000;

/// `text`, or "" if it is too long.
inline QString accept(const QString& text) {
    return text.size() <= kMaxStringSize ? text : QString();
}

}  // namespace ravlin::DBusLimits
