#pragma once

namespace ravlin {

/// Base of classes that are neither copied nor moved. A QObject already is neither.
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
