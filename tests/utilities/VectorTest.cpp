#include <gtest/gtest.h>

#include "tests/utilities/FailureText.h"
#include "utilities/ExceptionOutOfBound.h"
#include "utilities/Vector.h"
#include "utilities/VectorIterator.h"

using Utilities::ExceptionOutOfBound;
using Utilities::Vector;
using Utilities::VectorIterator;

namespace {

constexpr unsigned long beforeFirst = 4294967295UL;

Vector<long> Numbered(unsigned long size)
{
    Vector<long> numbers(size);
    for (unsigned long index = 0; index < size; ++index) {
        numbers[index] = static_cast<long>(index) * 10;
    }
    return numbers;
}

}

TEST(VectorTest, EveryIndexIsChecked)
{
    const Vector<long> constant = Numbered(3);
    EXPECT_EQ(constant[2], 20);
    EXPECT_EQ(FailureText<ExceptionOutOfBound>([&] { constant[3]; }), "vector index >= vector size");

    Vector<long> empty(0);
    EXPECT_EQ(FailureText<ExceptionOutOfBound>([&] { empty[0]; }), "vector index >= vector size");
    Vector<long> changeable = Numbered(3);
    EXPECT_EQ(FailureText<ExceptionOutOfBound>([&] { changeable[3]; }), "vector index >= vector size");
}

TEST(VectorTest, CopiesAreDeepAndAssignmentTakesTheSize)
{
    Vector<long> source = Numbered(4);
    Vector<long> copy(source);
    copy[0] = 99;
    EXPECT_EQ(source[0], 0);

    Vector<long> target(2);
    target = source;
    EXPECT_EQ(target.Size(), 4u);
    EXPECT_EQ(target[3], 30);
    target[3] = 1;
    EXPECT_EQ(source[3], 30);

    Vector<long>& alias = source;
    source = alias;
    EXPECT_EQ(source[3], 30);

    Vector<Vector<long>> nested(2);
    nested[0] = Numbered(3);
    Vector<Vector<long>> nestedCopy(nested);
    nestedCopy[0][1] = -1;
    EXPECT_EQ(nested[0][1], 10);
}

TEST(VectorTest, EqualityNeedsSameSizeAndElementsInOrder)
{
    Vector<long> left = Numbered(3);
    EXPECT_TRUE(left == left);
    EXPECT_TRUE(left == Numbered(3));
    EXPECT_FALSE(left == Numbered(4));
    Vector<long> changed = Numbered(3);
    changed[2] = 0;
    EXPECT_FALSE(left == changed);
    EXPECT_TRUE(Vector<long>(0) == Vector<long>(0));
}

TEST(VectorTest, IteratorWalksForwardAndBackThroughThePositionBeforeTheFirst)
{
    Vector<long> numbers = Numbered(3);
    VectorIterator<long> iterator = numbers.Begin();
    EXPECT_EQ(iterator.Position(), 0u);
    EXPECT_EQ(iterator.Current(), 0);

    --iterator;
    EXPECT_EQ(iterator.Position(), beforeFirst);
    EXPECT_FALSE(iterator.IsValid());
    EXPECT_EQ(FailureText<ExceptionOutOfBound>([&] { iterator.Current(); }), "vector index >= vector size");
    --iterator;
    EXPECT_EQ(iterator.Position(), beforeFirst);
    ++iterator;
    EXPECT_EQ(iterator.Position(), 0u);

    ++iterator;
    ++iterator;
    EXPECT_EQ(iterator.Current(), 20);
    iterator.Current() = 21;
    EXPECT_EQ(numbers[2], 21);
    ++iterator;
    EXPECT_FALSE(iterator.IsValid());
    ++iterator;
    EXPECT_EQ(iterator.Position(), 3u);
    --iterator;
    EXPECT_EQ(iterator.Current(), 21);

    VectorIterator<long> pastTheEnd(7, numbers);
    EXPECT_EQ(pastTheEnd.Position(), 2u);

    const Vector<long>& constant = numbers;
    EXPECT_EQ(constant.Begin().Current(), 0);
}

TEST(VectorTest, IteratorOnEmptyVectorStandsBeforeTheFirst)
{
    Vector<long> empty(0);
    VectorIterator<long> iterator = empty.Begin();
    EXPECT_EQ(iterator.Position(), beforeFirst);
    EXPECT_FALSE(iterator.IsValid());
    EXPECT_EQ(FailureText<ExceptionOutOfBound>([&] { iterator.Current(); }), "MapIterator is not valid");
    ++iterator;
    EXPECT_EQ(iterator.Position(), 0u);
    EXPECT_FALSE(iterator.IsValid());
}
