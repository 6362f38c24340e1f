#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <compare>
#include <cstdint>
#include <optional>

namespace ravlin {

/// A version: one to four numbers with dots between them. Missing numbers count as zero, so 1.1 equals 1.1.0; a version
/// is shown as it was written.
class Version {
public:
    /// Reads a version, or nothing if `text` is anything else. A number has at most nine digits.
    ///     parse("1.10.2") > parse("1.9"),  parse("1.0-beta") is nothing
    static std::optional<Version> parse(QStringView text);

    /// As it was written.
    const QString& text() const { return text_; }

    bool operator==(const Version& other) const { return numbers_ == other.numbers_; }
    std::strong_ordering operator<=>(const Version& other) const { return numbers_ <=> other.numbers_; }

private:
    static constexpr std::size_t kMaxNumbers = 4;

    QString text_;
    std::array<std::uint32_t, kMaxNumbers> numbers_{};
};

}  // namespace ravlin
