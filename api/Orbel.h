#pragma once

#include <cstdint>

#include "utilities/String.h"

class OrbelApiError;

// The one object behind the exported functions. It lives from the first exported call until
// the module is unloaded and keeps what must outlast a call: the measurement mode, the
// last-error store and the answer buffer of the two text functions.
//
// The instrument and the measurement devices below this object are not built yet: every
// operation that needs them fails with a foundation exception that says so, which the
// exported functions report as "exception occured" and its text.
class Orbel {
public:
    // The object, created on first use.
    static Orbel& Instance();

    ~Orbel();

    // Option keys and values compare without regard to case.
    static bool IsSameKey(const Utilities::String& key, const char* name);

    // The last-error store. Before anything is stored the message is empty.
    void SetLastError(int32_t code, const Utilities::String& message);
    void SetLastError(const OrbelApiError& error);
    int32_t GetLastErrorCode() const;
    // The text of the stored code, and behind it a blank and the stored message unless the
    // message is that text itself.
    Utilities::String GetFullErrorText() const;

    // The answer buffer of OB_GetDeviceInfo and OB_GetOption; the characters stay valid until
    // the buffer is set again.
    const char* SetResult(const Utilities::String& answer);
    const char* GetResult() const;

    // The answer of OB_GetDeviceInfo for a key.
    Utilities::String GetDeviceInfo(const Utilities::String& key);
    // A value of the option "MeasurementMode": a mode name, "Reset" or "ResetAll".
    void SetMode(const Utilities::String& value);
    void ResetConnection();
    void ResetAll();

    bool IsConnected();
    bool IsKeyPressed();
    Utilities::String GetInformation(const Utilities::String& key);
    void SetOption(const Utilities::String& key, const Utilities::String& value);
    Utilities::String GetOption(const Utilities::String& key);

    void Calibrate();
    void TriggerMeasurement();
    void TriggerCountedScan(int32_t count);
    void GetSpectrum(float* spectrum, int32_t index);
    void GetTriStimulus(float* tristimulus, int32_t index);
    void GetDensity(float* density, int32_t index);
    void GetDensities(float* densities, int32_t* autoIndex, int32_t index);
    void SetSubstrate(const float* spectrum);

private:
    Orbel();
    Orbel(const Orbel&) = delete;
    Orbel& operator=(const Orbel&) = delete;

    bool GetRecognition();
    int32_t GetAvailableSamples();
    void ResetDevice();

    [[noreturn]] void RequireInstrumentLayer() const;

    int32_t mode;
    Utilities::String autoDensityFilter;
    int32_t lastErrorCode;
    Utilities::String lastErrorText;
    Utilities::String result;
};
