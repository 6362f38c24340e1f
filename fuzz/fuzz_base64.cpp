// Base64: decoding equals the plain version's, and undoes encoding.

#include "Engine/EncodingTransforms.h"
#include "Engine/Support/Bytes.h"
#include "fuzz/Fuzz.h"
#include "tests/engine/oracles/PlainEncodings.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace ravlin;
    using Fuzz::expect;
    const std::string_view bytes = Fuzz::text(data, size);
    const std::string text = Fuzz::validText(bytes);

    expect(Bytes::fromBase64(Bytes::toBase64(bytes)) == bytes, "decoding undoes encoding");
    const std::string encoded = TextTransforms::base64Encode(text);
    expect(encoded.size() % 4 == 0, "what is encoded is padded");
    if (!text.empty()) expect(TextTransforms::base64Decode(encoded) == text, "decoding gives the text back");

    const std::string decoded = TextTransforms::base64Decode(text);
    expect(decoded == tests::plainBase64Decode(text), "decodes as the plain version does");
    expect(Unicode::isValidUTF8(decoded), "decoded text is valid");
    TextTransforms::base64Decode(bytes);
    return 0;
}
