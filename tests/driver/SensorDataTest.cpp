#include <gtest/gtest.h>

#include <initializer_list>
#include <vector>

#include "driver/SensorData.h"
#include "tests/driver/VectorLists.h"
#include "utilities/Vector.h"

using DeviceDriver::SensorData;
using Utilities::Vector;
using namespace DeviceDriverTest;

namespace {

SensorData WithRaw(std::initializer_list<std::initializer_list<long>> rows)
{
    Vector<Vector<long>> raw(rows.size());
    unsigned long i = 0;
    for (auto row : rows) {
        raw[i++] = VectorOf<long>(row);
    }
    SensorData sensor;
    sensor.SetGain(1);
    sensor.SetIntegrationTime(0.0204f);
    sensor.SetRaw(raw);
    return sensor;
}

SensorData WithRawRows(unsigned long count, const Vector<long>& row)
{
    Vector<Vector<long>> raw(count);
    for (unsigned long i = 0; i < count; ++i) {
        raw[i] = row;
    }
    SensorData sensor;
    sensor.SetRaw(raw);
    return sensor;
}

}

TEST(SensorDataTest, MeanCutsOffTowardZeroAndLeavesOneRawRow)
{
    SensorData sensor = WithRaw({{3, -3, 1, 100}, {4, -4, 1, 101}, {4, -4, 2, 101}});
    sensor.Mean();
    ASSERT_EQ(sensor.Raw().Size(), 1u);
    EXPECT_EQ(AsStd(sensor.Raw()[0]), (std::vector<long>{3, -3, 1, 100}));

    SensorData pair = WithRaw({{3, -3}, {4, -4}});
    pair.Mean();
    EXPECT_EQ(AsStd(pair.Raw()[0]), (std::vector<long>{3, -3}));

    SensorData empty;
    EXPECT_FALSE(empty.HasRaw());
    EXPECT_EQ(OutOfBoundText([&] { empty.Mean(); }), "Invalid raw data for mean value");
    EXPECT_EQ(OutOfBoundText([&] { empty.Raw(); }), "Unable to load raw data");
}

TEST(SensorDataTest, LinearizeEvaluatesThePolynomialInDoublePrecision)
{
    SensorData sensor = WithRaw({{0, 2, -1}, {10, 65535, 16777217}});
    sensor.Resize(5);
    sensor.Linearize(VectorOf<float>({1, 2, 3, 4}));
    ASSERT_EQ(sensor.RowCount(), 2u) << "one row for each raw row";
    EXPECT_EQ(sensor.CurrentRow(), 0u);
    EXPECT_EQ(sensor.Load()[0], 1.0f);
    EXPECT_EQ(sensor.Load()[1], 49.0f);
    EXPECT_EQ(sensor.Load()[2], -2.0f);
    sensor.NextRow();
    EXPECT_EQ(sensor.Load()[0], 4321.0f);

    const Vector<float> curve = VectorOf<float>({0.1f, 1.0001f, 1.3e-7f});
    SensorData single = WithRaw({{61234}});
    single.Linearize(curve);
    const double x = 61234.0;
    const float inDouble = static_cast<float>(
        (static_cast<double>(curve[2]) * x + static_cast<double>(curve[1])) * x + static_cast<double>(curve[0]));
    const float inFloat = (curve[2] * 61234.0f + curve[1]) * 61234.0f + curve[0];
    ASSERT_NE(inDouble, inFloat) << "the case must tell the precisions apart";
    EXPECT_EQ(single.Load()[0], inDouble);
}

TEST(SensorDataTest, LinearizeWithOneCoefficientPassesTheRawValueAndWithNoneFails)
{
    SensorData sensor = WithRaw({{7, -3, 16777217}});
    sensor.Linearize(VectorOf<float>({123.0f}));
    EXPECT_EQ(AsStd(sensor.Load()), (std::vector<float>{7.0f, -3.0f, 16777216.0f}));

    EXPECT_EQ(OutOfBoundText([&] { sensor.Linearize(Vector<float>(0)); }), "Unable to linearize");
    SensorData empty;
    EXPECT_EQ(OutOfBoundText([&] { empty.Linearize(VectorOf<float>({1})); }), "Invalid raw data for linearization");
}

TEST(SensorDataTest, MatrixReadsItsCoefficientsOnAcrossOutputsAndAnewForEachRow)
{
    SensorData sensor = WithRaw({{0, 1, 10, 100, 1000, 10000}, {0, 2, 20, 200, 2000, 20000}});
    sensor.Linearize(VectorOf<float>({0}));
    sensor.NextRow();
    sensor.MatrixMultiply(VectorOf<long>({1, 3}), VectorOf<long>({2, 3}), VectorOf<float>({1, 2, 3, 4, 5}));

    ASSERT_EQ(sensor.RowCount(), 2u);
    EXPECT_EQ(sensor.CurrentRow(), 1u);
    sensor.FirstRow();
    EXPECT_EQ(AsStd(sensor.Load()), (std::vector<float>{1 * 1 + 2 * 10, 3 * 100 + 4 * 1000 + 5 * 10000}));
    sensor.NextRow();
    EXPECT_EQ(AsStd(sensor.Load()), (std::vector<float>{1 * 2 + 2 * 20, 3 * 200 + 4 * 2000 + 5 * 20000}));

    SensorData cancelling = WithRaw({{0, 100000000, 1, -100000000}});
    cancelling.Linearize(VectorOf<float>({0}));
    cancelling.MatrixMultiply(VectorOf<long>({1}), VectorOf<long>({3}), VectorOf<float>({1, 1, 1}));
    EXPECT_EQ(AsStd(cancelling.Load()), std::vector<float>{1.0f}) << "summed in double precision";
}

TEST(SensorDataTest, MatrixRefusesMismatchedShapesAndMissingData)
{
    SensorData empty;
    EXPECT_EQ(OutOfBoundText([&] {
        empty.MatrixMultiply(VectorOf<long>({1, 2}), VectorOf<long>({1}), VectorOf<float>({1}));
    }),
        "Different vector length in matrix multiplication");
    EXPECT_EQ(
        OutOfBoundText([&] { empty.MatrixMultiply(VectorOf<long>({1}), VectorOf<long>({1}), VectorOf<float>({1})); }),
        "Invalid raw data for matrix multiplication");

    SensorData sensor = WithRaw({{0, 1, 2}});
    sensor.Linearize(VectorOf<float>({0}));
    EXPECT_EQ(OutOfBoundText([&] {
        sensor.MatrixMultiply(VectorOf<long>({2}), VectorOf<long>({2}), VectorOf<float>({1, 1}));
    }),
        "vector index >= vector size");
    EXPECT_EQ(OutOfBoundText([&] {
        sensor.MatrixMultiply(VectorOf<long>({0}), VectorOf<long>({3}), VectorOf<float>({1, 1}));
    }),
        "vector index >= vector size");
}

TEST(SensorDataTest, RawStatisticsLeavePixelZeroOut)
{
    SensorData none;
    EXPECT_EQ(none.MaxRaw(), 0);
    EXPECT_EQ(none.MeanRaw(), 0);

    SensorData sensor = WithRaw({{60000, 10, 20, 30}, {0, 40, 50, 62}});
    EXPECT_EQ(sensor.MaxRaw(), 62);
    EXPECT_EQ(sensor.MeanRaw(), 35) << "212 / 2 / 3 = 35.33";

    EXPECT_EQ(WithRaw({{9, 1, 2}, {9, 2, 5}}).MeanRaw(), 3) << "2.5 rounds up";
    EXPECT_EQ(WithRaw({{9, 1, 2}, {9, 2, 4}}).MeanRaw(), 2);
    EXPECT_EQ(WithRaw({{9, -7, -8}}).MeanRaw(), -7) << "-7.5 + 0.5 cut off";
    EXPECT_EQ(WithRaw({{9, -200000, -300000}}).MaxRaw(), -100000) << "the search starts at -100000";
}

TEST(SensorDataTest, SaturationCountsPixelZeroAndOnlyValuesAboveTheLimit)
{
    Vector<long> row = Filled(128, 1000L);
    for (unsigned long pixel = 0; pixel < 10; ++pixel) {
        row[pixel] = 62001;
    }
    row[10] = 62000;
    SensorData sensor = WithRawRows(1, row);
    EXPECT_FALSE(sensor.IsSaturated(62000, 10)) << "exactly ten above the limit";
    row[11] = 62001;
    EXPECT_TRUE(WithRawRows(1, row).IsSaturated(62000, 10));
    EXPECT_FALSE(SensorData().IsSaturated(62000, 10));

    SensorData twoRows = WithRawRows(2, Filled(128, 1000L));
    Vector<Vector<long>> raw = twoRows.Raw();
    raw[0][0] = 70000;
    raw[1][0] = 70000;
    twoRows.SetRaw(raw);
    EXPECT_TRUE(twoRows.IsSaturated(62000, 1)) << "over all rows";

    EXPECT_FALSE(WithRawRows(512, Filled(128, 65000L)).IsSaturated(62000, 10)) << "the count wraps at 65536";
}
