#include "manager/pavilo/FindDevices_V1_Impl.h"

#include "utilities/ComponentCreatorNormal.h"

namespace HviManager::PaviloDriver {

using Utilities::String;

namespace {

Utilities::ComponentCreatorNormal<FindDevices_V1_Impl> findDevicesCreator(
    "FindDevices_V1_Impl", "$Revision: 1.4 $", "Pavilo");

}

FindDevices_V1_Impl::FindDevices_V1_Impl() = default;

FindDevices_V1_Impl::FindDevices_V1_Impl(const Utilities::SmartPointer<InstrumentInfo_V1>& info) : info(info) { }

Diagnostics::String FindDevices_V1_Impl::GetValueString()
{
    return Diagnostics::String();
}

Utilities::List<FindDevices_V1::DeviceDescription> FindDevices_V1_Impl::FindDevices()
{
    DeviceDescription device;
    device[String("Name")] = String("Pavilo");
    device[String("Driver")] = String("Pavilo");
    device[String("Type")] = String("Instrument");
    // "Default" means whichever instrument the driver finds first.
    device[String("SerialNumber")] = String("Default");
    device[String("Transport")] = String("USB");
    Utilities::List<DeviceDescription> devices;
    devices.Append(device);
    return devices;
}

bool FindDevices_V1_Impl::IsAvailable(const DeviceDescription&)
{
    return !info.IsNull() && info->GetInformation(String("Connection")) == String("Connected");
}

}
