#pragma once

#include "driver/AmbientLightHandle.h"
#include "driver/EmissionHandle.h"
#include "driver/RawHandle.h"
#include "driver/RemissionHandle.h"
#include "driver/RemissionScanHandle.h"
#include "driver/ServiceHandle.h"
#include "manager/HviInstrument.h"
#include "manager/InstrumentEvents_V1.h"
#include "manager/InstrumentInfo_V1.h"
#include "manager/SpecPhotoMeterReflectance_V1.h"
#include "manager/SpecPhotoMeterScanning_V1.h"
#include "utilities/List.h"
#include "utilities/SmartPointer.h"
#include "utilities/String.h"

namespace HviManager::PaviloDriver {

// The instrument: owns the driver's handles and hands out interface objects built on them.
// Handles are opened at the first need and again at every request until all of them are open,
// so an instrument plugged in later appears without a restart. Not thread-safe itself: the
// handle lock keeps the interface objects apart.
class Pavilo : public HviInstrument {
public:
    Pavilo();
    // Drops the handles without closing them.
    ~Pavilo() override;

    // Closes the instrument, so that unloading ends the connection.
    bool PrepareForUnload() override;
    Utilities::SmartPointer<Utilities::Vector<Utilities::String>> GetInterfaceList() override;
    Utilities::Map<Utilities::String, Utilities::String> GetConfiguration() override;
    Utilities::SmartPointer<Utilities::Component> GetInterface(const Utilities::String& name) override;
    // "SerialNumber" takes effect with the next handle that is made.
    void SetConfiguration(const Utilities::Map<Utilities::String, Utilities::String>& configuration) override;
    void Close() override;
    void Activate() override;
    Utilities::String OpenFailure() const override;

private:
    void InitialiseDefaultHandle();
    void OpenHandles();
    bool OpenRemission();
    template<class Handle>
    bool OpenHandle(Utilities::SmartPointer<Handle>& field);
    void FillOffered();
    bool Offers(const Utilities::String& name) const;
    Utilities::SmartPointer<Utilities::Component> Events();
    Utilities::SmartPointer<Utilities::Component> OfferedInterface(const Utilities::String& name);
    Utilities::SmartPointer<Utilities::Component> ReflectanceInterface(const Utilities::String& name);
    Utilities::SmartPointer<Utilities::Component> ScanningInterface(const Utilities::String& name);
    Utilities::SmartPointer<Utilities::Component> EmissionInterface(const Utilities::String& name);
    // Made at the first need and shared from then on.
    Utilities::SmartPointer<SpecPhotoMeterReflectance_V1> Reflectance();
    Utilities::SmartPointer<SpecPhotoMeterScanning_V1> SpectralScanning();
    template<class Handle>
    static void CloseHandle(Utilities::SmartPointer<Handle>& field);

    Utilities::String serialNumber;
    Utilities::String openFailure;
    // Empty while not all handles are open.
    Utilities::List<Utilities::String> offered;
    Utilities::SmartPointer<DeviceDriver::RemissionHandle> remission;
    Utilities::SmartPointer<DeviceDriver::EmissionHandle> emission;
    Utilities::SmartPointer<InstrumentInfo_V1> info;
    Utilities::SmartPointer<InstrumentEvents_V1> events;
    Utilities::SmartPointer<DeviceDriver::ServiceHandle> service;
    // Shared by the spectral and the tristimulus reflectance interfaces.
    Utilities::SmartPointer<SpecPhotoMeterReflectance_V1> reflectance;
    Utilities::SmartPointer<DeviceDriver::RemissionScanHandle> scan;
    Utilities::SmartPointer<DeviceDriver::RawHandle> raw;
    Utilities::SmartPointer<DeviceDriver::AmbientLightHandle> ambientLight;
};

}
