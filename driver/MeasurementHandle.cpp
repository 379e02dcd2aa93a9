#include "driver/MeasurementHandle.h"

#include <map>
#include <mutex>
#include <string>

#include "driver/ConditionItems.h"
#include "driver/StateIds.h"
#include "driver/platform/Timing_PC.h"
#include "utilities/Exception.h"
#include "utilities/ExceptionOutOfBound.h"
#include "utilities/LanguageTranslator.h"
#include "utilities/Mutex.h"
#include "utilities/MutexLock.h"
#include "utilities/ResolveAs.h"

namespace DeviceDriver {

namespace {

// One named lock per connection for the whole process, made on first use.
class ConnectionLocks {
public:
    Utilities::Mutex For(const std::string& connection)
    {
        std::lock_guard<std::mutex> held(guard);
        const auto found = locks.find(connection);
        if (found != locks.end()) {
            return found->second;
        }
        const Utilities::Mutex made(connection.c_str());
        locks.emplace(connection, made);
        return made;
    }

    bool Has(const std::string& connection)
    {
        std::lock_guard<std::mutex> held(guard);
        return locks.count(connection) > 0;
    }

private:
    std::mutex guard;
    std::map<std::string, Utilities::Mutex> locks;
};

ConnectionLocks& TheConnectionLocks()
{
    static ConnectionLocks locks;
    return locks;
}

}

const char* const MeasurementHandle::noError = "No error!";
const char* const MeasurementHandle::notOpen = "Measurement handle is not open!";
const char* const MeasurementHandle::handleNotOpen = "Handle not open!";

MeasurementHandle::MeasurementHandle() : lastError(noError), conditions("PhysicalCondition") { }

// The last handle of a connection closes the instrument; what fails then, such as the writing of
// the log, is lost with the handle.
MeasurementHandle::~MeasurementHandle()
{
    try {
        if (!driver.IsNull()) {
            driver->Detach(this);
        }
    } catch (const Utilities::Exception&) {
        return;
    }
}

void MeasurementHandle::Update(Utilities::Observee<long>*, long event)
{
    if (event == lostConnectionEvent) {
        connectionLost.store(true);
    }
}

bool MeasurementHandle::GetScan(SpectrumDataFifo*& fifo)
{
    if (!IsOpen()) {
        SetLastError(handleNotOpen);
        return false;
    }
    fifo = &sampleFifo;
    SetLastError(noError);
    return true;
}

bool MeasurementHandle::GetResult(SpectrumData& target)
{
    if (!IsOpen()) {
        SetLastError(handleNotOpen);
        return false;
    }
    if (!sample.IsValid()) {
        SetLastError("Spectrum not valid!");
        return false;
    }
    target = sample;
    SetLastError(noError);
    return true;
}

bool MeasurementHandle::GetConditions(ConfigurationData& map, bool read)
{
    if (!IsOpen()) {
        SetLastError(handleNotOpen);
        return false;
    }
    try {
        if (read) {
            conditions.MarkAll(true);
            HoldingDevice([this] { driver->GetConditions(conditions); });
        }
        map = conditions;
        SetLastError(noError);
        return true;
    } catch (const Utilities::Exception& failure) {
        SetLastError(failure);
        return false;
    }
}

bool MeasurementHandle::SetConditions(ConfigurationData& map, bool write)
{
    if (!IsOpen()) {
        SetLastError(handleNotOpen);
        return false;
    }
    try {
        if (write) {
            HoldingDevice([this, &map] { driver->SetConditions(map); });
            conditionsChanged = false;
        } else {
            conditionsChanged = true;
        }
        conditions = map;
        SetLastError(noError);
        return true;
    } catch (const Utilities::ExceptionOutOfBound& failure) {
        conditionsChanged = true;
        SetLastError(failure);
        return false;
    }
}

bool MeasurementHandle::Connect(const Utilities::String& newConnection)
{
    SetLastError(noError);
    connection = newConnection;
    driver = Utilities::ResolveAs<LowLevelDriver>("PaviloLowLevelDriver:" + connection.ToStdString());
    if (driver.IsNull()) {
        SetLastError("Unable to create low level driver");
        return false;
    }
    return true;
}

bool MeasurementHandle::Open()
{
    SetLastError(noError);
    if (driver.IsNull()) {
        SetLastError("Unable to create low level driver");
        return false;
    }
    try {
        connectionLost.store(false);
        if (!driver->Attach(connection, this)) {
            Raise("Unable to Open PaviloDriver");
        }
        HoldingDevice([this] { LoadCalibrationAndConditions(); });
        return true;
    } catch (const Utilities::ExceptionOutOfBound& failure) {
        SetLastError(failure);
        return false;
    }
}

void MeasurementHandle::LoadCalibrationAndConditions()
{
    ConfigurationData calibrationData("CalibrationData");
    driver->ReadCalibrationData(calibrationData);
    calculation = Utilities::SmartPointer<DriverCalculation>(new DriverCalculation(calibrationData));
    conditions.MarkAll(true);
    driver->GetConditions(conditions);
}

bool MeasurementHandle::Close()
{
    if (driver.IsNull()) {
        return true;
    }
    SendConditionsBeforeDetach();
    bool detached = false;
    try {
        detached = driver->Detach(this);
        SetLastError(detached ? noError : "Handle unsafe closed!");
    } catch (const Utilities::ExceptionOutOfBound& failure) {
        SetLastError(failure);
    }
    calculation = Utilities::SmartPointer<DriverCalculation>();
    conditions.MarkAll(true);
    sampleFifo.Clear();
    sampleFifo.SetFinished(false);
    sample = SpectrumData();
    return detached;
}

Utilities::String MeasurementHandle::GetLastError()
{
    return lastError;
}

bool MeasurementHandle::GetState(uint16_t id, long& value)
{
    SetLastError(noError);
    const bool usable = id == StateIds::connected ? !driver.IsNull() : IsOpen();
    if (!usable) {
        SetLastError(notOpen);
        return false;
    }
    try {
        value = driver->GetState(id);
        return true;
    } catch (const Utilities::ExceptionOutOfBound& failure) {
        SetLastError(failure);
        return false;
    }
}

// The conditions and the measurement go to the instrument under one hold of its lock, which the
// transfers of the step then find held.
void MeasurementHandle::MeasureSensor(SensorData& sensor)
{
    RequireOpen();
    Utilities::Mutex device = driver->GetDeviceMutex();
    const Utilities::MutexLock held(device);
    SendChangedConditions();
    driver->Measure(sensor, conditions);
}

void MeasurementHandle::MeasureStrip(SensorDataFifo& fifo)
{
    RequireOpen();
    Utilities::Mutex device = driver->GetDeviceMutex();
    const Utilities::MutexLock held(device);
    SendChangedConditions();
    driver->MeasureScan(fifo, conditions);
}

Utilities::Vector<long>& MeasurementHandle::MeasureDark(Utilities::Vector<long>& row)
{
    RequireOpen();
    const uint32_t lampOff = ConditionU32(ConditionItems::lampOffDuringMeasurement);
    const uint32_t replacementCount = ConditionU32(ConditionItems::countFromReplacementItem);
    SetConditionU32(ConditionItems::lampOffDuringMeasurement, 1);
    SetConditionU32(ConditionItems::countFromReplacementItem, 0);
    SensorData sensor;
    try {
        MeasureSensor(sensor);
        calculation->CalculateDark(sensor);
    } catch (const Utilities::ExceptionOutOfBound&) {
        RestoreLampItems(lampOff, replacementCount);
        throw;
    }
    RestoreLampItems(lampOff, replacementCount);
    row = sensor.Raw()[0];
    return row;
}

// Within an operation that holds the device's lock, a lost instrument is not reopened: closing it
// waits for the listener, which can't end before the lock is let go.
bool MeasurementHandle::IsOpen()
{
    if (deviceHolder.load() == std::this_thread::get_id()) {
        return !connectionLost.load() && IsAttached();
    }
    ReopenAfterLostConnection();
    if (IsAttached()) {
        return true;
    }
    return !connection.IsEmpty() && Open();
}

bool MeasurementHandle::Lock(unsigned long timeoutMs)
{
    try {
        Utilities::Mutex lock = TheConnectionLocks().For(connection.ToStdString());
        return lock.Lock(timeoutMs);
    } catch (...) {
        // A lock that can't even be made is a lock not had; the caller reports it.
        return false;
    }
}

void MeasurementHandle::Unlock()
{
    try {
        if (TheConnectionLocks().Has(connection.ToStdString())) {
            TheConnectionLocks().For(connection.ToStdString()).Unlock();
        }
    } catch (...) {
        // Unlocking runs on the way out of failures: it must not raise one of its own.
        return;
    }
}

void MeasurementHandle::SetLastError(const Utilities::Exception& failure)
{
    lastError = failure.Text() != nullptr ? *failure.Text() : Utilities::String();
}

void MeasurementHandle::RequireOpen()
{
    if (!IsOpen()) {
        Raise(notOpen);
    }
}

void MeasurementHandle::SetConditionU32(uint16_t id, uint32_t value)
{
    conditions.SetU32(id, value);
    conditions.Mark(id, true);
    conditionsChanged = true;
}

void MeasurementHandle::SetConditionFloat(uint16_t id, float value)
{
    conditions.SetFloat(id, value);
    conditions.Mark(id, true);
    conditionsChanged = true;
}

uint32_t MeasurementHandle::ConditionU32(uint16_t id) const
{
    uint32_t value = 0;
    conditions.GetU32(id, value);
    return value;
}

float MeasurementHandle::ConditionFloat(uint16_t id) const
{
    float value = 0.0f;
    conditions.GetFloat(id, value);
    return value;
}

void MeasurementHandle::Raise(const Utilities::String& text)
{
    throw Utilities::ExceptionOutOfBound(Utilities::LanguageTranslator().Translate(text));
}

void MeasurementHandle::Sleep(uint32_t milliseconds)
{
    Timing_PC().Sleep(milliseconds);
}

bool MeasurementHandle::IsAttached() const
{
    return !driver.IsNull() && driver->HasObserver(const_cast<MeasurementHandle*>(this));
}

void MeasurementHandle::ReopenAfterLostConnection()
{
    if (connectionLost.exchange(false)) {
        Close();
    }
}

void MeasurementHandle::SendChangedConditions()
{
    if (conditionsChanged) {
        driver->SetConditions(conditions);
        conditionsChanged = false;
    }
}

void MeasurementHandle::SendConditionsBeforeDetach()
{
    if (!IsAttached() || !conditionsChanged) {
        return;
    }
    try {
        driver->SetConditions(conditions);
        conditionsChanged = false;
    } catch (const Utilities::ExceptionOutOfBound&) {
        return;
    }
}

void MeasurementHandle::RestoreLampItems(uint32_t lampOff, uint32_t replacementCount)
{
    SetConditionU32(ConditionItems::lampOffDuringMeasurement, lampOff);
    SetConditionU32(ConditionItems::countFromReplacementItem, replacementCount);
}

}
