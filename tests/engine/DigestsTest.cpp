#include "Engine/Digests.h"
#include "tests/engine/Command.h"

#include <openssl/evp.h>

#include <cstring>
#include <memory>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

TEST(Digests, AreThoseOfTheStandards) {
    const struct {
        std::string text;
        std::string_view md5;
        std::string_view sha1;
        std::string_view sha256;
    } vectors[] = {
        {"", "d41d8cd98f00b204e9800998ecf8427e", "da39a3ee5e6b4b0d3255bfef95601890afd80709",
         "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
        {"abc", "900150983cd24fb0d6963f7d28e17f72", "a9993e364706816aba3e25717850c26c9cd0d89d",
         "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
        {"message digest", "f96b697d7cb7938d525a2f31aaf161d0", "c12252ceda8be8994d5fa0290a47231c1d16aae3",
         "f7846f55cf23e14eebeab5b4e1550cad5b509e3348fbc4efa3a1413d393cb650"},
        {"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq", "8215ef0796a20bcaaae116d3876c664a",
         "84983e441c3bd26ebaae4aa1f95129e5e54670f1",
         "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1"},
        {std::string(1'000'000, 'a'), "7707d6ae4e027c70eea2a935c2296f21", "34aa973cd4c4daa4f61eeb2bdbad27316534016f",
         "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"},
    };
    for (const auto& vector : vectors) {
        EXPECT_EQ(TextTransforms::md5(vector.text), vector.md5);
        EXPECT_EQ(TextTransforms::sha1(vector.text), vector.sha1);
        EXPECT_EQ(TextTransforms::sha256(vector.text), vector.sha256);
    }
}

TEST(Digests, TakeEveryByteAsItStands) {
    for (const std::string_view text : {" abc", "abc\n", "abc\r\n", "ABC", "\uFEFFabc", "e\u0301", "\u00e9"})
        EXPECT_NE(TextTransforms::md5(text), TextTransforms::md5("abc")) << testing::PrintToString(text);
    EXPECT_NE(TextTransforms::sha256("e\u0301"), TextTransforms::sha256("\u00e9"));
    EXPECT_NE(TextTransforms::sha1(std::string_view("\0", 1)), TextTransforms::sha1(""));
}

std::string randomText(std::size_t size, std::mt19937_64& random) {
    std::string text(size, '\0');
    for (std::size_t at = 0; at < size; at += sizeof(std::uint64_t)) {
        const std::uint64_t bytes = random() & 0x7F7F7F7F7F7F7F7FU;
        std::memcpy(text.data() + at, &bytes, std::min(sizeof(bytes), size - at));
    }
    return text;
}

TEST(Digests, AreThoseOfTheToolsOfTheSystem) {
    std::mt19937_64 random(1);
    std::vector<std::string> texts;
    for (std::size_t size = 0; size <= 200; ++size) texts.push_back(randomText(size, random));
    for (int i = 0; i < 30; ++i) texts.push_back(randomText(random() % 100'000, random));
    for (const std::size_t size : {std::size_t{1'000'000}, std::size_t{1} << 20U, std::size_t{64} << 20U})
        texts.push_back(randomText(size, random));

    const struct {
        const char* tool;
        std::string (*digest)(std::string_view);
    } digests[] = {
        {"md5sum", TextTransforms::md5}, {"sha1sum", TextTransforms::sha1}, {"sha256sum", TextTransforms::sha256}};
    std::vector<std::unique_ptr<tests::TemporaryFile>> files;
    std::string paths;
    for (const std::string& text : texts) {
        files.push_back(std::make_unique<tests::TemporaryFile>("text" + std::to_string(files.size()), text));
        paths += " " + files.back()->path();
    }
    for (const auto& [tool, digest] : digests) {
        std::string expected;
        for (std::size_t i = 0; i < texts.size(); ++i) expected += digest(texts[i]) + "  " + files[i]->path() + "\n";
        EXPECT_EQ(tests::outputOf(tool + paths, ""), expected);
    }
}

// A separate process reads the configuration of a machine on which the shared part of OpenSSL offers no MD5.
TEST(Digests, DoNotDependOnTheConfigurationOfTheSystem) {
    if (std::getenv("RAVLIN_WITHOUT_MD5") != nullptr) {
        unsigned char bytes[EVP_MAX_MD_SIZE];
        unsigned size = 0;
        ASSERT_NE(EVP_Digest("", 0, bytes, &size, EVP_md5(), nullptr), 1) << "MD5 is still there";
        EXPECT_EQ(TextTransforms::md5(""), "d41d8cd98f00b204e9800998ecf8427e");
        EXPECT_EQ(TextTransforms::sha1("abc"), "a9993e364706816aba3e25717850c26c9cd0d89d");
        return;
    }
    const tests::TemporaryFile configuration("openssl.cnf",
                                             "openssl_conf = init\n"
                                             "[init]\n"
                                             "alg_section = algorithms\n"
                                             "[algorithms]\n"
                                             "default_properties = fips=yes\n");
    const std::string program = std::filesystem::read_symlink("/proc/self/exe").string();
    const std::string command = "RAVLIN_WITHOUT_MD5=1 OPENSSL_CONF=" + configuration.path() + " " + program +
                                " --gtest_filter=Digests.DoNotDependOnTheConfigurationOfTheSystem";
    const std::string output = tests::outputOf(command, "");
    EXPECT_NE(output.find("[  PASSED  ] 1 test."), std::string::npos) << output;
}

}  // namespace
}  // namespace ravlin
