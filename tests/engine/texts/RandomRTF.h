#pragma once

#include "Engine/Support/Characters/Unicode.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace ravlin::tests {

/// A text, and a rich-text document that has it.
struct RTFDocument {
    std::string text;
    std::string rtf;
};

/// Random texts, written in the many ways that rich text has for each character, with formatting, nested groups and
/// other non-text in between. Equal seeds give equal documents.
class RandomRTF {
public:
    explicit RandomRTF(std::uint64_t seed) : random_(seed) {}

    RTFDocument next() {
        document_ = {.text = "", .rtf = std::string(kStart)};
        groups_ = {Group{}};
        for (std::size_t length = upTo(60); length > 0; --length) {
            if (upTo(3) == 1) writeNoise();
            writeCharacter(kCharacters[upTo(kCharacters.size()) - 1]);
        }
        document_.rtf.append(groups_.size(), '}');
        return std::move(document_);
    }

private:
    struct Group {
        int font = 0;
        int fallbackSize = 1;
    };

    // Font 1 is Cyrillic, 2 Greek, 3 Japanese; the default is Western.
    static constexpr std::string_view kStart =
        "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\froman\\fcharset0 A;}{\\f1\\fcharset204{\\*\\falt X}B;}"
        "{\\f2\\fcharset161 C;}{\\f3\\fcharset128 \\'82\\'6c;}}{\\colortbl;\\red1\\green2\\blue3;}{\\*\\generator x;}";

    static constexpr auto kCharacters = std::to_array<char32_t>(
        {'a',    'b',    'F',    '0',    '7',     ' ',     ' ',      '-',     '?',    ';',    '*',
         '\'',   '~',    '{',    '}',    '\\',    '\n',    '\n',     '\t',    0xA0,   0xA1,   0xE9,
         0xFC,   0xFF,   0x2011, 0xAD,   0x410,   0x44F,   0x431,    0x3B1,   0x3C9,  0x3042, 0x3053,
         0x30A2, 0x30BF, 0x30DC, 0x8868, 0x5D0,   0x627,   0x20AC,   0x2022,  0x2013, 0x201C, 0xFFFD,
         0xFFFF, 0xE000, 0xAC00, 0x200D, 0x1F600, 0x1F1EB, 0x10FFFF, 0x10000, 0x301});

    static constexpr auto kNoise = std::to_array<std::string_view>({"\n",
                                                                    "\r\n",
                                                                    "\\b ",
                                                                    "\\i0 ",
                                                                    "\\fs24\n",
                                                                    "\\cf2 ",
                                                                    "\\lang1033 ",
                                                                    "\\unknown-7 ",
                                                                    "\\|",
                                                                    "{}",
                                                                    "{\\b}",
                                                                    "{\\v hidden\\par\\u8364?}",
                                                                    "{\\deleted gone{\\b gone}}",
                                                                    "{\\*\\unknown\\par{x}\\'41}",
                                                                    "{\\pict 89504e47}",
                                                                    "{\\*\\bkmkstart x}",
                                                                    "{\\pict\\bin5 }}{{\\}",
                                                                    "{\\footnote{x\\par}}",
                                                                    "{\\info{\\title x}}",
                                                                    "{\\field{\\*\\fldinst PAGE}{\\fldrslt}}",
                                                                    "\\pard ",
                                                                    "{\\upr{ansi}{\\*\\ud}}",
                                                                    "\\*\\ud ",
                                                                    "\\v\\v0 "});

    static constexpr std::array<std::string_view, 4> kFallbacks = {"?", "\\'3f", "\\~", "\\bullet "};

    /// 1 ... limit
    std::size_t upTo(std::size_t limit) { return 1 + static_cast<std::size_t>(random_() % limit); }

    void write(std::string_view rtf) { document_.rtf += rtf; }

    void writeNoise() {
        switch (upTo(8)) {
            case 1: openGroup(); return;
            case 2: closeGroup(); return;
            case 3: setFallbackSize(static_cast<int>(upTo(4)) - 1); return;
            case 4: setFont(static_cast<int>(upTo(4)) - 1); return;
            default: write(kNoise[upTo(kNoise.size()) - 1]);
        }
    }

    void openGroup() {
        write("{");
        groups_.push_back(groups_.back());
    }

    void closeGroup() {
        if (groups_.size() == 1) return;
        write("}");
        groups_.pop_back();
    }

    void setFallbackSize(int size) {
        write("\\uc" + std::to_string(size) + " ");
        groups_.back().fallbackSize = size;
    }

    void setFont(int font) {
        write("\\f" + std::to_string(font) + " ");
        groups_.back().font = font;
    }

    void writeCharacter(char32_t scalar) {
        Unicode::append(document_.text, scalar);
        const std::string bytes = bytesOf(scalar);
        if (scalar == '\n') {
            static constexpr std::array<std::string_view, 4> kWays = {"\\par ", "\\line\n", "\\\n", "\\sect "};
            write(kWays[upTo(kWays.size()) - 1]);
        } else if (bytes.empty() || upTo(3) == 1) {
            writeNumber(scalar);
        } else {
            for (const char byte : bytes) writeByte(byte);
        }
    }

    /// The character in the current font; empty if that lacks it, or a table would be needed.
    std::string bytesOf(char32_t scalar) const {
        const auto byte = [](char32_t value) { return std::string(1, static_cast<char>(value)); };
        if (scalar < 0x80) return byte(scalar);
        switch (groups_.back().font) {
            case 0: return scalar > 0xA0 && scalar < 0x100 ? byte(scalar) : "";
            case 1: return scalar >= 0x410 && scalar < 0x450 ? byte(scalar - 0x410 + 0xC0) : "";
            case 2: return scalar >= 0x3B1 && scalar < 0x3CA ? byte(scalar - 0x3B1 + 0xE1) : "";
            default: break;
        }
        switch (scalar) {
            case 0x3042: return "\x82\xA0";
            case 0x30A2: return "\x83\x41";  // the second byte is ASCII
            case 0x30DC: return "\x83\x7B";  // ... a brace
            case 0x8868: return "\x95\x5C";  // ... a backslash
            default: return "";
        }
    }

    void writeByte(char byte) {
        const bool isSpecial = byte == '{' || byte == '}' || byte == '\\';
        if (upTo(3) == 1) {
            std::array<char, 5> hex = {};
            std::snprintf(hex.data(), hex.size(), "\\'%02x", static_cast<unsigned>(static_cast<unsigned char>(byte)));
            write(hex.data());
        } else {
            if (isSpecial) write("\\");
            document_.rtf += byte;
        }
    }

    void writeNumber(char32_t scalar) {
        if (scalar < 0x10000) {
            writeUnit(scalar);
        } else {
            writeUnit(0xD800 + ((scalar - 0x10000) >> 10U));
            writeUnit(0xDC00 + ((scalar - 0x10000) & 0x3FFU));
        }
    }

    void writeUnit(char32_t unit) {
        const auto number = static_cast<int>(unit);
        write("\\u" + std::to_string(number > 0x7FFF && upTo(2) == 1 ? number - 0x10000 : number) + " ");
        for (int i = groups_.back().fallbackSize; i > 0; --i) write(kFallbacks[upTo(kFallbacks.size()) - 1]);
    }

    std::mt19937_64 random_;
    RTFDocument document_;
    std::vector<Group> groups_;
};

}  // namespace ravlin::tests
