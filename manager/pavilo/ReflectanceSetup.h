#pragma once

#include "cmetry/HvMeasureConditions.h"
#include "driver/RemissionHandle.h"

namespace HviManager::PaviloDriver {

// How a reflectance measurement sets up the instrument: the items each step gives the handle, and
// the filter that the instrument reports.
class ReflectanceSetup {
public:
    enum class Step { Measure, Calibrate };

    // Puts the items of the step into the handle's copy of the conditions; they reach the
    // instrument with its next measurement. False with the handle's last error on a failure.
    static bool WriteItems(DeviceDriver::RemissionHandle& handle, Step step);
    // An instrument with a UV-cut filter fitted makes the conditions say so.
    static void ApplyFilterRule(DeviceDriver::RemissionHandle& handle, CMetry::HvMeasureConditions& conditions);
};

}
