#include "Engine/TextTransforms.h"

#include "Engine/CaseTransforms.h"
#include "Engine/CleaningTransforms.h"
#include "Engine/Digests.h"
#include "Engine/EncodingTransforms.h"
#include "Engine/HTMLTransforms.h"
#include "Engine/JSONReformatter.h"
#include "Engine/LineTransforms.h"
#include "Engine/MarkdownTransforms.h"
#include "Engine/SpacingTransforms.h"
#include "Engine/Support/Characters/Unicode.h"

#include <new>

namespace ravlin::TextTransforms {
namespace {

// As long as the catalogue, in its order. Forgetting a transform is a compile error.
std::string route(TextTransform transform, std::string_view text) {  // NOLINT(readability-function-size)
    switch (transform) {
        case TextTransform::stripTracking: return stripTracking(text);
        case TextTransform::stripFormatting: return stripFormatting(text);
        case TextTransform::removeInvisibles: return removeInvisibles(text);
        case TextTransform::stripHTML: return stripHTML(text);
        case TextTransform::htmlToMarkdown: return htmlToMarkdown(text);
        case TextTransform::markdownToHTML: return markdownToHTML(text);
        case TextTransform::jsonPretty: return jsonReformat(text, /*pretty=*/true);
        case TextTransform::jsonMinify: return jsonReformat(text, /*pretty=*/false);
        case TextTransform::upperCase: return Unicode::upperCased(text);
        case TextTransform::lowerCase: return Unicode::lowerCased(text);
        case TextTransform::titleCase: return titleCase(text);
        case TextTransform::sentenceCase: return sentenceCase(text);
        case TextTransform::capitalizeWords: return capitalizeWords(text);
        case TextTransform::camelCase: return camelCase(text);
        case TextTransform::pascalCase: return pascalCase(text);
        case TextTransform::snakeCase: return snakeCase(text);
        case TextTransform::kebabCase: return kebabCase(text);
        case TextTransform::constantCase: return constantCase(text);
        case TextTransform::slugify: return slugify(text);
        case TextTransform::bulletList: return listify(text, /*numbered=*/false);
        case TextTransform::numberedList: return listify(text, /*numbered=*/true);
        case TextTransform::sortLinesAsc: return sortLines(text, /*ascending=*/true);
        case TextTransform::sortLinesDesc: return sortLines(text, /*ascending=*/false);
        case TextTransform::reverseLines: return reverseLines(text);
        case TextTransform::shuffleLines: return shuffleLines(text);
        case TextTransform::removeDuplicateLines: return removeDuplicateLines(text);
        case TextTransform::removeEmptyLines: return removeEmptyLines(text);
        case TextTransform::trimEachLine: return trimEachLine(text);
        case TextTransform::numberLines: return listify(text, /*numbered=*/true);
        case TextTransform::joinLines: return joinLines(text);
        case TextTransform::quoteLines: return quoteLines(text);
        case TextTransform::straightenQuotes: return straightenQuotes(text);
        case TextTransform::smartQuotes: return smartQuotes(text);
        case TextTransform::collapseSpaces: return collapseSpaces(text);
        case TextTransform::removeAllSpaces: return removeAllSpaces(text);
        case TextTransform::tabsToSpaces: return tabsToSpaces(text);
        case TextTransform::spacesToTabs: return spacesToTabs(text, /*width=*/4);
        case TextTransform::normalizeDashes: return normalizeDashes(text);
        case TextTransform::reverseCharacters: return reverseCharacters(text);
        case TextTransform::base64Encode: return base64Encode(text);
        case TextTransform::base64Decode: return base64Decode(text);
        case TextTransform::urlEncode: return urlEncode(text);
        case TextTransform::urlDecode: return urlDecode(text);
        case TextTransform::htmlEntitiesEncode: return htmlEntitiesEncode(text);
        case TextTransform::htmlEntitiesDecode: return decodeEntities(text);
        case TextTransform::backslashEscape: return backslashEscape(text);
        case TextTransform::backslashUnescape: return backslashUnescape(text);
        case TextTransform::hexEncode: return hexEncode(text);
        case TextTransform::hexDecode: return hexDecode(text);
        case TextTransform::md5: return md5(text);
        case TextTransform::sha1: return sha1(text);
        case TextTransform::sha256: return sha256(text);
        case TextTransform::jwtDecode: return jwtDecode(text);
        case TextTransform::rot13: return rot13(text);
    }
    return std::string(text);
}

}  // namespace

std::string apply(TextTransform transform, std::string_view text) {
    // A result that does not fit in memory is no reason to lose what the user copied.
    try {
        return route(transform, text);
    } catch (const std::bad_alloc&) {
        return std::string(text);
    }
}

}  // namespace ravlin::TextTransforms
