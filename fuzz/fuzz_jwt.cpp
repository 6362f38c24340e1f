// Tokens: one made of a header and a payload shows them; any other text stays or is shown as two parts.

#include "Engine/EncodingTransforms.h"
#include "Engine/JSONReformatter.h"
#include "fuzz/Fuzz.h"

#include <algorithm>

namespace {

using namespace ravlin;
using Fuzz::expect;

std::string part(std::string_view text) {
    std::string digits = TextTransforms::base64Encode(text);
    std::erase(digits, '=');
    std::replace(digits.begin(), digits.end(), '+', '-');
    std::replace(digits.begin(), digits.end(), '/', '_');
    return digits;
}

void checkToken(const std::string& header, const std::string& payload) {
    const std::string expected = "// Header\n" + TextTransforms::jsonReformat(header, true) + "\n\n// Payload\n" +
                                 TextTransforms::jsonReformat(payload, true);
    const std::string token = part(header) + "." + part(payload);
    expect(TextTransforms::jwtDecode(token) == expected, "two parts are shown");
    expect(TextTransforms::jwtDecode(" " + token + ".\n") == expected, "an empty signature is none");
    expect(TextTransforms::jwtDecode(token + ".sig") == expected, "a signature is not shown");
    const std::string fourParts = token + ".sig.sig";
    expect(TextTransforms::jwtDecode(fourParts) == fourParts, "four parts are no token");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes = Fuzz::text(data, size);
    const std::string text = Fuzz::validText(bytes);
    const std::string result = TextTransforms::jwtDecode(text);
    expect(Unicode::isValidUTF8(result), "a valid text gives a valid text");
    expect(result == text || result.starts_with("// Header\n"), "a token is shown, any other text stays");
    const auto dots = std::count(text.begin(), text.end(), '.');
    if (dots == 0) expect(result == text, "there is no token without dots");

    const std::size_t middle = std::min(text.find('.'), text.size());
    checkToken(text.substr(0, middle), text.substr(std::min(middle + 1, text.size())));
    if (text != bytes) TextTransforms::jwtDecode(bytes);
    return 0;
}
