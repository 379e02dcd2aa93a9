#pragma once

#include <cstdint>
#include <map>
#include <mutex>

#include "api/MeasurementDeviceInterface.h"
#include "api/Scanner.h"
#include "cmetry/HvSpectrum.h"
#include "manager/HviInstrument.h"
#include "manager/InstrumentButtons_V1.h"
#include "manager/InstrumentInfo_V1.h"
#include "manager/SpecPhotoMeterScanning_V1.h"
#include "utilities/Mutex.h"
#include "utilities/SmartPointer.h"
#include "utilities/String.h"

class OrbelApiError;

// The one object behind the exported functions. It owns the instrument, holds the measurement
// mode and one measurement device per mode, and keeps what must outlast a call: the last-error
// store and the answer buffer of the two text functions, one buffer a thread. One process at a
// time may have it: a lock known to all processes is held for as long as the object lives. The
// exported functions reach it one call at a time, through the call gate.
class Orbel {
public:
    // The object, created on first use; fails while another process holds the process lock,
    // and tries afresh at the next call.
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

    // The answer buffer of OB_GetDeviceInfo and OB_GetOption of the calling thread; the
    // characters stay valid until the thread sets it again.
    const char* SetResult(const Utilities::String& answer);
    const char* GetResult() const;

    // Opens first; fails with the instrument's own reason when it is attached and didn't open,
    // and with ExceptionNullpointer when the mode has no device.
    MeasurementDeviceInterface& GetDevice();

    // Each exported call begins here: an instrument that fails to open is tried once a call, so
    // that one that doesn't answer costs a call one opening, not one for each of its steps.
    // Static, as the first call creates the object, which opens.
    static void BeginCall();
    // Open builds the devices when the instrument answers; Close drops them with their results
    // and options and closes the instrument.
    void Open();
    void Close();
    // Close, and open again if the instrument still answers.
    void ResetConnection();
    void ResetAll();

    bool IsConnected();
    // Consumes the press; fails with code 2 without an instrument.
    bool IsKeyPressed();
    // A value of the instrument after a fresh test of the connection; "device not connected!"
    // without an instrument, which also closes this object.
    Utilities::String GetInformation(const Utilities::String& key);

    // The answer of OB_GetDeviceInfo for a key.
    Utilities::String GetDeviceInfo(const Utilities::String& key);
    // A value of the option "MeasurementMode": a mode name, "Reset" or "ResetAll".
    void SetMode(const Utilities::String& value);
    void SetOption(const Utilities::String& key, const Utilities::String& value);
    Utilities::String GetOption(const Utilities::String& key);

    void Calibrate();
    void TriggerMeasurement();
    void TriggerCountedScan(int32_t count);

    // A sample of the current device; -1 is the first. Fails with code 8 when there is none.
    const CMetry::HvSpectrum& GetSample(int32_t index);
    void GetSpectrum(float* spectrum, int32_t index);
    void GetTriStimulus(float* tristimulus, int32_t index);
    void GetDensity(float* density, int32_t index);
    void GetDensities(float* densities, int32_t* autoIndex, int32_t index);
    void SetSubstrate(const float* spectrum);

private:
    explicit Orbel(const Utilities::Mutex& heldProcessLock);
    Orbel(const Orbel&) = delete;
    Orbel& operator=(const Orbel&) = delete;

    template<class Interface>
    Utilities::SmartPointer<Interface> InterfaceOf(const char* name);
    template<class Interface>
    Utilities::SmartPointer<Interface> OpenedInterfaceOf(const char* name);
    void RequireOpened() const;
    void BuildDevices();
    // The scanning device, whatever the mode; it holds the recognition flag.
    Scanner<HviManager::SpecPhotoMeterScanning_V1>& GetScanner();
    bool GetRecognition();
    int32_t GetAvailableSamples();
    static const CMetry::HvSpectrum& SampleOf(const MeasurementDeviceInterface& device, int32_t index);
    // Densities are taken against the paper unless the white base is "Absolute", so a substrate
    // must be given first.
    void RequireWhiteBase(const MeasurementDeviceInterface& device) const;

    int32_t mode;
    Utilities::String autoDensityFilter;
    mutable std::mutex lastErrorLock;
    int32_t lastErrorCode;
    Utilities::String lastErrorText;
    bool substrateSet;
    // Why the attached instrument didn't open at the last attempt; empty when it opened.
    Utilities::String openFailure;
    // Only read and written inside the call gate.
    static bool openFailedInCall;
    Utilities::SmartPointer<HviManager::HviInstrument> instrument;
    Utilities::SmartPointer<HviManager::InstrumentInfo_V1> info;
    Utilities::SmartPointer<HviManager::InstrumentButtons_V1> buttons;
    std::map<int32_t, Utilities::SmartPointer<MeasurementDeviceInterface>> devices;
    Utilities::Mutex processLock;
};
