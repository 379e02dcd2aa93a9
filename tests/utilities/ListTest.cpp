#include <gtest/gtest.h>

#include <vector>

#include "tests/utilities/FailureText.h"
#include "utilities/ExceptionOutOfBound.h"
#include "utilities/List.h"
#include "utilities/ListIterator.h"

using Utilities::ExceptionOutOfBound;
using Utilities::List;
using Utilities::ListIterator;

namespace {

// An element that counts its living copies, so that a test sees when a node is freed.
struct Tracked {
    static int alive;

    Tracked(int id = 0) : id(id) { ++alive; }
    Tracked(const Tracked& other) : id(other.id) { ++alive; }
    Tracked& operator=(const Tracked&) = default;
    ~Tracked() { --alive; }

    int id;
};

int Tracked::alive = 0;

class ListTest : public testing::Test {
protected:
    void SetUp() override { Tracked::alive = 0; }
    void TearDown() override { EXPECT_EQ(Tracked::alive, 0); }

    static List<Tracked> ListOf(std::initializer_list<int> ids)
    {
        List<Tracked> list;
        for (int id : ids) {
            list.Append(Tracked(id));
        }
        return list;
    }

    template<class Element>
    static std::vector<int> IdsOf(const List<Element>& list)
    {
        std::vector<int> ids;
        for (ListIterator<const Element> iterator = list.Begin(); iterator.IsValid(); ++iterator) {
            ids.push_back(iterator->id);
        }
        return ids;
    }
};

const char* const incrementFailure = "ListIterator::operator++(): Can't increment iterator because it's invalid";
const char* const currentFailure = "ListIterator::Current(): Can't return value because iterator is invalid";
const char* const arrowFailure = "ListIterator::operator->(): Can't return value because iterator is invalid";
const char* const removeFailure = "List::Remove(): Invalid Iterator used to remove element.";

}

TEST_F(ListTest, AppendKeepsOrderAndRemoveAdvancesTheIterator)
{
    List<Tracked> list = ListOf({1, 2, 3});
    EXPECT_EQ(list.Size(), 3u);
    ListIterator<Tracked> appended = list.Append(Tracked(4));
    EXPECT_EQ(appended.Current().id, 4);
    EXPECT_EQ(IdsOf(list), (std::vector<int>{1, 2, 3, 4}));

    ListIterator<Tracked> iterator = list.Begin();
    ++iterator;
    EXPECT_EQ(list.Remove(iterator).id, 2);
    EXPECT_EQ(iterator->id, 3);
    EXPECT_EQ(list.Size(), 3u);
    EXPECT_EQ(IdsOf(list), (std::vector<int>{1, 3, 4}));

    ++iterator;
    EXPECT_EQ(list.Remove(iterator).id, 4);
    EXPECT_FALSE(iterator.IsValid());
    EXPECT_EQ(IdsOf(list), (std::vector<int>{1, 3}));
    EXPECT_EQ(list.Append(Tracked(5))->id, 5);
    EXPECT_EQ(IdsOf(list), (std::vector<int>{1, 3, 5}));
}

TEST_F(ListTest, InvalidIteratorsFailWithTheirTexts)
{
    List<Tracked> list;
    ListIterator<Tracked> iterator = list.Begin();
    EXPECT_FALSE(iterator.IsValid());
    EXPECT_EQ(FailureText<ExceptionOutOfBound>([&] { ++iterator; }), incrementFailure);
    EXPECT_EQ(FailureText<ExceptionOutOfBound>([&] { iterator.Current(); }), currentFailure);
    EXPECT_EQ(FailureText<ExceptionOutOfBound>([&] { (void)iterator->id; }), arrowFailure);
    EXPECT_EQ(FailureText<ExceptionOutOfBound>([&] { list.Remove(iterator); }), removeFailure);
}

TEST_F(ListTest, RemovingUnderASecondIteratorInvalidatesItAndFreesTheNodeLater)
{
    List<Tracked> list = ListOf({1, 2, 3});
    const int elementsInList = Tracked::alive;
    ListIterator<Tracked> remover = list.Begin();
    ++remover;
    {
        ListIterator<Tracked> bystander = remover;
        EXPECT_EQ(list.Remove(remover).id, 2);
        EXPECT_EQ(remover->id, 3);
        EXPECT_FALSE(bystander.IsValid());
        EXPECT_EQ(FailureText<ExceptionOutOfBound>([&] { list.Remove(bystander); }), removeFailure);
        EXPECT_EQ(Tracked::alive, elementsInList);
        EXPECT_EQ(list.Size(), 2u);
        EXPECT_EQ(IdsOf(list), (std::vector<int>{1, 3}));
    }
    EXPECT_EQ(Tracked::alive, elementsInList);

    ListIterator<Tracked> first = list.Begin();
    list.Remove(first);
    EXPECT_EQ(Tracked::alive, elementsInList - 2);
    EXPECT_EQ(IdsOf(list), (std::vector<int>{3}));
}

// The bystander keeps the removed node alive; GCC 12 at -O3 follows the path that deletes a node no
// iterator holds and warns of a use after free (-Wuse-after-free) that cannot happen here.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wuse-after-free"
#endif
TEST_F(ListTest, RemovedNodeWithIteratorsGoesWithTheList)
{
    ListIterator<Tracked> bystander;
    {
        List<Tracked> list = ListOf({1, 2});
        ListIterator<Tracked> remover = list.Begin();
        bystander = remover;
        list.Remove(remover);
        EXPECT_FALSE(bystander.IsValid());
        EXPECT_EQ(list.Begin()->id, 2);
        EXPECT_EQ(IdsOf(list), (std::vector<int>{2}));
    }
    EXPECT_EQ(Tracked::alive, 1);
    EXPECT_FALSE(bystander.IsValid());
}
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic pop
#endif

TEST_F(ListTest, IteratorOutlivingItsListIsInvalidAndFreesItsNode)
{
    auto list = std::make_unique<List<Tracked>>(ListOf({1, 2, 3}));
    ListIterator<Tracked> survivor = list->Begin();
    ++survivor;
    ListIterator<Tracked> copy = survivor;
    list.reset();
    EXPECT_EQ(Tracked::alive, 1);
    EXPECT_FALSE(survivor.IsValid());
    EXPECT_FALSE(copy.IsValid());
    EXPECT_EQ(FailureText<ExceptionOutOfBound>([&] { ++survivor; }), incrementFailure);
    copy = ListIterator<Tracked>();
    EXPECT_EQ(Tracked::alive, 1);
}

TEST_F(ListTest, ClearOrphansTheNodesThatIteratorsStandOn)
{
    List<Tracked> list = ListOf({1, 2});
    ListIterator<Tracked> iterator = list.Begin();
    list.Clear();
    EXPECT_EQ(list.Size(), 0u);
    EXPECT_FALSE(iterator.IsValid());
    EXPECT_FALSE(list.Begin().IsValid());
    EXPECT_EQ(Tracked::alive, 1);
    list.Append(Tracked(7));
    EXPECT_EQ(IdsOf(list), (std::vector<int>{7}));
}

TEST_F(ListTest, CopiesAreDeepAndLeaveRemovedNodesBehind)
{
    List<Tracked> source = ListOf({1, 2, 3});
    ListIterator<Tracked> remover = source.Begin();
    ListIterator<Tracked> bystander = remover;
    source.Remove(remover);

    List<Tracked> copy(source);
    EXPECT_EQ(copy.Size(), 2u);
    EXPECT_EQ(IdsOf(copy), (std::vector<int>{2, 3}));
    copy.Begin()->id = 20;
    EXPECT_EQ(IdsOf(source), (std::vector<int>{2, 3}));

    List<Tracked> assigned = ListOf({9});
    ListIterator<Tracked> onOldNode = assigned.Begin();
    assigned = copy;
    EXPECT_FALSE(onOldNode.IsValid());
    EXPECT_EQ(IdsOf(assigned), (std::vector<int>{20, 3}));
    EXPECT_EQ(assigned.Size(), 2u);
}
