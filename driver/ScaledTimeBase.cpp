#include "driver/ScaledTimeBase.h"

#include <cmath>

#include "utilities/ExceptionOutOfBound.h"

namespace DeviceDriver {

namespace {

double CheckedFactor(double factor)
{
    if (!(factor > 0.0)) {
        throw Utilities::ExceptionOutOfBound("The time factor must be above 0");
    }
    return factor;
}

}

ScaledTimeBase::ScaledTimeBase(const Utilities::SmartPointer<TimeBase>& base, double factor)
    : base(base), factor(CheckedFactor(factor)), origin(this->base->MicrosecondsSince1970())
{
}

ScaledTimeBase::~ScaledTimeBase() = default;

int64_t ScaledTimeBase::MicrosecondsSince1970()
{
    const double elapsed = static_cast<double>(base->MicrosecondsSince1970() - origin);
    return origin + std::llround(elapsed * factor);
}

void ScaledTimeBase::Sleep(int64_t microseconds)
{
    base->Sleep(std::llround(static_cast<double>(microseconds) / factor));
}

}
