#pragma once

#include <QString>

#include <string_view>

namespace ravlin {

/// UTF-8 from the catalogue and the engine as a QString.
inline QString toQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace ravlin
