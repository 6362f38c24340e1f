#include "Engine/Support/RichText/CodePage.h"

#include "Engine/Support/Characters/Unicode.h"

#include <unicode/ucnv.h>
#include <unicode/ucnv_cb.h>
#include <unicode/ustring.h>

#include <algorithm>

namespace ravlin {
namespace {

struct Page {
    int number;
    const char* converter;  // ICU's name for it
};

constexpr int kSymbolNumber = 42;

// All code pages except ISCII that rich text documents name and ICU knows. Where Windows and others differ about a
// name, this is ICU's own name for the Windows table.
constexpr auto kPages = std::to_array<Page>({
    {1252, "windows-1252"},     {kSymbolNumber, nullptr},  // the Symbol font
    {437, "ibm-437"},           {720, "ibm-720"},
    {737, "ibm-737"},           {775, "ibm-775"},
    {819, "ISO-8859-1"},        {850, "ibm-850"},
    {852, "ibm-852"},           {855, "ibm-855"},
    {857, "ibm-857"},           {858, "ibm-858"},
    {860, "ibm-860"},           {861, "ibm-861"},
    {862, "ibm-862"},           {863, "ibm-863"},
    {865, "ibm-865"},           {866, "ibm-866"},
    {869, "ibm-869"},           {874, "windows-874-2000"},
    {932, "ibm-943_P15A-2003"}, {936, "windows-936-2000"},
    {949, "windows-949-2000"},  {950, "windows-950-2000"},
    {1250, "windows-1250"},     {1251, "windows-1251"},
    {1253, "windows-1253"},     {1254, "windows-1254"},
    {1255, "windows-1255"},     {1256, "windows-1256"},
    {1257, "windows-1257"},     {1258, "windows-1258"},
    {10000, "macintosh"},       {10006, "x-mac-greek"},
    {10007, "x-mac-cyrillic"},  {10029, "x-mac-centraleurroman"},
    {10081, "x-mac-turkish"},   {54936, "gb18030"},
    {65001, "UTF-8"},
});

struct Charset {
    int number;
    int page;
};

constexpr auto kCharsets = std::to_array<Charset>({
    {0, 1252},   {2, kSymbolNumber}, {77, 10000}, {78, 932},   {79, 949},   {80, 936},   {81, 950},
    {85, 10006}, {86, 10081},        {88, 10029}, {89, 10007}, {128, 932},  {129, 949},  {134, 936},
    {136, 950},  {161, 1253},        {162, 1254}, {163, 1258}, {177, 1255}, {178, 1256}, {186, 1257},
    {204, 1251}, {222, 874},         {238, 1250}, {254, 437},  {255, 850},
});

// From 20 and from A0 on, with nothing in between. Adobe mapped the bracket pieces to private characters; these are the
// ones that Unicode has added since.
constexpr char32_t kSymbolFirst = 0x20;
constexpr char32_t kSymbolSecond = 0xA0;
using SymbolHalf = std::array<char16_t, 96>;
constexpr std::array<SymbolHalf, 2> kSymbols = {
    {{
         0x0020, 0x0021, 0x2200, 0x0023, 0x2203, 0x0025, 0x0026, 0x220D,
         0x0028, 0x0029, 0x2217, 0x002B, 0x002C, 0x2212, 0x002E, 0x002F,  // 20
         0x0030, 0x0031, 0x0032, 0x0033, 0x0034, 0x0035, 0x0036, 0x0037,
         0x0038, 0x0039, 0x003A, 0x003B, 0x003C, 0x003D, 0x003E, 0x003F,  // 30
         0x2245, 0x0391, 0x0392, 0x03A7, 0x0394, 0x0395, 0x03A6, 0x0393,
         0x0397, 0x0399, 0x03D1, 0x039A, 0x039B, 0x039C, 0x039D, 0x039F,  // 40
         0x03A0, 0x0398, 0x03A1, 0x03A3, 0x03A4, 0x03A5, 0x03C2, 0x03A9,
         0x039E, 0x03A8, 0x0396, 0x005B, 0x2234, 0x005D, 0x22A5, 0x005F,  // 50
         0x203E, 0x03B1, 0x03B2, 0x03C7, 0x03B4, 0x03B5, 0x03C6, 0x03B3,
         0x03B7, 0x03B9, 0x03D5, 0x03BA, 0x03BB, 0x03BC, 0x03BD, 0x03BF,  // 60
         0x03C0, 0x03B8, 0x03C1, 0x03C3, 0x03C4, 0x03C5, 0x03D6, 0x03C9,
         0x03BE, 0x03C8, 0x03B6, 0x007B, 0x007C, 0x007D, 0x223C, 0x007F,  // 70
     },
     {
         0x20AC, 0x03D2, 0x2032, 0x2264, 0x2044, 0x221E, 0x0192, 0x2663,
         0x2666, 0x2665, 0x2660, 0x2194, 0x2190, 0x2191, 0x2192, 0x2193,  // A0
         0x00B0, 0x00B1, 0x2033, 0x2265, 0x00D7, 0x221D, 0x2202, 0x2022,
         0x00F7, 0x2260, 0x2261, 0x2248, 0x2026, 0x23D0, 0x23AF, 0x21B5,  // B0
         0x2135, 0x2111, 0x211C, 0x2118, 0x2297, 0x2295, 0x2205, 0x2229,
         0x222A, 0x2283, 0x2287, 0x2284, 0x2282, 0x2286, 0x2208, 0x2209,  // C0
         0x2220, 0x2207, 0x00AE, 0x00A9, 0x2122, 0x220F, 0x221A, 0x22C5,
         0x00AC, 0x2227, 0x2228, 0x21D4, 0x21D0, 0x21D1, 0x21D2, 0x21D3,  // D0
         0x22C4, 0x27E8, 0x00AE, 0x00A9, 0x2122, 0x2211, 0x239B, 0x239C,
         0x239D, 0x23A1, 0x23A2, 0x23A3, 0x23A7, 0x23A8, 0x23A9, 0x23AA,  // E0
         0xF8FF, 0x27E9, 0x222B, 0x2320, 0x23AE, 0x2321, 0x239E, 0x239F,
         0x23A0, 0x23A4, 0x23A5, 0x23A6, 0x23AB, 0x23AC, 0x23AD, Unicode::kReplacement,  // F0
     }}};

char32_t symbol(char byte) noexcept {
    const char32_t code = static_cast<unsigned char>(byte);
    if (code < kSymbolFirst) return code;
    if (code >= kSymbolSecond) return kSymbols[1][code - kSymbolSecond];
    return code < kSymbolFirst + kSymbols[0].size() ? kSymbols[0][code - kSymbolFirst] : Unicode::kReplacement;
}

/// Writes U+FFFD for bytes that are not a character; by default ICU writes a control character for some of them.
// NOLINTNEXTLINE(readability-function-size): the parameters are ICU's
void U_CALLCONV substitute(const void* /*context*/, UConverterToUnicodeArgs* to, const char* /*bytes*/,
                           std::int32_t /*byteSize*/, UConverterCallbackReason reason, UErrorCode* status) {
    if (reason > UCNV_IRREGULAR) return;  // not about bytes
    *status = U_ZERO_ERROR;
    ucnv_cbToUWriteUChars(to, &Unicode::kReplacement, 1, 0, status);
}

void appendUTF16(std::string& text, std::u16string_view units) {
    constexpr std::size_t kMostBytesPerUnit = 3;
    const std::size_t start = text.size();
    const std::size_t room = units.size() * kMostBytesPerUnit;
    text.resize(start + room);
    std::int32_t size = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strToUTF8WithSub(text.data() + start, static_cast<std::int32_t>(room), &size, units.data(),
                       static_cast<std::int32_t>(units.size()), Unicode::kReplacement, nullptr, &status);
    text.resize(start + static_cast<std::size_t>(size));
}

}  // namespace

std::optional<CodePage> CodePage::numbered(int number) noexcept {
    const auto* const found =
        std::find_if(kPages.begin(), kPages.end(), [number](const Page& page) { return page.number == number; });
    if (found == kPages.end()) return std::nullopt;
    return CodePage(static_cast<std::uint8_t>(found - kPages.begin()));
}

std::optional<CodePage> CodePage::forCharset(int charset) noexcept {
    const auto* const found = std::find_if(kCharsets.begin(), kCharsets.end(),
                                           [charset](const Charset& each) { return each.number == charset; });
    return found == kCharsets.end() ? std::nullopt : numbered(found->page);
}

CodePageDecoder::CodePageDecoder() : held_() {
    static_assert(kPages.size() <= kPageLimit);
    static_assert(kPages[CodePage::kWindows1252.index_].number == 1252);
    static_assert(kPages[CodePage::kSymbol.index_].number == kSymbolNumber);
}

CodePageDecoder::~CodePageDecoder() = default;

void CodePageDecoder::Close::operator()(UConverter* converter) const noexcept {
    ucnv_close(converter);
}

void CodePageDecoder::append(std::string& text, CodePage page, std::string_view bytes) {
    if (page != page_) finish(text);
    page_ = page;
    if (page == CodePage::kSymbol) {
        for (const char byte : bytes) Unicode::append(text, symbol(byte));
        return;
    }
    // ASCII is the same in every code page, except as the second byte of a character.
    if (!isHolding_) {
        const std::size_t asciiSize = Unicode::asciiRunEnd(bytes, 0);
        text.append(bytes, 0, asciiSize);
        bytes.remove_prefix(asciiSize);
    }
    hold(text, bytes);
}

void CodePageDecoder::hold(std::string& text, std::string_view bytes) {
    while (!bytes.empty()) {
        const std::string_view piece = bytes.substr(0, kHeldSize - heldSize_);
        std::copy(piece.begin(), piece.end(), held_.begin() + static_cast<std::ptrdiff_t>(heldSize_));
        heldSize_ += piece.size();
        isHolding_ = true;
        bytes.remove_prefix(piece.size());
        if (heldSize_ == kHeldSize) convert(text, /*isLast=*/false);
    }
}

void CodePageDecoder::convert(std::string& text, bool isLast) {
    // No encoding here yields more UTF-16 units than bytes, a few of which wait within the converter.
    std::array<char16_t, kHeldSize + 16> units;  // NOLINT(cppcoreguidelines-pro-type-member-init): filled by ICU
    char16_t* end = units.data();
    const char* from = held_.data();
    UErrorCode status = U_ZERO_ERROR;
    if (UConverter* const toUnicode = converter())
        ucnv_toUnicode(toUnicode, &end, units.data() + units.size(), &from, from + heldSize_, nullptr,
                       static_cast<UBool>(isLast), &status);
    appendUTF16(text, {units.data(), end});
    heldSize_ = 0;
    isHolding_ = !isLast;
}

/// Null if this build of ICU lacks the table: the bytes then yield no text.
UConverter* CodePageDecoder::converter() {
    auto& converter = converters_[page_.index_];
    if (converter) return converter.get();
    UErrorCode status = U_ZERO_ERROR;
    converter.reset(ucnv_open(kPages[page_.index_].converter, &status));
    ucnv_setToUCallBack(converter.get(), substitute, nullptr, nullptr, nullptr, &status);
    return converter.get();
}

}  // namespace ravlin
