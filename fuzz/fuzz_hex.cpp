// Hexadecimal digits: decoding equals the plain version's, and undoes encoding.

#include "Engine/EncodingTransforms.h"
#include "fuzz/Fuzz.h"
#include "tests/engine/oracles/PlainEncodings.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace ravlin;
    using Fuzz::expect;
    const std::string_view bytes = Fuzz::text(data, size);
    const std::string text = Fuzz::validText(bytes);

    const std::string encoded = TextTransforms::hexEncode(text);
    expect(encoded.size() == 2 * text.size(), "two digits for every byte");
    expect(encoded.find_first_not_of("0123456789abcdef") == std::string::npos, "and nothing else");
    expect(TextTransforms::hexDecode(encoded) == text, "decoding undoes encoding");

    std::string dump;
    for (std::size_t at = 0; at < encoded.size(); at += 2) dump += "0x" + encoded.substr(at, 2) + ' ';
    expect(text.empty() || TextTransforms::hexDecode(dump) == text, "also between prefixes and spaces");

    const std::string decoded = TextTransforms::hexDecode(text);
    expect(decoded == tests::plainHexDecode(text), "decodes as the plain version does");
    expect(Unicode::isValidUTF8(decoded), "decoded text is valid");
    TextTransforms::hexDecode(bytes);
    return 0;
}
