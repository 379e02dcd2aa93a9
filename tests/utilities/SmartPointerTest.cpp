#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <utility>
#include <vector>

#include "diagnostics/String.h"
#include "tests/utilities/FailureText.h"
#include "utilities/ExceptionNullpointer.h"
#include "utilities/SmartPointer.h"

using Utilities::ExceptionNullpointer;
using Utilities::SmartPointer;
using Utilities::SmartPointerCast;

namespace {

std::atomic<int> destroyed{0};

class Base {
public:
    virtual ~Base() { ++destroyed; }
    int value = 1;
};

class Derived : public Base {
public:
    ~Derived() override { ++destroyed; }
    int extra = 2;
};

class Unrelated {
public:
    virtual ~Unrelated() = default;
};

class SmartPointerTest : public testing::Test {
protected:
    void SetUp() override { destroyed = 0; }
};

}

TEST_F(SmartPointerTest, NullPointerFailsOnAccess)
{
    SmartPointer<Base> empty;
    SmartPointer<Base> fromNull(nullptr);
    EXPECT_TRUE(empty.IsNull());
    EXPECT_TRUE(fromNull.IsNull());
    EXPECT_EQ(FailureText<ExceptionNullpointer>([&] { (void)empty->value; }), "Failed to access to nullpointer.");
    EXPECT_EQ(FailureText<ExceptionNullpointer>([&] { (void)*fromNull; }), "Failed to dereference nullpointer.");

    SmartPointer<Base> copyOfNull(empty);
    copyOfNull = fromNull;
    EXPECT_TRUE(copyOfNull.IsNull());
    EXPECT_TRUE(empty.GetValueString().IsEmpty());
}

TEST_F(SmartPointerTest, LastCopyOrAssignmentDeletesThroughTheVirtualDestructor)
{
    {
        SmartPointer<Base> first(new Derived());
        {
            SmartPointer<Base> second(first);
            SmartPointer<Base> third;
            third = second;
            const SmartPointer<Base>& alias = third;
            third = alias;
            (*third).value = 5;
        }
        EXPECT_EQ(destroyed, 0);
        EXPECT_EQ(first->value, 5);
    }
    EXPECT_EQ(destroyed, 2);

    // Assignment releases what the target held.
    SmartPointer<Base> target(new Base());
    SmartPointer<Base> other(new Base());
    target = other;
    EXPECT_EQ(destroyed, 3);
    other = SmartPointer<Base>();
    EXPECT_EQ(destroyed, 3);
    target = SmartPointer<Base>();
    EXPECT_EQ(destroyed, 4);

    // A move hands the share on without counting, and the last holder still deletes.
    SmartPointer<Base> moved(new Base());
    SmartPointer<Base> taker(std::move(moved));
    EXPECT_EQ(taker.UseCount(), 1u);
    target = std::move(taker);
    EXPECT_EQ(target.UseCount(), 1u);
    target = SmartPointer<Base>();
    EXPECT_EQ(destroyed, 5);
}

TEST_F(SmartPointerTest, CastsShareTheCount)
{
    SmartPointer<Derived> derived;
    {
        SmartPointer<Base> base(new Derived());
        derived = SmartPointerCast<Derived>(base);
        ASSERT_FALSE(derived.IsNull());
        EXPECT_EQ(derived->extra, 2);
        EXPECT_TRUE(SmartPointerCast<Unrelated>(base).IsNull());
    }
    EXPECT_EQ(destroyed, 0);
    SmartPointer<Base> upcast = derived;
    derived = SmartPointer<Derived>();
    EXPECT_EQ(destroyed, 0);
    upcast = SmartPointer<Base>();
    EXPECT_EQ(destroyed, 2);

    EXPECT_TRUE(SmartPointerCast<Derived>(SmartPointer<Base>()).IsNull());
    EXPECT_TRUE(SmartPointerCast<Derived>(SmartPointer<Base>(new Base())).IsNull());
    EXPECT_EQ(destroyed, 3);
}

TEST_F(SmartPointerTest, CopiesMadeAndDroppedOnManyThreadsDeleteOnce)
{
    constexpr int threadCount = 8;
    constexpr int copiesPerThread = 20000;
    SmartPointer<Base> shared(new Derived());
    {
        std::vector<std::thread> threads;
        for (int thread = 0; thread < threadCount; ++thread) {
            threads.emplace_back([shared, thread] {
                std::vector<SmartPointer<Base>> held;
                for (int copy = 0; copy < copiesPerThread; ++copy) {
                    if (thread % 2 == 0) {
                        held.push_back(shared);
                    } else {
                        held.push_back(SmartPointerCast<Derived>(shared));
                    }
                    if (held.size() > 16) {
                        held.clear();
                    }
                }
            });
        }
        shared = SmartPointer<Base>();
        for (std::thread& thread : threads) {
            thread.join();
        }
    }
    EXPECT_EQ(destroyed, 2);
}
