#include <gtest/gtest.h>

#include "driver/RemissionHandle.h"
#include "manager/pavilo/InstrumentButtons_V1_Impl.h"
#include "tests/driver/PaviloSimFixture.h"

namespace HviManagerTest {

using HviManager::InstrumentButtons_V1;
using HviManager::PaviloDriver::InstrumentButtons_V1_Impl;
using Utilities::SmartPointer;
using Utilities::String;

namespace {

SmartPointer<InstrumentButtons_V1::ButtonList> ListOf(std::initializer_list<const char*> names)
{
    SmartPointer<InstrumentButtons_V1::ButtonList> list(new InstrumentButtons_V1::ButtonList());
    for (const char* name : names) {
        list->Append(String(name));
    }
    return list;
}

bool Has(const InstrumentButtons_V1::ButtonStates& states, const char* name)
{
    return states.Find(String(name)).IsValid();
}

}

class InstrumentButtonsTest : public DeviceDriverTest::PaviloSimFixture {
protected:
    InstrumentButtonsTest() : handle(new DeviceDriver::RemissionHandle()), buttons(handle)
    {
        handle->Connect(String("Default"));
        handle->Open();
    }

    ~InstrumentButtonsTest() override { handle->Close(); }

    // A press is a latch of the instrument that the driver learns of by an interrupt.
    void Press()
    {
        sim.Command({"press"});
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
    }

    SmartPointer<DeviceDriver::RemissionHandle> handle;
    InstrumentButtons_V1_Impl buttons;
};

TEST_F(InstrumentButtonsTest, ConnectionIsReportedAsChangesNotStates)
{
    InstrumentButtons_V1::ButtonStates first =
        buttons.GetButtonStates(SmartPointer<InstrumentButtons_V1::ButtonList>());
    ASSERT_TRUE(Has(first, "Connection"));
    EXPECT_EQ(first[String("Connection")].AsLong(), 1);
    EXPECT_EQ(buttons.GetButtonStates(SmartPointer<InstrumentButtons_V1::ButtonList>()).Size(), 0u);

    sim.Command({"unplug"});
    ASSERT_TRUE(Eventually([&] { return Has(buttons.GetButtonStates(ListOf({"Connection"})), "Connection"); }));
    EXPECT_EQ(buttons.GetButtonStates(ListOf({"Connection"})).Size(), 0u);
}

TEST_F(InstrumentButtonsTest, APressIsReportedOnceAndOnlyToWhoAsksForTheKey)
{
    buttons.GetButtonStates(SmartPointer<InstrumentButtons_V1::ButtonList>());
    Press();
    Press();
    EXPECT_EQ(buttons.GetButtonStates(ListOf({"Connection"})).Size(), 0u);
    EXPECT_EQ(buttons.GetButtonStates(ListOf({"Trigger", "Lid"})).Size(), 0u);
    EXPECT_TRUE(Has(buttons.GetButtonStates(ListOf({"MeasurementKey"})), "MeasurementKey"));
    EXPECT_FALSE(Has(buttons.GetButtonStates(SmartPointer<InstrumentButtons_V1::ButtonList>()), "MeasurementKey"));
}

}
