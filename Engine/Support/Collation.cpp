#include "Engine/Support/Collation.h"

#include "Engine/Support/Unicode.h"

#include <unicode/coll.h>
#include <unicode/locid.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <deque>

namespace ravlin::Collation {
namespace {

std::unique_ptr<icu::Collator> makeCollator(const std::string& locale) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Locale icuLocale = locale.empty() ? icu::Locale::getRoot() : icu::Locale(locale.c_str());
    std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(icuLocale, status));
    if (U_FAILURE(status) != 0 || collator == nullptr) return nullptr;
    collator->setStrength(icu::Collator::SECONDARY);
    // Said explicitly, because some locales have other defaults: Thai skips punctuation.
    collator->setAttribute(UCOL_ALTERNATE_HANDLING, UCOL_NON_IGNORABLE, status);
    collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_OFF, status);
    collator->setAttribute(UCOL_CASE_LEVEL, UCOL_OFF, status);
    collator->setAttribute(UCOL_NORMALIZATION_MODE, UCOL_ON, status);
    return U_SUCCESS(status) != 0 ? std::move(collator) : nullptr;
}

icu::StringPiece piece(std::string_view text) noexcept {
    return {text.data(), static_cast<std::int32_t>(text.size())};
}

/// NOTE: ICU measures in 32 bits, so of a longer text only this much is compared.
constexpr std::size_t kLongestCompared = std::size_t{1} << 30U;  // bytes

}  // namespace

std::string icuLocale(std::string_view posixName) {
    const std::string_view name = posixName.substr(0, posixName.find_first_of(".@"));
    if (name.empty() || name == "C" || name == "POSIX" || name == "en_US_POSIX") return "";
    const std::size_t languageEnd = std::min(name.find('_'), name.size());
    std::string result(name.substr(0, languageEnd));
    if (posixName.ends_with("@latin")) result += "_Latn";
    if (posixName.ends_with("@cyrillic")) result += "_Cyrl";
    result += name.substr(languageEnd);
    return result;
}

std::string userLocale() {
    for (const char* const variable : {"LC_ALL", "LC_COLLATE", "LANG"}) {
        // Nobody changes the environment: the program has one thread.
        const char* const value = std::getenv(variable);  // NOLINT(concurrency-mt-unsafe)
        if (value != nullptr && *value != '\0') return icuLocale(value);
    }
    return "";
}

/// Makes sort keys and keeps them, and compares what has none.
class Sorter::Keys {
public:
    explicit Keys(const std::string& locale) : collator_(makeCollator(locale)) {}

    Entry entryOf(std::string_view text) {
        const bool hasLongMarkRun = Unicode::hasLongMarkRun(text);
        if (collator_ == nullptr || text.size() > kLongestKeyed || hasLongMarkRun)
            return {.prefix = addUnkeyed(text, hasLongMarkRun), .rest = nullptr, .text = text};

        const std::string_view key = keyOf(text);
        Entry entry = {.prefix = 0, .rest = "", .text = text};
        for (std::size_t i = 0; i < sizeof(entry.prefix); ++i)
            entry.prefix = (entry.prefix << 8U) | (i < key.size() ? static_cast<unsigned char>(key[i]) : 0U);
        if (key.size() > sizeof(entry.prefix)) entry.rest = keep(key.substr(sizeof(entry.prefix)));
        return entry;
    }

    /// Compares two texts, at least one of which has no key; keys would give the same order.
    int compareTexts(const Entry& a, const Entry& b) const {
        const std::string_view first = comparedText(a);
        const std::string_view second = comparedText(b);
        UErrorCode status = U_ZERO_ERROR;
        if (collator_ == nullptr) return first.compare(second);
        return collator_->compareUTF8(piece(first), piece(second), status);
    }

private:
    /// A longer text has rarely company enough to be worth the memory of a key.
    static constexpr std::size_t kLongestKeyed = 0x10000;  // bytes
    static constexpr std::size_t kBlockSize = 0x100000;    // bytes

    /// NOTE: of a run of combining marks only the first 64 count, see Unicode::kLongestMarkRun.
    std::uint64_t addUnkeyed(std::string_view text, bool hasLongMarkRun) {
        const std::string_view compared = text.substr(0, kLongestCompared);
        unkeyed_.push_back(hasLongMarkRun ? shortened_.emplace_back(Unicode::withShortMarkRuns(compared)) : compared);
        return unkeyed_.size() - 1;
    }

    std::string_view comparedText(const Entry& entry) const {
        return entry.rest == nullptr ? unkeyed_[entry.prefix] : entry.text;
    }

    /// The sort key of `text` with its final 0. Valid until the next call.
    std::string_view keyOf(std::string_view text) {
        UErrorCode status = U_ZERO_ERROR;
        std::int32_t length = 0;
        u_strFromUTF8WithSub(units_.data(), static_cast<std::int32_t>(units_.size()), &length, text.data(),
                             static_cast<std::int32_t>(text.size()), 0xFFFD, nullptr, &status);
        std::int32_t size = writeKey(length);
        if (static_cast<std::size_t>(size) > key_.size()) {
            key_.resize(static_cast<std::size_t>(size));
            size = writeKey(length);
        }
        return {reinterpret_cast<const char*>(key_.data()), static_cast<std::size_t>(size)};
    }

    /// Writes the key of the first `length` units as far as there is room, and returns the size of the whole.
    std::int32_t writeKey(std::int32_t length) {
        return collator_->getSortKey(units_.data(), length, key_.data(), static_cast<std::int32_t>(key_.size()));
    }

    /// A copy of `bytes` that lives as long as this.
    const char* keep(std::string_view bytes) {
        if (bytes.size() > free_) {
            free_ = std::max(bytes.size(), kBlockSize);
            blocks_.push_back(std::make_unique_for_overwrite<char[]>(free_));
            next_ = blocks_.back().get();
        }
        char* const kept = next_;
        next_ = std::copy(bytes.begin(), bytes.end(), next_);
        free_ -= bytes.size();
        return kept;
    }

    std::unique_ptr<icu::Collator> collator_;
    std::vector<char16_t> units_ = std::vector<char16_t>(kLongestKeyed);
    std::vector<std::uint8_t> key_ = std::vector<std::uint8_t>(1024);

    std::vector<std::unique_ptr<char[]>> blocks_;
    char* next_ = nullptr;
    std::size_t free_ = 0;  // bytes left in the last block

    std::vector<std::string_view> unkeyed_;
    std::deque<std::string> shortened_;  // what `unkeyed_` refers to where marks were cut
};

Sorter::Sorter(const std::string& locale) : keys_(std::make_unique<Keys>(locale)) {}
Sorter::~Sorter() = default;

void Sorter::add(std::string_view text) {
    entries_.push_back(keys_->entryOf(text));
}

int Sorter::compare(const Entry& a, const Entry& b) const {
    if (a.rest == nullptr || b.rest == nullptr) return keys_->compareTexts(a, b);
    if (a.prefix != b.prefix) return a.prefix < b.prefix ? -1 : 1;
    return std::strcmp(a.rest, b.rest);
}

void Sorter::sort(bool ascending) {
    // Equal texts are told apart by their addresses, which makes a stable sort of one that needs no further memory.
    std::sort(entries_.begin(), entries_.end(), [&](const Entry& a, const Entry& b) {
        const int order = compare(a, b);
        if (order != 0) return ascending ? order < 0 : order > 0;
        return a.text.data() < b.text.data();
    });
}

}  // namespace ravlin::Collation
