#include "manager/pavilo/RecognitionElement.h"

namespace HviManager::PaviloDriver {

RecognitionElement::RecognitionElement(const DeviceDriver::SpectrumData& measurement)
    : DeviceDriver::SpectrumData(measurement)
{
}

Diagnostics::String RecognitionElement::GetDescription() const
{
    return "RecognitionElement";
}

}
