#include "Engine/Support/RichText/ControlWords.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace ravlin::RichText {
namespace {

// Words not listed here mean nothing for the text: most are formatting, and \ansi is the default.
constexpr auto kWords = std::to_array<Word>({
    {"abiendtable", Effect::endOfTable},
    {"annotation", Effect::skipped},
    {"ansicpg", Effect::documentCodePage, 1252},
    {"atnauthor", Effect::skipped},
    {"atndate", Effect::skipped},
    {"atnicn", Effect::skipped},
    {"atnid", Effect::skipped},
    {"atnparent", Effect::skipped},
    {"atnref", Effect::skipped},
    {"atntime", Effect::skipped},
    {"atrfend", Effect::skipped},
    {"atrfstart", Effect::skipped},
    {"background", Effect::skipped},
    {"bkmkend", Effect::skipped},
    {"bkmkstart", Effect::skipped},
    {"bullet", Effect::character, 0x2022},
    {"cell", Effect::paragraph},
    {"colortbl", Effect::skipped},
    {"column", Effect::character, '\f'},
    {"cpg", Effect::fontCodePage},
    {"datastore", Effect::skipped},
    {"deff", Effect::defaultFont},
    {"deleted", Effect::deleted},
    {"emdash", Effect::character, 0x2014},
    {"emspace", Effect::character, 0x2003},
    {"endash", Effect::character, 0x2013},
    {"enspace", Effect::character, 0x2002},
    {"f", Effect::font},
    {"fcharset", Effect::fontCharset},
    {"filetbl", Effect::skipped},
    {"fldinst", Effect::skipped},
    {"fldrslt", Effect::destination},
    {"fonttbl", Effect::fontTable},
    {"footer", Effect::skipped},
    {"footerf", Effect::skipped},
    {"footerl", Effect::skipped},
    {"footerr", Effect::skipped},
    {"footnote", Effect::skipped},
    {"formfield", Effect::skipped},
    {"generator", Effect::skipped},
    {"header", Effect::skipped},
    {"headerf", Effect::skipped},
    {"headerl", Effect::skipped},
    {"headerr", Effect::skipped},
    {"info", Effect::skipped},
    {"ldblquote", Effect::character, 0x201C},
    {"line", Effect::character, '\n'},
    {"listoverridetable", Effect::skipped},
    {"listtable", Effect::skipped},
    {"listtext", Effect::destination},
    {"lquote", Effect::character, 0x2018},
    {"ltrmark", Effect::character, 0x200E},
    {"mac", Effect::documentCodePage, 10000},
    {"mmathPr", Effect::skipped},
    {"nestcell", Effect::paragraph},
    {"nonesttables", Effect::skipped},
    {"nonshppict", Effect::skipped},
    {"objclass", Effect::skipped},
    {"objdata", Effect::skipped},
    {"objname", Effect::skipped},
    {"page", Effect::character, '\f'},
    {"panose", Effect::skipped},
    {"par", Effect::paragraph},
    {"pc", Effect::documentCodePage, 437},
    {"pca", Effect::documentCodePage, 850},
    {"pict", Effect::skipped},
    {"plain", Effect::plain},
    {"pn", Effect::skipped},
    {"pnseclvl", Effect::skipped},
    {"pntext", Effect::destination},
    {"qmspace", Effect::character, 0x2005},
    {"rdblquote", Effect::character, 0x201D},
    {"result", Effect::destination},
    {"revtbl", Effect::skipped},
    {"rquote", Effect::character, 0x2019},
    {"rtlmark", Effect::character, 0x200F},
    {"sect", Effect::paragraph},
    {"shpinst", Effect::destination},
    {"shprslt", Effect::skipped},
    {"shptxt", Effect::destination},
    {"sn", Effect::skipped},
    {"stylesheet", Effect::skipped},
    {"sv", Effect::skipped},
    {"tab", Effect::character, '\t'},
    {"tc", Effect::skipped},
    {"themedata", Effect::skipped},
    {"u", Effect::unicode},
    {"uc", Effect::fallback},
    {"ud", Effect::destination},
    {"upr", Effect::eitherOr},
    {"v", Effect::hidden},
    {"xe", Effect::skipped},
    {"zwbo", Effect::character, 0x200B},
    {"zwj", Effect::character, 0x200D},
    {"zwnbo", Effect::character, 0x2060},
    {"zwnj", Effect::character, 0x200C},
});
static_assert(std::is_sorted(kWords.begin(), kWords.end(),
                             [](const Word& a, const Word& b) { return a.name < b.name; }));

/// Where the words that begin with each letter start, 'a' first, and where the last ones end.
constexpr auto kInitials = [] {
    std::array<std::size_t, 27> starts = {};
    for (std::size_t i = 0; i < starts.size(); ++i)
        while (starts[i] < kWords.size() && static_cast<std::size_t>(kWords[starts[i]].name.front() - 'a') < i)
            ++starts[i];
    return starts;
}();

}  // namespace

const Word* findWord(std::string_view name) noexcept {
    const auto initial = static_cast<std::size_t>(name.front() - 'a');
    if (initial + 1 >= kInitials.size()) return nullptr;  // a capital
    for (std::size_t i = kInitials[initial]; i < kInitials[initial + 1]; ++i)
        if (kWords[i].name == name) return &kWords[i];
    return nullptr;
}

}  // namespace ravlin::RichText
