#include "Engine/Support/Characters/CharacterKind.h"

#include "Engine/Support/Characters/Unicode.h"

#include <string>

namespace ravlin::CharacterKind {
namespace {

/// The case of a character, by its property and its mappings. Cased characters that neither mapping changes, like the
/// ordinal indicators, are both upper and lower case.
constexpr Kind caseOf(bool isCased, bool isChangedByUpper, bool isChangedByLower) noexcept {
    Kind kind = 0;
    if (!isChangedByUpper && (isCased || isChangedByLower)) kind |= kUpper;
    if (!isChangedByLower && (isCased || isChangedByUpper)) kind |= kLower;
    return kind;
}

}  // namespace

Kind detail::compute(char32_t scalar) noexcept {
    std::string text;
    Unicode::append(text, scalar);
    Kind kind = kKnown;
    if (Unicode::isLetter(scalar)) kind |= kLetter;
    if (Unicode::isNumber(scalar)) kind |= kNumber;
    kind |=
        caseOf(Unicode::isCased(scalar), Unicode::isChangedByUpperCasing(text), Unicode::isChangedByLowerCasing(text));
    if (Unicode::isUppercase(scalar)) kind |= kUpper;
    if (Unicode::isLowercase(scalar)) kind |= kLower;
    return kind;
}

Kind of(std::string_view character) noexcept {
    const Unicode::Scalar first = Unicode::decode(character, 0);
    const Kind kind = of(first.value);
    if (first.byteSize == character.size()) return kind;
    const Kind casing = caseOf(/*isCased=*/false, Unicode::isChangedByUpperCasing(character),
                               Unicode::isChangedByLowerCasing(character));
    return static_cast<Kind>((kind & (kKnown | kLetter | kNumber)) | casing);
}

}  // namespace ravlin::CharacterKind
