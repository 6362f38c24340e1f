// The documents on this machine: the scanners convert them as the patterns say.

#include "Engine/HTMLTransforms.h"
#include "Engine/MarkdownTransforms.h"
#include "Engine/Support/Characters/Unicode.h"
#include "tests/engine/oracles/PatternOracle.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <vector>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMostFiles = 300;
constexpr std::uintmax_t kLargestFile = 100'000;  // bytes

bool isOneOf(const fs::path& path, std::initializer_list<const char*> extensions) {
    return std::any_of(extensions.begin(), extensions.end(),
                       [&](const char* extension) { return path.extension() == extension; });
}

/// Up to `kMostFiles` files with these extensions, evenly spread over all of them.
std::vector<fs::path> documents(std::initializer_list<const char*> extensions) {
    std::vector<fs::path> all;
    for (const char* const folder : {"/usr/share/doc", "/usr/share", "/usr/lib"}) {
        std::error_code error;
        fs::recursive_directory_iterator entry(folder, fs::directory_options::skip_permission_denied, error);
        for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
            std::error_code ignored;
            if (isOneOf(entry->path(), extensions) && entry->is_regular_file(ignored) &&
                entry->file_size(ignored) <= kLargestFile)
                all.push_back(entry->path());
        }
        if (all.size() >= kMostFiles) break;
    }
    std::sort(all.begin(), all.end());
    if (all.size() <= kMostFiles) return all;
    std::vector<fs::path> some;
    for (std::size_t i = 0; i < kMostFiles; ++i) some.push_back(all[i * all.size() / kMostFiles]);
    return some;
}

std::string contentOf(const fs::path& path) {
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

/// Calls `check` with the text of every document. Returns how many there were.
template <typename Check>
std::size_t forEachDocument(std::initializer_list<const char*> extensions, Check check) {
    std::size_t count = 0;
    for (const fs::path& path : documents(extensions)) {
        const std::string text = contentOf(path);
        if (!Unicode::isValidUTF8(text)) continue;
        SCOPED_TRACE(path);
        check(text);
        ++count;
    }
    testing::Test::RecordProperty("documents", static_cast<int>(count));
    return count;
}

TEST(HTMLFiles, AreConvertedAsThePatternsSay) {
    const std::size_t count = forEachDocument({".html", ".htm", ".xhtml"}, [](const std::string& text) {
        EXPECT_EQ(TextTransforms::stripHTML(text), PatternOracle::stripHTML(text));
        EXPECT_EQ(TextTransforms::htmlToMarkdown(text), PatternOracle::htmlToMarkdown(text));
        EXPECT_EQ(TextTransforms::decodeEntities(text), PatternOracle::decodeEntities(text));
    });
    if (count == 0) GTEST_SKIP() << "no HTML on this machine";
}

TEST(HTMLFiles, OfMarkdownAreConvertedAsThePatternsSay) {
    const std::size_t count = forEachDocument({".md", ".markdown", ".rst", ".txt"}, [](const std::string& text) {
        EXPECT_EQ(TextTransforms::markdownToHTML(text), PatternOracle::markdownToHTML(text));
    });
    if (count == 0) GTEST_SKIP() << "no Markdown on this machine";
}

}  // namespace
}  // namespace ravlin
