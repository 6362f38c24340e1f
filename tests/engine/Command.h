#pragma once

#include "Engine/Support/NonCopyable.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include <gtest/gtest.h>
#include <unistd.h>

/// System programs to compare with.
namespace ravlin::tests {

/// A separate file for every process and every `name`, removed at the end.
class TemporaryFile : NonCopyable {
public:
    TemporaryFile(std::string_view name, std::string_view content)
        : path_(testing::TempDir() + "ravlin-" + std::to_string(getpid()) + "-" + std::string(name)) {
        std::ofstream file(path_, std::ios::binary);
        file.write(content.data(), static_cast<std::streamsize>(content.size()));
    }
    ~TemporaryFile() { std::filesystem::remove(path_); }

    const std::string& path() const noexcept { return path_; }

private:
    std::string path_;
};

/// A shell command's output for `input`. The test fails if the command does.
inline std::string outputOf(const std::string& command, std::string_view input) {
    const TemporaryFile file("input", input);
    std::FILE* const pipe = popen((command + " < " + file.path()).c_str(), "r");
    if (pipe == nullptr) {
        ADD_FAILURE() << "cannot start " << command;
        return {};
    }
    std::string output;
    char buffer[65536];
    for (std::size_t size = 1; size > 0; output.append(buffer, size))
        size = std::fread(buffer, 1, sizeof(buffer), pipe);
    EXPECT_EQ(pclose(pipe), 0) << command;
    return output;
}

}  // namespace ravlin::tests
