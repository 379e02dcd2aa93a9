#include <string>

#include <gtest/gtest.h>

#include "driver/TransmissionHandle.h"
#include "tests/driver/HandleSimFixture.h"

namespace DeviceDriverTest {

using DeviceDriver::SpectrumData;
using DeviceDriver::TransmissionHandle;

class TransmissionHandleTest : public HandleSimFixture { };

// Dark, then reference, then samples: a missing step is named, and the reference itself measured as
// a sample lets everything through.
TEST_F(TransmissionHandleTest, SamplesNeedDarkAndReferenceInThisOrder)
{
    TransmissionHandle handle;
    OpenOnSim(handle);
    SetItem(handle, 2002, 1);
    Place("tile");
    EXPECT_FALSE(handle.Measure("Single"));
    EXPECT_EQ("Sample calculation: Dark data not valid", handle.GetLastError().ToStdString());
    ASSERT_TRUE(handle.Measure("Dark")) << handle.GetLastError().ToStdString();
    EXPECT_FALSE(handle.Measure("Single"));
    EXPECT_EQ("Sample calculation: Reference data not valid", handle.GetLastError().ToStdString());
    ASSERT_TRUE(handle.Measure("Reference")) << handle.GetLastError().ToStdString();
    ASSERT_TRUE(handle.Measure("Single")) << handle.GetLastError().ToStdString();
    SpectrumData result;
    ASSERT_TRUE(handle.GetResult(result));
    result.FirstRow();
    for (unsigned long k = 0; k < 36; ++k) {
        EXPECT_NEAR(result.Load()[k], 1.0f, 0.002f) << k;
    }
    EXPECT_FALSE(handle.Measure("White"));
    EXPECT_EQ("Unknown measurement type", handle.GetLastError().ToStdString());
}

// A reference holds the device's lock from its first transfer to its last; the handle measures
// again once the instrument is back.
TEST_F(TransmissionHandleTest, ACableLostMidwayFailsTheReferenceAtOnce)
{
    TransmissionHandle handle;
    OpenOnSim(handle);
    SetItem(handle, 2002, 1);
    Place("tile");
    for (const char* transfersBeforeTheDrop : {"1", "3"}) {
        SCOPED_TRACE(transfersBeforeTheDrop);
        ASSERT_TRUE(Eventually([&] { return handle.Measure("Dark"); })) << Text(handle.GetLastError());
        ExpectCableLossFailsAtOnce(transfersBeforeTheDrop, [&] { return handle.Measure("Reference"); });
    }
    EXPECT_TRUE(Eventually([&] { return handle.Measure("Dark"); })) << Text(handle.GetLastError());
}

}
