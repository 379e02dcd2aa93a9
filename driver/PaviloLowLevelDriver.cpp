#include "driver/PaviloLowLevelDriver.h"

#include <algorithm>
#include <vector>

#include "driver/ConditionItems.h"
#include "driver/CpldProgramRegistry.h"
#include "driver/ExceptionPaviloCommunication.h"
#include "driver/PaviloCalibrationStore.h"
#include "driver/PaviloLogStore.h"
#include "driver/PaviloRecordDefaults.h"
#include "driver/RecordIds.h"
#include "driver/ResetCodes.h"
#include "driver/SensorData.h"
#include "driver/SensorDataFifo.h"
#include "driver/StateIds.h"
#include "driver/platform/Timing_PC.h"
#include "utilities/ComponentCreatorNormal.h"
#include "utilities/ExceptionOutOfBound.h"
#include "utilities/ExceptionResourceNotAvailable.h"
#include "utilities/LanguageTranslator.h"

namespace DeviceDriver {

using Utilities::ExceptionOutOfBound;
using Utilities::ExceptionResourceNotAvailable;
using Utilities::String;
using Utilities::Vector;
using Items = ConditionItems;

namespace {

Utilities::ComponentCreatorNormal<PaviloLowLevelDriver> lowLevelDriverCreator(
    "PaviloLowLevelDriver", "$Revision: 1.87 $", "HviInstrument");

constexpr std::uint8_t NotEnoughPower = 8;
constexpr int PowerPolls = 20;
constexpr std::uint32_t PowerPollMilliseconds = 100;

bool IsMiscItem(std::uint16_t id)
{
    return id == Items::status || id == Items::miscWord1 || id == Items::miscByte6 || id == Items::miscWord0 ||
        id == Items::wrapThreshold;
}

bool IsMeasureParameter(std::uint16_t id)
{
    return id == Items::lampOffDuringMeasurement || id == Items::lampTime || id == Items::gain ||
        id == Items::lampOnAfterMeasurement || id == Items::countFromReplacementItem || id == Items::integrationTime ||
        id == Items::count;
}

// Item integers are signed 32-bit words.
long Signed(std::uint32_t word)
{
    return static_cast<std::int32_t>(word);
}

std::uint32_t U32Of(const ConfigurationData& data, std::uint16_t id)
{
    std::uint32_t value = 0;
    data.GetU32(id, value);
    return value;
}

float FloatOf(const ConfigurationData& data, std::uint16_t id)
{
    float value = 0.0f;
    data.GetFloat(id, value);
    return value;
}

// Rounded to the nearest tick and held inside the wire field, so that a default of -1.0 gives 0.
std::uint16_t TicksOf(double ticks)
{
    return static_cast<std::uint16_t>(std::clamp(ticks + 0.5, 0.0, 65535.0));
}

// The first marked id, the stored group last: reading it consumes every mark still set.
bool NextMarked(const ConfigurationData& data, std::uint16_t& id)
{
    const Vector<std::uint16_t> marked = data.MarkedIds();
    for (unsigned long index = 0; index < marked.Size(); ++index) {
        if (marked[index] != Items::storedCondition) {
            id = marked[index];
            return true;
        }
    }
    if (marked.Size() == 0) {
        return false;
    }
    id = marked[0];
    return true;
}

void CopyItem(const ConfigurationData& from, ConfigurationData& to, std::uint16_t id)
{
    switch (from.TypeOf(id)) {
    case 0:
        to.SetU32(id, U32Of(from, id));
        break;
    case 2:
        to.SetFloat(id, FloatOf(from, id));
        break;
    case 1: {
        Vector<long> vector(0);
        from.GetU32Vector(id, vector);
        to.SetU32Vector(id, vector);
        break;
    }
    default: {
        Vector<float> vector(0);
        from.GetFloatVector(id, vector);
        to.SetFloatVector(id, vector);
        break;
    }
    }
}

}

PaviloLowLevelDriver::PaviloLowLevelDriver()
    : filterState(0), logData(new ConfigurationData("LogData")), eeprom(new PaviloEEPROM(&functionality))
{
    PaviloRecordDefaults::FillLog(*logData);
}

PaviloLowLevelDriver::~PaviloLowLevelDriver()
{
    functionality.ClearOwner();
}

String PaviloLowLevelDriver::name() const
{
    return String("PaviloLowLevelDriver");
}

void PaviloLowLevelDriver::ReadCalibrationData(ConfigurationData& calibration)
{
    PaviloCalibrationStore(*eeprom, functionality).Read(calibration);
}

void PaviloLowLevelDriver::WriteCalibrationData(ConfigurationData& calibration, bool unlock)
{
    PaviloCalibrationStore(*eeprom, functionality).Write(calibration, unlock, *logData);
}

void PaviloLowLevelDriver::GetConditions(ConfigurationData& conditions)
{
    if (conditions.Count() == 0) {
        PaviloRecordDefaults::FillConditions(conditions);
    }
    try {
        std::uint16_t id = 0;
        while (NextMarked(conditions, id)) {
            HandleGet(conditions, id);
        }
    } catch (const ExceptionPaviloCommunication& failure) {
        RaiseAfterReset(ResetCodes::conditions, "Conditions Error: ", failure);
    }
}

void PaviloLowLevelDriver::SetConditions(ConfigurationData& conditions)
{
    try {
        std::uint16_t id = 0;
        while (NextMarked(conditions, id)) {
            HandleSet(conditions, id);
        }
    } catch (const ExceptionPaviloCommunication& failure) {
        RaiseAfterReset(ResetCodes::conditions, "Conditions Error: ", failure);
    }
}

void PaviloLowLevelDriver::HandleGet(ConfigurationData& conditions, std::uint16_t id)
{
    if (IsMiscItem(id)) {
        ReadMISC(conditions);
    } else if (IsMeasureParameter(id)) {
        ReadMeasureParameters(conditions);
    } else if (id == Items::storedCondition) {
        try {
            ReadCalibrationData(conditions);
        } catch (const ExceptionOutOfBound&) {
            // The item keeps its value; a condition that can't be read is no failure.
        }
    }
    conditions.Mark(id, false);
}

void PaviloLowLevelDriver::HandleSet(ConfigurationData& conditions, std::uint16_t id)
{
    conditions.Mark(id, false);
    if (IsMeasureParameter(id)) {
        WriteMeasureParameters(conditions);
    } else if (id == Items::reset) {
        functionality.Reset(static_cast<std::uint16_t>(U32Of(conditions, Items::reset)));
    } else if (id == Items::cpldProgram) {
        RunCpldProgram(U32Of(conditions, Items::cpldProgram));
    } else if (id == Items::storedCondition) {
        WriteStoredItem(conditions, id);
    }
}

void PaviloLowLevelDriver::RunCpldProgram(std::uint32_t number)
{
    Timing_PC timing;
    for (const CpldStep& step : CpldProgramRegistry::Find(number)) {
        functionality.WriteCPLD(step.a, step.b, step.c);
        if (step.verify != 0) {
            std::uint16_t value = 0;
            functionality.ReadCPLD(value);
            if ((value & step.mask) != (step.expected & step.mask)) {
                throw ExceptionOutOfBound(Utilities::Translated("CPLD Error: Programming failed"));
            }
        }
        timing.Sleep(step.delayMicroseconds / 1000);
    }
}

void PaviloLowLevelDriver::ReadMISC(ConfigurationData& conditions)
{
    std::uint8_t byte6 = 0;
    std::uint8_t status = 0;
    std::uint16_t word0 = 0;
    std::uint16_t word1 = 0;
    std::uint16_t word2 = 0;
    functionality.GetMISC(byte6, word0, status, word1, word2);
    const bool byte6Replaced = filterState == StateIds::filterUVCut && byte6 == 1;
    conditions.SetU32(Items::miscByte6, byte6Replaced ? 11 : byte6);
    conditions.SetU32(Items::miscWord0, word0);
    conditions.SetU32(Items::status, status);
    conditions.SetU32(Items::miscWord1, word1);
    conditions.SetU32(Items::wrapThreshold, word2);
}

void PaviloLowLevelDriver::ReadMeasureParameters(ConfigurationData& conditions)
{
    std::uint16_t integration = 0;
    std::uint16_t lamp = 0;
    std::uint16_t count = 0;
    std::uint8_t flags = 0;
    functionality.GetMeasureParameters(integration, lamp, count, flags);
    conditions.SetFloat(Items::integrationTime, integration * SecondsPerTick);
    conditions.SetFloat(Items::lampTime, lamp * TicksPerLampTick * SecondsPerTick);
    conditions.SetU32(Items::count, count);
    conditions.SetU32(Items::countFromReplacementItem, flags & 1);
    conditions.SetU32(Items::lampOffDuringMeasurement, (flags >> 1) & 1);
    conditions.SetU32(Items::gain, (flags >> 2) & 1);
    conditions.SetU32(Items::lampOnAfterMeasurement, (flags >> 3) & 1);
}

void PaviloLowLevelDriver::WriteMeasureParameters(ConfigurationData& conditions)
{
    const std::uint16_t integration = TicksOf(FloatOf(conditions, Items::integrationTime) / SecondsPerTick);
    const std::uint16_t lamp = TicksOf(FloatOf(conditions, Items::lampTime) / SecondsPerTick / TicksPerLampTick);
    if (U32Of(conditions, Items::count) > MaximumCount) {
        conditions.SetU32(Items::count, MaximumCount);
    }
    const std::uint32_t count = WireCount(conditions);
    std::uint8_t flags = U32Of(conditions, Items::countFromReplacementItem) != 0 ? 1 : 0;
    flags |= U32Of(conditions, Items::lampOffDuringMeasurement) != 0 ? 2 : 0;
    flags |= U32Of(conditions, Items::gain) != 0 ? 4 : 0;
    flags |= U32Of(conditions, Items::lampOnAfterMeasurement) != 0 ? 8 : 0;
    for (std::uint16_t id :
        {Items::lampOffDuringMeasurement, Items::lampTime, Items::gain, Items::lampOnAfterMeasurement,
            Items::countFromReplacementItem, Items::integrationTime, Items::count, Items::replacementCount}) {
        if (conditions.FindItem(id) != nullptr) {
            conditions.Mark(id, false);
        }
    }
    functionality.SetMeasureParameters(integration, lamp, static_cast<std::uint16_t>(count), flags);
}

std::uint32_t PaviloLowLevelDriver::WireCount(const ConfigurationData& conditions)
{
    const std::uint32_t count = std::min(U32Of(conditions, Items::count), WireCountLimit);
    if (U32Of(conditions, Items::countFromReplacementItem) == 0) {
        return count;
    }
    const long replacement = Signed(U32Of(conditions, Items::replacementCount));
    return replacement > 0 ? static_cast<std::uint32_t>(std::min<long>(replacement, WireCountLimit)) : count;
}

void PaviloLowLevelDriver::WriteStoredItem(const ConfigurationData& conditions, std::uint16_t id)
{
    ConfigurationData temporary("TempCalibrationData");
    ReadCalibrationData(temporary);
    CopyItem(conditions, temporary, id);
    temporary.Mark(id, true);
    WriteCalibrationData(temporary, true);
}

bool PaviloLowLevelDriver::GetLogData(ConfigurationData& log)
{
    log = *logData;
    return true;
}

bool PaviloLowLevelDriver::SetLogData(const ConfigurationData& log)
{
    *logData = log;
    logData->MarkAll(true);
    return true;
}

Utilities::SmartPointer<LowLevelDriver::Bytes> PaviloLowLevelDriver::ReadFile(std::uint16_t id)
{
    Utilities::SmartPointer<Bytes> file(new Bytes);
    std::uint16_t size = 0;
    String prefix = Utilities::Translated("EEPROM Error (ID %VALUE%): ");
    prefix.Replace("%VALUE%", String(static_cast<long>(id)));
    try {
        eeprom->ReadFile(id, *file, size);
    } catch (const ExceptionPaviloCommunication& failure) {
        ResetIgnoringFailure(ResetCodes::eepromRead);
        throw ExceptionOutOfBound(prefix + *failure.Text());
    } catch (const ExceptionResourceNotAvailable& failure) {
        throw ExceptionOutOfBound(prefix + *failure.Text());
    }
    file->resize(size);
    return file;
}

void PaviloLowLevelDriver::WriteFile()
{
    throw ExceptionOutOfBound(Utilities::Translated("Function not available"));
}

// The conditions that a measurement or a scan sends, read once from the items.
struct PaviloLowLevelDriver::Request {
    explicit Request(const ConfigurationData& conditions)
        : count(WireCount(conditions)), gain(U32Of(conditions, Items::gain)),
          integrationTime(FloatOf(conditions, Items::integrationTime)), lampTime(FloatOf(conditions, Items::lampTime)),
          lampOff(U32Of(conditions, Items::lampOffDuringMeasurement) != 0),
          wrapThreshold(U32Of(conditions, Items::wrapThreshold))
    {
    }

    // The lamp burns for the readings of each packet, after its lead time.
    double LampSeconds(std::uint32_t packets) const
    {
        return static_cast<double>(count) * packets * integrationTime + lampTime;
    }

    // How long the instrument may take for one packet, half a second of it for the wire.
    std::uint32_t WaitSeconds() const { return static_cast<std::uint32_t>(std::max(LampSeconds(1) + 0.5, 0.0)); }

    // The readings of one packet, or one reading of it, with the settings they were made with.
    void Fill(SensorData& sensor, const std::uint8_t* firstBlock, std::uint32_t blocks) const
    {
        Vector<Vector<long>> rows(blocks);
        for (std::uint32_t block = 0; block < blocks; ++block) {
            rows[block] = PixelsOf(firstBlock + block * BlockSize, wrapThreshold);
        }
        sensor.SetRaw(rows);
        sensor.SetGain(gain);
        sensor.SetIntegrationTime(integrationTime);
    }

    const std::uint32_t count;
    const std::uint32_t gain;
    const float integrationTime;
    const float lampTime;
    const bool lampOff;
    const std::uint32_t wrapThreshold;
};

void PaviloLowLevelDriver::Measure(SensorData& sensor, ConfigurationData& conditions)
{
    const Request request(conditions);
    std::vector<std::uint8_t> buffer(static_cast<std::size_t>(request.count) * BlockSize);
    RequestMeasurement(buffer.data(), static_cast<std::uint32_t>(buffer.size()), request.WaitSeconds());
    request.Fill(sensor, buffer.data(), request.count);
    if (request.lampOff) {
        CountInLog(LogRecords::darkMeasurements);
    } else {
        BookLampUse(LogRecords::lampMeasurements, request.integrationTime, request.LampSeconds(1));
    }
}

void PaviloLowLevelDriver::MeasureScan(SensorDataFifo& fifo, ConfigurationData& conditions)
{
    fifo.SetFinished(false);
    const Request request(conditions);
    std::uint32_t packets = 0;
    try {
        functionality.StartScan(request.count * BlockSize, request.WaitSeconds());
        packets = DrainScan(fifo, request);
    } catch (const ExceptionPaviloCommunication& failure) {
        RaiseAfterReset(ResetCodes::measurement, "Measurement Error: ", failure);
    }
    fifo.SetFinished(true);
    if (!request.lampOff) {
        BookLampUse(LogRecords::scans, request.integrationTime, request.LampSeconds(packets));
    }
}

std::uint32_t PaviloLowLevelDriver::DrainScan(SensorDataFifo& fifo, const Request& request)
{
    std::vector<std::uint8_t> buffer(static_cast<std::size_t>(request.count) * BlockSize);
    std::uint32_t packets = 0;
    for (;;) {
        std::uint32_t size = static_cast<std::uint32_t>(buffer.size());
        functionality.GetScanData(buffer.data(), size);
        if (size == 0) {
            return packets;
        }
        ++packets;
        for (std::uint32_t block = 0; block < request.count; ++block) {
            SensorData reading;
            request.Fill(reading, buffer.data() + block * BlockSize, 1);
            fifo.Push(reading);
        }
    }
}

void PaviloLowLevelDriver::RequestMeasurement(std::uint8_t* buffer, std::uint32_t size, std::uint32_t wait)
{
    try {
        functionality.MeasureRequest(buffer, size, wait);
    } catch (const ExceptionPaviloCommunication&) {
        ResetIgnoringFailure(ResetCodes::measurement);
        try {
            functionality.MeasureRequest(buffer, size, wait);
        } catch (const ExceptionPaviloCommunication& failure) {
            RaiseAfterReset(ResetCodes::measurement, "Measurement Error: ", failure);
        }
    }
}

Vector<long> PaviloLowLevelDriver::PixelsOf(const std::uint8_t* block, std::uint32_t wrapThreshold)
{
    Vector<long> pixels(PixelCount);
    for (std::uint32_t pixel = 0; pixel + 1 < PixelCount; ++pixel) {
        const long word = PaviloFunctionality::U16FromBytes(block + 2 * pixel);
        pixels[pixel] = word > static_cast<long>(wrapThreshold) ? word - 65536 : word;
    }
    pixels[PixelCount - 1] = pixels[PixelCount - 2];
    return pixels;
}

void PaviloLowLevelDriver::CountInLog(std::uint16_t counter)
{
    logData->SetU32(counter, U32Of(*logData, counter) + 1);
    logData->Mark(counter, true);
}

void PaviloLowLevelDriver::BookLampUse(std::uint16_t counter, float integrationTime, double lampSeconds)
{
    CountInLog(counter);
    logData->SetFloat(LogRecords::lastIntegrationTime, integrationTime);
    logData->SetFloat(
        LogRecords::lampSeconds, static_cast<float>(FloatOf(*logData, LogRecords::lampSeconds) + lampSeconds));
    logData->Mark(LogRecords::lastIntegrationTime, true);
    logData->Mark(LogRecords::lampSeconds, true);
}

long PaviloLowLevelDriver::GetState(std::uint16_t id)
{
    switch (id) {
    case StateIds::interruptLatch:
    case StateIds::connected:
        try {
            return functionality.GetDeviceState(id);
        } catch (const ExceptionPaviloCommunication& failure) {
            ResetIgnoringFailure(ResetCodes::stateQuestion);
            throw ExceptionOutOfBound(*failure.Text());
        }
    case StateIds::secondsSinceCalibration:
        return static_cast<long>(Timing_PC().Time()) - Signed(U32Of(*logData, LogRecords::calibrationTime));
    case StateIds::measurementsSinceCalibration:
        return Signed(U32Of(*logData, LogRecords::lampMeasurements)) -
            Signed(U32Of(*logData, LogRecords::measurementsAtCalibration));
    case StateIds::filter:
        return filterState;
    case StateIds::serialNumber: {
        ConfigurationData calibration("TempCalibrationData");
        ReadCalibrationData(calibration);
        return Signed(U32Of(calibration, CalibrationRecords::serialNumber));
    }
    default:
        return -1;
    }
}

void PaviloLowLevelDriver::SetState(std::uint16_t id, long value)
{
    switch (id) {
    case StateIds::secondsSinceCalibration:
        logData->SetU32(LogRecords::calibrationTime, static_cast<std::uint32_t>(Timing_PC().Time() + value));
        logData->Mark(LogRecords::calibrationTime, true);
        break;
    case StateIds::measurementsSinceCalibration:
        logData->SetU32(LogRecords::measurementsAtCalibration,
            static_cast<std::uint32_t>(U32Of(*logData, LogRecords::lampMeasurements) + value));
        logData->Mark(LogRecords::measurementsAtCalibration, true);
        break;
    case StateIds::filter:
        filterState = static_cast<std::uint32_t>(value);
        break;
    default:
        throw ExceptionOutOfBound(Utilities::Translated("Unable to set requested state"));
    }
}

bool PaviloLowLevelDriver::Attach(const String& connection, Utilities::Observer<long>* observer)
{
    if (IsOpen() || Open(connection)) {
        AddObserver(observer);
        return true;
    }
    return false;
}

bool PaviloLowLevelDriver::Detach(Utilities::Observer<long>* observer)
{
    RemoveObserver(observer);
    if (!HasObservers() && IsOpen()) {
        return Close();
    }
    return true;
}

bool PaviloLowLevelDriver::IsOpen()
{
    return functionality.IsDeviceOpen();
}

Utilities::Mutex PaviloLowLevelDriver::GetDeviceMutex()
{
    return functionality.GetDeviceMutex();
}

bool PaviloLowLevelDriver::Open(const String& connection)
{
    filterState = 0;
    if (!functionality.OpenDevice(connection)) {
        throw ExceptionOutOfBound(Utilities::Translated("Unable to open the device"));
    }
    try {
        try {
            CheckPower();
            functionality.Reset(ResetCodes::open);
        } catch (const ExceptionPaviloCommunication& failure) {
            try {
                functionality.Reset(ResetCodes::open);
            } catch (const ExceptionPaviloCommunication&) {
                throw ExceptionOutOfBound(Utilities::Translated("No communication to the device: ") + *failure.Text());
            }
        }
        PaviloLogStore(*eeprom, functionality).Load(*logData);
    } catch (const Utilities::Exception&) {
        // A half-opened connection would pass for an open one at the next Attach.
        functionality.CloseDevice();
        throw;
    }
    functionality.SetOwner(this);
    return true;
}

void PaviloLowLevelDriver::CheckPower()
{
    std::uint8_t byte6 = 0;
    std::uint8_t status = 0;
    std::uint16_t word0 = 0;
    std::uint16_t word1 = 0;
    std::uint16_t word2 = 0;
    functionality.GetMISC(byte6, word0, status, word1, word2);
    if (status != NotEnoughPower) {
        return;
    }
    functionality.Reset(ResetCodes::conditions);
    Timing_PC timing;
    for (int poll = 0; poll < PowerPolls && status == NotEnoughPower; ++poll) {
        timing.Sleep(PowerPollMilliseconds);
        functionality.GetMISC(byte6, word0, status, word1, word2);
    }
    if (status == NotEnoughPower) {
        throw ExceptionOutOfBound(Utilities::Translated("Not enough power available"));
    }
}

bool PaviloLowLevelDriver::Close()
{
    functionality.ClearOwner();
    bool logWritten = false;
    String failureText;
    try {
        WriteLog();
        logWritten = true;
    } catch (const ExceptionOutOfBound& failure) {
        failureText = *failure.Text();
    }
    const bool closed = functionality.CloseDevice();
    eeprom = Utilities::SmartPointer<PaviloEEPROM>(new PaviloEEPROM(&functionality));
    filterState = 0;
    if (!logWritten) {
        throw ExceptionOutOfBound(failureText);
    }
    return closed;
}

void PaviloLowLevelDriver::WriteLog()
{
    PaviloLogStore log(*eeprom, functionality);
    log.Write(*logData, false);
    log.Write(*logData, true);
}

void PaviloLowLevelDriver::ResetIgnoringFailure(std::uint16_t code)
{
    try {
        functionality.Reset(code);
    } catch (const ExceptionPaviloCommunication&) {
        // The failure that led here is the one to report.
    }
}

void PaviloLowLevelDriver::RaiseAfterReset(std::uint16_t code, const char* prefix, const Utilities::Exception& failure)
{
    ResetIgnoringFailure(code);
    throw ExceptionOutOfBound(Utilities::Translated(prefix) + *failure.Text());
}

}
