#include "tests/engine/oracles/PlainCollation.h"

#include "Engine/Support/LineModel.h"

#include <unicode/coll.h>

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <vector>

namespace ravlin::tests {

std::string plainlySorted(std::string_view text, const char* locale, bool ascending) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(icu::Locale(locale), status));
    collator->setAttribute(UCOL_STRENGTH, UCOL_SECONDARY, status);
    collator->setAttribute(UCOL_ALTERNATE_HANDLING, UCOL_NON_IGNORABLE, status);
    collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_OFF, status);
    collator->setAttribute(UCOL_CASE_LEVEL, UCOL_OFF, status);
    collator->setAttribute(UCOL_NORMALIZATION_MODE, UCOL_ON, status);
    if (U_FAILURE(status)) throw std::invalid_argument(locale);
    std::vector<std::string_view> lines = LineModel::split(text);
    std::stable_sort(lines.begin(), lines.end(), [&](std::string_view a, std::string_view b) {
        const int order = collator->compareUTF8(icu::StringPiece(a.data(), static_cast<int>(a.size())),
                                                icu::StringPiece(b.data(), static_cast<int>(b.size())), status);
        return ascending ? order < 0 : order > 0;
    });
    return LineModel::join(lines);
}

}  // namespace ravlin::tests
