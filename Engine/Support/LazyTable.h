#pragma once

#include <array>
#include <atomic>
#include <cstddef>

namespace ravlin {

/// What `compute` says about the code points below `kSize`, each asked once: a text uses few of them, and asking for
/// all takes longer than a click may. The untouched rest of the table takes no memory. `compute` never answers 0,
/// which stands for "not asked yet". Safe to use from several threads: whoever asks twice gets the same answer.
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
