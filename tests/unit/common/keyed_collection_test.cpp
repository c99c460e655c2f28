#include "common/keyed_collection.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/error_of.h"

namespace qvx {
namespace {

using test::ErrorOf;

TEST(KeyedCollection, NumbersItemsFromOneInTheirOrder) {
    KeyedCollection<int> items;
    items.Add(10, u"Code");
    items.Add(20);
    items.Add(30, u"Qty");
    EXPECT_EQ(items.Count(), 3U);
    EXPECT_EQ(items.At(1), 10);
    EXPECT_EQ(items.At(3), 30);
    EXPECT_EQ(items.At(u"QTY"), 30);
    items.Remove(1);
    EXPECT_EQ(items.At(1), 20);
    EXPECT_EQ(items.At(u"qty"), 30);
    EXPECT_FALSE(items.Contains(u"code"));
    items.Remove(u"qTy");
    EXPECT_EQ(items.Count(), 1U);
    items.Add(40, u"CODE");  // the key is free again
    EXPECT_EQ(items.At(u"code"), 40);
    items.Clear();
    EXPECT_EQ(items.Count(), 0U);
    EXPECT_EQ(items.Find(u"code"), nullptr);
}

TEST(KeyedCollection, RaisesTheErrorsHostsKnow) {
    KeyedCollection<std::string> items;
    items.Add("first", u"Menge \u00C4");
    items.Add("second", u"");
    EXPECT_EQ(ErrorOf([&] { items.Add("third", u"MENGE \u00E4"); }), 457);
    EXPECT_EQ(ErrorOf([&] { items.Add("third", u""); }), 457);  // empty captions are keys too
    EXPECT_EQ(items.Count(), 2U);                               // a refused item leaves nothing behind
    EXPECT_EQ(ErrorOf([&] { items.At(0); }), 9);
    EXPECT_EQ(ErrorOf([&] { items.At(3); }), 9);
    EXPECT_EQ(ErrorOf([&] { items.At(u"none"); }), 5);
    EXPECT_EQ(ErrorOf([&] { items.Remove(3); }), 9);
    EXPECT_EQ(ErrorOf([&] { items.Remove(u"none"); }), 5);
    EXPECT_EQ(items.At(u""), "second");
}

TEST(KeyedCollection, KeysStayTrueWhileItGrowsAndShrinks) {
    KeyedCollection<int> items;
    const auto key = [](int i) {
        const std::string digits = std::to_string(i);
        return u"Column" + Text(digits.begin(), digits.end());
    };
    for (int i = 0; i < 500; ++i) items.Add(i, key(i));
    for (int i = 0; i < 500; i += 2) items.Remove(key(i));
    EXPECT_EQ(items.Count(), 250U);
    for (int i = 1; i < 500; i += 2) {
        EXPECT_EQ(items.At(key(i)), i);
        EXPECT_EQ(items.At((i + 1) / 2), i);
    }
}

}  // namespace
}  // namespace qvx
