// The functions of Support/Unicode agree with one another on any bytes.

#include "Engine/Support/Characters/Unicode.h"
#include "fuzz/Fuzz.h"

namespace {

using ravlin::Fuzz::expect;
namespace Unicode = ravlin::Unicode;

void checkDecoding(std::string_view text) {
    bool isWellFormed = true;
    for (std::size_t at = 0; at < text.size();) {
        const Unicode::Scalar scalar = Unicode::decode(text, at);
        expect(scalar.byteSize >= 1 && at + scalar.byteSize <= text.size(), "a code point lies within the text");
        expect(scalar.value <= 0x10FFFF, "a code point is one");
        expect(scalar.isWellFormed || scalar.value == 0xFFFD, "what is ill-formed is replaced");
        if (scalar.isWellFormed) {
            std::string written;
            Unicode::append(written, scalar.value);
            expect(written == text.substr(at, scalar.byteSize), "writing is the inverse of reading");
        }
        isWellFormed = isWellFormed && scalar.isWellFormed;
        at += scalar.byteSize;
    }
    expect(isWellFormed == Unicode::isValidUTF8(text), "a text is valid where every code point is");
}

void checkCharacters(std::string_view text) {
    std::int64_t count = 0;
    for (std::size_t at = 0; at < text.size(); ++count) {
        const std::size_t end = Unicode::characterEnd(text, at);
        expect(end > at && end <= text.size(), "a character lies within the text");
        expect(Unicode::isCharacterBoundary(text, at), "a character starts at a boundary");
        for (std::size_t inside = at + Unicode::decode(text, at).byteSize; inside < end;) {
            expect(!Unicode::isCharacterBoundary(text, inside), "no boundary is within a character");
            inside += Unicode::decode(text, inside).byteSize;
        }
        expect(Unicode::characterCount(text.substr(at, end - at)) == 1, "a character counts as one");
        at = end;
    }
    expect(count == Unicode::characterCount(text), "counting and walking agree");
}

void checkMappings(std::string_view text) {
    const std::string lower = Unicode::lowerCased(text);
    const std::string upper = Unicode::upperCased(text);
    const std::string composed = Unicode::nfc(text);
    expect(Unicode::lowerCased(lower) == lower, "lower case stays lower case");
    expect(Unicode::upperCased(upper) == upper, "upper case stays upper case");
    expect(Unicode::isNFC(composed) && Unicode::nfc(composed) == composed, "composed text stays composed");
    for (const std::string& result : {lower, upper, composed})
        expect(Unicode::isValidUTF8(result), "mapped text is valid");
}

void checkTrimming(std::string_view text) {
    const std::string_view trimmed = Unicode::trimWhitespaces(text);
    const std::string_view more = Unicode::trimWhitespacesAndNewlines(text);
    expect(Unicode::trimWhitespaces(trimmed) == trimmed, "what is trimmed stays as it is");
    expect(more.size() <= trimmed.size(), "trimming line ends too leaves no more");
    expect(Unicode::trimWhitespacesAndNewlines(trimmed) == more, "trimming twice is trimming more");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes = ravlin::Fuzz::text(data, size);
    checkDecoding(bytes);
    const std::string text = ravlin::Fuzz::validText(bytes);
    checkCharacters(text);
    checkMappings(text);
    checkTrimming(text);
    // On any bytes, counting and walking still agree.
    std::int64_t count = 0;
    for (std::size_t at = 0; at < bytes.size(); ++count) at = Unicode::characterEnd(bytes, at);
    expect(count == Unicode::characterCount(bytes), "counting and walking agree on ill-formed text");
    return 0;
}
