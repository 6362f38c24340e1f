#pragma once

#include <array>
#include <cstddef>
#include <random>
#include <string>
#include <string_view>

/// Texts to measure with: ordinary ones in several scripts, and hostile ones. All are the same in every run.
namespace ravlin::Benchmarks {

inline constexpr std::size_t kMegabyte = 1'000'000;  // bytes

struct Sample {
    const char* name;
    std::string_view text;
};

inline constexpr auto kScripts = std::to_array<Sample>({
    {"ascii", "The quick brown fox jumps over the lazy dog, and 42 more things happen.\n"},
    {"french", "Dès Noël où un zéphyr haï me vêt de glaçons würmiens je dîne d’exquis rôtis.\n"},
    {"russian", "Съешь же ещё этих мягких французских булок, да выпей чаю.\n"},
    {"chinese", "天地玄黄，宇宙洪荒。日月盈昃，辰宿列张。寒来暑往，秋收冬藏。\n"},
    {"korean", "키스의 고유조건은 입술끼리 만나야 하고 특별한 기술은 필요치 않다.\n"},
    {"hindi", "ऋषियों को सताने वाले दुष्ट राक्षसों के राजा रावण का सर्वनाश करने वाले विष्णु।\n"},
    {"emoji", "👩‍👩‍👧‍👦👍🏽🇫🇷🇩🇪❤️‍🔥😀1️⃣🎉👨🏿‍🚀 "},
});

/// The piece repeated, up to at most `size` bytes and ending with a whole piece.
inline std::string repeated(std::string_view piece, std::size_t size) {
    std::string text;
    text.reserve(size);
    while (text.size() + piece.size() <= size) text += piece;
    return text;
}

/// Lines of random words from a small vocabulary, as in notes and lists.
inline std::string words(std::size_t size) {
    std::mt19937 random(11);
    std::uniform_int_distribution<int> letter('a', 'z');
    std::uniform_int_distribution<int> length(1, 9);
    std::uniform_int_distribution<int> kind(0, 11);
    std::string text;
    while (text.size() < size) {
        const int first = kind(random);
        for (int i = length(random); i > 0; --i) text += static_cast<char>(letter(random));
        if (first == 0) text.back() = 'Q';
        text += first == 1 ? '\n' : ' ';
    }
    text.resize(size);
    return text;
}

}  // namespace ravlin::Benchmarks
