// Percent escapes: decoding undoes encoding, and what cannot be decoded comes back as it was.

#include "Engine/EncodingTransforms.h"
#include "fuzz/Fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using ravlin::Fuzz::expect;
    namespace TextTransforms = ravlin::TextTransforms;
    const std::string text = ravlin::Fuzz::validText(ravlin::Fuzz::text(data, size));

    const std::string encoded = TextTransforms::urlEncode(text);
    expect(TextTransforms::urlDecode(encoded) == text, "decoding undoes encoding");
    expect(TextTransforms::urlEncode(TextTransforms::urlDecode(encoded)) == encoded, "and encoding undoes decoding");

    const std::string decoded = TextTransforms::urlDecode(text);
    expect(ravlin::Unicode::isValidUTF8(decoded), "decoded text is valid");
    expect(decoded.size() <= text.size(), "decoding lengthens nothing");
    if (text.find_first_of("%+") == std::string::npos) expect(decoded == text, "text without escapes stays");
    return 0;
}
