#include "manager/pavilo/Pavilo.h"

#include "manager/pavilo/DensityReflectance_V1_Impl.h"
#include "manager/pavilo/DensityScanning_V1_Impl.h"
#include "manager/pavilo/FindDevices_V1_Impl.h"
#include "manager/pavilo/InstrumentButtons_V1_Impl.h"
#include "manager/pavilo/InstrumentInfo_V1_Impl.h"
#include "manager/pavilo/PhotoMeterDiagnostics_V1_Impl.h"
#include "manager/pavilo/SpecPhotoMeterEmission_V1_Impl.h"
#include "manager/pavilo/SpecPhotoMeterReflectance_V1_Impl.h"
#include "manager/pavilo/SpecPhotoMeterScanning_V1_Impl.h"
#include "manager/pavilo/TristPhotoMeterEmission_V1_Impl.h"
#include "manager/pavilo/TristPhotoMeterReflectance_V1_Impl.h"
#include "manager/pavilo/TristPhotoMeterScanning_V1_Impl.h"
#include "utilities/ComponentCreatorSingleton.h"

namespace HviManager::PaviloDriver {

using Utilities::Component;
using Utilities::SmartPointer;
using Utilities::String;

namespace {

Utilities::ComponentCreatorSingleton<Pavilo> paviloCreator(
    "Pavilo", "$Revision: 1.37 $", "HviInstrument", {{"HviInstrument", Utilities::Anything("Pavilo")}});

const char* const offeredInOrder[] = {
    "InstrumentInfo_V1",
    "InstrumentEvents_V1",
    "InstrumentButtons_V1",
    "SpecPhotoMeterReflectance_V1",
    "DensityReflectance_V1",
    "SpecPhotoMeterScanning_V1",
    "TristPhotoMeterScanning_V1",
    "DensityScanning_V1",
    "SpecPhotoMeterEmission_V1",
    "SpecPhotoMeterAmbientLight_V1",
    "SpecPhotoMeterTransmission_V1",
    "TristPhotoMeterEmission_V1",
    "TristPhotoMeterAmbientLight_V1",
    "TristPhotoMeterReflectance_V1",
};

}

Pavilo::Pavilo() : serialNumber("Default") { }

Pavilo::~Pavilo() = default;

bool Pavilo::PrepareForUnload()
{
    Close();
    return true;
}

SmartPointer<Utilities::Vector<String>> Pavilo::GetInterfaceList()
{
    if (offered.Size() == 0) {
        OpenHandles();
    }
    SmartPointer<Utilities::Vector<String>> names(new Utilities::Vector<String>(offered.Size()));
    unsigned long index = 0;
    for (auto name = offered.Begin(); name.IsValid(); ++name) {
        (*names)[index++] = name.Current();
    }
    return names;
}

Utilities::Map<String, String> Pavilo::GetConfiguration()
{
    Utilities::Map<String, String> configuration;
    configuration[String("SerialNumber")] = serialNumber;
    return configuration;
}

void Pavilo::SetConfiguration(const Utilities::Map<String, String>& configuration)
{
    auto entry = configuration.Find(String("SerialNumber"));
    if (entry.IsValid()) {
        serialNumber = entry.Value();
    }
}

void Pavilo::Activate() { }

Utilities::String Pavilo::OpenFailure() const
{
    return openFailure;
}

SmartPointer<Component> Pavilo::GetInterface(const String& name)
{
    if (remission.IsNull()) {
        InitialiseDefaultHandle();
    }
    if (info.IsNull()) {
        info = SmartPointer<InstrumentInfo_V1>(new InstrumentInfo_V1_Impl(remission));
    }
    if (name == String("InstrumentEvents_V1")) {
        return Events();
    }
    if (name == String("InstrumentInfo_V1")) {
        return info;
    }
    if (offered.Size() == 0) {
        OpenHandles();
    }
    if (name == String("PhotoMeterDiagnostics_V1")) {
        return SmartPointer<Component>(new PhotoMeterDiagnostics_V1_Impl(service, raw));
    }
    if (name == String("FindDevices_V1")) {
        return SmartPointer<Component>(new FindDevices_V1_Impl());
    }
    if (!Offers(name)) {
        return SmartPointer<Component>();
    }
    return OfferedInterface(name);
}

void Pavilo::InitialiseDefaultHandle()
{
    remission = SmartPointer<DeviceDriver::RemissionHandle>(new DeviceDriver::RemissionHandle());
    remission->Connect(serialNumber);
}

SmartPointer<Component> Pavilo::Events()
{
    if (events.IsNull()) {
        constexpr unsigned long pollLockWaitMs = 400;
        SmartPointer<InstrumentButtons_V1> buttons(new InstrumentButtons_V1_Impl(remission, pollLockWaitMs));
        events = SmartPointer<InstrumentEvents_V1>(new InstrumentEvents_V1(buttons));
    }
    return events;
}

SmartPointer<Component> Pavilo::OfferedInterface(const String& name)
{
    if (name == String("InstrumentButtons_V1")) {
        return SmartPointer<Component>(new InstrumentButtons_V1_Impl(remission));
    }
    SmartPointer<Component> served = ReflectanceInterface(name);
    if (served.IsNull()) {
        served = ScanningInterface(name);
    }
    if (served.IsNull()) {
        served = EmissionInterface(name);
    }
    // Null for a name offered but not served, such as transmission.
    return served;
}

SmartPointer<Component> Pavilo::ReflectanceInterface(const String& name)
{
    if (name == String("SpecPhotoMeterReflectance_V1")) {
        return Reflectance();
    }
    if (name == String("TristPhotoMeterReflectance_V1")) {
        return SmartPointer<Component>(new TristPhotoMeterReflectance_V1_Impl(Reflectance()));
    }
    if (name == String("DensityReflectance_V1")) {
        return SmartPointer<Component>(new DensityReflectance_V1_Impl(remission));
    }
    return SmartPointer<Component>();
}

SmartPointer<Component> Pavilo::ScanningInterface(const String& name)
{
    if (name == String("SpecPhotoMeterScanning_V1")) {
        return SpectralScanning();
    }
    if (name == String("TristPhotoMeterScanning_V1")) {
        return SmartPointer<Component>(new TristPhotoMeterScanning_V1_Impl(SpectralScanning()));
    }
    if (name == String("DensityScanning_V1")) {
        return SmartPointer<Component>(new DensityScanning_V1_Impl(remission, SpectralScanning()));
    }
    return SmartPointer<Component>();
}

SmartPointer<Component> Pavilo::EmissionInterface(const String& name)
{
    // The ambient light is measured as an emission on a handle of its own.
    SmartPointer<DeviceDriver::EmissionHandle> ambient(ambientLight);
    if (name == String("SpecPhotoMeterEmission_V1")) {
        return SmartPointer<Component>(new SpecPhotoMeterEmission_V1_Impl(emission));
    }
    if (name == String("SpecPhotoMeterAmbientLight_V1")) {
        return SmartPointer<Component>(new SpecPhotoMeterEmission_V1_Impl(ambient));
    }
    if (name == String("TristPhotoMeterEmission_V1")) {
        return SmartPointer<Component>(new TristPhotoMeterEmission_V1_Impl(emission));
    }
    if (name == String("TristPhotoMeterAmbientLight_V1")) {
        return SmartPointer<Component>(new TristPhotoMeterEmission_V1_Impl(ambient));
    }
    return SmartPointer<Component>();
}

SmartPointer<SpecPhotoMeterScanning_V1> Pavilo::SpectralScanning()
{
    return SmartPointer<SpecPhotoMeterScanning_V1>(new SpecPhotoMeterScanning_V1_Impl(scan));
}

SmartPointer<SpecPhotoMeterReflectance_V1> Pavilo::Reflectance()
{
    if (reflectance.IsNull()) {
        reflectance = SmartPointer<SpecPhotoMeterReflectance_V1>(new SpecPhotoMeterReflectance_V1_Impl(remission));
    }
    return reflectance;
}

void Pavilo::OpenHandles()
{
    if (!OpenRemission()) {
        return;
    }
    if (OpenHandle(scan) && OpenHandle(emission) && OpenHandle(ambientLight) && OpenHandle(raw) &&
        OpenHandle(service)) {
        FillOffered();
    }
}

bool Pavilo::OpenRemission()
{
    if (remission.IsNull()) {
        InitialiseDefaultHandle();
    }
    if (!remission->Open()) {
        openFailure = remission->GetLastError();
        remission = SmartPointer<DeviceDriver::RemissionHandle>();
        return false;
    }
    openFailure = String();
    return true;
}

template<class Handle>
bool Pavilo::OpenHandle(SmartPointer<Handle>& field)
{
    if (!field.IsNull()) {
        return true;
    }
    SmartPointer<Handle> handle(new Handle());
    handle->Connect(serialNumber);
    if (!handle->Open()) {
        openFailure = handle->GetLastError();
        return false;
    }
    field = handle;
    return true;
}

void Pavilo::FillOffered()
{
    offered.Clear();
    for (const char* name : offeredInOrder) {
        offered.Append(String(name));
    }
}

bool Pavilo::Offers(const String& name) const
{
    for (auto entry = offered.Begin(); entry.IsValid(); ++entry) {
        if (entry.Current() == name) {
            return true;
        }
    }
    return false;
}

void Pavilo::Close()
{
    if (!events.IsNull()) {
        events->StopWatching();
        events = SmartPointer<InstrumentEvents_V1>();
    }
    info = SmartPointer<InstrumentInfo_V1>();
    reflectance = SmartPointer<SpecPhotoMeterReflectance_V1>();
    CloseHandle(remission);
    CloseHandle(scan);
    CloseHandle(emission);
    CloseHandle(ambientLight);
    CloseHandle(raw);
    CloseHandle(service);
    offered.Clear();
}

template<class Handle>
void Pavilo::CloseHandle(SmartPointer<Handle>& field)
{
    if (!field.IsNull()) {
        field->Close();
        field = SmartPointer<Handle>();
    }
}

}
