#include "Engine/CaseTransforms.h"

#include "Engine/Support/Characters/ASCII.h"
#include "Engine/Support/Characters/Unicode.h"
#include "Engine/Support/LazyTable.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace ravlin::TextTransforms {
namespace {

// --- Characters ------------------------------------------------------------------------------------------------------

/// What a character is; any number of these.
using Kind = std::uint8_t;
constexpr Kind kKnown = 1;  // so that no kind is 0, which the table takes as "not asked yet"
constexpr Kind kLetter = 2;
constexpr Kind kNumber = 4;
constexpr Kind kUpper = 8;
constexpr Kind kLower = 16;

constexpr bool isSeparator(Kind kind) noexcept {
    return (kind & (kLetter | kNumber)) == 0;
}

/// Kinds by what a character is and what becomes of it. Cased characters that neither mapping changes, like the
/// ordinal indicators, are both upper and lower case.
constexpr Kind caseOf(bool isCased, bool isChangedByUpper, bool isChangedByLower) noexcept {
    Kind kind = 0;
    if (!isChangedByUpper && (isCased || isChangedByLower)) kind |= kUpper;
    if (!isChangedByLower && (isCased || isChangedByUpper)) kind |= kLower;
    return kind;
}

Kind computeKind(char32_t scalar) noexcept {
    std::string text;
    Unicode::append(text, scalar);
    Kind kind = kKnown;
    if (Unicode::isLetter(scalar)) kind |= kLetter;
    if (Unicode::isNumber(scalar)) kind |= kNumber;
    kind |=
        caseOf(Unicode::isCased(scalar), Unicode::isChangedByUpperCasing(text), Unicode::isChangedByLowerCasing(text));
    if (Unicode::isUppercase(scalar)) kind |= kUpper;
    if (Unicode::isLowercase(scalar)) kind |= kLower;
    return kind;
}

Kind kindOf(char32_t scalar) noexcept {
    static constinit LazyTable<Kind, 0x110000, computeKind> kinds;
    return kinds[scalar];
}

Kind kindOf(std::string_view character) noexcept {
    const Unicode::Scalar first = Unicode::decode(character, 0);
    const Kind kind = kindOf(first.value);
    if (first.byteSize == character.size()) return kind;
    const Kind casing = caseOf(/*isCased=*/false, Unicode::isChangedByUpperCasing(character),
                               Unicode::isChangedByLowerCasing(character));
    return static_cast<Kind>((kind & (kLetter | kNumber)) | casing);
}

Kind kindOf(char byte) noexcept {
    return kindOf(static_cast<char32_t>(static_cast<unsigned char>(byte)));
}

// --- Words -----------------------------------------------------------------------------------------------------------

/// Finds the words of a text whose characters it is given in order. A word is a stretch of the text.
template <typename Visit>
class WordSplitter {
public:
    WordSplitter(std::string_view text, Visit visit) : text_(text), visit_(visit) {}

    /// Takes the character that starts at byte `at`.
    void take(std::size_t at, Kind kind) {
        const bool endsAcronym = (kind & kLower) != 0 && (last_ & kUpper) != 0 && (beforeLast_ & kUpper) != 0;
        if (endsAcronym) endWord(lastStart_);  // whose last capital begins the next word
        if (isSeparator(kind)) {
            endWord(at);
            last_ = kNone;
            return;
        }
        const bool isAfterLowerOrNumber = (last_ & (kLower | kNumber)) != 0;
        if (last_ == kNone) wordStart_ = at;
        beforeLast_ = last_;
        if ((kind & kUpper) != 0 && isAfterLowerOrNumber) endWord(at);
        last_ = kind;
        lastStart_ = at;
    }

    bool isOutsideWord() const noexcept { return last_ == kNone; }

    /// Takes a whole word, while outside one.
    void takeWord(std::size_t from, std::size_t to) { visit_(text_.substr(from, to - from)); }

    void finish() { endWord(text_.size()); }

private:
    static constexpr Kind kNone = 0;

    void endWord(std::size_t end) {
        if (last_ != kNone) visit_(text_.substr(wordStart_, end - wordStart_));
        wordStart_ = end;
        beforeLast_ = kNone;
    }

    std::string_view text_;
    Visit visit_;
    std::size_t wordStart_ = 0;
    std::size_t lastStart_ = 0;
    Kind last_ = kNone;        // the last character of the current word; none where there is no word
    Kind beforeLast_ = kNone;  // the one before it in the same word
};

/// The end of the run of small letters that starts at byte `at` of ASCII text. Eight bytes at a time: a loop that ends
/// after another number of bytes for every word is mispredicted every time.
std::size_t smallLettersEnd(std::string_view text, std::size_t at) noexcept {
    if constexpr (std::endian::native == std::endian::little) {
        constexpr std::uint64_t kOnes = 0x0101010101010101U;
        for (std::uint64_t bytes = 0; text.size() - at >= sizeof(bytes); at += sizeof(bytes)) {
            std::memcpy(&bytes, text.data() + at, sizeof(bytes));
            // The highest bit of a sum tells whether the byte is at least that letter, or behind it.
            const std::uint64_t letters = (bytes + kOnes * (0x80 - 'a')) & ~(bytes + kOnes * (0x80 - 'z' - 1));
            const std::uint64_t others = ~letters & (kOnes * 0x80);
            if (others != 0) return at + static_cast<std::size_t>(std::countr_zero(others)) / 8;
        }
    }
    while (at < text.size() && text[at] >= 'a' && text[at] <= 'z') ++at;
    return at;
}

/// Gives `splitter` ASCII text that starts at byte `offset`, but for most of most texts, which needs no rules: words of
/// small letters, and what stands between the first and the last of several small letters.
template <typename Visit>
void takeASCII(WordSplitter<Visit>& splitter, std::string_view text, std::size_t offset) {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = smallLettersEnd(text, at);
        const bool isWord = end > at && end < text.size() && isSeparator(kindOf(text[end]));
        if (isWord && splitter.isOutsideWord()) {
            splitter.takeWord(offset + at, offset + end);
            at = end + 1;
        } else {
            splitter.take(offset + at, kindOf(text[at]));
            at = end > at + 1 ? end - 1 : at + 1;
        }
    }
}

template <typename Visit>
void forEachWord(std::string_view text, Visit visit) {
    WordSplitter<Visit> splitter(text, visit);
    std::size_t at = 0;
    for (Unicode::Pieces pieces(text); !pieces.isAtEnd();) {
        const auto [piece, isPlain] = pieces.next();
        if (isPlain)
            takeASCII(splitter, piece, at);
        else
            splitter.take(at, kindOf(piece));
        at += piece.size();
    }
    splitter.finish();
}

/// Room for the words of a text and what may stand between them, where a word has two characters or more.
constexpr std::size_t roomForWords(std::size_t size) noexcept {
    return size + size / 2;
}

/// Words are put together in parts of this many bytes and mapped then, which takes half the time.
constexpr std::size_t kPartSize = 4096;

/// The mapped words of `text` with `separator` between them, which like any other separates the contexts of final
/// sigmas.
template <typename AppendMapped>
std::string joinedWords(std::string_view text, char separator, AppendMapped appendMapped) {
    std::string result;
    result.reserve(roomForWords(text.size()));
    std::string part;
    forEachWord(text, [&](std::string_view word) {
        if (!result.empty() || !part.empty()) part += separator;
        if (part.size() + word.size() > kPartSize) {
            appendMapped(result, part);
            part.clear();
        }
        if (word.size() > kPartSize)
            appendMapped(result, word);
        else
            part += word;
    });
    appendMapped(result, part);
    return result;
}

void appendLowerCased(std::string& result, std::string_view text) {
    Unicode::appendLowerCased(result, text, 0, text.size());
}

/// Appends `word`, which is its own context, in lower case with an upper-case first character.
void appendCapitalised(std::string& result, std::string_view word) {
    const std::size_t start = result.size();
    appendLowerCased(result, word);
    const std::string_view lowered = std::string_view(result).substr(start);
    const std::size_t size = Unicode::characterEnd(lowered, 0);
    result.replace(start, size, Unicode::upperCased(lowered.substr(0, size)));
}

/// Puts words together, in lower case with upper-case first characters. Most parts are ASCII: all of such a part is
/// lower-cased at once, and then the bytes where words begin are upper-cased.
class CapitalisedWords {
public:
    explicit CapitalisedWords(std::size_t size) { result_.reserve(Unicode::roomForMapped(size)); }

    /// The word that comes before all others and stays in lower case.
    void appendSmall(std::string_view word) { appendLowerCased(result_, word); }

    void append(std::string_view word) {
        if (part_.size() + word.size() > kPartSize) writePart();
        if (word.size() > kPartSize) return appendCapitalised(result_, word);
        starts_.push_back(part_.size());
        part_ += word;
    }

    std::string take() && {
        writePart();
        return std::move(result_);
    }

private:
    void writePart() {
        if (Unicode::asciiRunEnd(part_, 0) == part_.size())
            writeASCII();
        else
            writeWords();
        part_.clear();
        starts_.clear();
    }

    void writeASCII() {
        const std::size_t offset = result_.size();
        ASCII::appendMapped(result_, part_, ASCII::toLower);
        for (const std::size_t start : starts_) result_[offset + start] = ASCII::toUpper(part_[start]);
    }

    void writeWords() {
        starts_.push_back(part_.size());
        for (std::size_t i = 0; i + 1 < starts_.size(); ++i)
            appendCapitalised(result_, std::string_view(part_).substr(starts_[i], starts_[i + 1] - starts_[i]));
    }

    std::string result_;
    std::string part_;
    std::vector<std::size_t> starts_;  // of the words in the part
};

// --- sentenceCase ----------------------------------------------------------------------------------------------------

/// A text that is given upper-case letters from its start to its end. They mostly take as many bytes as the lower-case
/// ones, so the text is changed where it stands and only written anew from the first place on where they do not.
class Capitaliser {
public:
    explicit Capitaliser(std::string text) : text_(std::move(text)) {}

    std::string_view text() const noexcept { return text_; }

    /// Upper-cases the bytes [`from`, `to`), which lie after those of the last call.
    void capitalise(std::size_t from, std::size_t to) {
        const std::string upper = Unicode::upperCased(text().substr(from, to - from));
        if (upper.size() == to - from) {
            std::copy(upper.begin(), upper.end(), text_.begin() + static_cast<std::ptrdiff_t>(from));
            return;
        }
        rewritten_.reserve(Unicode::roomForMapped(text_.size()));
        rewritten_ += text().substr(copied_, from - copied_);
        rewritten_ += upper;
        copied_ = to;
    }

    std::string take() && {
        if (copied_ == 0) return std::move(text_);
        rewritten_ += text().substr(copied_);
        return std::move(rewritten_);
    }

private:
    std::string text_;
    std::string rewritten_;  // the text up to `copied_`, unless that is 0
    std::size_t copied_ = 0;
};

constexpr bool isSentenceTerminator(char byte) noexcept {
    return byte == '.' || byte == '!' || byte == '?';
}

/// Whether the character at byte `at` is exactly the one of a single ASCII byte.
bool isSingle(std::string_view text, std::size_t at) noexcept {
    return Unicode::isCharacterBoundary(text, at) && Unicode::characterEnd(text, at) == at + 1;
}

/// Whether a sentence ends before byte `at`, which follows a terminator.
bool isSentenceEnd(std::string_view text, std::size_t at) noexcept {
    if (at == text.size()) return true;
    const char next = text[at];
    return (next == ' ' || next == '\n' || next == '\t') && isSingle(text, at);
}

/// The place after the next sentence, or the end of the text.
std::size_t nextSentence(std::string_view text, std::size_t at) noexcept {
    for (; at < text.size(); ++at)
        if (isSentenceTerminator(text[at]) && isSingle(text, at) && isSentenceEnd(text, at + 1)) return at + 1;
    return at;
}

/// The next letter at or after the character that starts at byte `at`, or the end of the text.
std::size_t nextLetter(std::string_view text, std::size_t at) noexcept {
    while (at < text.size() && (kindOf(Unicode::decode(text, at).value) & kLetter) == 0)
        at = Unicode::characterEnd(text, at);
    return at;
}

// --- slugify ---------------------------------------------------------------------------------------------------------

/// Latin, Greek and Cyrillic end before here; only they lose their diacritics.
constexpr char32_t kFirstUnfolded = 0x510;

constexpr bool isSkinTone(char32_t scalar) noexcept {
    return scalar >= 0x1F3FB && scalar <= 0x1F3FF;
}

/// Whether a diacritic that follows a base character goes with it. Other scripts lose only marks that are not theirs.
bool isDropped(char32_t base, char32_t following) noexcept {
    if (Unicode::isGraphemeExtend(following)) return base < kFirstUnfolded || following < kFirstUnfolded;
    return base < kFirstUnfolded && isSkinTone(following);
}

/// The base character of what folds to it.
char32_t foldedBase(char32_t scalar) noexcept {
    const char32_t start = Unicode::decompositionStart(scalar);
    return start < kFirstUnfolded ? start : scalar;
}

/// Takes diacritics from a text that it is given from its start.
class Folder {
public:
    explicit Folder(std::size_t size) { folded_.reserve(size); }

    void takeASCII(std::string_view run) {
        folded_ += run;
        if (!run.empty()) base_ = static_cast<unsigned char>(run.back());
    }

    void take(char32_t scalar) {
        const bool hasBase = base_ != kNoBase;
        if (hasBase && isDropped(base_, scalar)) return;
        const bool isMark = hasBase && Unicode::isGraphemeExtend(scalar);
        if (!isMark) base_ = foldedBase(scalar);
        Unicode::append(folded_, isMark ? scalar : base_);
    }

    std::string take() && { return std::move(folded_); }

private:
    static constexpr char32_t kNoBase = 0xFFFFFFFF;

    std::string folded_;
    char32_t base_ = kNoBase;
};

/// `text` without its diacritics.
std::string folded(std::string_view text) {
    Folder folder(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t asciiEnd = Unicode::asciiRunEnd(text, at);
        folder.takeASCII(text.substr(at, asciiEnd - at));
        for (at = asciiEnd; at < text.size() && !Unicode::isASCII(text[at]);) {
            const Unicode::Scalar scalar = Unicode::decode(text, at);
            folder.take(scalar.value);
            at += scalar.byteSize;
        }
    }
    return std::move(folder).take();
}

/// Puts the letters and numbers of folded texts together, with "-" for what stands between them.
class Slug {
public:
    explicit Slug(std::size_t size) { slug_.reserve(size); }

    void append(std::string_view text) {
        for (Unicode::Pieces pieces(text); !pieces.isAtEnd();) {
            const auto [piece, isPlain] = pieces.next();
            if (!isPlain)
                append(piece, kindOf(Unicode::decode(piece, 0).value));
            else
                for (std::size_t i = 0; i < piece.size(); ++i) append(piece.substr(i, 1), kindOf(piece[i]));
        }
    }

    std::string take() && { return std::move(slug_); }

private:
    void append(std::string_view character, Kind kind) {
        if (isSeparator(kind)) {
            isAfterSeparator_ = true;
            return;
        }
        if (isAfterSeparator_ && !slug_.empty()) slug_ += '-';
        slug_ += character;
        isAfterSeparator_ = false;
    }

    std::string slug_;
    bool isAfterSeparator_ = false;
};

// --- titleCase -------------------------------------------------------------------------------------------------------

/// What a code point does to words: ends one, goes on with one, or starts one where none is.
enum class WordPart : std::uint8_t { unknown, outside, inside, start };

/// Ignored between cased letters by Unicode, but here the end of a word: full stops, colons and their kin, and the
/// opening quotation mark U+2018.
constexpr auto kWordEnds = std::to_array<char32_t>({
    0x2E,
    0x3A,
    0xB7,
    0x387,
    0x55F,
    0x5F4,
    0x2018,
    0x2024,
    0x2027,
    0xFE13,
    0xFE52,
    0xFE55,
    0xFF07,
    0xFF0E,
    0xFF1A,
});

WordPart computeWordPart(char32_t scalar) noexcept {
    if (Unicode::isMark(scalar)) return WordPart::inside;
    if (Unicode::isLetter(scalar) || Unicode::isNumber(scalar)) return WordPart::start;
    const bool isEnd = std::find(kWordEnds.begin(), kWordEnds.end(), scalar) != kWordEnds.end();
    return Unicode::isCaseIgnorable(scalar) && !isEnd ? WordPart::inside : WordPart::outside;
}

WordPart wordPart(char32_t scalar) noexcept {
    static constinit LazyTable<WordPart, 0x110000, computeWordPart> parts;
    return parts[scalar];
}

/// The same for ASCII as tables by byte, so that its loop needs no branches, which would be mispredicted at every word.
struct ASCIIWords {
    std::array<std::array<char, 128>, 2> mapped = {};  // [is in word]
    std::array<std::uint8_t, 128> starts = {};
    std::array<std::uint8_t, 128> goesOn = {};
};

constexpr ASCIIWords kASCIIWords = [] {
    ASCIIWords words;
    for (std::size_t i = 0; i < 128; ++i) {
        const char byte = static_cast<char>(i);
        const bool isLetter = ASCII::toLower(byte) != byte || ASCII::toUpper(byte) != byte;
        words.mapped[0][i] = ASCII::toUpper(byte);
        words.mapped[1][i] = ASCII::toLower(byte);
        words.starts[i] = static_cast<std::uint8_t>(isLetter || (byte >= '0' && byte <= '9'));
        words.goesOn[i] = static_cast<std::uint8_t>(words.starts[i] != 0 || byte == '\'' || byte == '^' || byte == '`');
    }
    return words;
}();

}  // namespace

std::string titleCase(std::string_view text) {
    bool isInWord = false;
    std::string result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t asciiEnd = Unicode::asciiRunEnd(text, at);
        ASCII::appendMapped(result, text.substr(at, asciiEnd - at), [&isInWord](char character) {
            const auto byte = static_cast<unsigned char>(character);
            const char mapped = kASCIIWords.mapped[static_cast<std::size_t>(isInWord)][byte];
            isInWord = (kASCIIWords.starts[byte] | (static_cast<unsigned>(isInWord) & kASCIIWords.goesOn[byte])) != 0;
            return mapped;
        });
        for (at = asciiEnd; at < text.size() && !Unicode::isASCII(text[at]);) {
            const Unicode::Scalar scalar = Unicode::decode(text, at);
            const WordPart part = wordPart(scalar.value);
            const bool isFirst = !isInWord && part == WordPart::start;
            isInWord = isFirst || (isInWord && part != WordPart::outside);
            if (isFirst)
                Unicode::appendTitleCased(result, scalar.value);
            else if (isInWord)
                Unicode::appendLowerCased(result, text, at, at + scalar.byteSize);
            else
                result += text.substr(at, scalar.byteSize);
            at += scalar.byteSize;
        }
    }
    return result;
}

std::string sentenceCase(std::string_view text) {
    Capitaliser sentences(Unicode::lowerCased(text));
    for (std::size_t at = 0; at < sentences.text().size();) {
        const std::size_t letter = nextLetter(sentences.text(), at);
        if (letter == sentences.text().size()) break;
        at = Unicode::characterEnd(sentences.text(), letter);
        sentences.capitalise(letter, at);
        at = nextSentence(sentences.text(), at);
    }
    return std::move(sentences).take();
}

std::string capitalizeWords(std::string_view text) {
    std::string result;
    result.reserve(Unicode::roomForMapped(text.size()));
    bool isAfterSeparator = true;
    for (Unicode::Pieces pieces(text); !pieces.isAtEnd();) {
        const auto [piece, isPlain] = pieces.next();
        if (isPlain) {
            ASCII::appendMapped(result, piece, [&isAfterSeparator](char byte) {
                const char mapped = isAfterSeparator ? ASCII::toUpper(byte) : byte;
                isAfterSeparator = isSeparator(kindOf(byte));
                return mapped;
            });
            continue;
        }
        const Kind kind = kindOf(Unicode::decode(piece, 0).value);
        if (isAfterSeparator && (kind & kLetter) != 0)
            Unicode::appendUpperCased(result, piece);
        else
            result += piece;
        isAfterSeparator = isSeparator(kind);
    }
    return result;
}

std::vector<std::string> tokenizeWords(std::string_view text) {
    std::vector<std::string> words;
    forEachWord(text, [&](std::string_view word) { words.emplace_back(word); });
    return words;
}

std::string camelCase(std::string_view text) {
    CapitalisedWords words(text.size());
    bool isFirst = true;
    forEachWord(text, [&](std::string_view word) {
        if (isFirst)
            words.appendSmall(word);
        else
            words.append(word);
        isFirst = false;
    });
    return std::move(words).take();
}

std::string pascalCase(std::string_view text) {
    CapitalisedWords words(text.size());
    forEachWord(text, [&words](std::string_view word) { words.append(word); });
    return std::move(words).take();
}

std::string snakeCase(std::string_view text) {
    return joinedWords(text, '_', appendLowerCased);
}

std::string kebabCase(std::string_view text) {
    return joinedWords(text, '-', appendLowerCased);
}

std::string constantCase(std::string_view text) {
    return joinedWords(text, '_', Unicode::appendUpperCased);
}

std::string slugify(std::string_view text) {
    // In parts, because neither the folded nor the lower-cased text is needed as a whole.
    constexpr std::size_t kPartSize = 0x10000;  // bytes
    Slug slug(text.size());
    while (!text.empty()) {
        const std::size_t size = Unicode::independentPartEnd(text, kPartSize);
        slug.append(Unicode::lowerCased(folded(text.substr(0, size))));
        text.remove_prefix(size);
    }
    return std::move(slug).take();
}

}  // namespace ravlin::TextTransforms
