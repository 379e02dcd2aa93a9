#include "driver/SpectrumDataFifo.h"

namespace DeviceDriver {

void SpectrumDataFifo::Push(const SpectrumData& spectrum)
{
    spectra.push_back(spectrum);
}

bool SpectrumDataFifo::Pop(SpectrumData& spectrum)
{
    if (spectra.empty()) {
        return false;
    }
    spectrum = spectra.front();
    spectra.pop_front();
    return true;
}

void SpectrumDataFifo::Clear()
{
    spectra.clear();
}

}
