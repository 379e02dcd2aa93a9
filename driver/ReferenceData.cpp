#include "driver/ReferenceData.h"

namespace DeviceDriver {

ReferenceData::ReferenceData(const BasicData& data) : BasicData(data) { }

ReferenceData& ReferenceData::operator=(const BasicData& data)
{
    BasicData::operator=(data);
    return *this;
}

ReferenceData::~ReferenceData() = default;

}
