// transform IDENTIFIER < in > out: runs one transform from standard input to standard output.
// transform --table: writes the catalogue as the tables of README.md.

#include "Engine/TextTransform.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <exception>
#include <iostream>
#include <string>
#include <string_view>

namespace {

std::string readAll(std::FILE* file) {
    std::string text;
    if (std::fseek(file, 0, SEEK_END) == 0) text.reserve(static_cast<std::size_t>(std::max(std::ftell(file), 0L)));
    std::rewind(file);  // a pipe has neither a size nor another end
    std::array<char, 65536> buffer;
    for (std::size_t size = 1; size > 0; text.append(buffer.data(), size))
        size = std::fread(buffer.data(), 1, buffer.size(), file);
    return text;
}

int writeTable() {
    for (const ravlin::TransformCategory category : ravlin::TransformCategory::allCases()) {
        std::cout << "\n| " << category.title() << " | |\n|---|---|\n";
        for (const ravlin::TextTransform each : ravlin::TextTransform::allCases())
            if (each.category() == category) std::cout << "| " << each.title() << " | " << each.subtitle() << " |\n";
    }
    return std::cout.flush() ? 0 : 1;
}

int usage() {
    std::cerr << "usage: transform IDENTIFIER < in > out\n       transform --table\nIdentifiers:";
    for (const ravlin::TextTransform each : ravlin::TextTransform::allCases()) std::cerr << ' ' << each.rawValue();
    std::cerr << '\n';
    return 2;
}

int run(int argc, char** argv) {
    if (argc == 2 && argv[1] == std::string_view("--table")) return writeTable();
    const auto transform = argc == 2 ? ravlin::TextTransform::fromRawValue(argv[1]) : std::nullopt;
    if (!transform) return usage();
    const std::string result = transform->apply(readAll(stdin));
    const bool isWritten = std::fwrite(result.data(), 1, result.size(), stdout) == result.size();
    return isWritten && std::fflush(stdout) == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
