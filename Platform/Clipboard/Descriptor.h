#pragma once

#include <utility>

#include <unistd.h>

namespace ravlin {

/// Owns a file descriptor, and closes it.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int number) noexcept : number_(number) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor() { reset(); }

    int get() const noexcept { return number_; }

    void reset() noexcept {
        if (number_ >= 0) close(std::exchange(number_, -1));
    }

private:
    int number_ = -1;
};

}  // namespace ravlin
