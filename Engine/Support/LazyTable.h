#pragma once

#include <array>
#include <atomic>
#include <cstddef>

namespace ravlin {

/// The value of `compute` for each code point below `kSize`, computed on first use: a text uses few of them, and
/// computing all takes longer than a click may. The untouched rest of the table takes no memory. `compute` never
/// returns 0, which means "not computed yet". Safe to use from several threads: computing a value twice gives the same
/// result.
template <typename Value, std::size_t kSize, Value (*compute)(char32_t) noexcept>
class LazyTable {
public:
    Value operator[](char32_t scalar) noexcept {
        const std::atomic_ref<Value> entry(entries_[scalar]);
        Value value = entry.load(std::memory_order_relaxed);
        if (value == Value{}) {
            value = compute(scalar);
            entry.store(value, std::memory_order_relaxed);
        }
        return value;
    }

private:
    std::array<Value, kSize> entries_ = {};
};

}  // namespace ravlin
