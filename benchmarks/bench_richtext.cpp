// Rich text: documents of 1 MB against a plain copy of their bytes, growth from 4 to 8 MB, and hostile documents.

#include "Engine/Support/RichText/RichText.h"
#include "benchmarks/Texts.h"
#include "tests/engine/texts/HostileRTF.h"

#include <functional>

#include <benchmark/benchmark.h>

namespace {

using namespace ravlin;
using Benchmarks::kMegabyte;

/// Pieces of documents as word processors write them: much formatting, few characters.
constexpr auto kPieces = std::to_array<Benchmarks::Sample>({
    {"formatted",
     "\\par \\pard\\plain \\s19\\loch\\sl276\\slmult1\\sb0\\sa140\\ql\\ltrpar{\\rtlch\\af0 \\ltrch\\loch\n"
     "The quick brown fox {\\b jumps} over the lazy dog, caf\\u233\\'e9 {\\f1\\i at} noon.}"},
    {"plain", "The quick brown fox jumps over the lazy dog, and 42 more things happen.\\par\n"},
    {"unicode", "\\u1057\\'3f\\u1098\\'3f\\u1077\\'3f\\u1096\\'3f\\u1100\\'3f \\u1078\\'3f\\u1077\\'3f, "},
    {"codepage", "\\'d1\\'fa\\'e5\\'f8\\'fc \\'e6\\'e5 \\'e5\\'f9\\'b8 \\'fd\\'f2\\'e8\\'f5, "},
    {"japanese", "{\\f2\\'93\\'fa\\'96\\'7b\\'8c\\'ea}\\'81\\'40\\b \\'83A\\b0\\par\n"},
    {"picture", "{\\pict\\pngblip 89504e470d0a1a0a0000000d4948445200000001000000010806000000\n}"},
});

std::string document(std::string_view piece, std::size_t size) {
    return "{\\rtf1\\ansi\\ansicpg1251\\deff0{\\fonttbl{\\f0\\fcharset204 A;}{\\f1\\fcharset0 B;}{\\f2\\fcharset128 "
           "C;}}" +
           Benchmarks::repeated(piece, size) + "}";
}

void add(const std::string& name, const std::function<std::string()>& makeRTF) {
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
        const std::string rtf = makeRTF();
        for (auto _ : state) {
            const auto text = RichText::plainText(rtf);
            benchmark::DoNotOptimize(text->data());
        }
        state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(rtf.size()));
    });
}

void addCopy() {
    benchmark::RegisterBenchmark("richTextCopy/1MB", [](benchmark::State& state) {
        const std::string rtf = document(kPieces.front().text, kMegabyte);
        for (auto _ : state) {
            const std::string copy(rtf);
            benchmark::DoNotOptimize(copy.data());
        }
    });
}

const bool kRegistered = [] {
    addCopy();
    for (const Benchmarks::Sample& piece : kPieces)
        for (const std::size_t megabytes : {1U, 4U, 8U})
            add(std::string("richText/") + piece.name + "/" + std::to_string(megabytes) + "MB",
                [=] { return document(piece.text, megabytes * kMegabyte); });
    for (const tests::HostileText& hostile : tests::hostileRTF(kMegabyte))
        add(std::string("hostile/richText/") + hostile.name, [text = hostile.text] { return text; });
    return true;
}();

}  // namespace
