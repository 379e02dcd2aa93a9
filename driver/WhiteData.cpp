#include "driver/WhiteData.h"

namespace DeviceDriver {

WhiteData::WhiteData(const BasicData& data) : BasicData(data) { }

WhiteData& WhiteData::operator=(const BasicData& data)
{
    BasicData::operator=(data);
    return *this;
}

WhiteData::~WhiteData() = default;

}
