#include "manager/pavilo/PhotoMeterDiagnostics_V1_Impl.h"

#include <cstdint>

#include "manager/ExceptionHviModule.h"
#include "manager/pavilo/HandleLockGuard.h"
#include "manager/pavilo/PhysicalConditionItems.h"
#include "utilities/LanguageTranslator.h"

namespace HviManager::PaviloDriver {

namespace {

using Items = PhysicalConditionItems;

const char* const noError = "No error!";

bool Contains(const Utilities::String& text, const char* literal)
{
    return text.Find(Utilities::String(literal)) >= 0;
}

}

struct PhotoMeterDiagnostics_V1_Impl::RawOptions {
    bool lampOnAfterMeasurement;
    bool lampOffDuringMeasurement;
    bool fixedIntegrationTime;
};

PhotoMeterDiagnostics_V1_Impl::PhotoMeterDiagnostics_V1_Impl(
    Utilities::SmartPointer<DeviceDriver::ServiceHandle> service, Utilities::SmartPointer<DeviceDriver::RawHandle> raw)
    : lastError(noError), raw(raw), service(service)
{
    conditions.SetCondition("Colorimetric.Illumination", "D50");
}

CMetry::HvMeasureConditions PhotoMeterDiagnostics_V1_Impl::GetMeasureConditions()
{
    return conditions;
}

void PhotoMeterDiagnostics_V1_Impl::SetMeasureConditions(const CMetry::HvMeasureConditions& newConditions)
{
    conditions = newConditions;
}

bool PhotoMeterDiagnostics_V1_Impl::Measure(const Utilities::String& command)
{
    const RawOptions options{Contains(command, "<LampONAfterMeasurement>"),
        Contains(command, "<LampOFFDuringMeasurement>"), Contains(command, "<SetIntegrationTimeFix20ms>")};
    if (!Contains(command, "RawMeasurement")) {
        return false;
    }
    return MeasureRaw(options);
}

bool PhotoMeterDiagnostics_V1_Impl::GetResult(DeviceDriver::SpectrumData& target)
{
    if (!result.IsValid()) {
        lastError = "Spectrum not valid!";
        return false;
    }
    target = result;
    lastError = noError;
    return true;
}

// Item access goes through the instrument like a measurement, so it waits for the handle lock.
bool PhotoMeterDiagnostics_V1_Impl::GetItems(DeviceDriver::ConfigurationData& items, bool read)
{
    if (service.IsNull()) {
        return false;
    }
    HandleLockGuard guard(*service);
    return guard.Acquire() && service->GetConditions(items, read);
}

bool PhotoMeterDiagnostics_V1_Impl::SetItems(DeviceDriver::ConfigurationData& items, bool write)
{
    if (service.IsNull()) {
        return false;
    }
    HandleLockGuard guard(*service);
    return guard.Acquire() && service->SetConditions(items, write);
}

CMetry::HvMeasureConditions PhotoMeterDiagnostics_V1_Impl::GetDefaultConditions()
{
    return CMetry::HvMeasureConditions();
}

void PhotoMeterDiagnostics_V1_Impl::Reserved(long) { }

DeviceDriver::RawHandle& PhotoMeterDiagnostics_V1_Impl::AccessibleRawHandle() const
{
    if (raw.IsNull()) {
        throw ExceptionHviModule(Utilities::Translated("Unable to access Pavilo"));
    }
    return *raw;
}

// No lamp lead time and a fixed count, so that raw readings of one command compare.
bool PhotoMeterDiagnostics_V1_Impl::MeasureRaw(const RawOptions& options)
{
    HandleLockGuard guard(AccessibleRawHandle());
    if (!guard.Acquire()) {
        throw ExceptionHviModule(Utilities::Translated("Unable to Lock RawHandle of Pavilo"));
    }
    DeviceDriver::ConfigurationData items("PhysicalConditions");
    if (!raw->GetConditions(items, false)) {
        guard.FailWithLastError();
    }
    Items::SetMarkedFloat(items, Items::lampTime, 0.0f);
    Items::SetMarkedU32(items, Items::count, 4);
    Items::SetMarkedU32(items, Items::lampOnAfterMeasurement, options.lampOnAfterMeasurement ? 1 : 0);
    Items::SetMarkedU32(items, Items::lampOffDuringMeasurement, options.lampOffDuringMeasurement ? 1 : 0);
    if (options.fixedIntegrationTime) {
        Items::SetMarkedFloat(items, Items::integrationTime, 0.02f);
    }
    Items::SetMarkedU32(items, Items::gain, 1);
    Items::SetMarkedU32(items, Items::countFromReplacementItem, 0);
    Items::SetMarkedU32(items, Items::adaptIntegrationTime, 0);
    if (!raw->SetConditions(items, false) || !raw->Measure("Single") || !raw->GetResult(result)) {
        guard.FailWithLastError();
    }
    return true;
}

}
