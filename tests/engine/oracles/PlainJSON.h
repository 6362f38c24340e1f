#pragma once

#include "Engine/Support/Characters/Unicode.h"

#include <optional>
#include <string>
#include <string_view>

/// The JSON reformatter again, slow and plain: one recursive function for every rule of the grammar, which returns the
/// new text of what it read.
namespace ravlin::tests {

class PlainJSON {
public:
    static std::string reformat(std::string_view text, bool pretty) {
        PlainJSON json(Unicode::trimWhitespacesAndNewlines(text), pretty);
        const std::optional<std::string> value = json.value(0);
        json.skipSpace();
        return value && json.rest_.empty() ? *value : std::string(text);
    }

private:
    using Result = std::optional<std::string>;

    PlainJSON(std::string_view text, bool pretty) : rest_(text), isPretty_(pretty) {}

    void skipSpace() { rest_.remove_prefix(std::min(rest_.find_first_not_of(" \t\n\r"), rest_.size())); }

    char take() {
        const char first = rest_.front();
        rest_.remove_prefix(1);
        return first;
    }

    bool takeIf(std::string_view token) {
        if (!rest_.starts_with(token)) return false;
        rest_.remove_prefix(token.size());
        return true;
    }

    std::string newLine(std::size_t depth) const { return isPretty_ ? "\n" + std::string(2 * depth, ' ') : ""; }

    Result value(std::size_t depth) {
        skipSpace();
        for (const char* const literal : {"true", "false", "null"})
            if (takeIf(literal)) return literal;
        if (takeIf("[")) return items(depth, /*isObject=*/false, "[", "]");
        if (takeIf("{")) return items(depth, /*isObject=*/true, "{", "}");
        return rest_.starts_with('"') ? string() : number();
    }

    Result items(std::size_t depth, bool isObject, const std::string& open, const std::string& close) {
        skipSpace();
        if (takeIf(close)) return open + close;
        std::string result = open;
        for (;;) {
            const Result next = isObject ? member(depth + 1) : value(depth + 1);
            if (!next) return std::nullopt;
            result += newLine(depth + 1) + *next;
            skipSpace();
            if (takeIf(close)) return result + newLine(depth) + close;
            if (!takeIf(",")) return std::nullopt;
            result += ",";
        }
    }

    Result member(std::size_t depth) {
        skipSpace();
        const Result key = string();
        skipSpace();
        if (!key || !takeIf(":")) return std::nullopt;
        const Result content = value(depth);
        if (!content) return std::nullopt;
        return *key + (isPretty_ ? ": " : ":") + *content;
    }

    Result string() {
        if (!takeIf("\"")) return std::nullopt;
        std::string result = "\"";
        while (!rest_.empty()) {
            const char byte = take();
            result += byte;
            if (byte == '"') return result;
            if (byte == '\\') {
                if (rest_.empty()) return std::nullopt;
                result += take();
            } else if (byte >= '\0' && byte < ' ') {
                return std::nullopt;
            }
        }
        return std::nullopt;
    }

    std::string digits() {
        const std::size_t count = std::min(rest_.find_first_not_of("0123456789"), rest_.size());
        const std::string result(rest_.substr(0, count));
        rest_.remove_prefix(count);
        return result;
    }

    Result number() {
        std::string result = takeIf("-") ? "-" : "";
        const std::string whole = takeIf("0") ? "0" : digits();
        if (whole.empty()) return std::nullopt;
        result += whole;
        if (takeIf(".")) {
            const std::string fraction = digits();
            if (fraction.empty()) return std::nullopt;
            result += "." + fraction;
        }
        if (rest_.starts_with('e') || rest_.starts_with('E')) {
            result += take();
            if (rest_.starts_with('+') || rest_.starts_with('-')) result += take();
            const std::string exponent = digits();
            if (exponent.empty()) return std::nullopt;
            result += exponent;
        }
        return result;
    }

    std::string_view rest_;
    bool isPretty_;
};

}  // namespace ravlin::tests
