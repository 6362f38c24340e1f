#include "tests/engine/oracles/PatternOracle.h"

#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/regex.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <charconv>
#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

namespace ravlin::PatternOracle {
namespace {

using icu::UnicodeString;

UnicodeString utf16(std::string_view text) {
    return UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
}

std::string utf8(const UnicodeString& text) {
    std::string result;
    return text.toUTF8String(result);
}

void check(UErrorCode status) {
    if (U_FAILURE(status)) throw std::runtime_error(u_errorName(status));
}

// --- Regular expressions ---------------------------------------------------------------------------------------------

class Matcher {
public:
    explicit Matcher(const char* pattern) {
        UErrorCode status = U_ZERO_ERROR;
        matcher_ = std::make_unique<icu::RegexMatcher>(UnicodeString::fromUTF8(pattern), 0, status);
        check(status);
        // By default ICU gives up on long runs of white space, and does not say so when it replaces.
        matcher_->setStackLimit(0, status);
        check(status);
    }

    void start(const UnicodeString& text) { matcher_->reset(text); }

    bool findNext() {
        UErrorCode status = U_ZERO_ERROR;
        const bool isFound = matcher_->find(status) != 0;
        check(status);
        return isFound;
    }

    std::int32_t from() const {
        UErrorCode status = U_ZERO_ERROR;
        return matcher_->start(status);
    }

    std::int32_t to() const {
        UErrorCode status = U_ZERO_ERROR;
        return matcher_->end(status);
    }

    UnicodeString group(std::int32_t number) const {
        UErrorCode status = U_ZERO_ERROR;
        return number <= matcher_->groupCount() ? matcher_->group(number, status) : UnicodeString();
    }

private:
    std::unique_ptr<icu::RegexMatcher> matcher_;
};

UnicodeString expand(const UnicodeString& replacement, const Matcher& match) {
    UnicodeString result;
    for (std::int32_t i = 0; i < replacement.length(); ++i) {
        if (replacement[i] == u'$') {
            result += match.group(replacement[++i] - u'0');
        } else {
            result += replacement[i];
        }
    }
    return result;
}

class Rule {
public:
    Rule(const char* pattern, std::string_view replacement) : matcher_(pattern), replacement_(utf16(replacement)) {}

    /// Replaces every match.
    UnicodeString apply(const UnicodeString& text) {
        UnicodeString result;
        std::int32_t copied = 0;
        for (matcher_.start(text); matcher_.findNext(); copied = matcher_.to()) {
            result.append(text, copied, matcher_.from() - copied);
            result += expand(replacement_, matcher_);
        }
        return result.append(text, copied, text.length() - copied);
    }

private:
    Matcher matcher_;
    UnicodeString replacement_;
};

class Rules {
public:
    using List = std::vector<std::pair<const char*, const char*>>;

    explicit Rules(const List& rules) {
        for (const auto& [pattern, replacement] : rules) rules_.emplace_back(pattern, replacement);
    }

    void apply(UnicodeString& text) {
        for (Rule& rule : rules_) text = rule.apply(text);
    }

private:
    std::vector<Rule> rules_;
};

// --- Literals --------------------------------------------------------------------------------------------------------

bool isWhole(const UnicodeString& text, std::int32_t from, std::int32_t to) {
    static const std::unique_ptr<icu::BreakIterator> characters = [] {
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<icu::BreakIterator> created(
            icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
        check(status);
        return created;
    }();
    characters->setText(text);
    return characters->isBoundary(from) != 0 && characters->isBoundary(to) != 0;
}

/// Replaces every occurrence of `from` that consists of whole user-perceived characters.
void replaceLiteral(UnicodeString& text, const char* fromUTF8, const char* toUTF8) {
    const UnicodeString from = utf16(fromUTF8);
    UnicodeString result;
    std::int32_t copied = 0;
    for (std::int32_t at = text.indexOf(from); at >= 0;) {
        if (!isWhole(text, at, at + from.length())) {
            at = text.indexOf(from, at + 1);
            continue;
        }
        result.append(text, copied, at - copied).append(utf16(toUTF8));
        copied = at + from.length();
        at = text.indexOf(from, copied);
    }
    text = result.append(text, copied, text.length() - copied);
}

// --- Trimming --------------------------------------------------------------------------------------------------------

bool isWhitespace(UChar32 scalar) {
    return scalar == 9 || u_charType(scalar) == U_SPACE_SEPARATOR;
}

bool isWhitespaceOrNewline(UChar32 scalar) {
    return isWhitespace(scalar) || (scalar >= 0xA && scalar <= 0xD) || scalar == 0x85 || scalar == 0x2028 ||
           scalar == 0x2029;
}

template <typename Belongs>
void trim(UnicodeString& text, Belongs belongs) {
    while (!text.isEmpty() && belongs(text.char32At(0))) text.remove(0, text.moveIndex32(0, 1));
    while (!text.isEmpty() && belongs(text.char32At(text.length() - 1)))
        text.truncate(text.moveIndex32(text.length(), -1));
}

// --- Character references --------------------------------------------------------------------------------------------

bool isInsertableScalar(std::uint32_t value) {
    return value == 9 || value == 10 || value == 13 ||
           (value >= 32 && value != 127 && !(value >= 0xD800 && value <= 0xDFFF) && value < 0x110000);
}

std::optional<std::uint32_t> parse(const UnicodeString& digits, int radix) {
    const std::string text = utf8(digits);
    std::uint32_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, radix);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

void decodeNumbers(UnicodeString& text, Matcher& matcher, int radix) {
    struct Match {
        std::int32_t from;
        std::int32_t to;
        UnicodeString digits;
    };
    std::vector<Match> matches;
    for (matcher.start(text); matcher.findNext();) matches.push_back({matcher.from(), matcher.to(), matcher.group(1)});
    for (auto match = matches.rbegin(); match != matches.rend(); ++match) {
        const std::optional<std::uint32_t> value = parse(match->digits, radix);
        if (value && isInsertableScalar(*value))
            text.replaceBetween(match->from, match->to, UnicodeString(static_cast<UChar32>(*value)));
    }
}

class Decoder {
public:
    void decodeNumeric(UnicodeString& text) {
        decodeNumbers(text, decimal_, 10);
        decodeNumbers(text, hexadecimal_, 16);
    }

    void decodeEntities(UnicodeString& text) {
        replaceLiteral(text, "&lt;", "<");
        replaceLiteral(text, "&gt;", ">");
        replaceLiteral(text, "&quot;", "\"");
        replaceLiteral(text, "&#39;", "'");
        replaceLiteral(text, "&apos;", "'");
        replaceLiteral(text, "&nbsp;", " ");
        replaceLiteral(text, "&mdash;", "—");
        replaceLiteral(text, "&ndash;", "–");
        replaceLiteral(text, "&amp;", "&");
        decodeNumeric(text);
    }

private:
    Matcher decimal_{R"(&#(\d+);)"};
    Matcher hexadecimal_{R"(&#x([0-9a-fA-F]+);)"};
};

// --- HTML ------------------------------------------------------------------------------------------------------------

const Rules::List kRawElements = {
    {R"((?is)<script[^>]*>(?:(?!</script>)[\s\S])*?</script>)", ""},
    {R"((?is)<style[^>]*>(?:(?!</style>)[\s\S])*?</style>)", ""},
};

const Rules::List kTextRules = {
    {R"((?i)<\s*br\s*/?>)", "\n"},
    {R"((?i)<\s*/(?:p|div|li|tr|h[1-6])\s*>)", "\n"},
};

const Rules::List kMarkdownRules = {
    {R"((?i)<\s*br\s*/?>)", "\n"},
    {R"((?i)<\s*/p\s*>)", "\n\n"},
    {R"((?i)<\s*p[^>]*>)", ""},
    {R"((?is)<\s*h1[^>]*>((?:(?!<\s*/?h1)[\s\S])*?)<\s*/h1\s*>)", "# $1\n\n"},
    {R"((?is)<\s*h2[^>]*>((?:(?!<\s*/?h2)[\s\S])*?)<\s*/h2\s*>)", "## $1\n\n"},
    {R"((?is)<\s*h3[^>]*>((?:(?!<\s*/?h3)[\s\S])*?)<\s*/h3\s*>)", "### $1\n\n"},
    {R"((?is)<\s*h4[^>]*>((?:(?!<\s*/?h4)[\s\S])*?)<\s*/h4\s*>)", "#### $1\n\n"},
    {R"((?is)<\s*(?:strong|b)\s*>((?:(?!<\s*/?(?:strong|b)\b)[\s\S])*?)<\s*/(?:strong|b)\s*>)", "**$1**"},
    {R"((?is)<\s*(?:em|i)\s*>((?:(?!<\s*/?(?:em|i)\b)[\s\S])*?)<\s*/(?:em|i)\s*>)", "*$1*"},
    {R"((?is)<\s*code\s*>((?:(?!<\s*/?code\b)[\s\S])*?)<\s*/code\s*>)", "`$1`"},
    {R"((?is)<\s*li[^>]*>((?:(?!<\s*/?li\b)[\s\S])*?)<\s*/li\s*>)", "- $1\n"},
    {R"((?i)<\s*/?(?:ul|ol)\s*>)", "\n"},
    {R"((?is)<\s*blockquote[^>]*>((?:(?!<\s*/?blockquote\b)[\s\S])*?)<\s*/blockquote\s*>)", "> $1\n"},
    {R"((?is)<\s*a[^>]*href\s*=\s*["']([^"']*)["'][^>]*>((?:(?!<\s*/?a\b)[\s\S])*?)<\s*/a\s*>)", "[$2]($1)"},
};

/// The two pipelines differ only in their rules.
class HTMLPipeline {
public:
    explicit HTMLPipeline(const Rules::List& rules) : rules_(rules) {}

    std::string apply(std::string_view text) {
        if (text.size() > 0x40000) return std::string(text);
        UnicodeString units = utf16(text);
        rawElements_.apply(units);
        rules_.apply(units);
        tags_.apply(units);
        decoder_.decodeEntities(units);
        blankLines_.apply(units);
        trim(units, isWhitespaceOrNewline);
        return utf8(units);
    }

private:
    Rules rawElements_{kRawElements};
    Rules rules_;
    Rules tags_{{{R"((?i)</?[a-zA-Z][^>]*>)", ""}}};
    Decoder decoder_;
    Rules blankLines_{{{R"(\n{3,})", "\n\n"}}};
};

}  // namespace

std::string stripHTML(std::string_view text) {
    static HTMLPipeline pipeline(kTextRules);
    return pipeline.apply(text);
}

std::string htmlToMarkdown(std::string_view text) {
    static HTMLPipeline pipeline(kMarkdownRules);
    return pipeline.apply(text);
}

std::string stripHTMLFromScratch(std::string_view text) {
    return HTMLPipeline(kTextRules).apply(text);
}

std::string htmlToMarkdownFromScratch(std::string_view text) {
    return HTMLPipeline(kMarkdownRules).apply(text);
}

std::string decodeEntities(std::string_view text) {
    static Decoder decoder;
    UnicodeString units = utf16(text);
    decoder.decodeEntities(units);
    return utf8(units);
}

std::string decodeNumeric(std::string_view text) {
    static Decoder decoder;
    UnicodeString units = utf16(text);
    decoder.decodeNumeric(units);
    return utf8(units);
}

// --- Markdown --------------------------------------------------------------------------------------------------------

namespace {

std::optional<std::pair<UnicodeString, UnicodeString>> firstMatch(const UnicodeString& text, Matcher& matcher) {
    matcher.start(text);
    if (!matcher.findNext()) return std::nullopt;
    return std::pair(matcher.group(1), matcher.group(2));
}

UnicodeString inlineRules(UnicodeString text) {
    static Rules rules({
        {R"(`([^`]+)`)", "<code>$1</code>"},
        {R"(\[([^\]]+)\]\(([^)\s]+)\))", R"(<a href="$2">$1</a>)"},
        {R"(\*\*([^*]+)\*\*)", "<strong>$1</strong>"},
        {R"(__([^_]+)__)", "<strong>$1</strong>"},
        {R"(\*([^*]+)\*)", "<em>$1</em>"},
        {R"((?<![\w])_([^_]+)_(?![\w]))", "<em>$1</em>"},
    });
    replaceLiteral(text, "&", "&amp;");
    replaceLiteral(text, "<", "&lt;");
    replaceLiteral(text, ">", "&gt;");
    rules.apply(text);
    return text;
}

class MarkdownConverter {
public:
    void addLine(UnicodeString line) {
        static Matcher heading(R"(^(#{1,6})\s+(.*)$)");
        static Matcher bulleted(R"(^[-*+]\s+(.*)$)");
        static Matcher numbered(R"(^\d+[.)]\s+(.*)$)");
        trim(line, isWhitespace);
        if (line.isEmpty()) return closeLists();
        if (const auto match = firstMatch(line, heading)) {
            closeLists();
            const auto level = static_cast<char>('0' + match->first.length());
            return add({"<h", std::string(1, level), ">", utf8(inlineRules(match->second)), "</h",
                        std::string(1, level), ">"});
        }
        if (line[0] == u'>' && isWhole(line, 0, 1)) {
            closeLists();
            line.remove(0, 1);
            trim(line, isWhitespace);
            return add({"<blockquote>", utf8(inlineRules(line)), "</blockquote>"});
        }
        if (const auto match = firstMatch(line, bulleted)) {
            if (inOrdered_) add({"</ol>"});
            inOrdered_ = false;
            if (!inUnordered_) add({"<ul>"});
            inUnordered_ = true;
            return add({"<li>", utf8(inlineRules(match->first)), "</li>"});
        }
        if (const auto match = firstMatch(line, numbered)) {
            if (inUnordered_) add({"</ul>"});
            inUnordered_ = false;
            if (!inOrdered_) add({"<ol>"});
            inOrdered_ = true;
            return add({"<li>", utf8(inlineRules(match->first)), "</li>"});
        }
        closeLists();
        add({"<p>", utf8(inlineRules(line)), "</p>"});
    }

    void closeLists() {
        if (inUnordered_) add({"</ul>"});
        inUnordered_ = false;
        if (inOrdered_) add({"</ol>"});
        inOrdered_ = false;
    }

    std::string html() const {
        std::string result;
        for (std::size_t i = 0; i < output_.size(); ++i) result += (i == 0 ? "" : "\n") + output_[i];
        return result;
    }

private:
    void add(std::initializer_list<std::string> pieces) {
        std::string line;
        for (const std::string& piece : pieces) line += piece;
        output_.push_back(line);
    }

    std::vector<std::string> output_;
    bool inUnordered_ = false;
    bool inOrdered_ = false;
};

}  // namespace

std::string markdownToHTML(std::string_view text) {
    MarkdownConverter converter;
    const UnicodeString units = utf16(text);
    for (std::int32_t from = 0; from <= units.length();) {
        std::int32_t end = units.indexOf(u'\n', from);
        if (end < 0) end = units.length();
        converter.addLine(units.tempSubStringBetween(from, end));
        from = end + 1;
    }
    converter.closeLists();
    return converter.html();
}

std::function<std::string(std::string_view)> replacing(const char* pattern, const char* replacement) {
    return [rule = std::make_shared<Rule>(pattern, replacement)](std::string_view text) {
        return utf8(rule->apply(utf16(text)));
    };
}

}  // namespace ravlin::PatternOracle
