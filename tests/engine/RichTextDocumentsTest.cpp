// Documents in rich text, and the plain text of the same documents as their programs export it.

#include "Engine/Support/NonCopyable.h"
#include "Engine/Support/RichText/RichText.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

namespace fs = std::filesystem;

const fs::path kDocuments = RAVLIN_RICH_TEXT_DOCUMENTS;

std::string contentOf(const fs::path& path) {
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

/// Without what exports add or omit at will: a byte order mark, line ends after the last line, and the white space
/// around the labels of list items, which is a tab in rich text and spaces in plain text.
std::string comparable(std::string text) {
    constexpr std::string_view kByteOrderMark = "\uFEFF";
    if (text.starts_with(kByteOrderMark)) text.erase(0, kByteOrderMark.size());
    while (text.ends_with('\n')) text.pop_back();
    static const std::regex label("(^|\n) *(\u2022|\u25E6|[0-9]+\\.)[ \t]");
    return std::regex_replace(text, label, "$1$2 ");
}

void expectSameText(const fs::path& rtf, const fs::path& text) {
    ASSERT_FALSE(contentOf(rtf).empty()) << rtf;
    ASSERT_FALSE(contentOf(text).empty()) << text;
    EXPECT_EQ(comparable(RichText::plainText(contentOf(rtf)).value_or("no rich text")), comparable(contentOf(text)));
}

std::string inQuotes(const fs::path& path) {
    return "'" + path.string() + "'";
}

/// A new folder, also the home of the programs that run there, removed in the end.
class Workshop : NonCopyable {
public:
    Workshop() : folder_((fs::path(testing::TempDir()) / "rich-text-XXXXXX").string()) {
        if (mkdtemp(folder_.data()) == nullptr) folder_.clear();
    }
    ~Workshop() {
        std::error_code ignored;
        if (!folder_.empty()) fs::remove_all(folder_, ignored);
    }

    fs::path folder() const { return folder_; }

    static bool hasProgram(const std::string& program) {
        return std::system(("command -v " + program + " >/dev/null 2>&1").c_str()) == 0;
    }

    /// Runs a command without a display, for two minutes at most.
    void run(const std::string& command) const {
        const std::string quiet = "cd " + inQuotes(folder_) +
                                  " && env -u DISPLAY -u WAYLAND_DISPLAY HOME=" + inQuotes(folder_) + " timeout 120 " +
                                  command + " >log 2>&1";
        EXPECT_EQ(std::system(quiet.c_str()), 0) << command << '\n' << contentOf(folder() / "log");
    }

    void convertWithLibreOffice(const std::string& document, const std::string& format) const {
        run("soffice --headless -env:UserInstallation=file://" + inQuotes(folder() / "profile") + " --convert-to '" +
            format + "' " + inQuotes(kDocuments / document));
    }

private:
    std::string folder_;
};

TEST(RichTextDocuments, HaveTheTextOfTheirPlainExport) {
    std::size_t count = 0;
    for (const fs::directory_entry& entry : fs::directory_iterator(kDocuments)) {
        if (entry.path().extension() != ".rtf") continue;
        SCOPED_TRACE(entry.path());
        expectSameText(entry.path(), fs::path(entry.path()).replace_extension(".txt"));
        ++count;
    }
    EXPECT_EQ(count, 5U);
}

TEST(RichTextDocuments, WrittenNowByLibreOfficeHaveTheTextOfTheirPlainExport) {
    if (!Workshop::hasProgram("soffice")) GTEST_SKIP() << "LibreOffice is not installed";
    const Workshop workshop;
    workshop.convertWithLibreOffice("tea.fodt", "rtf");
    workshop.convertWithLibreOffice("tea.fodt", "txt:Text (encoded):UTF8");
    expectSameText(workshop.folder() / "tea.rtf", workshop.folder() / "tea.txt");
}

TEST(RichTextDocuments, WrittenNowByAbiWordHaveTheTextOfTheirPlainExport) {
    if (!Workshop::hasProgram("abiword")) GTEST_SKIP() << "AbiWord is not installed";
    const Workshop workshop;
    workshop.run("abiword --to=rtf -o tea.rtf " + inQuotes(kDocuments / "tea.abw"));
    workshop.run("abiword --to=txt -o tea.txt " + inQuotes(kDocuments / "tea.abw"));
    expectSameText(workshop.folder() / "tea.rtf", workshop.folder() / "tea.txt");
}

TEST(RichTextDocuments, WrittenByHandHaveTheTextThatLibreOfficeReads) {
    if (!Workshop::hasProgram("soffice")) GTEST_SKIP() << "LibreOffice is not installed";
    const Workshop workshop;
    for (const char* const name : {"codepages", "lineends"}) {
        workshop.convertWithLibreOffice(std::string(name) + ".rtf", "txt:Text (encoded):UTF8");
        expectSameText(kDocuments / (std::string(name) + ".rtf"), workshop.folder() / (std::string(name) + ".txt"));
    }
}

}  // namespace
}  // namespace ravlin
