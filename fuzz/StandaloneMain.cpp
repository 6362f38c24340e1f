// For compilers without libFuzzer: runs the target once on every file given.

#include <array>
#include <cstdint>
#include <cstdio>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

bool readFile(const char* path, std::string& bytes) {
    std::FILE* const file = std::fopen(path, "rb");
    if (file == nullptr) return false;
    std::array<char, 4096> buffer;
    for (std::size_t size = 1; size > 0; bytes.append(buffer.data(), size))
        size = std::fread(buffer.data(), 1, buffer.size(), file);
    return std::fclose(file) == 0;
}

}  // namespace

int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        std::string input;
        if (!readFile(argv[i], input)) {
            std::perror(argv[i]);
            return 1;
        }
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
        std::printf("%s: %zu bytes\n", argv[i], input.size());
    }
    return 0;
}
