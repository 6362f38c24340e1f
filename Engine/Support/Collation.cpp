#include "Engine/Support/Collation.h"

#include "Engine/Support/Characters/Unicode.h"

#include <unicode/coll.h>
#include <unicode/locid.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

namespace ravlin::Collation {
namespace {

std::unique_ptr<icu::Collator> makeCollator(const std::string& locale) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Locale icuLocale = locale.empty() ? icu::Locale::getRoot() : icu::Locale(locale.c_str());
    std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(icuLocale, status));
    if (U_FAILURE(status) != 0 || collator == nullptr) return nullptr;
    collator->setStrength(icu::Collator::SECONDARY);
    // Set explicitly, because some locales have other defaults: Thai skips punctuation.
    collator->setAttribute(UCOL_ALTERNATE_HANDLING, UCOL_NON_IGNORABLE, status);
    collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_OFF, status);
    collator->setAttribute(UCOL_CASE_LEVEL, UCOL_OFF, status);
    collator->setAttribute(UCOL_NORMALIZATION_MODE, UCOL_ON, status);
    return U_SUCCESS(status) != 0 ? std::move(collator) : nullptr;
}

/// NOTE: ICU's sizes are 32-bit, those of keys included, so only this much of a longer text is compared.
constexpr std::size_t kLongestCompared = std::size_t{1} << 28U;  // bytes

/// Memory that is not initialised, and costs nothing until it is used.
template <typename Unit>
struct Buffer {
    explicit Buffer(std::size_t room) : units(std::make_unique_for_overwrite<Unit[]>(room)), size(room) {}

    std::unique_ptr<Unit[]> units;
    std::size_t size;
};

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
        // Nothing changes the environment meanwhile: the program has one thread.
        const char* const value = std::getenv(variable);  // NOLINT(concurrency-mt-unsafe)
        if (value != nullptr && *value != '\0') return icuLocale(value);
    }
    return "";
}

/// Makes and keeps sort keys.
class Sorter::Keys {
public:
    explicit Keys(const std::string& locale) : collator_(makeCollator(locale)) {}

    /// Compares without keys, which is quicker for a single comparison. Texts that need care count as out of order.
    bool isInOrder(std::string_view a, std::string_view b, bool ascending) const {
        if (a == b) return true;
        if (collator_ == nullptr || std::max(a.size(), b.size()) > kLongestCompared) return false;
        if (Unicode::hasLongMarkRun(a) || Unicode::hasLongMarkRun(b)) return false;
        UErrorCode status = U_ZERO_ERROR;
        const UCollationResult order = collator_->compareUTF8(a, b, status);
        return U_SUCCESS(status) != 0 && order != (ascending ? UCOL_GREATER : UCOL_LESS);
    }

    /// NOTE: only the first 64 of a run of combining marks count, see Unicode::kLongestMarkRun.
    Entry entryOf(std::string_view text) {
        const std::string_view compared = text.substr(0, kLongestCompared);
        const bool hasLongMarkRun = Unicode::hasLongMarkRun(compared);
        const std::size_t size = hasLongMarkRun ? writeKey(Unicode::withShortMarkRuns(compared)) : writeKey(compared);
        Entry entry = {.prefix = 0, .rest = "", .text = text};
        for (std::size_t i = 0; i < sizeof(entry.prefix); ++i)
            entry.prefix = (entry.prefix << 8U) | (i < size ? static_cast<unsigned char>(key_.units[i]) : 0U);
        if (size > sizeof(entry.prefix)) entry.rest = keep(sizeof(entry.prefix), size);
        return entry;
    }

private:
    static constexpr std::size_t kOrdinary = 0x10000;    // bytes of a text; memory for longer ones is freed at once
    static constexpr std::size_t kBlockSize = 0x100000;  // bytes

    /// Writes the sort key of `text` with its final 0 to `key_`, and returns its size.
    std::size_t writeKey(std::string_view text) {
        if (key_.size <= 2 * text.size()) key_ = Buffer<char>(2 * text.size() + 1);
        if (collator_ == nullptr) {
            *std::copy(text.begin(), text.end(), key_.units.get()) = '\0';
            return text.size() + 1;
        }
        if (units_.size < text.size()) units_ = Buffer<char16_t>(text.size());
        UErrorCode status = U_ZERO_ERROR;
        std::int32_t length = 0;
        u_strFromUTF8WithSub(units_.units.get(), static_cast<std::int32_t>(units_.size), &length, text.data(),
                             static_cast<std::int32_t>(text.size()), Unicode::kReplacement, nullptr, &status);
        std::size_t size = writeKey(length);
        if (size > key_.size) {
            key_ = Buffer<char>(size);
            size = writeKey(length);
        }
        if (units_.size > kOrdinary) units_ = Buffer<char16_t>(kOrdinary);
        return size;
    }

    /// Writes the key of the first `length` units as far as there is room, and returns the size of the whole.
    std::size_t writeKey(std::int32_t length) {
        const std::int32_t size =
            collator_->getSortKey(units_.units.get(), length, reinterpret_cast<std::uint8_t*>(key_.units.get()),
                                  static_cast<std::int32_t>(key_.size));
        return static_cast<std::size_t>(size);
    }

    /// Bytes [`from`, `to`) of `key_`, copied or not, to where they stay as long as this object lives.
    const char* keep(std::size_t from, std::size_t to) {
        const std::size_t size = to - from;
        if (size > kBlockSize) {
            blocks_.push_back(std::exchange(key_, Buffer<char>(kOrdinary)).units);
            return blocks_.back().get() + from;
        }
        if (size > free_) {
            free_ = kBlockSize;
            blocks_.push_back(std::make_unique_for_overwrite<char[]>(free_));
            next_ = blocks_.back().get();
        }
        char* const kept = next_;
        next_ = std::copy_n(key_.units.get() + from, size, next_);
        free_ -= size;
        return kept;
    }

    std::unique_ptr<icu::Collator> collator_;
    Buffer<char16_t> units_ = Buffer<char16_t>(kOrdinary);
    Buffer<char> key_ = Buffer<char>(kOrdinary);

    std::vector<std::unique_ptr<char[]>> blocks_;
    char* next_ = nullptr;
    std::size_t free_ = 0;  // bytes left in the last block of that size
};

Sorter::Sorter(const std::string& locale) : keys_(std::make_unique<Keys>(locale)) {}
Sorter::~Sorter() = default;

bool Sorter::isInOrder(std::string_view a, std::string_view b, bool ascending) const {
    return keys_->isInOrder(a, b, ascending);
}

void Sorter::add(std::string_view text) {
    entries_.push_back(keys_->entryOf(text));
}

int Sorter::compare(const Entry& a, const Entry& b) noexcept {
    if (a.prefix != b.prefix) return a.prefix < b.prefix ? -1 : 1;
    return std::strcmp(a.rest, b.rest);
}

void Sorter::sort(bool ascending) {
    // Equal texts are ordered by address, which makes this sort stable without additional memory.
    std::sort(entries_.begin(), entries_.end(), [ascending](const Entry& a, const Entry& b) {
        const int order = compare(a, b);
        if (order != 0) return ascending ? order < 0 : order > 0;
        return a.text.data() < b.text.data();
    });
}

}  // namespace ravlin::Collation
