#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "driver/PaviloUSBDevice.h"
#include "manager/SpecPhotoMeterReflectance_V1.h"
#include "manager/pavilo/Pavilo.h"
#include "tests/api/ApiSimEnvironment.h"

using HviManager::SpecPhotoMeterReflectance_V1;
using Utilities::String;

namespace {

Utilities::SmartPointer<SpecPhotoMeterReflectance_V1> ReflectanceOf(
    HviManager::PaviloDriver::Pavilo& instrument, const String& path)
{
    Utilities::Map<String, String> configuration;
    configuration[String("SerialNumber")] = path;
    instrument.SetConfiguration(configuration);
    instrument.Close();
    return Utilities::SmartPointerCast<SpecPhotoMeterReflectance_V1>(
        instrument.GetInterface(String("SpecPhotoMeterReflectance_V1")));
}

}

// A host that chooses among instruments names one by its path, where the exported functions take
// the first. Over USB only, in a process of its own: a USB interface has one holder, and the
// module's object of the other tests would be it.
TEST(OrbelUsbPathTest, TheInstrumentNamedByItsUsbPathIsCalibratedAndMeasuresAndAnAbsentOneIsNot)
{
    std::vector<String> paths;
    DeviceDriver::PaviloUSBDevice::EnumerateDevices(paths);
    if (paths.empty() || paths.front().ToStdString().rfind("usb:", 0) != 0) {
        GTEST_SKIP() << "no instrument over USB";
    }
    HviManager::PaviloDriver::Pavilo instrument;
    EXPECT_TRUE(ReflectanceOf(instrument, String("usb:99-9")).IsNull());

    const auto reflectance = ReflectanceOf(instrument, paths.front());
    ASSERT_FALSE(reflectance.IsNull()) << paths.front().ToStdString();
    ApiSimEnvironment::Sim().Command({"place", "tile"});
    reflectance->Calibrate();
    ApiSimEnvironment::Sim().Command({"place", "sample:grey50"});
    reflectance->Measure();
    CMetry::HvSpectrum spectrum = reflectance->GetSample();
    EXPECT_NEAR(spectrum[16], 0.5f, 0.03f);
    instrument.Close();
}
