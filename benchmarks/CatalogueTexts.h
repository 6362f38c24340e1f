#pragma once

#include "Engine/CleaningTransforms.h"
#include "Engine/EncodingTransforms.h"
#include "Engine/HTMLTransforms.h"
#include "Engine/JSONReformatter.h"
#include "Engine/TextTransform.h"
#include "benchmarks/Documents.h"
#include "benchmarks/HostileLinks.h"
#include "benchmarks/Texts.h"
#include "tests/engine/texts/HostileTexts.h"

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

/// For each transform a text that gives it real work, and texts that are hostile to it.
namespace ravlin::Benchmarks {

struct NamedText {
    std::string name;
    std::function<std::string(std::size_t size)> make;
};

inline NamedText repeating(std::string name, std::string piece) {
    return {std::move(name), [=](std::size_t size) { return repeated(piece, size); }};
}

/// What `transform` makes of `text`, whose size is to be `share` of the size wanted.
inline NamedText madeBy(TextTransform transform, std::string name, const NamedText& text, double share) {
    return {std::move(name), [=](std::size_t size) {
                return transform.apply(text.make(static_cast<std::size_t>(share * static_cast<double>(size))));
            }};
}

inline std::string nestedArrays(std::size_t size) {
    return std::string(size / 2, '[') + std::string(size / 2, ']');
}

/// What is on the clipboard when a user wants this transform.
inline NamedText ordinaryText(TextTransform transform) {
    const NamedText plain = {"words", words};
    const NamedText page = {"HTML page", htmlPage};
    const NamedText json = {"JSON", jsonDocument};
    const NamedText french = repeating("French", std::string(kScripts[1].text));
    const std::string prose =
        "\u201CIt\u2019s late,\u201D she said \u2014 and nobody in the room would have thought that it was. The train "
        "had "
        "left at nine, with all who wanted to be home that night; \"don't wait\" was what he had told them on the "
        "platform, between the years 2019\u20132020, in weather that no one cared to remember.\n";
    switch (transform) {
        case TextTransform::stripTracking: return {"mails", mails};
        case TextTransform::removeInvisibles: return repeating("invisibles", "soft\u00ADhyphens and zero\u200Bwidth, ");
        case TextTransform::stripHTML:
        case TextTransform::htmlToMarkdown:
        case TextTransform::htmlEntitiesEncode: return page;
        case TextTransform::htmlEntitiesDecode:
            return madeBy(TextTransform::htmlEntitiesEncode, "escaped HTML", page, 0.75);
        case TextTransform::markdownToHTML: return {"Markdown", markdownDocument};
        case TextTransform::jsonPretty:
        case TextTransform::backslashEscape: return json;
        case TextTransform::jsonMinify: return madeBy(TextTransform::jsonPretty, "indented JSON", json, 0.7);
        case TextTransform::straightenQuotes:
        case TextTransform::smartQuotes:
        case TextTransform::normalizeDashes: return repeating("prose", prose);
        case TextTransform::collapseSpaces: return repeating("wide spaces", "some   words,  and \u00A0 more\n");
        case TextTransform::tabsToSpaces: return repeating("code with tabs", "\tif (a)\n\t\tgo(b, c);\n");
        case TextTransform::spacesToTabs: return repeating("code with spaces", "    if (a)\n        go(b, c);\n");
        case TextTransform::base64Decode: return madeBy(TextTransform::base64Encode, "Base64", plain, 0.75);
        case TextTransform::urlEncode: return french;
        case TextTransform::urlDecode: return madeBy(TextTransform::urlEncode, "escaped French", french, 0.6);
        case TextTransform::backslashUnescape:
            return madeBy(TextTransform::backslashEscape, "escaped JSON", json, 0.85);
        case TextTransform::hexDecode: return madeBy(TextTransform::hexEncode, "hex", plain, 0.5);
        case TextTransform::jwtDecode:
            return {"token", [](std::size_t size) {
                        return TextTransforms::base64Encode("{}") + "." +
                               TextTransforms::base64Encode(jsonDocument(size / 4 * 3));
                    }};
        default: return plain;
    }
}

/// One of a list of hostile texts, which are made together.
inline std::vector<NamedText> eachOf(std::vector<tests::HostileText> (*makeAll)(std::size_t size)) {
    std::vector<NamedText> texts;
    const std::vector<tests::HostileText> small = makeAll(1024);
    for (std::size_t i = 0; i < small.size(); ++i) {
        texts.push_back({small[i].name, [=](std::size_t size) {
                             static std::map<std::size_t, std::vector<tests::HostileText>> made;
                             auto& all = made[size];
                             if (all.empty()) all = makeAll(size);
                             return all[i].text;
                         }});
    }
    return texts;
}

/// Hostile to many transforms, each in its own way.
inline std::vector<NamedText> texture() {
    return {{"one line", [](std::size_t size) { return std::string(size, 'x'); }},
            {"empty lines", [](std::size_t size) { return std::string(size, '\n'); }},
            repeating("CRLF", "\r\n"),
            repeating("marks", "\u0301"),
            repeating("marks in wrong order", "\u0316\u0301\u0f71"),
            repeating("punctuation", "'\"-.- +%&<\u2014.\u0301 "),
            repeating("quotes and dashes", "\u201CIt\u2019s,\u201D \u2014 \"don't\" 9\u201320\n"),
            repeating("changing case", "aBCd1E\u03a3'\u03a3."),
            repeating("French", std::string(kScripts[1].text)),
            repeating("Hindi", std::string(kScripts[5].text)),
            repeating("emoji", std::string(kScripts[6].text))};
}

/// Texts on which a careless implementation takes more time per byte the longer they are.
inline std::vector<NamedText> hostileTexts(TextTransform transform) {
    std::vector<NamedText> texts = texture();
    switch (transform) {
        case TextTransform::stripTracking:
            for (const HostileLinks& each : kHostileLinks) texts.push_back({each.name, each.make});
            break;
        case TextTransform::stripHTML:
        case TextTransform::htmlToMarkdown: texts = eachOf(tests::hostileHTML); break;
        case TextTransform::markdownToHTML: texts = eachOf(tests::hostileMarkdown); break;
        case TextTransform::removeInvisibles:
            texts.push_back(repeating("invisibles only", "\u200B"));
            texts.push_back(repeating("some invisibles", "a\u200Bb\u8C22\u00AD"));
            break;
        case TextTransform::jsonPretty:
        case TextTransform::jsonMinify:
            texts.push_back(
                {"numbers", [](std::size_t size) { return std::string("[") + repeated("1,", size) + "1]"; }});
            texts.push_back(
                {"space", [](std::size_t size) { return std::string("[") + std::string(size, ' ') + "]"; }});
            texts.push_back(
                {"escapes", [](std::size_t size) { return std::string("\"") + repeated("\\\"", size) + "\""; }});
            texts.push_back({"nested arrays", nestedArrays});
            texts.push_back(repeating("open arrays", "["));
            break;
        case TextTransform::htmlEntitiesEncode:
        case TextTransform::htmlEntitiesDecode:
            texts.push_back(repeating("references", "&#65;&#x41;"));
            texts.push_back(repeating("ampersands", "&"));
            texts.push_back(repeating("escaped references", "&amp;lt;&amp;#65;"));
            texts.push_back({"one long reference",
                             [](std::size_t size) { return std::string("&#") + std::string(size, '0') + ";"; }});
            break;
        case TextTransform::hexDecode:
            texts.push_back({"prefixes", [](std::size_t size) { return repeated("0x", size) + "41"; }});
            texts.push_back(repeating("dump", "0x41 "));
            break;
        case TextTransform::backslashEscape:
        case TextTransform::backslashUnescape:
            texts.push_back(repeating("quotes", "\""));
            texts.push_back(repeating("quotes with marks", "\"\u0301"));
            texts.push_back(repeating("backslashes", "\\"));
            texts.push_back(repeating("backslashes with marks", "\\\u0301"));
            texts.push_back(repeating("unknown escapes", "\\q"));
            break;
        case TextTransform::jwtDecode: texts.push_back(repeating("dots with marks", ".\u0301")); break;
        case TextTransform::sortLinesAsc:
        case TextTransform::sortLinesDesc:
            texts.push_back({"long equal beginnings", [](std::size_t size) {
                                 std::string text;
                                 for (int line = 0; text.size() < size; ++line)
                                     text += std::string(1000, 'x') + std::to_string(line) + '\n';
                                 return text;
                             }});
            break;
        default: break;
    }
    return texts;
}

/// The number of bytes above which a transform leaves its text alone; 0: it has no limit.
inline std::size_t limitOf(TextTransform transform) {
    switch (transform) {
        case TextTransform::stripTracking: return TextTransforms::kMaxTrackingSize;
        case TextTransform::stripHTML:
        case TextTransform::htmlToMarkdown: return TextTransforms::kMaxHTMLSize;
        default: return 0;
    }
}

}  // namespace ravlin::Benchmarks
