#pragma once

#include "Engine/Pasteboard.h"

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace ravlin::tests {

/// A clipboard in memory that records every call, and lets another application act between any two of them.
class FakePasteboard final : public Pasteboard {
public:
    /// Installs itself as the general pasteboard for its lifetime.
    FakePasteboard() { setGeneral(this); }
    ~FakePasteboard() override { setGeneral(nullptr); }

    // What another application does. Neither is recorded as a call.
    void copyElsewhere(std::map<Type, std::string> representations) {
        representations_ = std::move(representations);
        holdsSomething_ = true;
        ++changeCount_;
    }
    void copyTextElsewhere(std::string text) { copyElsewhere({{Type::string, std::move(text)}}); }
    void clearElsewhere() {
        representations_.clear();
        holdsSomething_ = false;
        ++changeCount_;
    }

    /// Runs `action` right before the call with the given name ("changeCount", "string", ...) for the `nth` time.
    void before(const std::string& call, int nth, std::function<void()> action) {
        interruptions_.emplace_back(Interruption{call, nth, std::move(action)});
    }

    /// The calls made so far, in order: "setString(text)" with its argument, the others by name.
    const std::vector<std::string>& calls() const { return calls_; }
    const std::map<Type, std::string>& representations() const { return representations_; }

    /// What `itemCount` returns if the clipboard does not know.
    void hideItemCount() { itemCountHidden_ = true; }
    void refuseWrites() { writesRefused_ = true; }

    std::int64_t changeCount() override {
        record("changeCount");
        return changeCount_;
    }
    std::optional<std::string> string() override {
        record("string");
        return find(Type::string);
    }
    std::optional<std::string> data(Type type) override {
        record(type == Type::rtf ? "data(rtf)" : type == Type::html ? "data(html)" : "data(string)");
        return find(type);
    }
    std::optional<std::size_t> itemCount() override {
        record("itemCount");
        if (itemCountHidden_) return std::nullopt;
        return holdsSomething_ ? 1 : 0;
    }
    void clearContents() override {
        record("clearContents");
        clearElsewhere();
    }
    bool setString(std::string_view text) override {
        record("setString", "(" + std::string(text) + ")");
        if (writesRefused_) return false;
        copyTextElsewhere(std::string(text));
        return true;
    }
    bool replaceIfUnchanged(std::int64_t count, std::string_view text) override {
        record("replaceIfUnchanged", "(" + std::string(text) + ")");
        if (writesRefused_ || count != changeCount_) return false;
        copyTextElsewhere(std::string(text));
        return true;
    }

private:
    struct Interruption {
        std::string call;
        int remaining = 0;
        std::function<void()> action;
    };

    void record(const std::string& call, const std::string& arguments = "") {
        for (Interruption& each : interruptions_)
            if (each.call == call && --each.remaining == 0) each.action();
        calls_.push_back(call + arguments);
    }

    std::optional<std::string> find(Type type) const {
        const auto found = representations_.find(type);
        return found == representations_.end() ? std::nullopt : std::optional(found->second);
    }

    std::map<Type, std::string> representations_;
    std::vector<std::string> calls_;
    std::vector<Interruption> interruptions_;
    std::int64_t changeCount_ = 7;
    bool holdsSomething_ = false;
    bool itemCountHidden_ = false;
    bool writesRefused_ = false;
};

}  // namespace ravlin::tests
