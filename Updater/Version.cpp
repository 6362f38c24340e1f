#include "Updater/Version.h"

#include <QList>

#include <algorithm>

namespace ravlin {
namespace {

constexpr qsizetype kMaxDigits = 9;  // fits 32 bits

std::optional<std::uint32_t> parseNumber(QStringView digits) {
    const auto isDigit = [](QChar character) { return character >= QLatin1Char('0') && character <= QLatin1Char('9'); };
    if (digits.isEmpty() || digits.size() > kMaxDigits || !std::ranges::all_of(digits, isDigit)) return std::nullopt;
    return digits.toUInt();
}

}  // namespace

std::optional<Version> Version::parse(QStringView text) {
    const QList<QStringView> parts = text.split(QLatin1Char('.'));
    if (parts.size() > static_cast<qsizetype>(kMaxNumbers)) return std::nullopt;
    Version version;
    std::size_t count = 0;
    for (const QStringView part : parts) {
        const std::optional<std::uint32_t> number = parseNumber(part);
        if (!number) return std::nullopt;
        version.numbers_.at(count++) = *number;
    }
    version.text_ = text.toString();
    return version;
}

}  // namespace ravlin
