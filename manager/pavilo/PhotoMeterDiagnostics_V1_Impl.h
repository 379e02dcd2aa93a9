#pragma once

#include "cmetry/HvMeasureConditions.h"
#include "driver/ConfigurationData.h"
#include "driver/RawHandle.h"
#include "driver/ServiceHandle.h"
#include "driver/SpectrumData.h"
#include "manager/PhotoMeterDiagnostics_V1.h"
#include "utilities/SmartPointer.h"
#include "utilities/String.h"

namespace HviManager::PaviloDriver {

// The service interface: raw measurements on the RawHandle, set up by keywords in a command, and
// the numbered items of the instrument through the ServiceHandle.
class PhotoMeterDiagnostics_V1_Impl : public PhotoMeterDiagnostics_V1 {
public:
    PhotoMeterDiagnostics_V1_Impl(Utilities::SmartPointer<DeviceDriver::ServiceHandle> service,
        Utilities::SmartPointer<DeviceDriver::RawHandle> raw);

    CMetry::HvMeasureConditions GetMeasureConditions() override;
    void SetMeasureConditions(const CMetry::HvMeasureConditions& newConditions) override;
    // The command must hold "RawMeasurement"; "<LampONAfterMeasurement>",
    // "<LampOFFDuringMeasurement>" and "<SetIntegrationTimeFix20ms>" anywhere in it tune the
    // measurement.
    bool Measure(const Utilities::String& command) override;
    bool GetResult(DeviceDriver::SpectrumData& target) override;
    bool GetItems(DeviceDriver::ConfigurationData& items, bool read) override;
    bool SetItems(DeviceDriver::ConfigurationData& items, bool write) override;
    CMetry::HvMeasureConditions GetDefaultConditions() override;
    void Reserved(long ignored) override;

private:
    struct RawOptions;

    DeviceDriver::RawHandle& AccessibleRawHandle() const;
    bool MeasureRaw(const RawOptions& options);

    Utilities::String lastError;
    DeviceDriver::SpectrumData result;
    CMetry::HvMeasureConditions conditions;
    Utilities::SmartPointer<DeviceDriver::RawHandle> raw;
    Utilities::SmartPointer<DeviceDriver::ServiceHandle> service;
};

}
