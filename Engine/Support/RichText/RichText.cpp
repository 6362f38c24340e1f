#include "Engine/Support/RichText/RichText.h"

#include "Engine/Support/Characters/ASCII.h"
#include "Engine/Support/Characters/Unicode.h"
#include "Engine/Support/RichText/CodePage.h"
#include "Engine/Support/RichText/ControlWords.h"
#include "Engine/Support/RichText/RTFTokenizer.h"
#include "Engine/Support/Scan.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>
#include <vector>

namespace ravlin::RichText {
namespace {

using Kind = RTFToken::Kind;

// --- Symbols ---------------------------------------------------------------------------------------------------------

struct Symbol {
    char name;
    char32_t value;
};

constexpr auto kSymbols = std::to_array<Symbol>({
    {'\n', '\n'},
    {'\r', '\n'},
    {'\t', '\t'},
    {'-', 0x00AD},
    {'_', 0x2011},
    {'~', 0x00A0},
});

// --- Putting the text together ---------------------------------------------------------------------------------------

/// The text so far. Unpaired surrogates become U+FFFD.
class Characters {
public:
    void append(CodePage page, std::string_view bytes) {
        appendUnpaired();
        decoder_.append(text_, page, bytes);
    }

    void append(char32_t unit) {
        const bool isPaired = lead_ != 0 && isTrail(unit);
        const char32_t lead = std::exchange(lead_, 0);
        if (isPaired) {
            appendScalar(0x10000 + ((lead - kFirstLead) << 10U) + (unit - kFirstTrail));
            return;
        }
        if (lead != 0) appendScalar(Unicode::kReplacement);
        if (isLead(unit)) {
            lead_ = unit;
        } else {
            appendScalar(isTrail(unit) || unit > kLastScalar ? Unicode::kReplacement : unit);
        }
    }

    std::string take() && {
        appendUnpaired();
        decoder_.finish(text_);
        return std::move(text_);
    }

private:
    static constexpr char32_t kFirstLead = 0xD800;
    static constexpr char32_t kFirstTrail = 0xDC00;
    static constexpr char32_t kLastTrail = 0xDFFF;
    static constexpr char32_t kLastScalar = 0x10FFFF;

    static constexpr bool isLead(char32_t unit) { return unit >= kFirstLead && unit < kFirstTrail; }
    static constexpr bool isTrail(char32_t unit) { return unit >= kFirstTrail && unit <= kLastTrail; }

    void appendUnpaired() {
        if (std::exchange(lead_, 0) != 0) appendScalar(Unicode::kReplacement);
    }

    void appendScalar(char32_t scalar) {
        decoder_.finish(text_);
        Unicode::append(text_, scalar);
    }

    std::string text_;
    CodePageDecoder decoder_;
    char32_t lead_ = 0;  // a surrogate waiting for its other half
};

/// The code pages of the document and its fonts.
class Fonts {
public:
    static constexpr int kDefault = -1;  // for `pageOf`: the document's default font

    void setDocumentPage(CodePage page) { documentPage_ = page; }
    void setDefaultFont(int font) { defaultFont_ = font; }

    /// Begins the description of a font.
    void describe(int font) {
        described_ = font;
        isPageKnown_ = false;
        setPage(std::nullopt);
    }

    void setCharset(int charset) {
        // A code page is more exact.
        if (!isPageKnown_) setPage(CodePage::forCharset(charset));
    }

    void setCodePage(int number) {
        const auto page = CodePage::numbered(number);
        isPageKnown_ = page.has_value();
        if (page) setPage(page);
    }

    CodePage pageOf(int font) const {
        if (font == kDefault) font = defaultFont_;
        const bool isListed = isNumber(font) && static_cast<std::size_t>(font) < pages_.size();
        return isListed ? pages_[static_cast<std::size_t>(font)].value_or(documentPage_) : documentPage_;
    }

private:
    // Font numbers have 16 bits and a sign.
    static constexpr bool isNumber(int font) { return font >= 0 && font < 0x8000; }

    void setPage(std::optional<CodePage> page) {
        if (!isNumber(described_)) return;
        const auto at = static_cast<std::size_t>(described_);
        if (at >= pages_.size()) pages_.resize(at + 1);
        pages_[at] = page;
    }

    std::vector<std::optional<CodePage>> pages_;  // by font; nothing for a font that leaves it to the document
    CodePage documentPage_ = CodePage::kWindows1252;
    int defaultFont_ = kDefault;
    int described_ = -1;        // none yet
    bool isPageKnown_ = false;  // of the one described
};

/// What applies to the characters in a group, and to the groups in it until they change it.
struct State {
    int font = Fonts::kDefault;
    int fallbackSize = 1;  // units that follow each \u
    bool isHidden = false;
    bool isDeleted = false;
    bool isFontTable = false;

    bool isSilent() const { return isHidden || isDeleted || isFontTable; }
};

/// \plain: resets the formatting of the characters.
void setPlain(State& state) {
    state.font = Fonts::kDefault;
    state.isHidden = false;
    state.isDeleted = false;
}

/// The open groups. Only those that change something cost memory.
class Groups {
public:
    const State& state() const { return state_; }

    /// The state, to be changed until the innermost group ends.
    State& change() {
        const bool isSaved = !saved_.empty() && saved_.back().depth == depth_;
        if (!isSaved && saved_.size() < kMaxNesting) saved_.push_back({depth_, state_});
        return state_;
    }

    void open() { ++depth_; }

    void close() {
        if (!saved_.empty() && saved_.back().depth == depth_) {
            state_ = saved_.back().state;
            saved_.pop_back();
        }
        --depth_;
    }

    bool isAnyOpen() const { return depth_ > 0; }

private:
    struct Saved {
        std::size_t depth;
        State state;  // outside the group
    };

    std::size_t depth_ = 0;
    State state_;
    std::vector<Saved> saved_;
};

// --- Reading ---------------------------------------------------------------------------------------------------------

class Reader {
public:
    explicit Reader(std::string_view rtf) : tokens_(rtf) {}

    std::string read() && {
        RTFToken token;
        do {
            token = tokens_.next();
            handle(token);
        } while (token.kind != Kind::end && groups_.isAnyOpen());  // what follows is not the document's
        return std::move(characters_).take();
    }

private:
    void handle(RTFToken& token);
    bool isFallback(RTFToken& token);
    void openGroup();
    void closeGroup();
    void skipGroup();
    void handleSymbol(char name);
    void handleWord(const RTFToken& token, bool isOptional);
    void apply(const Word& word, const RTFToken& token);
    void setFont(const RTFToken& token);
    void setDocumentPage(const Word& word, const RTFToken& token);
    void appendBytes(std::string_view bytes);
    void append(char32_t unit);
    void appendUnicode(int number);
    void endParagraph();

    RTFTokenizer tokens_;
    Characters characters_;
    Fonts fonts_;
    Groups groups_;
    int fallbackUnits_ = 0;    // still to be left out
    bool isOptional_ = false;  // the next word, for readers that do not know it
    bool skipsNextGroup_ = false;
    bool isBehindTable_ = false;
};

void Reader::handle(RTFToken& token) {
    if (fallbackUnits_ > 0 && isFallback(token)) return;
    const bool isOptional = std::exchange(isOptional_, false);
    switch (token.kind) {
        case Kind::end: return;
        case Kind::groupStart: openGroup(); return;
        case Kind::groupEnd: closeGroup(); return;
        case Kind::bytes: appendBytes(token.text); return;
        case Kind::symbol: handleSymbol(token.text.front()); return;
        case Kind::word: handleWord(token, isOptional); return;
    }
}

/// Whether programs without Unicode show the token instead of the preceding character. If only its first bytes are such
/// a fallback, removes those. A word and a symbol are one unit, as is each byte.
bool Reader::isFallback(RTFToken& token) {
    const bool isBytes = token.kind == Kind::bytes;
    const bool isUnit = isBytes || token.kind == Kind::symbol || token.kind == Kind::word;
    // NOTE: no program shows one Unicode character instead of another, so one that follows is not a fallback.
    if (!isUnit || (token.kind == Kind::word && token.text == "u")) {
        fallbackUnits_ = 0;
        return false;
    }
    const auto left = static_cast<std::size_t>(fallbackUnits_);
    const std::size_t size = isBytes ? std::min(token.text.size(), left) : 1;
    fallbackUnits_ -= static_cast<int>(size);
    if (isBytes) token.text.remove_prefix(size);
    return !isBytes || token.text.empty();
}

void Reader::openGroup() {
    groups_.open();
    if (std::exchange(skipsNextGroup_, false)) skipGroup();
}

void Reader::closeGroup() {
    skipsNextGroup_ = false;
    groups_.close();
}

/// Skips the rest of the innermost group, and ends it.
void Reader::skipGroup() {
    for (std::size_t depth = 1; depth > 0;) {
        const Kind kind = tokens_.next().kind;
        if (kind == Kind::end) break;
        if (kind == Kind::groupStart) ++depth;
        if (kind == Kind::groupEnd) --depth;
    }
    closeGroup();
}

void Reader::handleSymbol(char name) {
    if (name == '*') isOptional_ = true;
    for (const Symbol& symbol : kSymbols)
        if (symbol.name == name) append(symbol.value);
}

void Reader::handleWord(const RTFToken& token, bool isOptional) {
    const Word* const word = findWord(token.text);
    const bool isKnown = word && (word->effect == Effect::destination || word->effect == Effect::endOfTable);
    if (isOptional && !isKnown) {
        skipGroup();
    } else if (word) {
        apply(*word, token);
    }
}

void Reader::apply(const Word& word, const RTFToken& token) {
    const bool isOn = !token.hasNumber || token.number != 0;
    switch (word.effect) {
        case Effect::character: append(word.value); return;
        case Effect::paragraph: endParagraph(); return;
        case Effect::unicode: appendUnicode(token.number); return;
        case Effect::fallback: groups_.change().fallbackSize = std::max(token.number, 0); return;
        case Effect::skipped: skipGroup(); return;
        case Effect::destination: return;
        case Effect::eitherOr: skipsNextGroup_ = true; return;
        case Effect::hidden: groups_.change().isHidden = isOn; return;
        case Effect::deleted: groups_.change().isDeleted = isOn; return;
        case Effect::plain: setPlain(groups_.change()); return;
        case Effect::font: setFont(token); return;
        case Effect::fontTable: groups_.change().isFontTable = true; return;
        case Effect::fontCharset: fonts_.setCharset(token.number); return;
        case Effect::fontCodePage: fonts_.setCodePage(token.number); return;
        case Effect::defaultFont: fonts_.setDefaultFont(token.number); return;
        case Effect::documentCodePage: setDocumentPage(word, token); return;
        case Effect::endOfTable: isBehindTable_ = true; return;
    }
}

void Reader::setFont(const RTFToken& token) {
    if (groups_.state().isFontTable) {
        fonts_.describe(token.number);
    } else {
        groups_.change().font = token.number;
    }
}

void Reader::setDocumentPage(const Word& word, const RTFToken& token) {
    const int number = token.hasNumber ? token.number : static_cast<int>(word.value);
    if (const auto page = CodePage::numbered(number)) fonts_.setDocumentPage(*page);
}

void Reader::appendBytes(std::string_view bytes) {
    isBehindTable_ = false;
    if (groups_.state().isSilent()) return;
    characters_.append(fonts_.pageOf(groups_.state().font), bytes);
}

void Reader::append(char32_t unit) {
    isBehindTable_ = false;
    if (!groups_.state().isSilent()) characters_.append(unit);
}

void Reader::appendUnicode(int number) {
    fallbackUnits_ = groups_.state().fallbackSize;
    if (number == 0) return;  // like the NULs between tokens
    // Numbers have 16 bits and a sign, so higher units are written as negative ones.
    const int unit = number < 0 ? number + 0x10000 : number;
    // Programs that take a symbol font's bytes for characters put them in Unicode's private use area.
    const bool isSymbol = unit >= 0xF020 && unit <= 0xF0FF && fonts_.pageOf(groups_.state().font) == CodePage::kSymbol;
    if (isSymbol) {
        const char byte = static_cast<char>(unit & 0xFF);
        appendBytes({&byte, 1});
    } else {
        append(unit < 0 ? Unicode::kReplacement : static_cast<char32_t>(unit));
    }
}

void Reader::endParagraph() {
    // AbiWord ends a table like a paragraph, although its last cell has already ended the last paragraph.
    if (!std::exchange(isBehindTable_, false)) append('\n');
}

/// Where the document begins, npos if there is none. Some programs put a byte order mark or white space first.
std::size_t findStart(std::string_view rtf) noexcept {
    constexpr std::string_view kByteOrderMark = "\uFEFF";
    constexpr std::string_view kSignature = "{\\rtf";
    constexpr std::string_view kBlanks(" \t\r\n\v\f\0", 7);
    const std::size_t markSize = rtf.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0;
    const std::size_t start = rtf.find_first_not_of(kBlanks, markSize);
    if (start == Scan::kNone || !rtf.substr(start).starts_with(kSignature)) return Scan::kNone;
    return ASCII::isLetter(Scan::peek(rtf, start + kSignature.size())) ? Scan::kNone : start;
}

}  // namespace

std::optional<std::string> plainText(std::string_view rtf) {
    const std::size_t start = findStart(rtf);
    if (start == Scan::kNone) return std::nullopt;
    return Reader(rtf.substr(start)).read();
}

}  // namespace ravlin::RichText
