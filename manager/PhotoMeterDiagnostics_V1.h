#pragma once

#include "cmetry/HvMeasureConditions.h"
#include "driver/ConfigurationData.h"
#include "driver/SpectrumData.h"
#include "utilities/Component.h"
#include "utilities/String.h"

namespace HviManager {

// The service side of the instrument: raw measurements set up by keywords, and its numbered items.
class PhotoMeterDiagnostics_V1 : public Utilities::Component {
public:
    virtual CMetry::HvMeasureConditions GetMeasureConditions() = 0;
    virtual void SetMeasureConditions(const CMetry::HvMeasureConditions& conditions) = 0;
    // False, without touching the instrument, for a command without "RawMeasurement".
    virtual bool Measure(const Utilities::String& command) = 0;
    virtual bool GetResult(DeviceDriver::SpectrumData& target) = 0;
    virtual bool GetItems(DeviceDriver::ConfigurationData& items, bool read) = 0;
    virtual bool SetItems(DeviceDriver::ConfigurationData& items, bool write) = 0;
    virtual CMetry::HvMeasureConditions GetDefaultConditions() = 0;
    // An unused slot kept so that the table of operations keeps its shape.
    virtual void Reserved(long ignored) = 0;
};

}
