#pragma once

#include "Engine/Support/NonCopyable.h"

#include <chrono>
#include <cstddef>
#include <iterator>
#include <list>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace ravlin {

/// What is on its way to other programs, each transfer at its reader's pace. A reader that takes nothing for too long
/// is given up, and so is the one that has taken nothing for the longest when there are too many. However many there
/// are, an operation takes logarithmic time.
template <class Key, class Transfer>
class TransferQueue : NonCopyable {
public:
    using Clock = std::chrono::steady_clock;

    /// Far more than a desktop full of programs has at once.
    static constexpr std::size_t kMaximumCount = 256;

    /// `limit`: how long a reader may take nothing.
    explicit TransferQueue(std::chrono::milliseconds limit) : limit_(limit) {}
    ~TransferQueue() = default;

    /// Begins a transfer in place of the one with the same key, if there is one.
    template <class... Arguments>
    void add(const Key& key, Arguments&&... arguments) {
        remove(key);
        if (byKey_.size() == kMaximumCount) remove(queue_.front().key);
        queue_.emplace_back(key, std::forward<Arguments>(arguments)...);
        byKey_.emplace(key, std::prev(queue_.end()));
    }

    /// Null if there is none.
    Transfer* find(const Key& key) {
        const auto found = byKey_.find(key);
        return found != byKey_.end() ? &found->second->transfer : nullptr;
    }

    /// The reader of an existing transfer has taken something.
    void noteStep(const Key& key) {
        const auto entry = byKey_.at(key);
        entry->lastStep = Clock::now();
        queue_.splice(queue_.end(), queue_, entry);
    }

    void remove(const Key& key) { remove(key, key); }

    /// Removes all transfers with keys from `first` to `last`.
    void remove(const Key& first, const Key& last) {
        const auto begin = byKey_.lower_bound(first);
        const auto end = byKey_.upper_bound(last);
        for (auto each = begin; each != end; ++each) queue_.erase(each->second);
        byKey_.erase(begin, end);
    }

    void removeStalled() {
        const auto now = Clock::now();
        while (!queue_.empty() && queue_.front().lastStep + limit_ <= now) remove(queue_.front().key);
    }

    void clear() {
        queue_.clear();
        byKey_.clear();
    }

    /// When `removeStalled` will have something to do; nothing if there is no transfer.
    std::optional<Clock::time_point> nextDeadline() const {
        return queue_.empty() ? std::nullopt : std::optional(queue_.front().lastStep + limit_);
    }

    /// All keys, in order.
    std::vector<Key> keys() const {
        std::vector<Key> all;
        for (const auto& each : byKey_) all.push_back(each.first);
        return all;
    }

private:
    struct Entry {
        template <class... Arguments>
        explicit Entry(Key of, Arguments&&... arguments)
            : key(std::move(of)), transfer(std::forward<Arguments>(arguments)...) {}
        Key key;
        Clock::time_point lastStep = Clock::now();
        Transfer transfer;
    };

    std::chrono::milliseconds limit_;
    std::list<Entry> queue_;  // the one that has taken nothing for the longest is the first
    std::map<Key, typename std::list<Entry>::iterator> byKey_;
};

}  // namespace ravlin
