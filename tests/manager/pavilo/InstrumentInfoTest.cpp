#include <gtest/gtest.h>

#include "driver/RemissionHandle.h"
#include "manager/pavilo/FindDevices_V1_Impl.h"
#include "manager/pavilo/InstrumentInfo_V1_Impl.h"
#include "tests/driver/PaviloSimFixture.h"

namespace HviManagerTest {

using HviManager::InstrumentInfo_V1;
using HviManager::PaviloDriver::FindDevices_V1_Impl;
using HviManager::PaviloDriver::InstrumentInfo_V1_Impl;
using Utilities::SmartPointer;
using Utilities::String;

class InstrumentInfoTest : public DeviceDriverTest::PaviloSimFixture {
protected:
    InstrumentInfoTest() : handle(new DeviceDriver::RemissionHandle()), info(new InstrumentInfo_V1_Impl(handle))
    {
        handle->Connect(String("Default"));
    }

    ~InstrumentInfoTest() override { handle->Close(); }

    std::string Answer(const char* key) { return info->GetInformation(String(key)).ToStdString(); }

    SmartPointer<DeviceDriver::RemissionHandle> handle;
    SmartPointer<InstrumentInfo_V1> info;
};

TEST_F(InstrumentInfoTest, AnswersWithoutAnInstrument)
{
    sim.Command({"stop"});
    EXPECT_EQ(Answer("Connection"), "Not connected");
    EXPECT_EQ(Answer("SerialNumber"), "0");
    EXPECT_EQ(Answer("serialnumber"), "");
    FindDevices_V1_Impl finder(info);
    EXPECT_FALSE(finder.IsAvailable(HviManager::FindDevices_V1::DeviceDescription()));
}

TEST_F(InstrumentInfoTest, AnswersFromTheAttachedInstrument)
{
    ASSERT_TRUE(handle->Open());
    EXPECT_EQ(Answer("Connection"), "Connected");
    EXPECT_EQ(Answer("SerialNumber"), "1000001");
    EXPECT_EQ(Answer("PhysicalFilter"), "0");
    EXPECT_TRUE(FindDevices_V1_Impl(info).IsAvailable(HviManager::FindDevices_V1::DeviceDescription()));
    EXPECT_FALSE(FindDevices_V1_Impl().IsAvailable(HviManager::FindDevices_V1::DeviceDescription()));
}

TEST(FindDevicesTest, NamesOneInstrumentWithoutTouchingTheHardware)
{
    Utilities::List<HviManager::FindDevices_V1::DeviceDescription> devices = FindDevices_V1_Impl().FindDevices();
    ASSERT_EQ(devices.Size(), 1u);
    const HviManager::FindDevices_V1::DeviceDescription& device = devices.Begin().Current();
    EXPECT_EQ(device.Size(), 5u);
    EXPECT_EQ(device[String("Name")].ToStdString(), "Pavilo");
    EXPECT_EQ(device[String("SerialNumber")].ToStdString(), "Default");
    EXPECT_EQ(device[String("Transport")].ToStdString(), "USB");
}

}
