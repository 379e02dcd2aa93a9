// The fourteen exported functions. Each is a body inside one of the frames of GuardFrame; what
// the bodies do lives in Orbel.

#include <climits>
#include <cstdint>
#include <cstdlib>

#include "api/CallGate.h"
#include "api/GuardFrame.h"
#include "api/Orbel.h"
#include "api/OrbelApiError.h"
#include "include/orbel.h"

namespace {

// The standard decimal parse: a text that isn't a number reads as 0.
int32_t ParseDecimal(const char* text)
{
    const long value = std::strtol(text, nullptr, 10);
    if (value > INT32_MAX) {
        return INT32_MAX;
    }
    if (value < INT32_MIN) {
        return INT32_MIN;
    }
    return static_cast<int32_t>(value);
}

bool IsConnectedInCall()
{
    Orbel::BeginCall();
    return Orbel::Instance().IsConnected();
}

}

extern "C" {

const char* OB_GetDeviceInfo(const char* key)
{
    return GuardFrame::RunDeviceInfo([key] {
        GuardFrame::RequireArgument(key);
        Orbel& orbel = Orbel::Instance();
        return orbel.SetResult(orbel.GetDeviceInfo(key));
    });
}

// While another thread's call runs, the answer is what that call last learnt: a measurement in
// progress holds the instrument, and waiting for it would leave a host's poll hanging.
int32_t OB_IsConnected(void)
{
    try {
        const CallGate::Entry entry = CallGate::EnterUnlessKnown();
        const bool connected = entry.owns_lock() ? IsConnectedInCall() : CallGate::LastKnownConnection();
        return connected ? OB_NoError : OB_DeviceNotConnected;
    } catch (...) {
        // No exception may cross the C boundary: a failure outside the module's family answers as unknown.
        return OB_UnknownError;
    }
}

// Neither reads nor writes the last-error store: a key that wasn't pressed is no failure. During
// another thread's call the instrument can't be asked; its latch keeps a press for the next
// question.
int32_t OB_KeyPressed(void)
{
    try {
        const CallGate::Entry entry = CallGate::EnterUnlessKnown();
        if (!entry.owns_lock()) {
            return CallGate::LastKnownConnection() ? OB_KeyNotPressed : OB_DeviceNotConnected;
        }
        Orbel::BeginCall();
        return Orbel::Instance().IsKeyPressed() ? OB_NoError : OB_KeyNotPressed;
    } catch (const OrbelApiError& error) {
        return error.Code();
    } catch (...) {
        // No exception may cross the C boundary: a failure outside the module's family answers as unknown.
        return OB_UnknownError;
    }
}

int32_t OB_GetNumberOfAvailableSamples(void)
{
    try {
        return ParseDecimal(OB_GetDeviceInfo("AvailableSamples"));
    } catch (...) {
        // -1 is this function's answer for a count that can't be had, whatever the reason.
        return -1;
    }
}

int32_t OB_Calibrate(void)
{
    return GuardFrame::RunStatus([] { Orbel::Instance().Calibrate(); });
}

int32_t OB_TriggerMeasurement(void)
{
    return GuardFrame::RunStatus([] { Orbel::Instance().TriggerMeasurement(); });
}

int32_t OB_TriggerCountedScan(int32_t count)
{
    return GuardFrame::RunStatus([count] { Orbel::Instance().TriggerCountedScan(count); });
}

int32_t OB_GetSpectrum(float* spectrum, int32_t index)
{
    return GuardFrame::RunStatus([spectrum, index] {
        GuardFrame::RequireArgument(spectrum);
        Orbel::Instance().GetSpectrum(spectrum, index);
    });
}

int32_t OB_GetTriStimulus(float* tristimulus, int32_t index)
{
    return GuardFrame::RunStatus([tristimulus, index] {
        GuardFrame::RequireArgument(tristimulus);
        Orbel::Instance().GetTriStimulus(tristimulus, index);
    });
}

int32_t OB_GetDensity(float* density, int32_t index)
{
    return GuardFrame::RunStatus([density, index] {
        GuardFrame::RequireArgument(density);
        Orbel::Instance().GetDensity(density, index);
    });
}

// autoIndex may be null: the caller then doesn't want to know which filter the automatic
// choice would take.
int32_t OB_GetDensities(float* densities, int32_t* autoIndex, int32_t index)
{
    return GuardFrame::RunStatus([densities, autoIndex, index] {
        GuardFrame::RequireArgument(densities);
        Orbel::Instance().GetDensities(densities, autoIndex, index);
    });
}

int32_t OB_SetOption(const char* key, const char* value)
{
    return GuardFrame::RunStatus([key, value] {
        GuardFrame::RequireArgument(key);
        GuardFrame::RequireArgument(value);
        Orbel& orbel = Orbel::Instance();
        if (Orbel::IsSameKey(key, "MeasurementMode")) {
            orbel.SetMode(value);
        } else {
            orbel.SetOption(key, value);
        }
    });
}

const char* OB_GetOption(const char* key)
{
    return GuardFrame::RunOption([key] {
        GuardFrame::RequireArgument(key);
        if (Orbel::IsSameKey(key, "MeasurementMode")) {
            return OB_GetDeviceInfo("MeasurementMode");
        }
        if (Orbel::IsSameKey(key, "Recognition")) {
            return OB_GetDeviceInfo("Recognition");
        }
        Orbel& orbel = Orbel::Instance();
        return orbel.SetResult(orbel.GetOption(key));
    });
}

int32_t OB_SetSubstrate(const float* spectrum)
{
    return GuardFrame::RunStatus([spectrum] {
        GuardFrame::RequireArgument(spectrum);
        Orbel::Instance().SetSubstrate(spectrum);
    });
}
}
