#pragma once

namespace ravlin {

/// The base of what is neither copied nor moved. A QObject is neither by itself.
///     class Connection : NonCopyable { ...
class NonCopyable {
public:
    NonCopyable(const NonCopyable&) = delete;
    NonCopyable& operator=(const NonCopyable&) = delete;

protected:
    NonCopyable() = default;
    ~NonCopyable() = default;
};

}  // namespace ravlin
