// JSON, Base64, digests and the other encodings, against libraries that do the same.

#include "Engine/EncodingTransforms.h"
#include "Engine/JSONReformatter.h"
#include "Engine/Support/Characters/Unicode.h"
#include "Engine/TextTransform.h"
#include "benchmarks/Documents.h"
#include "benchmarks/Texts.h"

#include <openssl/evp.h>

#include <functional>

#include <benchmark/benchmark.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/reader.h>

namespace {

using namespace ravlin;
using Benchmarks::kMegabyte;
using MakeText = std::function<std::string()>;
using TextFunction = std::function<void(const std::string&)>;

benchmark::internal::Benchmark* add(const std::string& name, const TextFunction& function, const MakeText& makeText) {
    return benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
        const std::string text = makeText();
        for (auto _ : state) function(text);
        state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
    });
}

TextFunction run(TextTransform transform) {
    return [transform](const std::string& text) {
        const std::string result = transform.apply(text);
        benchmark::DoNotOptimize(result.data());
    };
}

void copy(const std::string& text) {
    const std::string result(text);
    benchmark::DoNotOptimize(result.data());
}

// --- JSON ------------------------------------------------------------------------------------------------------------

/// RapidJSON's fastest way to do the same: no tree, and numbers stay as they are written.
void prettyWithRapidJSON(const std::string& text) {
    rapidjson::StringBuffer buffer;
    rapidjson::PrettyWriter<rapidjson::StringBuffer> writer(buffer);
    writer.SetIndent(' ', 2);
    rapidjson::StringStream stream(text.c_str());
    rapidjson::Reader reader;
    if (!reader.Parse<rapidjson::kParseNumbersAsStringsFlag>(stream, writer)) std::abort();
    benchmark::DoNotOptimize(buffer.GetString());
}

std::string nestedArrays(std::size_t depth) {
    return std::string(depth, '[') + std::string(depth, ']');
}

void addJSON() {
    const auto document = [] { return Benchmarks::jsonDocument(50 * kMegabyte); };
    const auto indented = [document] { return TextTransforms::jsonReformat(document(), /*pretty=*/true); };
    add("json/copy/50MB", copy, document);
    add("json/pretty/50MB", run(TextTransform::jsonPretty), document);
    add("json/prettyWithRapidJSON/50MB", prettyWithRapidJSON, document);
    add("json/copyOfIndented/50MB", copy, indented);
    add("json/prettyOfIndented/50MB", run(TextTransform::jsonPretty), indented);
    add("json/minifyIndented/50MB", run(TextTransform::jsonMinify), indented);
    add("json/minify/1MB", run(TextTransform::jsonMinify),
        [] { return TextTransforms::jsonReformat(Benchmarks::jsonDocument(700'000), true); });
    add("json/nestedArrays/100000", run(TextTransform::jsonPretty), [] { return nestedArrays(100'000); });
}

// --- Base64 ----------------------------------------------------------------------------------------------------------

const unsigned char* bytesOf(const std::string& text) {
    return reinterpret_cast<const unsigned char*>(text.data());
}

void encodeWithOpenSSL(const std::string& text) {
    std::string result((text.size() + 2) / 3 * 4 + 1, '\0');
    EVP_EncodeBlock(reinterpret_cast<unsigned char*>(result.data()), bytesOf(text), static_cast<int>(text.size()));
    result.pop_back();
    benchmark::DoNotOptimize(result.data());
}

void decodeWithOpenSSL(const std::string& text) {
    std::string result(text.size() / 4 * 3, '\0');
    EVP_DecodeBlock(reinterpret_cast<unsigned char*>(result.data()), bytesOf(text), static_cast<int>(text.size()));
    benchmark::DoNotOptimize(result.data());
}

void decodeWithOpenSSLAndValidate(const std::string& text) {
    std::string result(text.size() / 4 * 3, '\0');
    EVP_DecodeBlock(reinterpret_cast<unsigned char*>(result.data()), bytesOf(text), static_cast<int>(text.size()));
    benchmark::DoNotOptimize(Unicode::isValidUTF8(result));
}

void addBase64() {
    const auto words = [] { return Benchmarks::words(kMegabyte); };
    const auto encodedWords = [words] { return TextTransforms::base64Encode(words()); };
    const auto french = [] {
        return TextTransforms::base64Encode(Benchmarks::repeated(Benchmarks::kScripts[1].text, kMegabyte));
    };
    add("base64Encode/words", run(TextTransform::base64Encode), words);
    add("base64EncodeWithOpenSSL/words", encodeWithOpenSSL, words);
    add("base64Decode/words", run(TextTransform::base64Decode), encodedWords);
    add("base64DecodeWithOpenSSL/words", decodeWithOpenSSL, encodedWords);
    add("base64Decode/french", run(TextTransform::base64Decode), french);
    add("base64DecodeWithOpenSSL/french", decodeWithOpenSSLAndValidate, french);
}

// --- Digests ---------------------------------------------------------------------------------------------------------

void addDigests() {
    for (const TextTransform transform : {TextTransform::md5, TextTransform::sha1, TextTransform::sha256})
        add("digest/" + std::string(transform.rawValue()), run(transform),
            [] { return Benchmarks::words(std::size_t{1} << 20U); });
}

const bool kRegistered = [] {
    addJSON();
    addBase64();
    addDigests();
    return true;
}();

}  // namespace
