// What another program offers and answers, under whatever names and in whatever bytes: what is made of it is text, and
// what we offer can be read back.
//
// The first byte chooses the answer's format, the second what type it is told to have. Names follow, one on each line
// up to an empty one, and then the answer's bytes.

#include "Engine/Support/Characters/Unicode.h"
#include "Platform/Clipboard/OfferedText.h"
#include "Platform/Clipboard/TextFormats.h"
#include "fuzz/Fuzz.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

namespace TextFormats = ravlin::TextFormats;
using ravlin::TextFormat;
using ravlin::Fuzz::expect;
using Type = ravlin::Pasteboard::Type;

constexpr std::size_t kFormatCount = std::size(TextFormats::kAll);

std::vector<std::string> takeNames(std::string_view& input) {
    std::vector<std::string> names;
    while (!input.empty()) {
        const std::size_t end = std::min(input.find('\n'), input.size());
        const std::string_view name = input.substr(0, end);
        input.remove_prefix(std::min(end + 1, input.size()));
        if (name.empty()) break;
        names.emplace_back(name);
    }
    return names;
}

void checkChoice(const std::vector<std::string>& offered) {
    for (const Type type : {Type::string, Type::rtf, Type::html}) {
        const auto match = TextFormats::best(type, offered);
        if (!match) continue;
        expect(match->format.type == type, "it is of the type that was asked for");
        expect(std::ranges::count(offered, match->name) > 0, "it is offered");
        expect(TextFormats::isNameOf(match->name, match->format), "its name is one of the format");
    }
}

void checkOffer(const std::string& text) {
    if (text.ends_with('\0')) return;  // readers take that for the end of the text
    const ravlin::OfferedText offered(text);
    for (const TextFormat& format : TextFormats::kAll) {
        if (!offered.isOfferedIn(format)) continue;
        const auto encoding = TextFormats::encodingOf(format, &format);
        expect(encoding && TextFormats::decoded(*encoding, *offered.bytesIn(format)) == text,
               "what is offered is the text");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) return 0;
    const TextFormat& format = TextFormats::kAll.at(data[0] % kFormatCount);
    const std::size_t told = data[1] % (kFormatCount + 1);
    std::string_view input = ravlin::Fuzz::text(data + 2, size - 2);
    checkChoice(takeNames(input));

    const auto encoding = TextFormats::encodingOf(format, told < kFormatCount ? &TextFormats::kAll.at(told) : nullptr);
    const auto text = encoding ? TextFormats::decoded(*encoding, std::string(input)) : std::nullopt;
    if (text) {
        expect(ravlin::Unicode::isValidUTF8(*text), "text is valid");
        checkOffer(*text);
    }
    const auto untyped = TextFormats::decodedUntyped(format, std::string(input));
    expect(!untyped || ravlin::Unicode::isValidUTF8(*untyped), "text is valid");
    return 0;
}
