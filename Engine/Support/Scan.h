#pragma once

#include "Engine/Support/Characters/Unicode.h"

#include <cstddef>
#include <string_view>
#include <type_traits>
#include <utility>

/// Building blocks of hand-written scanners that replace regular expressions.
namespace ravlin::Scan {

inline constexpr std::size_t kNone = std::string_view::npos;

/// The byte at `at`; past the end NUL, which no rule looks for.
inline char peek(std::string_view text, std::size_t at) noexcept {
    return at < text.size() ? text[at] : '\0';
}

/// The first `byte` at or after `at`. It is often right there, and looking is cheaper than calling.
inline std::size_t find(std::string_view text, char byte, std::size_t at) noexcept {
    return peek(text, at) == byte ? at : text.find(byte, at);
}

/// The bytes [`from`, `to`).
inline std::string_view between(std::string_view text, std::size_t from, std::size_t to) noexcept {
    return text.substr(from, to - from);
}

/// \s*   The position after the white space, line ends included, that starts at byte `at`.
inline std::size_t skipWhiteSpace(std::string_view text, std::size_t at) noexcept {
    while (at < text.size()) {
        if (Unicode::isASCII(text[at]) && text[at] > ' ') break;
        const Unicode::Scalar scalar = Unicode::decode(text, at);
        if (!Unicode::isWhitespaceOrNewline(scalar.value)) break;
        at += scalar.byteSize;
    }
    return at;
}

/// `find` for one byte, as a function object.
struct FindByte {
    std::string_view text;
    char byte = '\0';
    std::size_t operator()(std::size_t at) const noexcept { return find(text, byte, at); }
};

/// Answers "what comes next, at or after this byte?" for ascending bytes: it searches again only when the last answer
/// has been passed. Since each search starts after the end of the previous one, all searches together walk over the
/// text once, however often the question is asked.
///
/// `Find` takes a byte and returns where it found something (or kNone), or an answer that has this position as its
/// member `at`.
template <typename Find>
class Lookahead {
public:
    using Answer = std::invoke_result_t<const Find&, std::size_t>;

    explicit Lookahead(Find find) : find_(std::move(find)) {}

    const Answer& from(std::size_t at) {
        if (!isAsked_ || positionOf(answer_) < at) answer_ = find_(at);
        isAsked_ = true;
        return answer_;
    }

private:
    static std::size_t positionOf(const Answer& answer) noexcept {
        if constexpr (std::is_same_v<Answer, std::size_t>) {
            return answer;
        } else {
            return answer.at;
        }
    }

    Find find_;
    Answer answer_ = {};
    bool isAsked_ = false;
};

}  // namespace ravlin::Scan
