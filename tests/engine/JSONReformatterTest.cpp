#include "Engine/JSONReformatter.h"
#include "Engine/TextTransform.h"
#include "tests/engine/Command.h"
#include "tests/engine/Sanitizers.h"
#include "tests/engine/oracles/PlainJSON.h"
#include "tests/engine/texts/RandomJSON.h"
#include "tests/engine/texts/RandomTexts.h"

#include <chrono>
#include <random>
#include <vector>

#include <gtest/gtest.h>
#include <sys/resource.h>

namespace ravlin {
namespace {

using std::string_view_literals::operator""sv;

std::string pretty(std::string_view text) {
    return TextTransforms::jsonReformat(text, /*pretty=*/true);
}

std::string minified(std::string_view text) {
    return TextTransforms::jsonReformat(text, /*pretty=*/false);
}

/// White space around the text distinguishes an accepted text from one that came back unchanged.
bool isAccepted(std::string_view text) {
    return minified(" " + std::string(text)) != " " + std::string(text);
}

// --- Layout ----------------------------------------------------------------------------------------------------------

TEST(JSONPretty, IndentsByTwoSpacesALevel) {
    EXPECT_EQ(pretty(R"({"b":1,"a":[1,2.50,{}],"c":{"d":null}})"),
              "{\n"
              "  \"b\": 1,\n"
              "  \"a\": [\n"
              "    1,\n"
              "    2.50,\n"
              "    {}\n"
              "  ],\n"
              "  \"c\": {\n"
              "    \"d\": null\n"
              "  }\n"
              "}");
}

TEST(JSONPretty, KeepsEmptyContainersOnOneLine) {
    const std::pair<std::string_view, std::string_view> vectors[] = {
        {"[]", "[]"},
        {"{}", "{}"},
        {"[ \n\t\r ]", "[]"},
        {"{ \n\t\r }", "{}"},
        {"[[]]", "[\n  []\n]"},
        {"[{},[ ]]", "[\n  {},\n  []\n]"},
        {R"({"a":{}})", "{\n  \"a\": {}\n}"},
        {R"({"a" : [ ] , "b":{ }})", "{\n  \"a\": [],\n  \"b\": {}\n}"},
    };
    for (const auto& [text, expected] : vectors) EXPECT_EQ(pretty(text), expected) << text;
}

TEST(JSONMinify, LeavesNoSpaceBetweenTokens) {
    const std::pair<std::string_view, std::string_view> vectors[] = {
        {" { \"b\" : 1 ,\r\n\t\"a\": [ 1 , 2.50 , { } ] , \"c\" : { \"d\" : null } } ",
         R"({"b":1,"a":[1,2.50,{}],"c":{"d":null}})"},
        {"[ ]", "[]"},
        {"{\n}", "{}"},
        {"[\n  1,\n  [\n    true\n  ]\n]", "[1,[true]]"},
        {R"(["a b", " ", "\n"])", R"(["a b"," ","\n"])"},
        {R"({"b":1,"a":[1,2.50,{}]})", R"({"b":1,"a":[1,2.50,{}]})"},
    };
    for (const auto& [text, expected] : vectors) EXPECT_EQ(minified(text), expected) << text;
}

TEST(JSONReformat, GivesALoneScalarAsItStands) {
    for (const std::string_view text : {"1E+05", "-0.0", "0", "\"text\"", "\"\"", "true", "false", "null"}) {
        EXPECT_EQ(pretty("\n " + std::string(text) + "\t\r\n"), text);
        EXPECT_EQ(minified("\n " + std::string(text) + "\t\r\n"), text);
    }
}

TEST(JSONReformat, TakesAllKindsOfWhiteSpaceFromBothEnds) {
    for (const std::string_view space : {" ", "\n", "\r\n", "\t", "\v", "\f", "\u0085", "\u00a0", "\u1680", "\u2003",
                                         "\u2028", "\u2029", "\u202f", "\u3000"}) {
        const std::string around = std::string(space) + std::string(space);
        EXPECT_EQ(minified(around + "[1, 2]" + around), "[1,2]") << testing::PrintToString(space);
    }
}

TEST(JSONReformat, GivesWhiteSpaceAloneBack) {
    for (const std::string_view text : {"", " ", "\n\n", "\u00a0\t"}) {
        EXPECT_EQ(pretty(text), text);
        EXPECT_EQ(minified(text), text);
    }
}

TEST(JSONReformat, GivesTheUntrimmedTextBack) {
    EXPECT_EQ(pretty(" [1,] \n"), " [1,] \n");
    EXPECT_EQ(minified(" [1,] \n"), " [1,] \n");
}

TEST(JSONReformat, KeepsTheOrderOfKeysAndKeysThatComeTwice) {
    EXPECT_EQ(minified(R"({"z":1,"a":2,"z":3,"":4})"), R"({"z":1,"a":2,"z":3,"":4})");
    EXPECT_EQ(pretty(R"({"z":1,"z":1})"), "{\n  \"z\": 1,\n  \"z\": 1\n}");
}

TEST(JSONReformat, KeepsNumbersAsTheyAreWritten) {
    const std::string digits(5'000, '9');
    for (const std::string& number : {digits, "-" + digits + "." + digits + "E-" + digits, std::string("1e999999"),
                                      std::string("0.10000000000000000000000000"), std::string("-0"),
                                      std::string("1E+05"), std::string("12345678901234567890")})
        EXPECT_EQ(minified("[ " + number + " ]"), "[" + number + "]");
}

TEST(JSONReformat, CopiesStringsOfEveryLength) {
    for (std::size_t size = 0; size < 200; ++size) {
        const std::string string = "\"" + std::string(size, 'x') + "\"";
        EXPECT_EQ(minified(string), string);
        EXPECT_EQ(pretty("[" + string + "]"), "[\n  " + string + "\n]");
    }
    for (const std::size_t size : {4'000U, 4'093U, 4'094U, 4'095U, 4'096U, 4'097U, 8'192U, 100'000U}) {
        const std::string string = "\"" + std::string(size, 'x') + "\"";
        EXPECT_EQ(minified("[ " + string + " , " + string + " ]"), "[" + string + "," + string + "]");
    }
}

// --- The grammar, rule by rule ---------------------------------------------------------------------------------------

struct Rule {
    const char* name;
    std::vector<std::string_view> accepted;
    std::vector<std::string_view> refused;
};

/// In the order of RFC 8259.
const Rule kRules[] = {
    {"2. White space between tokens is space, tab, line feed and carriage return",
     {"[ 1 ]", "[\t1\t]", "[\n1\n]", "[\r1\r]", "{ \"a\" \r\n:\t1 }", "[1 ,2]", "[1\n,\n2]"},
     {"[\v1]", "[\f1]",
      "[\u00a0"
      "1]",
      "[1\u2028]",
      "[1,\u3000"
      "2]",
      "{\u00a0}", "[\u0085]", "{\"a\"\u00a0:1}", "[\0]"sv, "[1/**/]", "[1]//"}},
    {"2. One value is a text",
     {"1", "[]", "{}", "\"\"", "null"},
     {"1 2", "[] []", "{}{}", "1,", ",1", "\"a\"\"b\"", "[1]]", "{}}", "true false", "[1] x"}},
    {"2. No byte order mark before it", {}, {"\uFEFF[]", "\uFEFF", "[\uFEFF]"}},
    {"3. Literals are true, false and null in lower case",
     {"true", "false", "null", "[true,false,null]"},
     {"True",      "FALSE", "Null",     "nul",       "tru",   "fals", "nulll", "truefalse", "t",    "f",      "n",
      "undefined", "NaN",   "Infinity", "-Infinity", "[tru]", "[nul", "[true", "yes",       "tRue", "t\0ue"sv}},
    {"4. Objects are members between braces",
     {"{}", "{\"a\":1}", "{\"a\":1,\"b\":2}", "{\"a\":{\"b\":{}}}", "{\"\":0}", "{\"a\":1,\"a\":2}"},
     {"{", "}", "{,}", "{\"a\"}", "{\"a\":}", "{\"a\":1,}", "{,\"a\":1}", "{\"a\":1 \"b\":2}", "{\"a\":1,,\"b\":2}",
      "{\"a\" 1}", "{\"a\"::1}", "{\"a\":1", "{\"a\":", "{\"a\"", "{\"a", "{\"a\":1]", "{\"a\",1}", "{1}"}},
    {"4. Names are strings",
     {"{\"1\":1}", "{\"\\u0061\":1}"},
     {"{a:1}", "{'a':1}", "{1:1}", "{null:1}", "{[]:1}", "{{}:1}", "{:1}"}},
    {"5. Arrays are values between brackets",
     {"[]", "[1]", "[1,2]", "[[],[[]]]", "[1,\"a\",{},null]"},
     {"[", "]", "[,]", "[1,]", "[,1]", "[1 2]", "[1,,2]", "[1", "[1,", "[}", "[1}", "[[]", "[]]", "[1:2]",
      "[\"a\":1]"}},
    {"6. Numbers have an integer part without needless zeros",
     {"0", "-0", "1", "-1", "10", "1234567890", "[0,-0]"},
     {"00", "01", "-01", "-", "+1", "--1", "-a", "[-]", "1a", "0x1", "1_000", "\uFF11", "\u0661", "1 0", "-0 1"}},
    {"6. Fractions have digits on both sides",
     {"0.0", "-0.0", "1.50", "0.123456789"},
     {".5", "1.", "-.5", "1.e1", "1..2", "1.2.3", "0.", "-0.", "1,5 ", "1.-1"}},
    {"6. Exponents have digits",
     {"1e1", "1E1", "1e+1", "1e-1", "1E-05", "0e0", "0.0E+00", "1e999999"},
     {"1e", "1E", "1e+", "1e-", "1e+-1", "1e1.5", "e1", "1ee1", "1e 1", "1e1e1", "[1e]", "[1E+]"}},
    {"7. Strings stand between double quotes",
     {"\"\"", "\"a\"", "\"'\"", "\"a b\"", "\"[1,\"", "\"//\""},
     {"\"", "\"a", "a\"", "'a'", "\"a\"b\"", "\u201ca\u201d", "`a`"}},
    {"7. Any character but quote, backslash and control characters stands for itself",
     {"\"\x7F\"", "\"\u0080\u0085\u00a0\"", "\"\u2028\u2029\"", "\"\uFEFF\"", "\"\u00e9\u4e2d\U0001F600\"", "\"/\"",
      "\"\uFFFF\U0010FFFF\""},
     {"\"\t\"", "\"\n\"", "\"\r\"", "\"\b\"", "\"\x01\"", "\"\x1F\"", "\"\0\""sv, "\"a\tb\"", "\"0123456789\tabcdef\"",
      "{\"a\n\":1}"}},
    {"7. A backslash escapes what follows, which is not looked into",
     {R"("\"")", R"("\\")", R"("\/")", R"("\b\f\n\r\t")", R"("\u0041")", R"("\uD83D\uDE00")", R"("\uD83D")", R"("\x")",
      R"("\u")", R"("\u12")", R"("\q\1")", R"("\u00e9\é")", "\"\\\t\"", "\"\\\n\"", "\"\\\0\""sv},
     {R"("\")", R"("\)", R"("\\\")", R"("a\"b)", "\"\\\t", "\"\\\"\t\""}},
};

TEST(JSONReformat, FollowsTheGrammarRuleByRule) {
    for (const Rule& rule : kRules) {
        for (const std::string_view text : rule.accepted) EXPECT_TRUE(isAccepted(text)) << rule.name << ": " << text;
        for (const std::string_view text : rule.refused) {
            EXPECT_EQ(pretty(text), text) << rule.name << ": " << text;
            EXPECT_FALSE(isAccepted(text)) << rule.name << ": " << text;
        }
    }
}

TEST(JSONReformat, LosesNoTokenWhereTheGrammarAccepts) {
    for (const Rule& rule : kRules) {
        for (const std::string_view text : rule.accepted) {
            const std::string value(text);
            EXPECT_EQ(minified(pretty(value)), minified(value)) << rule.name << ": " << value;
            EXPECT_EQ(pretty(value), tests::PlainJSON::reformat(value, true)) << rule.name << ": " << value;
            EXPECT_EQ(minified(value), tests::PlainJSON::reformat(value, false)) << rule.name << ": " << value;
        }
    }
}

// --- Against the plain version ---------------------------------------------------------------------------------------

/// How many random texts to use in place of a thousand.
constexpr int kThousand = tests::kIsSanitized ? 200 : 1'000;

std::string agreed(std::string_view text) {
    for (const bool isPretty : {true, false}) {
        const std::string expected = tests::PlainJSON::reformat(text, isPretty);
        if (TextTransforms::jsonReformat(text, isPretty) != expected) return testing::PrintToString(text);
    }
    return "agreed";
}

TEST(JSONReformat, IsThatOfThePlainVersionForAllShortTexts) {
    constexpr std::string_view kBytes = "{}[],:\"1 ";
    constexpr std::size_t kMaxSize = tests::kIsSanitized ? 5 : 7;
    std::size_t count = 1;
    for (std::size_t size = 0; size <= kMaxSize; ++size, count *= kBytes.size()) {
        std::string text(size, ' ');
        for (std::size_t number = 0; number < count; ++number) {
            std::size_t digits = number;
            for (char& byte : text) {
                byte = kBytes[digits % kBytes.size()];
                digits /= kBytes.size();
            }
            ASSERT_EQ(agreed(text), "agreed");
        }
    }
}

TEST(JSONReformat, IsThatOfThePlainVersionForRandomTokens) {
    tests::RandomTexts texts(tests::kJSONTokens, 1);
    for (int i = 0; i < 300 * kThousand; ++i) ASSERT_EQ(agreed(texts.next()), "agreed");
}

TEST(JSONReformat, IsThatOfThePlainVersionForRandomDocuments) {
    tests::RandomJSON documents(2);
    for (int i = 0; i < 20 * kThousand; ++i) {
        ASSERT_EQ(agreed(documents.next()), "agreed");
        ASSERT_EQ(agreed(documents.nextDamaged()), "agreed");
    }
}

// --- Against Python --------------------------------------------------------------------------------------------------

/// The lines that a Python program writes when it reads the texts in hexadecimal digits, one per line.
std::vector<std::string> askPython(const std::string& program, const std::vector<std::string>& texts) {
    std::string input;
    for (const std::string& text : texts) input += TextTransform(TextTransform::hexEncode).apply(text) + "\n";
    const tests::TemporaryFile file("program.py", program);
    const std::string output = tests::outputOf("/usr/bin/python3 " + file.path(), input);
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < output.size();) {
        const std::size_t end = output.find('\n', at);
        lines.push_back(output.substr(at, end - at));
        at = end + 1;
    }
    EXPECT_EQ(lines.size(), texts.size());
    lines.resize(texts.size());
    return lines;
}

// Python differs in three ways, which the texts avoid: it looks into escapes, it accepts NaN and Infinity, and it
// strips only JSON's own white space from the ends.
TEST(JSONReformat, AcceptsWhatPythonAccepts) {
    std::vector<std::string_view> tokens;
    for (const std::string_view token : tests::kJSONTokens)
        if (token.find('\\') == std::string_view::npos && token != "\u00a0" && token != "\u2028" && token != "\v")
            tokens.push_back(token);
    for (const std::string_view escape : {R"("\n")", R"("\"\\\/")", R"("\u12aF")"}) tokens.push_back(escape);
    tests::RandomTexts randomTexts(tokens, 3);
    tests::RandomJSON documents(4);
    documents.hasPlainNumbers = true;
    std::vector<std::string> texts;
    for (int i = 0; i < 50 * kThousand; ++i) texts.push_back(randomTexts.next());
    for (int i = 0; i < 10 * kThousand; ++i) texts.push_back(documents.next());
    for (int i = 0; i < 30 * kThousand; ++i) {
        std::string text = documents.nextDamaged();
        if (text.find('\\') == std::string::npos) texts.push_back(std::move(text));
    }
    const std::vector<std::string> answers = askPython(R"(
import json, sys
for line in sys.stdin:
    try:
        json.loads(bytes.fromhex(line).decode())
        print("accepted")
    except ValueError:
        print("refused")
)",
                                                       texts);
    std::size_t acceptedCount = 0;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        ASSERT_EQ(isAccepted(texts[i]) ? "accepted" : "refused", answers[i]) << testing::PrintToString(texts[i]);
        if (answers[i] == "accepted") ++acceptedCount;
    }
    EXPECT_GT(acceptedCount, texts.size() / 10);
    EXPECT_LT(acceptedCount, texts.size() * 9 / 10);
}

TEST(JSONReformat, LaysDocumentsOutAsPythonDoes) {
    tests::RandomJSON documents(5);
    documents.hasPlainNumbers = true;
    std::vector<std::string> texts;
    for (int i = 0; i < 10 * kThousand; ++i) texts.push_back(documents.next());
    const std::vector<std::string> answers = askPython(R"(
import json, sys
for line in sys.stdin:
    value = json.loads(bytes.fromhex(line).decode())
    pretty = json.dumps(value, ensure_ascii=False, indent=2)
    minified = json.dumps(value, ensure_ascii=False, separators=(",", ":"))
    print(pretty.encode().hex() + "/" + minified.encode().hex())
)",
                                                       texts);
    const auto hex = [](const std::string& text) { return TextTransform(TextTransform::hexEncode).apply(text); };
    for (std::size_t i = 0; i < texts.size(); ++i)
        ASSERT_EQ(hex(pretty(texts[i])) + "/" + hex(minified(texts[i])), answers[i]) << texts[i];
}

// --- Properties ------------------------------------------------------------------------------------------------------

TEST(JSONReformat, ForgetsHowTheTextWasLaidOut) {
    tests::RandomJSON documents(6);
    for (int i = 0; i < 20 * kThousand; ++i) {
        const std::string text = i % 4 == 0 ? documents.nextDamaged() : documents.next();
        const std::string indented = pretty(text);
        const std::string compact = minified(text);
        ASSERT_EQ(pretty(indented), indented) << text;
        ASSERT_EQ(minified(compact), compact) << text;
        ASSERT_EQ(minified(indented), compact) << text;
        ASSERT_EQ(pretty(compact), indented) << text;
    }
}

// --- Depth -----------------------------------------------------------------------------------------------------------

std::string nestedArrays(std::size_t depth, const std::string& inside = "") {
    return std::string(depth, '[') + inside + std::string(depth, ']');
}

TEST(JSONMinify, KeepsArraysOfAMillionLevels) {
    constexpr std::size_t kDepth = 1'000'000;
    std::string spaced;
    for (const char byte : nestedArrays(kDepth)) spaced += {byte, ' '};
    EXPECT_EQ(minified(spaced), nestedArrays(kDepth));
    const std::string unclosed(kDepth, '[');
    EXPECT_EQ(minified(unclosed), unclosed);
    const std::string wrong = std::string(kDepth, '[') + std::string(kDepth, '}');
    EXPECT_EQ(minified(wrong), wrong);
}

TEST(JSONPretty, IndentsThousandsOfLevels) {
    EXPECT_EQ(pretty(nestedArrays(300)), tests::PlainJSON::reformat(nestedArrays(300), true));
    const std::string text = nestedArrays(3'000);
    const std::string indented = pretty(text);
    EXPECT_NE(indented, text);
    EXPECT_EQ(minified(indented), text);
    EXPECT_EQ(pretty(indented), indented);
}

std::int64_t peakMemory() {
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss * 1024;
}

TEST(JSONPretty, GivesArraysNestedTooDeepBackAtOnce) {
    // The first exceeds the limit where its brackets close, the others where they open.
    const std::string texts[] = {nestedArrays(30'000), nestedArrays(100'000), nestedArrays(100'000, "1,[],{}"),
                                 nestedArrays(1'000'000)};
    for (const std::string& text : texts) {
        const std::int64_t memory = peakMemory();
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(pretty(text), text);
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(tests::kIsSanitized ? 10 : 1));
        EXPECT_LT(peakMemory() - memory, 100'000'000);
    }
}

// Sanitizers may need more memory than a machine has.
#ifndef RAVLIN_ADDRESS_SANITIZER
TEST(JSONPretty, WritesAsMuchAsItsLimitAndNoByteMore) {
    // A line for every bracket, and a line for the string; the lines of one level are indented by twice the level.
    constexpr std::size_t kDepth = 23'000;
    constexpr std::size_t kLinesWithoutString = 2 * kDepth * (kDepth - 1) + 2 * (2 * kDepth) + 2 * kDepth;
    static_assert(kLinesWithoutString < TextTransforms::kMaxPrettySize);
    const std::string string(TextTransforms::kMaxPrettySize - kLinesWithoutString, '"');
    std::string inside = string;
    std::fill(inside.begin() + 1, inside.end() - 1, 'x');
    {
        const std::string result = pretty(nestedArrays(kDepth, inside));
        EXPECT_EQ(result.size(), TextTransforms::kMaxPrettySize);
        EXPECT_TRUE(result.starts_with("[\n  [\n    ["));
        EXPECT_TRUE(result.ends_with("]\n  ]\n]"));
    }
    inside.insert(1, 1, 'x');
    const std::string tooLong = nestedArrays(kDepth, inside);
    EXPECT_TRUE(pretty(tooLong) == tooLong);
}
#endif

}  // namespace
}  // namespace ravlin
