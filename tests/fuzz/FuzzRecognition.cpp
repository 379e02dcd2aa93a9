// Strips for the recognition: each pair of input bytes is one measurement of a strip, the first
// its level, the second how far its spectrum tilts, so that the fuzzer draws fields, blends,
// noise and ramps of any kind.
#include <cstddef>
#include <cstdint>

#include "driver/SpectrumData.h"
#include "manager/pavilo/RecognitionMarvane.h"
#include "utilities/Exception.h"
#include "utilities/Vector.h"

namespace {

constexpr unsigned long wavelengths = 36;

DeviceDriver::SpectrumData Measurement(std::uint8_t level, std::uint8_t tilt)
{
    Utilities::Vector<float> row(wavelengths);
    for (unsigned long index = 0; index < wavelengths; ++index) {
        const float slope = (static_cast<float>(tilt) - 128.0f) / 4096.0f;
        row[index] = static_cast<float>(level) / 200.0f + slope * static_cast<float>(index);
    }
    DeviceDriver::SpectrumData data;
    data.Resize(1);
    data.Store(row);
    return data;
}

}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Utilities::Vector<DeviceDriver::SpectrumData> scan(size / 2);
    for (std::size_t index = 0; index + 1 < size; index += 2) {
        scan[index / 2] = Measurement(data[index], data[index + 1]);
    }
    Utilities::Vector<DeviceDriver::SpectrumData> patches;
    try {
        HviManager::PaviloDriver::RecognitionMarvane().Recognize(scan, patches);
    } catch (const Utilities::Exception&) {
        // A strip that can't be split is refused with a failure of the family; only crashes count.
    }
    return 0;
}
