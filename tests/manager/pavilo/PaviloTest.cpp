#include <gtest/gtest.h>

#include "manager/InstrumentInfo_V1.h"
#include "manager/SpecPhotoMeterReflectance_V1.h"
#include "manager/pavilo/Pavilo.h"
#include "tests/driver/PaviloSimFixture.h"

namespace HviManagerTest {

using HviManager::InstrumentInfo_V1;
using HviManager::PaviloDriver::Pavilo;
using Utilities::Component;
using Utilities::SmartPointer;
using Utilities::String;

namespace {

const char* const measuringInterfaces[] = {
    "InstrumentButtons_V1", "SpecPhotoMeterReflectance_V1", "SpecPhotoMeterEmission_V1", "SpecPhotoMeterScanning_V1"};

std::string Information(Pavilo& instrument, const char* key)
{
    SmartPointer<InstrumentInfo_V1> info =
        Utilities::SmartPointerCast<InstrumentInfo_V1>(instrument.GetInterface(String("InstrumentInfo_V1")));
    return info->GetInformation(String(key)).ToStdString();
}

}

class PaviloTest : public DeviceDriverTest::PaviloSimFixture {
protected:
    ~PaviloTest() override { instrument.Close(); }

    void StartAgain() { sim.Command({"start", "--noise", "off", "--time-scale", "0"}); }

    Pavilo instrument;
};

TEST_F(PaviloTest, WithoutInstrumentOnlyInfoAnswersAndTheRestAppearOnceItIsPlugged)
{
    sim.Command({"stop"});
    for (int attempt = 0; attempt < 3; ++attempt) {
        EXPECT_EQ(Information(instrument, "Connection"), "Not connected");
        for (const char* name : measuringInterfaces) {
            EXPECT_TRUE(instrument.GetInterface(String(name)).IsNull()) << name;
        }
        EXPECT_EQ(instrument.GetInterfaceList()->Size(), 0u);
        EXPECT_FALSE(instrument.GetInterface(String("FindDevices_V1")).IsNull());
    }

    StartAgain();
    EXPECT_FALSE(instrument.GetInterface(String("InstrumentButtons_V1")).IsNull());
    EXPECT_EQ(Information(instrument, "Connection"), "Connected");
    EXPECT_EQ(Information(instrument, "SerialNumber"), "1000001");
}

TEST_F(PaviloTest, OffersItsInterfacesInOrderButServesNoTransmission)
{
    SmartPointer<Utilities::Vector<String>> names = instrument.GetInterfaceList();
    ASSERT_EQ(names->Size(), 14u);
    EXPECT_EQ((*names)[0].ToStdString(), "InstrumentInfo_V1");
    EXPECT_EQ((*names)[10].ToStdString(), "SpecPhotoMeterTransmission_V1");
    EXPECT_EQ((*names)[13].ToStdString(), "TristPhotoMeterReflectance_V1");
    EXPECT_TRUE(instrument.GetInterface(String("SpecPhotoMeterTransmission_V1")).IsNull());
    EXPECT_TRUE(instrument.GetInterface(String("Unknown_V1")).IsNull());
    EXPECT_NE(&*instrument.GetInterface(String("InstrumentButtons_V1")),
        &*instrument.GetInterface(String("InstrumentButtons_V1")));
    EXPECT_EQ(&*instrument.GetInterface(String("InstrumentEvents_V1")),
        &*instrument.GetInterface(String("InstrumentEvents_V1")));
    SmartPointer<Component> reflectance = instrument.GetInterface(String("SpecPhotoMeterReflectance_V1"));
    ASSERT_FALSE(reflectance.IsNull());
    EXPECT_EQ(&*reflectance, &*instrument.GetInterface(String("SpecPhotoMeterReflectance_V1")));
    EXPECT_NE(&*instrument.GetInterface(String("SpecPhotoMeterScanning_V1")),
        &*instrument.GetInterface(String("SpecPhotoMeterScanning_V1")));
    for (const char* name : {"TristPhotoMeterReflectance_V1", "DensityReflectance_V1", "TristPhotoMeterScanning_V1",
             "DensityScanning_V1"}) {
        EXPECT_FALSE(instrument.GetInterface(String(name)).IsNull()) << name;
    }
}

TEST_F(PaviloTest, AnInstrumentWithUVCutFilterSaysSoInItsReflectanceConditions)
{
    sim.Command({"stop"});
    sim.Command({"start", "--noise", "off", "--time-scale", "0", "--uv-cut"});
    SmartPointer<HviManager::SpecPhotoMeterReflectance_V1> reflectance =
        Utilities::SmartPointerCast<HviManager::SpecPhotoMeterReflectance_V1>(
            instrument.GetInterface(String("SpecPhotoMeterReflectance_V1")));
    ASSERT_FALSE(reflectance.IsNull());
    EXPECT_EQ(reflectance->GetMeasureConditions().GetCondition(String("Physical.Filter")).ToStdString(), "UVCut");
}

TEST_F(PaviloTest, CloseStartsAfreshAndKeptObjectsStaySafe)
{
    SmartPointer<Component> info = instrument.GetInterface(String("InstrumentInfo_V1"));
    SmartPointer<Component> buttons = instrument.GetInterface(String("InstrumentButtons_V1"));
    ASSERT_FALSE(buttons.IsNull());

    EXPECT_TRUE(instrument.PrepareForUnload());
    EXPECT_NE(&*instrument.GetInterface(String("InstrumentInfo_V1")), &*info);
    EXPECT_EQ(Utilities::SmartPointerCast<InstrumentInfo_V1>(info)->GetInformation(String("Connection")).ToStdString(),
        "Connected");
    EXPECT_FALSE(instrument.GetInterface(String("InstrumentButtons_V1")).IsNull());
}

TEST_F(PaviloTest, SerialNumberChoosesTheInstrumentOfTheNextHandle)
{
    EXPECT_EQ(instrument.GetConfiguration()[String("SerialNumber")].ToStdString(), "Default");

    Utilities::Map<String, String> configuration;
    configuration[String("SerialNumber")] = String("424242");
    configuration[String("Port")] = String("ignored");
    instrument.SetConfiguration(configuration);

    Utilities::Map<String, String> answered = instrument.GetConfiguration();
    EXPECT_EQ(answered.Size(), 1u);
    EXPECT_EQ(answered[String("SerialNumber")].ToStdString(), "424242");
    EXPECT_TRUE(instrument.GetInterface(String("InstrumentButtons_V1")).IsNull());

    configuration[String("SerialNumber")] = String(sim.Path());
    instrument.SetConfiguration(configuration);
    instrument.Close();
    EXPECT_FALSE(instrument.GetInterface(String("InstrumentButtons_V1")).IsNull());
}

}
