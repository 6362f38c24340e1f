// The first byte picks a transform, the rest is its text: valid text gives valid text, always the same, and other bytes
// do no harm.

#include "Engine/TextTransform.h"
#include "fuzz/Fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const auto transforms = ravlin::TextTransform::allCases();
    const ravlin::TextTransform transform = transforms[data[0] % transforms.size()];
    const std::string_view bytes = ravlin::Fuzz::text(data + 1, size - 1);

    const std::string text = ravlin::Fuzz::validText(bytes);
    const std::string result = transform.apply(text);
    ravlin::Fuzz::expect(ravlin::Unicode::isValidUTF8(result), "a valid text gives a valid text");
    ravlin::Fuzz::expect(transform.apply(text) == result, "the same text gives the same result");
    if (text != bytes) transform.apply(bytes);
    return 0;
}
