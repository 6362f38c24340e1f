#include "Engine/SpacingTransforms.h"

#include "Engine/Support/Characters/ASCII.h"
#include "Engine/Support/Characters/Unicode.h"
#include "Engine/Support/LineModel.h"
#include "Engine/Support/Replace.h"

#include <algorithm>
#include <array>

namespace ravlin::TextTransforms {
namespace {

constexpr Replace::Table kPlainDashes(std::to_array<Replace::Literal>({
    {"\u2026", "..."},
    {"\u2014", "--"},
    {"\u2013", "-"},
    {"\u2012", "-"},
    {"\u2015", "--"},
}));

constexpr Replace::Table kSpacesForTabs(std::to_array<Replace::Literal>({{"\t", "    "}}));

constexpr Replace::Table kStraightQuotes(std::to_array<Replace::Literal>({
    {"\u201C", "\""},
    {"\u201D", "\""},
    {"\u201E", "\""},
    {"\u00AB", "\""},
    {"\u00BB", "\""},
    {"\u2018", "'"},
    {"\u2019", "'"},
    {"\u201A", "'"},
    {"\u2014", "--"},
    {"\u2013", "-"},
    {"\u2026", "..."},
}));

// --- smartQuotes -----------------------------------------------------------------------------------------------------

constexpr std::string_view kOpeningDouble = "\u201C";
constexpr std::string_view kClosingDouble = "\u201D";
constexpr std::string_view kOpeningSingle = "\u2018";
constexpr std::string_view kClosingSingle = "\u2019";
constexpr std::string_view kEmDash = "\u2014";
constexpr std::string_view kEnDash = "\u2013";
constexpr std::string_view kEllipsis = "\u2026";

/// A single quotation mark after one of these opens.
constexpr std::array<std::string_view, 5> kBeforeOpening = {" ", "\n", "\t", "(", kOpeningDouble};

/// Whether a single quotation mark at byte `at` opens, by the character before it.
bool opensQuotation(std::string_view text, std::size_t at) noexcept {
    const std::string_view before = text.substr(0, at);
    for (const std::string_view character : kBeforeOpening)
        if (before.ends_with(character)) return Unicode::isCharacterBoundary(text, at - character.size());
    return before.empty();
}

/// Writes a text with typographic characters.
class Typesetter {
public:
    explicit Typesetter(std::string_view text) : text_(text) {
        const auto count = [&](char byte) {
            return static_cast<std::size_t>(std::count(text.begin(), text.end(), byte));
        };
        // Two more bytes per quotation mark, one more per two hyphens.
        result_.reserve(text.size() + 2 * (count('"') + count('\'')) + count('-') / 2);
    }

    std::string run() && {
        for (std::size_t at = 0; at < text_.size();) {
            switch (text_[at]) {
                case '"': at += putDouble(at); break;
                case '\'': at += putSingle(at); break;
                case '-':
                case '.': at += putRun(at); break;
                default: at += putOthers(at);
            }
        }
        return std::move(result_);
    }

private:
    // Each of these writes what is at byte `at`, and returns how many bytes of the text that was.

    std::size_t putDouble(std::size_t at) {
        if (!Replace::isWhole(text_, at, 1)) return put("\"");
        put(opensNext_ ? kOpeningDouble : kClosingDouble);
        opensNext_ = !opensNext_;
        return 1;
    }

    std::size_t putSingle(std::size_t at) {
        if (!Replace::isWhole(text_, at, 1)) return put("'");
        put(opensQuotation(text_, at) ? kOpeningSingle : kClosingSingle);
        return 1;
    }

    /// A run of hyphens or of full stops. The first and the last may be parts of other characters.
    std::size_t putRun(std::size_t at) {
        const char byte = text_[at];
        const std::size_t end = std::min(text_.find_first_not_of(byte, at), text_.size());
        const std::size_t size = end - at;
        const std::size_t before = Unicode::isCharacterBoundary(text_, at) ? 0 : 1;
        const std::size_t after = Unicode::isCharacterBoundary(text_, end) ? 0 : 1;
        const std::size_t whole = size - std::min(size, before + after);

        result_.append(std::min(size, before), byte);
        for (std::size_t i = 0; i < whole / 3; ++i) result_ += byte == '-' ? kEmDash : kEllipsis;
        if (byte == '-' && whole % 3 == 2)
            result_ += kEnDash;
        else
            result_.append(whole % 3, byte);
        result_.append(size - whole - std::min(size, before), byte);
        return size;
    }

    std::size_t putOthers(std::size_t at) {
        std::size_t end = at;
        while (end < text_.size() && !isChanged(text_[end])) ++end;
        return put(text_.substr(at, end - at));
    }

    std::size_t put(std::string_view piece) {
        result_ += piece;
        return piece.size();
    }

    static constexpr bool isChanged(char byte) noexcept {
        return byte == '"' || byte == '\'' || byte == '-' || byte == '.';
    }

    std::string_view text_;
    std::string result_;
    bool opensNext_ = true;
};

// --- Spaces ----------------------------------------------------------------------------------------------------------

constexpr bool isSpaceOrTab(char byte) noexcept {
    return byte == ' ' || byte == '\t';
}

/// Appends `line` with every run of two or more spaces and tabs as one space.
void appendCollapsed(std::string& result, std::string_view line) {
    for (std::size_t at = 0; at < line.size();) {
        std::size_t end = at;
        while (end < line.size() && !isSpaceOrTab(line[end])) ++end;
        const std::size_t blanks = end;
        while (end < line.size() && isSpaceOrTab(line[end])) ++end;
        result += line.substr(at, blanks - at);
        if (end > blanks) result += end - blanks == 1 ? line[blanks] : ' ';
        at = end;
    }
}

/// The number of leading spaces in `line`. The last one does not count if it carries a mark.
std::size_t leadingSpaces(std::string_view line) noexcept {
    const std::size_t end = std::min(line.find_first_not_of(' '), line.size());
    return end > 0 && !Unicode::isCharacterBoundary(line, end) ? end - 1 : end;
}

}  // namespace

std::string stripFormatting(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t end = text.find('\r'); end != std::string_view::npos; end = text.find('\r')) {
        result += text.substr(0, end);
        result += '\n';
        text.remove_prefix(end + 1);
        if (text.starts_with('\n')) text.remove_prefix(1);
    }
    result += text;
    return result;
}

std::string straightenQuotes(std::string_view text) {
    return Replace::each(text, kStraightQuotes);
}

std::string smartQuotes(std::string_view text) {
    return Typesetter(text).run();
}

std::string collapseSpaces(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    bool isFirst = true;
    LineModel::forEachLine(text, [&](std::string_view line) {
        // At most one empty line, that is two line feeds, in a row.
        if (!isFirst && !result.ends_with("\n\n")) result += '\n';
        isFirst = false;
        appendCollapsed(result, Unicode::trimWhitespaces(line));
    });
    return result;
}

std::string removeAllSpaces(std::string_view text) {
    std::string result(text.size(), '\0');
    char* to = result.data();
    // Words are short: a byte is written wherever the last one that stays ended, and no branch depends on it.
    const auto takeASCII = [&](std::string_view run) {
        for (const char byte : run) {
            *to = byte;
            to += ASCII::isWhitespaceOrNewline(byte) ? 0 : 1;
        }
    };
    Unicode::forEachRun(text, 0, takeASCII, [&](char32_t scalar, std::string_view bytes) {
        if (Unicode::isWhitespaceOrNewline(scalar)) return;
        for (const char byte : bytes) *to++ = byte;
    });
    result.resize(static_cast<std::size_t>(to - result.data()));
    return result;
}

std::string tabsToSpaces(std::string_view text) {
    return Replace::each(text, kSpacesForTabs);
}

std::string spacesToTabs(std::string_view text, std::int64_t width) {
    if (width < 1) return std::string(text);
    const auto tabWidth = static_cast<std::size_t>(width);
    LineModel::Joiner joiner(text.size());
    LineModel::forEachLine(text, [&](std::string_view line) {
        const std::size_t tabs = leadingSpaces(line) / tabWidth;
        joiner.startLine().append(tabs, '\t').append(line.substr(tabs * tabWidth));
    });
    return std::move(joiner).text();
}

std::string normalizeDashes(std::string_view text) {
    return Replace::each(text, kPlainDashes);
}

std::string reverseCharacters(std::string_view text) {
    std::string result(text.size(), '\0');
    char* to = result.data() + result.size();
    for (Unicode::Pieces pieces(text); !pieces.isAtEnd();) {
        const auto [piece, isPlain] = pieces.next();
        to -= piece.size();
        if (isPlain)
            std::reverse_copy(piece.begin(), piece.end(), to);
        else
            std::copy(piece.begin(), piece.end(), to);
    }
    return result;
}

}  // namespace ravlin::TextTransforms
