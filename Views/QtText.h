#pragma once

#include <QString>

#include <string_view>

namespace ravlin {

/// The catalogue's and the engine's UTF-8 as Qt wants it.
inline QString toQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace ravlin
