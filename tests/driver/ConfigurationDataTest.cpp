#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "driver/ConfigurationData.h"
#include "driver/DataMember.h"
#include "tests/driver/VectorLists.h"
#include "utilities/MapIterator.h"
#include "utilities/String.h"
#include "utilities/Vector.h"

using DeviceDriver::ConfigurationData;
using DeviceDriver::DataMember;
using Utilities::String;
using Utilities::Vector;
using namespace DeviceDriverTest;

TEST(ConfigurationDataTest, MissingItemsRaiseTheirTexts)
{
    ConfigurationData data;
    data.SetU32(1204, 40000);
    uint32_t u32 = 0;
    float real = 0.0f;
    Vector<long> integers(0);
    Vector<float> floats(0);

    const std::string requested = "Requested data is not available (ID 1205)";
    EXPECT_EQ(OutOfBoundText([&] { data.GetU32(1205, u32); }), requested);
    EXPECT_EQ(OutOfBoundText([&] { data.GetU32(1205, u32, true); }), requested);
    EXPECT_EQ(OutOfBoundText([&] { data.GetFloat(1205, real, true); }), requested);
    EXPECT_EQ(OutOfBoundText([&] { data.GetU32Vector(1205, integers, true); }), requested);
    EXPECT_EQ(OutOfBoundText([&] { data.GetFloatVector(1205, floats, false); }), requested);
    EXPECT_EQ(OutOfBoundText([&] { data.Mark(1205, true); }), requested);

    const std::string mapText = "Not a valid key for 'operator[key] const' ";
    EXPECT_EQ(OutOfBoundText([&] { data.TypeOf(1205); }), mapText);
    EXPECT_EQ(OutOfBoundText([&] { data.SizeOf(1205); }), mapText);

    EXPECT_EQ(data.Count(), 1u) << "a failed lookup must not make an item";
    EXPECT_EQ(OutOfBoundText([&] { data.GetFloat(1204, real); }), "vector index >= vector size")
        << "a u32 item has no float";
}

TEST(ConfigurationDataTest, SettersClearTheMarkAndGettersClearItOnlyWhenAsked)
{
    ConfigurationData data;
    data.SetFloat(1213, 8.0f);
    EXPECT_TRUE(AsStd(data.MarkedIds()).empty());

    data.Mark(1213, true);
    EXPECT_EQ(AsStd(data.MarkedIds()), std::vector<uint16_t>{1213});

    float value = 0.0f;
    data.GetFloat(1213, value, false);
    EXPECT_EQ(value, 8.0f);
    EXPECT_EQ(data.MarkedIds().Size(), 1u);
    data.GetFloat(1213, value, true);
    EXPECT_EQ(data.MarkedIds().Size(), 0u);

    data.SetU32(2000, 1);
    data.SetU32Vector(1002, VectorOf<long>({1, 4, 8}));
    data.MarkAll(true);
    EXPECT_EQ(data.MarkedIds().Size(), 3u);
    data.SetU32(2000, 0);
    const std::vector<uint16_t> marked = AsStd(data.MarkedIds());
    EXPECT_EQ(std::set<uint16_t>(marked.begin(), marked.end()), (std::set<uint16_t>{1002, 1213}));
    Vector<long> first(0);
    data.GetU32Vector(1002, first, true);
    EXPECT_EQ(AsStd(data.MarkedIds()), std::vector<uint16_t>{1213});
    data.MarkAll(false);
    EXPECT_EQ(data.MarkedIds().Size(), 0u);
}

TEST(ConfigurationDataTest, TypesAndSizesFollowTheLastSetter)
{
    ConfigurationData data;
    data.SetU32(1205, 2500);
    data.SetU32Vector(1003, VectorOf<long>({3, 4, 3}));
    data.SetFloat(1221, 0.0068f);
    data.SetFloatVector(1100, Vector<float>(36));

    EXPECT_EQ(data.TypeOf(1205), DataMember::typeU32);
    EXPECT_EQ(data.TypeOf(1003), DataMember::typeU32Vector);
    EXPECT_EQ(data.TypeOf(1221), DataMember::typeFloat);
    EXPECT_EQ(data.TypeOf(1100), DataMember::typeFloatVector);
    EXPECT_EQ(data.SizeOf(1205), 4u);
    EXPECT_EQ(data.SizeOf(1003), 12u);
    EXPECT_EQ(data.SizeOf(1221), 4u);
    EXPECT_EQ(data.SizeOf(1100), 144u);

    data.SetU32(1100, 7);
    EXPECT_EQ(data.TypeOf(1100), DataMember::typeU32);
    EXPECT_EQ(data.SizeOf(1100), 4u) << "the floats of the earlier type are gone";

    ConfigurationData fresh;
    fresh.Item(3001);
    EXPECT_EQ(fresh.TypeOf(3001), DataMember::typeNone);
    EXPECT_EQ(fresh.SizeOf(3001), 0u);
    EXPECT_EQ(AsStd(fresh.MarkedIds()), std::vector<uint16_t>{3001}) << "a new item is marked";
}

TEST(ConfigurationDataTest, U32ItemsHoldThirtyTwoBitWords)
{
    ConfigurationData data;
    data.SetU32(1211, 0xFFFFFFFFu);
    uint32_t value = 0;
    data.GetU32(1211, value);
    EXPECT_EQ(value, 0xFFFFFFFFu);
    Vector<long> words(0);
    data.GetU32Vector(1211, words);
    EXPECT_EQ(words[0], -1);

    data.SetU32Vector(10010, VectorOf<long>({4294967295L, -2, 1200, 0x80000000L}));
    data.GetU32Vector(10010, words);
    EXPECT_EQ(words[0], -1);
    EXPECT_EQ(words[1], -2);
    EXPECT_EQ(words[2], 1200);
    EXPECT_EQ(words[3], -2147483648L);
    data.GetU32(10010, value);
    EXPECT_EQ(value, 0xFFFFFFFFu);
}

TEST(ConfigurationDataTest, IdsFollowTheIterationOrderAndSkipKeysThatAreNoNumbers)
{
    ConfigurationData data("LogData");
    for (uint16_t id : {10000, 10001, 10002, 10003, 10004, 10005, 10010, 10011, 10012, 10013, 10020, 10021}) {
        data.SetU32(id, 0);
    }
    data[String("Name")];
    EXPECT_EQ(data.Count(), 13u);

    std::vector<uint16_t> inOrder;
    for (auto entry = data.Begin(); entry.IsValid(); ++entry) {
        if (!(entry.Key() == String("Name"))) {
            inOrder.push_back(static_cast<uint16_t>(entry.Key().ToUnsignedShort()));
        }
    }
    EXPECT_EQ(AsStd(data.AllIds()), inOrder);
    EXPECT_EQ(AsStd(data.MarkedIds()), std::vector<uint16_t>{}) << "the added key is marked but not a number";
}

TEST(ConfigurationDataTest, CopiesTakeTheNameAndStandAlone)
{
    ConfigurationData original("PhysicalConditions");
    original.SetFloat(2001, 0.15028f);
    ConfigurationData copy(original);
    copy.SetFloat(2001, 0.5f);
    copy.Mark(2001, true);

    float value = 0.0f;
    original.GetFloat(2001, value);
    EXPECT_EQ(value, 0.15028f);
    EXPECT_EQ(original.MarkedIds().Size(), 0u);
    EXPECT_EQ(std::string(copy.Name().CString()), "PhysicalConditions");

    ConfigurationData assigned("Dummy");
    assigned = copy;
    EXPECT_EQ(std::string(assigned.Name().CString()), "PhysicalConditions");
    assigned.GetFloat(2001, value);
    EXPECT_EQ(value, 0.5f);
    EXPECT_EQ(assigned.MarkedIds().Size(), 1u);
}
