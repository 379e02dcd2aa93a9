#include "api/Orbel.h"

#include <mutex>

#include "api/OrbelApiError.h"
#include "include/orbel.h"
#include "utilities/ExceptionResourceNotAvailable.h"
#include "utilities/SmartPointer.h"

using Utilities::String;

namespace {

constexpr int32_t singleReflectance = 3;
constexpr int32_t scanningReflectance = 4;
constexpr int32_t singleEmission = 5;
constexpr int32_t singleAmbientLight = 6;

struct ModeName {
    int32_t mode;
    const char* name;
};

// In the order in which a value of "MeasurementMode" is compared.
constexpr ModeName modeNames[] = {
    {singleEmission, "SingleEmission"},
    {singleAmbientLight, "SingleAmbientLight"},
    {singleReflectance, "SingleReflectance"},
    {scanningReflectance, "ScanningReflectance"},
};

const char* NameOfMode(int32_t mode)
{
    for (const ModeName& entry : modeNames) {
        if (entry.mode == mode) {
            return entry.name;
        }
    }
    return "";
}

constexpr const char* moduleVersion = "1.0.5";
constexpr const char* noDensityFilter = "not set";

const char* YesOrNo(bool answer)
{
    return answer ? "yes" : "no";
}

}

Orbel& Orbel::Instance()
{
    // Hosts may make their first call from several threads at once; only one may create.
    static std::mutex creation;
    static Utilities::SmartPointer<Orbel> instance;
    const std::lock_guard<std::mutex> lock(creation);
    if (instance.IsNull()) {
        instance = Utilities::SmartPointer<Orbel>(new Orbel());
    }
    return *instance;
}

Orbel::Orbel()
    : mode(singleReflectance), autoDensityFilter(noDensityFilter), lastErrorCode(OB_NoError),
      lastErrorText(), result()
{
}

Orbel::~Orbel() = default;

bool Orbel::IsSameKey(const String& key, const char* name)
{
    return key.ToLower() == String(name).ToLower();
}

void Orbel::SetLastError(int32_t code, const String& message)
{
    lastErrorCode = code;
    lastErrorText = message;
}

void Orbel::SetLastError(const OrbelApiError& error)
{
    SetLastError(error.Code(), *error.Text());
}

int32_t Orbel::GetLastErrorCode() const
{
    return lastErrorCode;
}

String Orbel::GetFullErrorText() const
{
    const String codeText = OrbelApiError::TextOf(lastErrorCode);
    if (lastErrorText == codeText) {
        return codeText;
    }
    return codeText + String(" ") + lastErrorText;
}

const char* Orbel::SetResult(const String& answer)
{
    result = answer;
    return result.CString();
}

const char* Orbel::GetResult() const
{
    return result.CString();
}

String Orbel::GetDeviceInfo(const String& key)
{
    if (IsSameKey(key, "Version")) {
        return String(moduleVersion);
    }
    if (IsSameKey(key, "IsKeyPressed")) {
        return String(YesOrNo(IsKeyPressed()));
    }
    if (IsSameKey(key, "MeasurementMode")) {
        return String(NameOfMode(mode));
    }
    if (IsSameKey(key, "Recognition")) {
        return String(YesOrNo(GetRecognition()));
    }
    if (IsSameKey(key, "LastError")) {
        return GetFullErrorText();
    }
    if (IsSameKey(key, "AvailableSamples")) {
        return String(static_cast<long>(GetAvailableSamples()));
    }
    if (IsSameKey(key, "Colorimetric.DensityFilterMode")) {
        return autoDensityFilter;
    }
    if (IsSameKey(key, "Connection")) {
        return String(YesOrNo(IsConnected()));
    }
    return GetInformation(key);
}

void Orbel::SetMode(const String& value)
{
    for (const ModeName& entry : modeNames) {
        if (IsSameKey(value, entry.name)) {
            mode = entry.mode;
            return;
        }
    }
    if (IsSameKey(value, "Reset")) {
        ResetDevice();
    } else if (IsSameKey(value, "ResetAll")) {
        ResetAll();
    } else {
        throw OrbelApiError(OB_InvalidMeasurementMode);
    }
}

// Nothing is open while there is no instrument layer, so there is nothing to close or reopen.
void Orbel::ResetConnection()
{
}

void Orbel::ResetAll()
{
    ResetConnection();
    mode = singleReflectance;
    SetLastError(OrbelApiError(OB_NoError));
    autoDensityFilter = String(noDensityFilter);
}

bool Orbel::IsConnected()
{
    RequireInstrumentLayer();
}

bool Orbel::IsKeyPressed()
{
    RequireInstrumentLayer();
}

String Orbel::GetInformation(const String&)
{
    RequireInstrumentLayer();
}

void Orbel::SetOption(const String&, const String&)
{
    RequireInstrumentLayer();
}

String Orbel::GetOption(const String&)
{
    RequireInstrumentLayer();
}

void Orbel::Calibrate()
{
    RequireInstrumentLayer();
}

void Orbel::TriggerMeasurement()
{
    RequireInstrumentLayer();
}

void Orbel::TriggerCountedScan(int32_t)
{
    if (mode != scanningReflectance) {
        throw OrbelApiError(OB_InvalidMeasurementMode);
    }
    RequireInstrumentLayer();
}

void Orbel::GetSpectrum(float*, int32_t)
{
    RequireInstrumentLayer();
}

void Orbel::GetTriStimulus(float*, int32_t)
{
    RequireInstrumentLayer();
}

void Orbel::GetDensity(float*, int32_t)
{
    RequireInstrumentLayer();
}

void Orbel::GetDensities(float*, int32_t*, int32_t)
{
    RequireInstrumentLayer();
}

void Orbel::SetSubstrate(const float*)
{
    RequireInstrumentLayer();
}

bool Orbel::GetRecognition()
{
    RequireInstrumentLayer();
}

int32_t Orbel::GetAvailableSamples()
{
    RequireInstrumentLayer();
}

void Orbel::ResetDevice()
{
    RequireInstrumentLayer();
}

void Orbel::RequireInstrumentLayer() const
{
    throw Utilities::ExceptionResourceNotAvailable("Instrument layer not built yet: no instrument can be reached");
}
