#include "Engine/Support/JoinedWords.h"

#include "Engine/Support/Characters/ASCII.h"
#include "Engine/Support/Characters/Unicode.h"
#include "Engine/Support/Words.h"

#include <utility>
#include <vector>

namespace ravlin::Words {
namespace {

/// Words are joined into parts of this many bytes before they are mapped, which takes half the time.
constexpr std::size_t kPartSize = 4096;

/// Appends `word` in lower case with an upper-case first character.
void appendCapitalised(std::string& result, std::string_view word) {
    const std::size_t start = result.size();
    Unicode::appendLowerCased(result, word, 0, word.size());
    const std::string_view lowered = std::string_view(result).substr(start);
    const std::size_t size = Unicode::characterEnd(lowered, 0);
    result.replace(start, size, Unicode::upperCased(lowered.substr(0, size)));
}

/// Joins words, capitalised. Most parts are ASCII: such a part is lower-cased as a whole, then the first byte of each
/// word is upper-cased.
class CapitalisedWords {
public:
    explicit CapitalisedWords(std::size_t size) { result_.reserve(Unicode::roomForMapped(size)); }

    /// Appends the word that precedes all others and stays in lower case.
    void appendSmall(std::string_view word) { Unicode::appendLowerCased(result_, word, 0, word.size()); }

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

}  // namespace

std::string joined(std::string_view text, char separator, void (*appendMapped)(std::string&, std::string_view)) {
    std::string result;
    result.reserve(text.size() + text.size() / 2);  // enough if words have two or more characters
    std::string part;
    forEach(text, [&](std::string_view word) {
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

std::string capitalised(std::string_view text, bool isFirstCapitalised) {
    CapitalisedWords words(text.size());
    bool isSmall = !isFirstCapitalised;
    forEach(text, [&](std::string_view word) {
        if (std::exchange(isSmall, false))
            words.appendSmall(word);
        else
            words.append(word);
    });
    return std::move(words).take();
}

}  // namespace ravlin::Words
