#include <gtest/gtest.h>

#include "driver/ConfigurationData.h"
#include "driver/RawHandle.h"
#include "driver/ServiceHandle.h"
#include "driver/SpectrumData.h"
#include "manager/pavilo/PhotoMeterDiagnostics_V1_Impl.h"
#include "tests/manager/pavilo/PaviloHandleFixture.h"

namespace HviManagerTest {

using DeviceDriver::ConfigurationData;
using DeviceDriver::RawHandle;
using DeviceDriver::ServiceHandle;
using DeviceDriver::SpectrumData;
using HviManager::PaviloDriver::PhotoMeterDiagnostics_V1_Impl;
using Utilities::SmartPointer;

class PhotoMeterDiagnosticsTest : public PaviloHandleFixture {
protected:
    PhotoMeterDiagnosticsTest() : raw(OpenHandle<RawHandle>()), diagnostics(OpenHandle<ServiceHandle>(), raw) { }

    int LampFlags() const { return Parameter("flags") & (lampOffFlag | lampOnAfterFlag); }

    SmartPointer<RawHandle> raw;
    PhotoMeterDiagnostics_V1_Impl diagnostics;
};

TEST_F(PhotoMeterDiagnosticsTest, KeywordsSetUpTheRawMeasurement)
{
    SpectrumData result;
    EXPECT_FALSE(diagnostics.GetResult(result));

    const auto controlTransfers = Counter("control");
    EXPECT_FALSE(diagnostics.Measure("<SetIntegrationTimeFix20ms>"));
    EXPECT_FALSE(diagnostics.Measure("rawmeasurement"));
    EXPECT_EQ(Counter("control"), controlTransfers);

    EXPECT_TRUE(diagnostics.Measure("RawMeasurement<LampOFFDuringMeasurement>"));
    EXPECT_EQ(LampFlags(), lampOffFlag);
    EXPECT_EQ(Parameter("count"), 4);
    EXPECT_EQ(Parameter("lamp_ticks"), 0);
    EXPECT_TRUE(diagnostics.GetResult(result));
    EXPECT_TRUE(result.IsValid());

    EXPECT_TRUE(diagnostics.Measure("<LampONAfterMeasurement> <LampOFFDuringMeasurement> RawMeasurement"));
    EXPECT_EQ(LampFlags(), lampOffFlag | lampOnAfterFlag);

    const int ticksBefore = Parameter("integration_ticks");
    EXPECT_TRUE(diagnostics.Measure("RawMeasurement"));
    EXPECT_EQ(LampFlags(), 0);
    EXPECT_EQ(Parameter("integration_ticks"), ticksBefore);
    EXPECT_TRUE(diagnostics.Measure("RawMeasurement<SetIntegrationTimeFix20ms>"));
    EXPECT_NE(Parameter("integration_ticks"), ticksBefore);
}

TEST_F(PhotoMeterDiagnosticsTest, ItemsGoThroughTheServiceHandle)
{
    ConfigurationData items("PhysicalConditions");
    items.SetU32(2010, 0);
    items.Mark(2010, true);
    ASSERT_TRUE(diagnostics.GetItems(items, true));
    uint32_t count = 0;
    items.GetU32(2010, count);
    EXPECT_GT(count, 0u);

    PhotoMeterDiagnostics_V1_Impl withoutHandles{SmartPointer<ServiceHandle>(), SmartPointer<RawHandle>()};
    EXPECT_FALSE(withoutHandles.GetItems(items, false));
    EXPECT_FALSE(withoutHandles.SetItems(items, false));
    EXPECT_FALSE(withoutHandles.Measure("Raw"));
    EXPECT_EQ(FailureText([&] { withoutHandles.Measure("RawMeasurement"); }), "Unable to access Pavilo");
    EXPECT_EQ(withoutHandles.GetDefaultConditions().GetCondition("Colorimetric.Illumination"), "D65");
    EXPECT_EQ(withoutHandles.GetMeasureConditions().GetCondition("Colorimetric.Illumination"), "D50");
}

}
