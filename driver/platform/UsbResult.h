#pragma once

#include <cstdint>

#include "utilities/String.h"

namespace DeviceDriver {

// What one call of the USB platform came to: the bytes moved, or the platform's error number with
// the platform's text for it. A time-out has the number 1460 on every platform, so that the texts
// built above the seam read the same everywhere.
class UsbResult {
public:
    static constexpr std::uint32_t TimeoutError = 1460;

    static UsbResult Success(std::uint32_t transferred);
    // An errno number; the result carries the system's own number for it, and its text.
    static UsbResult Failure(int platformError);
    static UsbResult Timeout();
    static UsbResult NoDevice();
    static UsbResult Cancelled();

    // The word that names this platform in error texts.
    static Utilities::String ErrorWord();

    bool Succeeded() const { return error == 0; }
    bool IsTimeout() const { return error == TimeoutError; }
    bool IsNoDevice() const;
    bool IsCancelled() const;
    std::uint32_t Transferred() const { return transferred; }
    std::uint32_t Error() const { return error; }
    const Utilities::String& Text() const { return text; }

private:
    UsbResult(std::uint32_t transferred, std::uint32_t error, const Utilities::String& text);

    std::uint32_t transferred;
    std::uint32_t error;
    Utilities::String text;
};

}
