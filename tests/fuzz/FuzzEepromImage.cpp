// The instrument's EEPROM as the driver reads it when it opens: the input is the 8192-byte
// image (shorter inputs are filled with erased bytes), with its entry list, calibration records
// and both copies of the log. The driver opens on it, reads the records, builds its calculation
// from them and closes, writing back what it repairs.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "driver/ConfigurationData.h"
#include "driver/DriverCalculation.h"
#include "driver/PaviloFunctionality.h"
#include "driver/PaviloFunctionalityByte.h"
#include "driver/PaviloLowLevelDriver.h"
#include "utilities/ComponentCreatorNormal.h"
#include "utilities/Exception.h"

namespace {

constexpr std::uint8_t erased = 0xFF;

std::vector<std::uint8_t> image;

// An instrument that is nothing but its EEPROM: it answers every other question with zeros.
class ImageInstrument : public DeviceDriver::PaviloFunctionalityByte {
public:
    void MeasureRequest(std::uint8_t*, std::uint32_t, std::uint32_t) override { }
    void SetMeasureParameters(const std::uint8_t*, const std::uint8_t*, const std::uint8_t*, std::uint8_t) override { }
    void GetMeasureParameters(
        std::uint8_t* integration, std::uint8_t* lamp, std::uint8_t* count, std::uint8_t& flags) override
    {
        std::fill_n(integration, 2, 0);
        std::fill_n(lamp, 2, 0);
        std::fill_n(count, 2, 0);
        flags = 0;
    }
    void WriteEEPROM(
        const std::uint8_t* address, const std::uint8_t*, const std::uint8_t* source, std::uint32_t count) override
    {
        const std::uint32_t at = DeviceDriver::PaviloFunctionality::U32FromBytes(address);
        if (at <= image.size() && count <= image.size() - at) {
            std::copy_n(source, count, image.begin() + at);
        }
    }
    void ReadEEPROM(
        const std::uint8_t* address, const std::uint8_t*, std::uint8_t* target, std::uint32_t count) override
    {
        const std::uint32_t at = DeviceDriver::PaviloFunctionality::U32FromBytes(address);
        if (at <= image.size() && count <= image.size() - at) {
            std::copy_n(image.begin() + at, count, target);
        }
    }
    void WriteCPLD(const std::uint8_t*, const std::uint8_t*, const std::uint8_t*) override { }
    void ReadCPLD(std::uint8_t* word) override { std::fill_n(word, 2, 0); }
    void GetMISC(std::uint8_t& byte6, std::uint8_t* word0, std::uint8_t& byte7, std::uint8_t* word1,
        std::uint8_t* word2) override
    {
        byte6 = 0;
        byte7 = 0;
        std::fill_n(word0, 2, 0);
        std::fill_n(word1, 2, 0);
        std::fill_n(word2, 2, 0);
    }
    void Reset(const std::uint8_t*) override { }
    std::uint8_t GetDeviceState(std::uint16_t) override { return 1; }
    void StartScan(std::uint32_t, std::uint32_t) override { }
    void GetScanData(std::uint8_t*, std::uint32_t& size) override { size = 0; }
    bool OpenDevice(const Utilities::String&) override { return true; }
    bool CloseDevice() override { return true; }
    void NotifyObservers(long) override { }
    bool IsDeviceOpen() override { return true; }
    Utilities::Mutex GetDeviceMutex() override { return deviceMutex; }

private:
    Utilities::Mutex deviceMutex;
};

// Above the revision of the USB command set, so that the driver finds this one.
Utilities::ComponentCreatorNormal<ImageInstrument> creator("PaviloFunctionality", "$Revision: 99.0 $", "HviInstrument");

}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    image.assign(DeviceDriver::PaviloFunctionality::ImageSize, erased);
    std::copy_n(data, std::min<std::size_t>(size, image.size()), image.begin());
    DeviceDriver::PaviloLowLevelDriver driver;
    try {
        driver.Open("fuzz");
        DeviceDriver::ConfigurationData calibration("CalibrationData");
        driver.ReadCalibrationData(calibration);
        const DeviceDriver::DriverCalculation calculation(calibration);
        driver.Close();
    } catch (const Utilities::Exception&) {
        // A damaged image is refused with a failure of the family; only crashes count.
    }
    return 0;
}
