#include "driver/platform/UsbResult.h"

#include <windows.h>

#include <cerrno>

#include "utilities/platform/windows/WideText.h"

namespace DeviceDriver {

namespace {

// The callers above the seam name failures by the C library's numbers; the texts and codes a
// Windows user sees are the system's own.
DWORD SystemError(int error)
{
    switch (error) {
    case EINVAL:
        return ERROR_INVALID_PARAMETER;
    case EMSGSIZE:
        return ERROR_INSUFFICIENT_BUFFER;
    case EOVERFLOW:
        return ERROR_MORE_DATA;
    case ENODEV:
        return ERROR_DEVICE_NOT_CONNECTED;
    case ECANCELED:
        return ERROR_OPERATION_ABORTED;
    case ETIMEDOUT:
        return UsbResult::TimeoutError;
    case EPROTO:
        return ERROR_INVALID_DATA;
    default:
        return ERROR_GEN_FAILURE;
    }
}

// In the user's default language, without the line end that the system puts behind it.
Utilities::String SystemText(DWORD error)
{
    wchar_t* text = nullptr;
    const DWORD length =
        ::FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
            nullptr, error, MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), reinterpret_cast<wchar_t*>(&text), 0, nullptr);
    std::wstring message(text != nullptr ? text : L"", length);
    ::LocalFree(text);
    while (!message.empty() && (message.back() == L'\n' || message.back() == L'\r' || message.back() == L' ')) {
        message.pop_back();
    }
    return Utilities::String(Utilities::WideText::ToNarrow(message));
}

}

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
    const DWORD error = SystemError(platformError);
    return UsbResult(0, error, SystemText(error));
}

UsbResult UsbResult::Timeout()
{
    return Failure(ETIMEDOUT);
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
    return Utilities::String("Win32");
}

bool UsbResult::IsNoDevice() const
{
    return error == ERROR_DEVICE_NOT_CONNECTED;
}

bool UsbResult::IsCancelled() const
{
    return error == ERROR_OPERATION_ABORTED;
}

}
