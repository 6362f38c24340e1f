// The first byte says how to read the rest: as text, or as numbers of tokens. Only links change, links have the
// promised shape, and no bytes do harm.

#include "Engine/CleaningTransforms.h"
#include "fuzz/Fuzz.h"
#include "tests/engine/oracles/PlainLinks.h"
#include "tests/engine/texts/LinkTokens.h"

namespace {

using namespace ravlin;
using Fuzz::expect;

// The plain version compares every item with every key.
constexpr std::size_t kMaxPlainSize = 4'000;  // bytes

void checkLinks(std::string_view text) {
    const std::string cleaned = TextTransforms::stripTracking(text);
    expect(Unicode::isValidUTF8(cleaned), "a valid text gives a valid text");
    if (text.size() > kMaxPlainSize) return;
    expect(cleaned == tests::cleanedAround(text), "only links differ, and only by what is removed from them");
    const char* const broken = tests::brokenRuleOfLinks(text);
    expect(broken == nullptr, broken);
}

void checkInvisibles(std::string_view text) {
    const std::string visible = TextTransforms::removeInvisibles(text);
    expect(Unicode::isValidUTF8(visible), "a valid text gives a valid text");
    expect(visible.size() <= text.size(), "nothing is added");
    expect(TextTransforms::removeInvisibles(visible) == visible, "nothing is left to remove");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::string_view bytes = Fuzz::text(data + 1, size - 1);
    const bool isTokens = data[0] == 'T';
    const std::string text = isTokens ? Fuzz::tokens(bytes, tests::kLinkTokens) : Fuzz::validText(bytes);
    checkLinks(text);
    checkInvisibles(text);
    if (isTokens || text == bytes) return 0;
    TextTransforms::stripTracking(bytes);
    TextTransforms::removeInvisibles(bytes);
    TextTransforms::cleanURL(bytes);
    return 0;
}
