#include "api/Orbel.h"

#include <cmath>
#include <cstdlib>
#include <mutex>
#include <sstream>
#include <string>

#include "api/CallGate.h"
#include "api/EmissionMeasurementDevice.h"
#include "api/OrbelApiError.h"
#include "api/ReflectanceMeasurementDevice.h"
#include "cmetry/CMetryCalculator.h"
#include "cmetry/Density.h"
#include "cmetry/HvColorVector.h"
#include "cmetry/PaperWhite.h"
#include "driver/PaviloLowLevelDriver.h"
#include "include/orbel.h"
#include "manager/SpecPhotoMeterEmission_V1.h"
#include "manager/SpecPhotoMeterReflectance_V1.h"
#include "manager/pavilo/Pavilo.h"
#include "utilities/Anything.h"
#include "utilities/ExceptionNullpointer.h"
#include "utilities/ExceptionOutOfBound.h"
#include "utilities/List.h"
#include "utilities/Map.h"
#include "utilities/platform/ProcessEnd.h"

using CMetry::HvMeasureConditions;
using CMetry::HvSpectrum;
using HviManager::SpecPhotoMeterEmission_V1;
using HviManager::SpecPhotoMeterReflectance_V1;
using HviManager::SpecPhotoMeterScanning_V1;
using Utilities::SmartPointer;
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

// The keys of the public options. A key given in another case is handed to the conditions in
// this form; keys outside the list are custom conditions and go as written.
constexpr const char* optionKeys[] = {
    "Colorimetric.Illumination",
    "Colorimetric.Observer",
    "Colorimetric.WhiteBase",
    "Colorimetric.DensityStandard",
    "Colorimetric.DensityFilterMode",
    "Physical.Filter",
    "Physical.NumberOfDataPointsSpectrum",
    "Physical.WavelengthSpectrumMax",
    "Physical.WavelengthSpectrumMin",
    "ColorSpaceDescription.Type",
    "ColorSpaceDescription.AbsoluteOrDeltaVector",
    "ColorSpaceDescription.DeltaEFormula",
    "CustomCondition",
    "Orbel_NumberOfSamples",
    "Orbel_Gain",
    "Orbel_IntegrationTime",
};

String CanonicalOptionKey(const String& key)
{
    for (const char* option : optionKeys) {
        if (Orbel::IsSameKey(key, option)) {
            return String(option);
        }
    }
    return key;
}

// The tuning of emission goes to the instrument as given: a value that the instrument can't take
// is refused where the host sets it, before it makes a measurement of nothing.
constexpr const char* samplesKey = "Orbel_NumberOfSamples";
constexpr const char* integrationTimeKey = "Orbel_IntegrationTime";
constexpr long largestSampleCount = DeviceDriver::PaviloLowLevelDriver::MaximumCount;
// The instrument counts the integration time in ticks, with 16 bits.
constexpr double shortestIntegrationTime = DeviceDriver::PaviloLowLevelDriver::SecondsPerTick;
constexpr double longestIntegrationTime = DeviceDriver::PaviloLowLevelDriver::SecondsPerTick * 65535.0;

bool IsWholeNumberIn(const String& text, long lowest, long highest)
{
    const std::string digits = text.ToStdString();
    char* end = nullptr;
    const long value = std::strtol(digits.c_str(), &end, 10);
    return !digits.empty() && *end == '\0' && value >= lowest && value <= highest;
}

bool IsNumberIn(const String& text, double lowest, double highest)
{
    const std::string digits = text.ToStdString();
    char* end = nullptr;
    const double value = std::strtod(digits.c_str(), &end);
    return !digits.empty() && *end == '\0' && std::isfinite(value) && value >= lowest && value <= highest;
}

void RequireTuningValue(const String& key, const String& value)
{
    std::ostringstream range;
    if (key == String(samplesKey)) {
        if (IsWholeNumberIn(value, 1, largestSampleCount)) {
            return;
        }
        range << "a whole number from 1 to " << largestSampleCount;
    } else if (key == String(integrationTimeKey)) {
        if (IsNumberIn(value, shortestIntegrationTime, longestIntegrationTime)) {
            return;
        }
        range << "a number of seconds from " << shortestIntegrationTime << " to " << longestIntegrationTime;
    } else {
        return;
    }
    throw OrbelApiError(OB_InvalidArgument, key + String(" \"") + value + String("\" is not ") + String(range.str()));
}

// A paper reflects some light at every wavelength, and a fluorescent one a little more than it
// receives; outside that a density against it means nothing.
constexpr float lowestPaperReflectance = 0.001f;
constexpr float highestPaperReflectance = 2.0f;

// The filters of OB_GetDensities, in the order of its array.
constexpr const char* densityFilters[] = {"Cyan", "Magenta", "Yellow", "Black"};
constexpr int32_t numberOfDensityFilters = 4;

constexpr const char* moduleVersion = "1.0.5";
constexpr const char* noDensityFilter = "not set";
constexpr const char* processLockName = "Orbel C-SDK lock";
constexpr const char* connected = "Connected";
constexpr const char* lockNotHad = "Failed";
constexpr const char* notConnected = "device not connected!";
constexpr const char* densityFilterModeKey = "Colorimetric.DensityFilterMode";
constexpr int spectrumValues = HvSpectrum::numberOfValues;
constexpr int tristimulusValues = 3;

using ReflectanceDevice = ReflectanceMeasurementDevice<SpecPhotoMeterReflectance_V1>;
using EmissionDevice = EmissionMeasurementDevice<SpecPhotoMeterEmission_V1>;
using ScanningDevice = Scanner<SpecPhotoMeterScanning_V1>;

const char* YesOrNo(bool answer)
{
    return answer ? "yes" : "no";
}

// Each host thread reads its own answers, which another thread's call can't overwrite.
String& ResultOfThisThread()
{
    thread_local String result;
    return result;
}

SmartPointer<Orbel>& TheInstance()
{
    static SmartPointer<Orbel> instance;
    return instance;
}

// Runs at exit ahead of the static objects that the instrument was built with, so that it
// closes while they still stand.
void DestroyInstance()
{
    TheInstance() = SmartPointer<Orbel>();
}

}

Orbel& Orbel::Instance()
{
    // Hosts may make their first call from several threads at once; only one may create.
    static std::mutex creation;
    const std::lock_guard<std::mutex> lock(creation);
    SmartPointer<Orbel>& instance = TheInstance();
    if (instance.IsNull()) {
        Utilities::Mutex processLock{String(processLockName)};
        if (processLock.Lock(0)) {
            try {
                instance = SmartPointer<Orbel>(new Orbel(processLock));
            } catch (...) {
                processLock.Unlock();
                throw;
            }
            Utilities::ProcessEnd::AtExit(DestroyInstance);
        }
    }
    if (instance.IsNull()) {
        throw Utilities::ExceptionOutOfBound("Orbel aready in use by another process.");
    }
    return *instance;
}

Orbel::Orbel(const Utilities::Mutex& heldProcessLock)
    : mode(singleReflectance), autoDensityFilter(noDensityFilter), lastErrorLock(), lastErrorCode(OB_NoError),
      lastErrorText(), substrateSet(false), openFailure(), instrument(new HviManager::PaviloDriver::Pavilo()), info(),
      buttons(), devices(), processLock(heldProcessLock)
{
    info = InterfaceOf<HviManager::InstrumentInfo_V1>("InstrumentInfo_V1");
    Open();
}

Orbel::~Orbel()
{
    Close();
    info = SmartPointer<HviManager::InstrumentInfo_V1>();
    instrument->Close();
    instrument = SmartPointer<HviManager::HviInstrument>();
    processLock.Unlock();
}

bool Orbel::IsSameKey(const String& key, const char* name)
{
    return key.ToLower() == String(name).ToLower();
}

void Orbel::SetLastError(int32_t code, const String& message)
{
    const std::lock_guard<std::mutex> lock(lastErrorLock);
    lastErrorCode = code;
    lastErrorText = message;
}

void Orbel::SetLastError(const OrbelApiError& error)
{
    SetLastError(error.Code(), *error.Text());
}

int32_t Orbel::GetLastErrorCode() const
{
    const std::lock_guard<std::mutex> lock(lastErrorLock);
    return lastErrorCode;
}

String Orbel::GetFullErrorText() const
{
    const std::lock_guard<std::mutex> lock(lastErrorLock);
    const String codeText = OrbelApiError::TextOf(lastErrorCode);
    if (lastErrorText == codeText) {
        return codeText;
    }
    return codeText + String(" ") + lastErrorText;
}

const char* Orbel::SetResult(const String& answer)
{
    String& result = ResultOfThisThread();
    result = answer;
    return result.CString();
}

const char* Orbel::GetResult() const
{
    return ResultOfThisThread().CString();
}

MeasurementDeviceInterface& Orbel::GetDevice()
{
    Open();
    RequireOpened();
    const auto device = devices.find(mode);
    if (device == devices.end() || device->second.IsNull()) {
        throw Utilities::ExceptionNullpointer("GetDevice(): device not found");
    }
    return *device->second;
}

template<class Interface>
SmartPointer<Interface> Orbel::InterfaceOf(const char* name)
{
    return Utilities::SmartPointerCast<Interface>(instrument->GetInterface(String(name)));
}

// Null when the instrument didn't open: asking would open it again, and an instrument that
// doesn't answer would cost each request the whole wait of an opening.
template<class Interface>
SmartPointer<Interface> Orbel::OpenedInterfaceOf(const char* name)
{
    return buttons.IsNull() ? SmartPointer<Interface>() : InterfaceOf<Interface>(name);
}

// Without an instrument the interfaces are null and each device fails when it is used; buttons
// stay null, so that the next call tries again.
bool Orbel::openFailedInCall = false;

void Orbel::BeginCall()
{
    openFailedInCall = false;
}

void Orbel::Open()
{
    if (!buttons.IsNull() || openFailedInCall) {
        return;
    }
    instrument->Activate();
    info = InterfaceOf<HviManager::InstrumentInfo_V1>("InstrumentInfo_V1");
    buttons = InterfaceOf<HviManager::InstrumentButtons_V1>("InstrumentButtons_V1");
    openFailedInCall = buttons.IsNull();
    openFailure = buttons.IsNull() ? instrument->OpenFailure() : String();
    BuildDevices();
}

// An instrument that is there but didn't open says why, for as long as it doesn't open.
void Orbel::RequireOpened() const
{
    if (buttons.IsNull() && !openFailure.IsEmpty()) {
        throw OrbelApiError(OB_ExceptionOccured, openFailure);
    }
}

void Orbel::BuildDevices()
{
    devices.clear();
    devices[singleEmission] = SmartPointer<MeasurementDeviceInterface>(
        new EmissionDevice(OpenedInterfaceOf<SpecPhotoMeterEmission_V1>("SpecPhotoMeterEmission_V1")));
    devices[singleAmbientLight] = SmartPointer<MeasurementDeviceInterface>(
        new EmissionDevice(OpenedInterfaceOf<SpecPhotoMeterEmission_V1>("SpecPhotoMeterAmbientLight_V1")));
    devices[singleReflectance] = SmartPointer<MeasurementDeviceInterface>(
        new ReflectanceDevice(OpenedInterfaceOf<SpecPhotoMeterReflectance_V1>("SpecPhotoMeterReflectance_V1")));
    devices[scanningReflectance] = SmartPointer<MeasurementDeviceInterface>(
        new ScanningDevice(OpenedInterfaceOf<SpecPhotoMeterScanning_V1>("SpecPhotoMeterScanning_V1")));
}

void Orbel::Close()
{
    devices.clear();
    buttons = SmartPointer<HviManager::InstrumentButtons_V1>();
    instrument->Close();
}

void Orbel::ResetConnection()
{
    Close();
    if (IsConnected()) {
        Open();
    }
}

void Orbel::ResetAll()
{
    ResetConnection();
    mode = singleReflectance;
    SetLastError(OB_NoError, OrbelApiError::TextOf(OB_NoError));
    autoDensityFilter = String(noDensityFilter);
    substrateSet = false;
}

bool Orbel::IsConnected()
{
    return GetInformation(String("Connection")) == String(connected);
}

bool Orbel::IsKeyPressed()
{
    if (!IsConnected()) {
        throw OrbelApiError(OB_DeviceNotConnected);
    }
    Open();
    RequireOpened();
    if (buttons.IsNull()) {
        throw OrbelApiError(OB_DeviceNotConnected);
    }
    const Utilities::Map<String, Utilities::Anything> states =
        buttons->GetButtonStates(SmartPointer<Utilities::List<String>>());
    return states.Find(String("MeasurementKey")).IsValid();
}

// A lock that wasn't had is another user of the instrument, which is there: only an instrument
// that the driver doesn't find is lost.
String Orbel::GetInformation(const String& key)
{
    const String connection = info->GetInformation(String("Connection"));
    if (connection == String(lockNotHad)) {
        return key == String("Connection") ? String(connected) : String(lockNotHad);
    }
    CallGate::NoteConnection(connection == String(connected));
    if (connection != String(connected)) {
        Close();
        return String(notConnected);
    }
    Open();
    if (key == String("Connection")) {
        return String(connected);
    }
    return info->GetInformation(key);
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
    if (IsSameKey(key, densityFilterModeKey)) {
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
        GetDevice().Reset();
    } else if (IsSameKey(value, "ResetAll")) {
        ResetAll();
    } else {
        throw OrbelApiError(OB_InvalidMeasurementMode);
    }
}

void Orbel::SetOption(const String& key, const String& value)
{
    if (IsSameKey(key, "Recognition")) {
        GetScanner().SetRecognition(IsSameKey(value, "yes"));
        return;
    }
    const String canonicalKey = CanonicalOptionKey(key);
    RequireTuningValue(canonicalKey, value);
    GetDevice().SetOption(canonicalKey.CString(), value.CString());
}

String Orbel::GetOption(const String& key)
{
    return GetDevice().GetConditions().GetCondition(CanonicalOptionKey(key));
}

void Orbel::Calibrate()
{
    GetDevice().Calibrate();
}

void Orbel::TriggerMeasurement()
{
    GetDevice().TriggerMeasurement();
}

void Orbel::TriggerCountedScan(int32_t count)
{
    if (mode != scanningReflectance) {
        throw OrbelApiError(OB_InvalidMeasurementMode);
    }
    if (count > static_cast<int32_t>(DeviceDriver::PaviloLowLevelDriver::LargestScanCount)) {
        throw OrbelApiError(OB_InvalidArgument,
            String("count ") + String(static_cast<long>(count)) + String(" is above the ") +
                String(static_cast<unsigned long>(DeviceDriver::PaviloLowLevelDriver::LargestScanCount)) +
                String(" readings a position of a scan can hold"));
    }
    Open();
    RequireOpened();
    // A count below 1 leaves the instrument's own, as the count of a plain trigger does.
    GetScanner().TriggerCountedScan(count < 1 ? ScanningDevice::defaultCount : count);
}

const HvSpectrum& Orbel::GetSample(int32_t index)
{
    return SampleOf(GetDevice(), index);
}

const HvSpectrum& Orbel::SampleOf(const MeasurementDeviceInterface& device, int32_t index)
{
    if (!device.HasSamples()) {
        throw OrbelApiError(OB_NoDataAvailable, String("measurement not triggered !!"));
    }
    if (index == -1) {
        return device.GetSamples()[0];
    }
    if (static_cast<uint32_t>(index) >= device.GetSamples().Size()) {
        throw OrbelApiError(
            OB_NoDataAvailable, String("index") + String(static_cast<long>(index)) + String(" is out of range"));
    }
    return device.GetSamples()[static_cast<uint32_t>(index)];
}

void Orbel::GetSpectrum(float* spectrum, int32_t index)
{
    const HvSpectrum& sample = GetSample(index);
    for (int value = 0; value < spectrumValues; ++value) {
        spectrum[value] = sample[static_cast<uint16_t>(value)];
    }
}

void Orbel::GetTriStimulus(float* tristimulus, int32_t index)
{
    const MeasurementDeviceInterface& device = GetDevice();
    const CMetry::HvColorVector vector =
        CMetry::CMetryCalculator::GetVector(SampleOf(device, index), device.GetConditions());
    for (int channel = 0; channel < tristimulusValues; ++channel) {
        tristimulus[channel] = vector[static_cast<uint16_t>(channel)];
    }
}

void Orbel::RequireWhiteBase(const MeasurementDeviceInterface& device) const
{
    const String whiteBase = device.GetConditions().GetCondition(String("Colorimetric.WhiteBase"));
    if (whiteBase != String("Absolute") && !substrateSet) {
        throw OrbelApiError(OB_NoSubstrateWhiteReference);
    }
}

void Orbel::GetDensity(float* density, int32_t index)
{
    const MeasurementDeviceInterface& device = GetDevice();
    RequireWhiteBase(device);
    const HvMeasureConditions& conditions = device.GetConditions();
    const HvSpectrum& sample = SampleOf(device, index);
    *density = CMetry::GetDensity(sample, conditions);
    autoDensityFilter = String(noDensityFilter);
    if (conditions.GetCondition(String(densityFilterModeKey)) == String("Auto")) {
        autoDensityFilter = CMetry::GetDensityFilter(sample, conditions);
    }
}

// Each filter goes through the device's options, so that the interface sees the filter too and
// the option reads as the last one set afterwards.
void Orbel::GetDensities(float* densities, int32_t* autoIndex, int32_t index)
{
    MeasurementDeviceInterface& device = GetDevice();
    RequireWhiteBase(device);
    const HvSpectrum sample = SampleOf(device, index);
    for (int32_t filter = 0; filter < numberOfDensityFilters; ++filter) {
        device.SetOption(densityFilterModeKey, densityFilters[filter]);
        densities[filter] = CMetry::GetDensity(sample, device.GetConditions());
    }
    if (autoIndex == nullptr) {
        return;
    }
    device.SetOption(densityFilterModeKey, "Auto");
    const String chosen = CMetry::GetDensityFilter(sample, device.GetConditions());
    int32_t position = 0;
    while (position < numberOfDensityFilters && chosen != String(densityFilters[position])) {
        ++position;
    }
    *autoIndex = position;
}

void Orbel::SetSubstrate(const float* spectrum)
{
    for (int value = 0; value < spectrumValues; ++value) {
        const float reflectance = spectrum[value];
        if (!std::isfinite(reflectance) || reflectance < lowestPaperReflectance ||
            reflectance > highestPaperReflectance) {
            std::ostringstream text;
            text << "substrate value " << value << " is " << reflectance << ", not a reflectance from "
                 << lowestPaperReflectance << " to " << highestPaperReflectance;
            throw OrbelApiError(OB_InvalidArgument, String(text.str()));
        }
    }
    CMetry::SetPaperWhite(HvSpectrum(spectrum));
    substrateSet = true;
}

ScanningDevice& Orbel::GetScanner()
{
    Open();
    return *Utilities::SmartPointerCast<ScanningDevice>(devices[scanningReflectance]);
}

bool Orbel::GetRecognition()
{
    return GetScanner().GetRecognition();
}

int32_t Orbel::GetAvailableSamples()
{
    return static_cast<int32_t>(GetDevice().GetSamples().Size());
}
