// transform IDENTIFIER < in > out: runs one transform from standard input to standard output.

#include "Engine/TextTransform.h"

#include <cstdio>
#include <exception>
#include <iostream>
#include <iterator>
#include <string>

namespace {

int run(int argc, char** argv) {
    const auto transform = argc == 2 ? ravlin::TextTransform::fromRawValue(argv[1]) : std::nullopt;
    if (!transform) {
        std::cerr << "usage: transform IDENTIFIER < in > out\nIdentifiers:";
        for (const ravlin::TextTransform each : ravlin::TextTransform::allCases()) std::cerr << ' ' << each.rawValue();
        std::cerr << '\n';
        return 2;
    }
    const std::string input{std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>()};
    std::cout << transform->apply(input) << std::flush;
    return std::cout.good() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        std::fputs(error.what(), stderr);
        return 1;
    }
}
