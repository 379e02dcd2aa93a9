#pragma once

#include "diagnostics/String.h"
#include "driver/SpectrumData.h"
#include "driver/SpectrumDataFifo.h"
#include "utilities/Vector.h"

namespace HviManager::PaviloDriver {

// Finds the fields of a strip in the series of spectra of a scan.
class Recognition {
public:
    virtual ~Recognition();

    virtual Diagnostics::String GetDescription() const = 0;
    // One spectrum per field, in the order of the scan; false when no field can be told apart.
    virtual bool Recognize(const Utilities::Vector<DeviceDriver::SpectrumData>& scan,
        Utilities::Vector<DeviceDriver::SpectrumData>& patches) = 0;
    // The same on the spectra of a handle's sample FIFO, which must hold the whole scan.
    virtual bool Recognize(
        DeviceDriver::SpectrumDataFifo& scan, Utilities::Vector<DeviceDriver::SpectrumData>& patches) = 0;
};

}
