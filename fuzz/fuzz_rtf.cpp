// The first byte says how to read the rest: as rich text, as the inside of such a document, or as numbers of tokens.
// Its text is valid, and does not depend on how its tokens are spelled.

#include "Engine/Support/RichText/RTFTokenizer.h"
#include "Engine/Support/RichText/RichText.h"
#include "fuzz/Fuzz.h"

#include <array>
#include <cstdio>
#include <optional>

namespace {

using namespace ravlin;
using Fuzz::expect;
using RichText::plainText;

constexpr auto kTokens = std::to_array<std::string_view>({
    "{",
    "{",
    "{\\*",
    "}",
    "}",
    "\\par ",
    "\\tab",
    "\\cell\\row",
    "\\u8364",
    "\\u-10179",
    "\\u-8704",
    "\\u0",
    "\\uc0 ",
    "\\uc1",
    "\\uc2",
    "\\uc7",
    "?",
    "a",
    " ",
    "\n",
    "\\'e9",
    "\\'93",
    "\\'fa",
    "\\'5c",
    "\\'83",
    "A",
    "\xE9",
    "\x95",
    "\\\\",
    "\\{",
    "\\}",
    "\\~",
    "\\fonttbl",
    "\\f0 ",
    "\\f1",
    "\\f2 ",
    "\\f3",
    "\\fcharset2",
    "\\fcharset128",
    "\\fcharset204",
    "\\cpg949",
    "\\cpg65001",
    "\\ansicpg936",
    "\\ansicpg54936",
    "\\mac",
    "\\deff1",
    "\\plain",
    "\\pard",
    "\\v ",
    "\\v0",
    "\\deleted",
    "\\upr",
    "\\ud ",
    "\\pict",
    "\\bin3 ",
    "\\bin",
    "\\fldrslt ",
    "\\abiendtable",
    "\\zzz9 ",
    "\\'4",
    "\\'",
    "\\",
    "\\u",
    "\\*",
});

std::string inHexadecimal(std::string_view bytes) {
    std::string rtf;
    for (const char byte : bytes) {
        std::array<char, 5> hex = {};
        std::snprintf(hex.data(), hex.size(), "\\'%02X", static_cast<unsigned>(static_cast<unsigned char>(byte)));
        rtf += hex.data();
    }
    return rtf;
}

std::string spelled(const RTFToken& token) {
    switch (token.kind) {
        case RTFToken::Kind::end: break;
        case RTFToken::Kind::groupStart: return "\r\n{";
        case RTFToken::Kind::groupEnd: return "}\n";
        case RTFToken::Kind::bytes: return inHexadecimal(token.text);
        case RTFToken::Kind::symbol: return "\\" + std::string(token.text);
        case RTFToken::Kind::word: {
            const bool isBinary = token.text == "bin";  // without its data
            const std::string number = token.hasNumber && !isBinary ? std::to_string(token.number) : "";
            return "\\" + std::string(token.text) + number + " ";
        }
    }
    return "";
}

/// The same tokens in one spelling: all bytes in hexadecimal, every word followed by a space.
std::string respelled(std::string_view rtf) {
    std::string result;
    RTFTokenizer tokens(rtf);
    for (RTFToken token = tokens.next(); token.kind != RTFToken::Kind::end; token = tokens.next())
        result += spelled(token);
    return result;
}

void check(const std::string& rtf) {
    const std::optional<std::string> text = plainText(rtf);
    if (!text) return;
    constexpr std::size_t kMostBytesPerByte = 3;
    expect(Unicode::isValidUTF8(*text), "the text is valid");
    expect(text->size() <= kMostBytesPerByte * rtf.size(), "no byte makes more than three");
    expect(text->find('\0') == std::string::npos, "no character is a NUL");
    if (rtf.front() == '{') expect(plainText(respelled(rtf)) == text, "spelling does not matter");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::string_view bytes = Fuzz::text(data + 1, size - 1);
    switch (data[0]) {
        case 'T': check("{\\rtf1" + Fuzz::tokens(bytes, kTokens)); break;
        case 'B': check("{\\rtf1 " + std::string(bytes)); break;
        default: check(std::string(bytes)); break;
    }
    return 0;
}
