#include "Engine/Support/Links/URLQuery.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

using Items = std::vector<std::string>;

Items itemsOf(std::string_view url) {
    Items items;
    URLQuery(url).forEachItem([&](QueryItem item) { items.emplace_back(item.text()); });
    return items;
}

TEST(URLQuery, IsCutAtAmpersandsOnly) {
    EXPECT_EQ(itemsOf("https://a.test/?a=1&b=2"), (Items{"a=1", "b=2"}));
    EXPECT_EQ(itemsOf("https://a.test/?a=1;b=2"), (Items{"a=1;b=2"}));
    EXPECT_EQ(itemsOf("https://a.test/?a=1&amp;b=2"), (Items{"a=1", "amp;b=2"}));
    EXPECT_EQ(itemsOf("?a=b=c&d&=e&f="), (Items{"a=b=c", "d", "=e", "f="}));
    EXPECT_EQ(itemsOf("?a&a&A"), (Items{"a", "a", "A"}));
    EXPECT_EQ(itemsOf("?&&"), (Items{"", "", ""}));
    EXPECT_EQ(itemsOf("??a?"), (Items{"?a?"}));
    EXPECT_EQ(itemsOf("?a=%20+ä"), (Items{"a=%20+ä"}));
}

TEST(URLQuery, HasNoItemsWithoutAQuery) {
    for (const char* const url : {"", "https://a.test/", "https://a.test/?", "https://a.test/?#a=1", "#?a=1"}) {
        EXPECT_FALSE(URLQuery(url).hasItems()) << url;
        EXPECT_EQ(itemsOf(url), Items()) << url;
    }
}

TEST(URLQuery, StandsBetweenHeadAndFragment) {
    const URLQuery query("https://u@a.test:1/p?a=1#f?b=2#c");
    EXPECT_EQ(query.head(), "https://u@a.test:1/p");
    EXPECT_EQ(query.fragment(), "#f?b=2#c");
    EXPECT_EQ(URLQuery("https://a.test/#/r?a=1").head(), "https://a.test/");
    EXPECT_EQ(URLQuery("https://a.test/x").head(), "https://a.test/x");
}

TEST(URLQuery, NamesEndAtTheFirstEqualsSign) {
    EXPECT_EQ(QueryItem("a=b=c").rawName(), "a");
    EXPECT_EQ(QueryItem("a").rawName(), "a");
    EXPECT_EQ(QueryItem("=b").rawName(), "");
    EXPECT_TRUE(QueryItem("a=").hasValue());
    EXPECT_FALSE(QueryItem("a").hasValue());
}

TEST(URLQuery, DecodesNames) {
    EXPECT_EQ(URLQuery::decodedName("utm%5Fsource"), "utm_source");
    EXPECT_EQ(URLQuery::decodedName("utm%5fsource"), "utm_source");
    EXPECT_EQ(URLQuery::decodedName("caf%C3%A9"), "café");
    EXPECT_EQ(URLQuery::decodedName("é+b"), "é+b");
    EXPECT_EQ(URLQuery::decodedName("%25"), "%");
    EXPECT_EQ(URLQuery::decodedName(""), "");
    for (const char* const broken : {"%", "a%4", "%zz", "utm_%E9", "%C0%AF", "%ED%A0%80"})
        EXPECT_EQ(URLQuery::decodedName(broken), "") << broken;
}

}  // namespace
}  // namespace ravlin
