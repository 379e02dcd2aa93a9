#include "driver/SpectrumData.h"

namespace DeviceDriver {

SpectrumData::SpectrumData(const BasicData& data) : BasicData(data) { }

SpectrumData& SpectrumData::operator=(const BasicData& data)
{
    BasicData::operator=(data);
    return *this;
}

SpectrumData::~SpectrumData() = default;

}
