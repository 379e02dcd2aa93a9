#include "driver/platform/UsbResult.h"

#include <cerrno>
#include <system_error>

namespace DeviceDriver {

UsbResult::UsbResult(std::uint32_t transferred, std::uint32_t error, const Utilities::String& text)
    : transferred(transferred), error(error), text(text)
{
}

UsbResult UsbResult::Success(std::uint32_t transferred)
{
    return UsbResult(transferred, 0, Utilities::String());
}

UsbResult UsbResult::Failure(int platformError)
{
    if (platformError == ETIMEDOUT) {
        return Timeout();
    }
    return UsbResult(
        0, static_cast<std::uint32_t>(platformError), Utilities::String(std::system_category().message(platformError)));
}

UsbResult UsbResult::Timeout()
{
    return UsbResult(0, TimeoutError, Utilities::String(std::system_category().message(ETIMEDOUT)));
}

UsbResult UsbResult::NoDevice()
{
    return Failure(ENODEV);
}

UsbResult UsbResult::Cancelled()
{
    return Failure(ECANCELED);
}

Utilities::String UsbResult::ErrorWord()
{
    return Utilities::String("Linux");
}

bool UsbResult::IsNoDevice() const
{
    return error == ENODEV;
}

bool UsbResult::IsCancelled() const
{
    return error == ECANCELED;
}

}
