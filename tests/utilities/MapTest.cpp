#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/utilities/FailureText.h"
#include "utilities/ExceptionOutOfBound.h"
#include "utilities/Map.h"
#include "utilities/MapIterator.h"
#include "utilities/String.h"
#include "utilities/Vector.h"

using Utilities::ExceptionOutOfBound;
using Utilities::Map;
using Utilities::MapIterator;
using Utilities::String;
using Utilities::Vector;

namespace {

const char* const missingKeyFailure = "Not a valid key for 'operator[key] const' ";

template<class V>
std::vector<std::string> KeysInOrder(const Map<String, V>& map)
{
    std::vector<std::string> keys;
    for (MapIterator<String, const V> entry = map.Begin(); entry.IsValid(); ++entry) {
        keys.push_back(entry.Key().CString());
    }
    return keys;
}

}

TEST(MapTest, IndexingCreatesEntriesThatStay)
{
    Map<String, long> map;
    EXPECT_EQ(map.Size(), 0u);
    EXPECT_EQ(map[String("missing")], 0);
    EXPECT_EQ(map.Size(), 1u);

    long& value = map[String("kept")];
    value = 42;
    for (long index = 0; index < 200; ++index) {
        map[String(index)] = index;
    }
    EXPECT_EQ(value, 42);
    EXPECT_EQ(map[String("kept")], 42);
    map[String("kept")] = 43;
    EXPECT_EQ(value, 43);
    EXPECT_EQ(map.Size(), 202u);
    EXPECT_EQ(map[String("199")], 199);
    EXPECT_EQ(KeysInOrder(map).size(), 202u);
}

TEST(MapTest, ConstIndexingAndFindFailOnEmptyMapEmptyBucketAndMissingKey)
{
    const String a("A");
    const String v("v");
    const String b("B");
    ASSERT_EQ(a.Hash(53), v.Hash(53));
    ASSERT_NE(a.Hash(53), b.Hash(53));

    Map<String, String> map;
    const Map<String, String>& constant = map;
    EXPECT_EQ(FailureText<ExceptionOutOfBound>([&] { constant[a]; }), missingKeyFailure);
    EXPECT_FALSE(map.Find(a).IsValid());

    map[a] = String("first");
    EXPECT_EQ(FailureText<ExceptionOutOfBound>([&] { constant[b]; }), missingKeyFailure);
    EXPECT_EQ(FailureText<ExceptionOutOfBound>([&] { constant[v]; }), missingKeyFailure);
    EXPECT_FALSE(constant.Find(b).IsValid());
    EXPECT_FALSE(map.Find(v).IsValid());
    EXPECT_EQ(map.Size(), 1u);

    EXPECT_EQ(constant[a], String("first"));
    MapIterator<String, String> found = map.Find(a);
    found.Value() = String("changed");
    EXPECT_EQ(constant[a], String("changed"));
}

TEST(MapTest, IterationGoesByBucketThenByInsertion)
{
    // "7" lies in bucket 2, "A" and "v" both in bucket 12, "B" in bucket 13.
    Map<String, long> map;
    map[String("B")] = 1;
    map[String("v")] = 2;
    map[String("A")] = 3;
    map[String("7")] = 4;
    EXPECT_EQ(KeysInOrder(map), (std::vector<std::string>{"7", "v", "A", "B"}));

    Map<String, long> reversed;
    reversed[String("A")] = 3;
    reversed[String("v")] = 2;
    EXPECT_EQ(KeysInOrder(reversed), (std::vector<std::string>{"A", "v"}));
}

TEST(MapTest, InvalidIteratorFailsWithItsTexts)
{
    Map<String, long> map;
    map[String("only")] = 1;
    MapIterator<String, long> entry = map.Begin();
    ++entry;
    EXPECT_FALSE(entry.IsValid());
    EXPECT_EQ(FailureText<ExceptionOutOfBound>([&] { entry.Key(); }), "MapIterator is not valid");
    EXPECT_EQ(FailureText<ExceptionOutOfBound>([&] { entry.Value(); }), "MapIterator is not valid");
    EXPECT_EQ(FailureText<ExceptionOutOfBound>([&] { ++entry; }),
        "ListIterator::operator++(): Can't increment iterator because it's invalid");
}

TEST(MapTest, CopiesAreDeep)
{
    Map<String, Map<String, String>> source;
    source[String("outer")][String("inner")] = String("original");

    Map<String, Map<String, String>> copy(source);
    copy[String("outer")][String("inner")] = String("changed");
    copy[String("added")];
    EXPECT_EQ(source[String("outer")][String("inner")], String("original"));
    EXPECT_EQ(source.Size(), 1u);

    Map<String, Map<String, String>> assigned;
    assigned[String("old")];
    assigned = copy;
    EXPECT_EQ(assigned.Size(), 2u);
    EXPECT_FALSE(assigned.Find(String("old")).IsValid());
    assigned[String("outer")][String("inner")] = String("again");
    EXPECT_EQ(copy[String("outer")][String("inner")], String("changed"));

    Map<String, Map<String, String>>& alias = assigned;
    assigned = alias;
    EXPECT_EQ(assigned[String("outer")][String("inner")], String("again"));

    assigned = Map<String, Map<String, String>>();
    EXPECT_EQ(assigned.Size(), 0u);
    EXPECT_FALSE(assigned.Begin().IsValid());
}

TEST(MapTest, EqualityIgnoresOrderButNeedsEqualValues)
{
    Map<String, long> left;
    left[String("A")] = 1;
    left[String("v")] = 2;
    Map<String, long> right;
    right[String("v")] = 2;
    right[String("A")] = 1;
    EXPECT_TRUE(left == right);

    right[String("A")] = 3;
    EXPECT_FALSE(left == right);
    right[String("A")] = 1;
    right[String("B")] = 0;
    EXPECT_FALSE(left == right);

    Map<String, long> sameSizeOtherKey;
    sameSizeOtherKey[String("A")] = 1;
    sameSizeOtherKey[String("B")] = 2;
    EXPECT_FALSE(left == sameSizeOtherKey);
    EXPECT_TRUE((Map<String, long>() == Map<String, long>()));
}

TEST(MapTest, IteratorOutlivingItsMapIsInvalid)
{
    auto map = std::make_unique<Map<String, Vector<String>>>();
    (*map)[String("first")] = Vector<String>(2);
    (*map)[String("second")] = Vector<String>(3);
    MapIterator<String, Vector<String>> entry = map->Begin();
    map.reset();
    EXPECT_FALSE(entry.IsValid());
    EXPECT_EQ(FailureText<ExceptionOutOfBound>([&] { entry.Value(); }), "MapIterator is not valid");
}
