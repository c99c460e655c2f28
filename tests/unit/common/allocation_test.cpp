// What controls share, without memory: each allocation of each call fails once, alone and with all behind it.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "common/dates.h"
#include "common/keyed_collection.h"
#include "common/number_text.h"
#include "common/property_stream.h"
#include "tests/support/portable/failing_allocation.h"

namespace qvx {
namespace {

using Collection = KeyedCollection<Text>;

std::string Describe(const Collection& collection) {
    std::string text = std::to_string(collection.Count());
    for (long i = 1; i <= static_cast<long>(collection.Count()); ++i) {
        const Text& item = collection.At(i);
        text += ' ' + std::string(item.begin(), item.end()) + (collection.Contains(TextView(item)) ? "+" : "-");
    }
    return text + (collection.Contains(u"another of the keys") ? " found" : "");
}

std::unique_ptr<Collection> Filled() {
    auto collection = std::make_unique<Collection>();
    for (const TextView key : {u"a key with a long name", u"B", u"c", u"d"}) collection->Add(Text(key), key);
    return collection;
}

TEST(CommonAllocations, OfACollectionAddOrDoNot) {
    for (const auto& [name, call] : std::vector<std::pair<const char*, void (*)(Collection&)>>{
             {"with a key", [](Collection& c) { c.Add(u"another of the items", u"another of the keys"); }},
             {"without", [](Collection& c) { c.Add(u"another of the items"); }},
             {"removing", [](Collection& c) { c.Remove(TextView(u"a key with a long name")); }}}) {
        test::ExpectAllOrNothing(name, Filled, call, Describe);
    }
}

// Values that are made or read: all of one, or an error, and nothing left behind.
TEST(CommonAllocations, OfValuesAreTheirsAlone) {
    using namespace property_stream;
    const std::vector<Record> records{{u"A key with a long name", Text(u"and a text of its own, too")},
                                      {u"Font", FontSpec{u"A face with a long name", 12}},
                                      {u"Number", std::int32_t{7}}};
    const Bytes bytes = Write(records);
    test::ExpectAllOrNothing("writing properties", [&] { return Write(records); });
    test::ExpectAllOrNothing("reading properties",
                             [&] { return *ReadRecords(*ReadHeader(bytes), std::span(bytes).subspan(headerSize)); });
    test::ExpectAllOrNothing(
        "a date", [] { return FormatDate(*ParseDate(u"3 September 2024", DateSettings()), u"dddd d mmmm yyyy"); });
    test::ExpectAllOrNothing("a number", [] { return DoubleToText(-1234567.25); });
}

// An error can be told of when there is no memory, and passed on.
TEST(CommonAllocations, AreNotNeededToTellOfThem) {
    const test::FailingAllocation failing(0, test::Starvation::forGood);
    try {
        throw std::bad_alloc();
    } catch (...) {
        const RunTimeError error = CurrentError();
        const RunTimeError copy = error;
        EXPECT_EQ(copy.Number(), errors::outOfMemory);
        EXPECT_EQ(copy.Description(), u"Out of memory");
    }
    EXPECT_FALSE(failing.Happened());
}

}  // namespace
}  // namespace qvx
