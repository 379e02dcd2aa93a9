#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

#include "driver/BasicData.h"
#include "driver/DarkData.h"
#include "tests/driver/VectorLists.h"

using DeviceDriver::BasicData;
using DeviceDriver::DarkData;
using namespace DeviceDriverTest;

namespace {

BasicData Series(
    std::initializer_list<std::initializer_list<float>> rows, uint32_t gain = 1, float integrationTime = 0.1f)
{
    BasicData data;
    data.SetGain(gain);
    data.SetIntegrationTime(integrationTime);
    data.Resize(rows.size());
    for (auto row : rows) {
        data.Store(VectorOf<float>(row));
        data.NextRow();
    }
    data.FirstRow();
    return data;
}

struct Operation {
    const char* verb;
    std::function<void(BasicData&, const BasicData&)> apply;
};

std::vector<Operation> Operations()
{
    return {{"subtract", [](BasicData& a, const BasicData& b) { a.Subtract(b); }},
        {"multiply", [](BasicData& a, const BasicData& b) { a.Multiply(b); }},
        {"divide", [](BasicData& a, const BasicData& b) { a.Divide(b); }}};
}

}

TEST(BasicDataTest, RowsAreReachedThroughTheCurrentRow)
{
    BasicData data;
    EXPECT_FALSE(data.IsValid());
    EXPECT_EQ(OutOfBoundText([&] { data.Store(VectorOf<float>({1})); }), "Unable to store data");
    EXPECT_EQ(OutOfBoundText([&] { data.Load(); }), "Unable to load data");

    data.Resize(3);
    EXPECT_TRUE(data.IsValid());
    EXPECT_EQ(data.Load().Size(), 0u) << "new rows are empty";
    data.Store(VectorOf<float>({1, 2}));
    data.NextRow();
    data.Store(VectorOf<float>({3}));
    data.NextRow();
    data.Store(VectorOf<float>({5}));
    data.NextRow();
    data.NextRow();
    EXPECT_EQ(data.CurrentRow(), 2u) << "NextRow stays on the last row";
    EXPECT_EQ(AsStd(data.Load()), std::vector<float>{5});

    data.Resize(4);
    EXPECT_EQ(data.CurrentRow(), 0u);
    EXPECT_EQ(AsStd(data.Load()), (std::vector<float>{1, 2}));
    data.NextRow();
    EXPECT_EQ(AsStd(data.Load()), std::vector<float>{3});
    data.Resize(1);
    EXPECT_EQ(data.RowCount(), 1u);
    data.NextRow();
    EXPECT_EQ(AsStd(data.Load()), (std::vector<float>{1, 2}));

    data.Resize(0);
    EXPECT_FALSE(data.IsValid());
}

TEST(BasicDataTest, ArithmeticChecksSizeThenGainThenIntegrationTime)
{
    for (const Operation& operation : Operations()) {
        const std::string verb = operation.verb;
        BasicData a = Series({{1, 2}}, 1, 0.1f);
        EXPECT_EQ(OutOfBoundText([&] {
            operation.apply(a, Series({{1, 2, 3}}, 0, 0.5f));
        }),
            "Unable to " + verb + " (different vector size)");
        EXPECT_EQ(OutOfBoundText([&] {
            operation.apply(a, Series({{1, 2}}, 0, 0.5f));
        }),
            "Unable to " + verb + " (different gain)");
        EXPECT_EQ(OutOfBoundText([&] {
            operation.apply(a, Series({{1, 2}}, 1, 0.102f));
        }),
            "Unable to " + verb + " (different integration time)");
        BasicData later = Series({{1, 2}}, 1, 0.102f);
        EXPECT_EQ(OutOfBoundText([&] {
            operation.apply(later, Series({{1, 2}}, 1, 0.1f));
        }),
            "Unable to " + verb + " (different integration time)");
        EXPECT_EQ(AsStd(a.Load()), (std::vector<float>{1, 2})) << "a refused " << verb << " changes nothing";

        EXPECT_EQ(OutOfBoundText([&] { operation.apply(a, Series({{1, 2}}, 1, 0.1005f)); }), "no failure");
        BasicData slightlyLonger = Series({{1, 2}}, 1, 0.1005f);
        EXPECT_EQ(OutOfBoundText([&] { operation.apply(slightlyLonger, Series({{1, 2}}, 1, 0.1f)); }), "no failure");
    }
}

TEST(BasicDataTest, ArithmeticWorksOnTheCurrentRowsOnly)
{
    BasicData sample = Series({{10, 20, 30}, {1, 1, 1}});
    const BasicData dark = Series({{1, 2, 3}, {4, 5, 6}});
    BasicData darkOnSecondRow = dark;
    darkOnSecondRow.NextRow();

    sample.Subtract(darkOnSecondRow);
    EXPECT_EQ(AsStd(sample.Load()), (std::vector<float>{6, 15, 24}));
    sample.NextRow();
    EXPECT_EQ(AsStd(sample.Load()), (std::vector<float>{1, 1, 1}));

    sample.FirstRow();
    sample.Multiply(Series({{0.5f, 2, -1}}));
    EXPECT_EQ(AsStd(sample.Load()), (std::vector<float>{3, 30, -24}));
}

TEST(BasicDataTest, DivideStopsAtTheFirstZeroAndKeepsWhatItDivided)
{
    BasicData sample = Series({{8, 9, 10, 12}});
    EXPECT_EQ(OutOfBoundText([&] { sample.Divide(Series({{2, 3, 0, 4}})); }), "Unable to divide (division by zero)");
    EXPECT_EQ(AsStd(sample.Load()), (std::vector<float>{4, 3, 10, 12}));

    sample.Divide(Series({{4, 3, 10, 3}}));
    EXPECT_EQ(AsStd(sample.Load()), (std::vector<float>{1, 1, 1, 4}));
}

TEST(BasicDataTest, DarkLimitWidensForGainZeroAndVeryLongIntegrationTimes)
{
    DarkData dark;
    EXPECT_EQ(dark.DarkLevel(), 100000);
    EXPECT_FALSE(dark.IsValid(3000)) << "no rows";

    dark = Series({{1200, 1210}}, 1, 0.1f);
    EXPECT_EQ(dark.DarkLevel(), 100000) << "an assigned series has no known level";
    EXPECT_FALSE(dark.IsValid(3000));

    dark.SetDarkLevel(2999);
    EXPECT_TRUE(dark.IsValid(3000));
    dark.SetDarkLevel(3000);
    EXPECT_FALSE(dark.IsValid(3000)) << "the level must lie below the limit";

    dark.SetDarkLevel(20000);
    EXPECT_FALSE(dark.IsValid(3000));
    dark.SetGain(0);
    EXPECT_TRUE(dark.IsValid(3000));
    dark.SetDarkLevel(30000);
    EXPECT_FALSE(dark.IsValid(3000));

    dark.SetGain(1);
    dark.SetDarkLevel(3500);
    dark.SetIntegrationTime(4.0f);
    EXPECT_FALSE(dark.IsValid(3000)) << "seconds, so 4 s is no long integration time";
    dark.SetIntegrationTime(1000.5f);
    EXPECT_TRUE(dark.IsValid(3000));
    dark.SetGain(0);
    dark.SetDarkLevel(89999);
    EXPECT_TRUE(dark.IsValid(3000));

    dark.SetDarkLevel(-5);
    EXPECT_TRUE(dark.IsValid(0xFFFFFFFFu)) << "the limit is compared as the number it is";

    DarkData copy(dark);
    EXPECT_EQ(copy.DarkLevel(), -5);
}
