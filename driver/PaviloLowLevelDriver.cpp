#include "driver/PaviloLowLevelDriver.h"

#include <algorithm>
#include <vector>

#include "driver/CpldProgramRegistry.h"
#include "driver/ExceptionPaviloCommunication.h"
#include "driver/PaviloCalibrationStore.h"
#include "driver/PaviloLogStore.h"
#include "driver/PaviloRecordDefaults.h"
#include "driver/SensorData.h"
#include "driver/SensorDataFifo.h"
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

namespace {

Utilities::ComponentCreatorNormal<PaviloLowLevelDriver> creator(
    "PaviloLowLevelDriver", "$Revision: 1.87 $", "HviInstrument");

enum ResetCode : std::uint16_t {
    ResetConditions = 1,
    ResetAfterRead = 5,
    ResetMeasurement = 7,
    ResetStateQuestion = 17,
    ResetOpen = 31,
};

enum ItemId : std::uint16_t {
    LampOff = 2000,
    LampTime = 2001,
    Gain = 2002,
    LampStaysOn = 2003,
    Status = 2004,
    Misc1 = 2006,
    ResetItem = 2007,
    ReplacementCountFlag = 2008,
    IntegrationTime = 2009,
    Count = 2010,
    MiscByte6 = 2012,
    Misc0 = 2013,
    WrapThreshold = 2020,
    StoredCondition = 3010,
    ReplacementCount = 9189,
    CpldProgram = 20000,
    SerialNumber = 1211,
    LastIntegrationTime = 10001,
    LampMeasurements = 10002,
    Scans = 10003,
    LampSeconds = 10004,
    DarkMeasurements = 10005,
    CalibrationTime = 10020,
    MeasurementsAtCalibration = 10021,
};

enum StateId : std::uint16_t {
    InterruptLatch = 30001,
    Connected = 30002,
    SecondsSinceCalibration = 30003,
    MeasurementsSinceCalibration = 30004,
    FilterState = 30005,
    SerialNumberState = 30006,
};

constexpr std::uint8_t NotEnoughPower = 8;
constexpr int PowerPolls = 20;
constexpr std::uint32_t PowerPollMilliseconds = 100;
constexpr std::uint32_t FilterWithByte6Replaced = 2;

String Translated(const char* english)
{
    return Utilities::LanguageTranslator().Translate(String(english));
}

bool IsMiscItem(std::uint16_t id)
{
    return id == Status || id == Misc1 || id == MiscByte6 || id == Misc0 || id == WrapThreshold;
}

bool IsMeasureParameter(std::uint16_t id)
{
    return id == LampOff || id == LampTime || id == Gain || id == LampStaysOn || id == ReplacementCountFlag ||
        id == IntegrationTime || id == Count;
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
        if (marked[index] != StoredCondition) {
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
        RaiseAfterReset(ResetConditions, "Conditions Error: ", failure);
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
        RaiseAfterReset(ResetConditions, "Conditions Error: ", failure);
    }
}

void PaviloLowLevelDriver::HandleGet(ConfigurationData& conditions, std::uint16_t id)
{
    if (IsMiscItem(id)) {
        ReadMISC(conditions);
    } else if (IsMeasureParameter(id)) {
        ReadMeasureParameters(conditions);
    } else if (id == StoredCondition) {
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
    } else if (id == ResetItem) {
        functionality.Reset(static_cast<std::uint16_t>(U32Of(conditions, ResetItem)));
    } else if (id == CpldProgram) {
        RunCpldProgram(U32Of(conditions, CpldProgram));
    } else if (id == StoredCondition) {
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
                throw ExceptionOutOfBound(Translated("CPLD Error: Programming failed"));
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
    const bool byte6Replaced = filterState == FilterWithByte6Replaced && byte6 == 1;
    conditions.SetU32(MiscByte6, byte6Replaced ? 11 : byte6);
    conditions.SetU32(Misc0, word0);
    conditions.SetU32(Status, status);
    conditions.SetU32(Misc1, word1);
    conditions.SetU32(WrapThreshold, word2);
}

void PaviloLowLevelDriver::ReadMeasureParameters(ConfigurationData& conditions)
{
    std::uint16_t integration = 0;
    std::uint16_t lamp = 0;
    std::uint16_t count = 0;
    std::uint8_t flags = 0;
    functionality.GetMeasureParameters(integration, lamp, count, flags);
    conditions.SetFloat(IntegrationTime, integration * SecondsPerTick);
    conditions.SetFloat(LampTime, lamp * TicksPerLampTick * SecondsPerTick);
    conditions.SetU32(Count, count);
    conditions.SetU32(ReplacementCountFlag, flags & 1);
    conditions.SetU32(LampOff, (flags >> 1) & 1);
    conditions.SetU32(Gain, (flags >> 2) & 1);
    conditions.SetU32(LampStaysOn, (flags >> 3) & 1);
}

void PaviloLowLevelDriver::WriteMeasureParameters(ConfigurationData& conditions)
{
    const std::uint16_t integration = TicksOf(FloatOf(conditions, IntegrationTime) / SecondsPerTick);
    const std::uint16_t lamp = TicksOf(FloatOf(conditions, LampTime) / SecondsPerTick / TicksPerLampTick);
    if (U32Of(conditions, Count) > MaximumCount) {
        conditions.SetU32(Count, MaximumCount);
    }
    const std::uint32_t count = WireCount(conditions);
    std::uint8_t flags = U32Of(conditions, ReplacementCountFlag) != 0 ? 1 : 0;
    flags |= U32Of(conditions, LampOff) != 0 ? 2 : 0;
    flags |= U32Of(conditions, Gain) != 0 ? 4 : 0;
    flags |= U32Of(conditions, LampStaysOn) != 0 ? 8 : 0;
    for (std::uint16_t id :
        {LampOff, LampTime, Gain, LampStaysOn, ReplacementCountFlag, IntegrationTime, Count, ReplacementCount}) {
        if (conditions.FindItem(id) != nullptr) {
            conditions.Mark(id, false);
        }
    }
    functionality.SetMeasureParameters(integration, lamp, static_cast<std::uint16_t>(count), flags);
}

std::uint32_t PaviloLowLevelDriver::WireCount(const ConfigurationData& conditions)
{
    const std::uint32_t count = std::min(U32Of(conditions, Count), WireCountLimit);
    if (U32Of(conditions, ReplacementCountFlag) == 0) {
        return count;
    }
    const long replacement = Signed(U32Of(conditions, ReplacementCount));
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
    String prefix = Translated("EEPROM Error (ID %VALUE%): ");
    prefix.Replace("%VALUE%", String(static_cast<long>(id)));
    try {
        eeprom->ReadFile(id, *file, size);
    } catch (const ExceptionPaviloCommunication& failure) {
        ResetIgnoringFailure(ResetAfterRead);
        throw ExceptionOutOfBound(prefix + *failure.Text());
    } catch (const ExceptionResourceNotAvailable& failure) {
        throw ExceptionOutOfBound(prefix + *failure.Text());
    }
    file->resize(size);
    return file;
}

void PaviloLowLevelDriver::WriteFile()
{
    throw ExceptionOutOfBound(Translated("Function not available"));
}

void PaviloLowLevelDriver::Measure(SensorData& sensor, ConfigurationData& conditions)
{
    const std::uint32_t count = std::min(U32Of(conditions, Count), WireCountLimit);
    const std::uint32_t gain = U32Of(conditions, Gain);
    const float integrationTime = FloatOf(conditions, IntegrationTime);
    const float lampTime = FloatOf(conditions, LampTime);
    const bool lampOff = U32Of(conditions, LampOff) != 0;
    const std::uint32_t wrapThreshold = U32Of(conditions, WrapThreshold);
    const double lampSeconds = static_cast<double>(count) * integrationTime + lampTime;
    const auto wait = static_cast<std::uint32_t>(std::max(lampSeconds + 0.5, 0.0));

    std::vector<std::uint8_t> buffer(static_cast<std::size_t>(count) * BlockSize);
    RequestMeasurement(buffer.data(), static_cast<std::uint32_t>(buffer.size()), wait);

    Vector<Vector<long>> rows(count);
    for (std::uint32_t block = 0; block < count; ++block) {
        rows[block] = PixelsOf(buffer.data() + block * BlockSize, wrapThreshold);
    }
    sensor.SetRaw(rows);
    sensor.SetGain(gain);
    sensor.SetIntegrationTime(integrationTime);
    BookMeasurement(lampOff, integrationTime, lampSeconds);
}

void PaviloLowLevelDriver::MeasureScan(SensorDataFifo& fifo, ConfigurationData& conditions)
{
    fifo.SetFinished(false);
    // The packets are as long as the count the instrument was given.
    const std::uint32_t count = WireCount(conditions);
    const std::uint32_t gain = U32Of(conditions, Gain);
    const float integrationTime = FloatOf(conditions, IntegrationTime);
    const float lampTime = FloatOf(conditions, LampTime);
    const bool lampOff = U32Of(conditions, LampOff) != 0;
    const std::uint32_t wrapThreshold = U32Of(conditions, WrapThreshold);
    const double wait = static_cast<double>(count) * integrationTime + lampTime + 0.5;

    std::uint32_t packets = 0;
    try {
        functionality.StartScan(count * BlockSize, static_cast<std::uint32_t>(std::max(wait, 0.0)));
        packets = DrainScan(fifo, count, gain, integrationTime, wrapThreshold);
    } catch (const ExceptionPaviloCommunication& failure) {
        RaiseAfterReset(ResetMeasurement, "Measurement Error: ", failure);
    }
    fifo.SetFinished(true);
    if (!lampOff) {
        BookScan(integrationTime, static_cast<double>(count) * packets * integrationTime + lampTime);
    }
}

std::uint32_t PaviloLowLevelDriver::DrainScan(
    SensorDataFifo& fifo, std::uint32_t count, std::uint32_t gain, float integrationTime, std::uint32_t wrapThreshold)
{
    std::vector<std::uint8_t> buffer(static_cast<std::size_t>(count) * BlockSize);
    std::uint32_t packets = 0;
    for (;;) {
        std::uint32_t size = static_cast<std::uint32_t>(buffer.size());
        functionality.GetScanData(buffer.data(), size);
        if (size == 0) {
            return packets;
        }
        ++packets;
        for (std::uint32_t block = 0; block < count; ++block) {
            Vector<Vector<long>> row(1);
            row[0] = PixelsOf(buffer.data() + block * BlockSize, wrapThreshold);
            SensorData measurement;
            measurement.SetRaw(row);
            measurement.SetGain(gain);
            measurement.SetIntegrationTime(integrationTime);
            fifo.Push(measurement);
        }
    }
}

void PaviloLowLevelDriver::BookScan(float integrationTime, double lampSeconds)
{
    logData->SetFloat(LastIntegrationTime, integrationTime);
    logData->SetU32(Scans, U32Of(*logData, Scans) + 1);
    logData->SetFloat(LampSeconds, static_cast<float>(FloatOf(*logData, LampSeconds) + lampSeconds));
    logData->Mark(LastIntegrationTime, true);
    logData->Mark(Scans, true);
    logData->Mark(LampSeconds, true);
}

void PaviloLowLevelDriver::RequestMeasurement(std::uint8_t* buffer, std::uint32_t size, std::uint32_t wait)
{
    try {
        functionality.MeasureRequest(buffer, size, wait);
    } catch (const ExceptionPaviloCommunication&) {
        ResetIgnoringFailure(ResetMeasurement);
        try {
            functionality.MeasureRequest(buffer, size, wait);
        } catch (const ExceptionPaviloCommunication& failure) {
            RaiseAfterReset(ResetMeasurement, "Measurement Error: ", failure);
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

void PaviloLowLevelDriver::BookMeasurement(bool lampOff, float integrationTime, double lampSeconds)
{
    if (lampOff) {
        logData->SetU32(DarkMeasurements, U32Of(*logData, DarkMeasurements) + 1);
        logData->Mark(DarkMeasurements, true);
        return;
    }
    logData->SetFloat(LastIntegrationTime, integrationTime);
    logData->SetU32(LampMeasurements, U32Of(*logData, LampMeasurements) + 1);
    logData->SetFloat(LampSeconds, static_cast<float>(FloatOf(*logData, LampSeconds) + lampSeconds));
    logData->Mark(LastIntegrationTime, true);
    logData->Mark(LampMeasurements, true);
    logData->Mark(LampSeconds, true);
}

long PaviloLowLevelDriver::GetState(std::uint16_t id)
{
    switch (id) {
    case InterruptLatch:
    case Connected:
        try {
            return functionality.GetDeviceState(id);
        } catch (const ExceptionPaviloCommunication& failure) {
            ResetIgnoringFailure(ResetStateQuestion);
            throw ExceptionOutOfBound(*failure.Text());
        }
    case SecondsSinceCalibration:
        return static_cast<long>(Timing_PC().Time()) - Signed(U32Of(*logData, CalibrationTime));
    case MeasurementsSinceCalibration:
        return Signed(U32Of(*logData, LampMeasurements)) - Signed(U32Of(*logData, MeasurementsAtCalibration));
    case FilterState:
        return filterState;
    case SerialNumberState: {
        ConfigurationData calibration("TempCalibrationData");
        ReadCalibrationData(calibration);
        return Signed(U32Of(calibration, SerialNumber));
    }
    default:
        return -1;
    }
}

void PaviloLowLevelDriver::SetState(std::uint16_t id, long value)
{
    switch (id) {
    case SecondsSinceCalibration:
        logData->SetU32(CalibrationTime, static_cast<std::uint32_t>(Timing_PC().Time() + value));
        logData->Mark(CalibrationTime, true);
        break;
    case MeasurementsSinceCalibration:
        logData->SetU32(
            MeasurementsAtCalibration, static_cast<std::uint32_t>(U32Of(*logData, LampMeasurements) + value));
        logData->Mark(MeasurementsAtCalibration, true);
        break;
    case FilterState:
        filterState = static_cast<std::uint32_t>(value);
        break;
    default:
        throw ExceptionOutOfBound(Translated("Unable to set requested state"));
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

bool PaviloLowLevelDriver::Open(const String& connection)
{
    filterState = 0;
    if (!functionality.OpenDevice(connection)) {
        throw ExceptionOutOfBound(Translated("Unable to open the device"));
    }
    try {
        try {
            CheckPower();
            functionality.Reset(ResetOpen);
        } catch (const ExceptionPaviloCommunication& failure) {
            try {
                functionality.Reset(ResetOpen);
            } catch (const ExceptionPaviloCommunication&) {
                throw ExceptionOutOfBound(Translated("No communication to the device: ") + *failure.Text());
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
    functionality.Reset(ResetConditions);
    Timing_PC timing;
    for (int poll = 0; poll < PowerPolls && status == NotEnoughPower; ++poll) {
        timing.Sleep(PowerPollMilliseconds);
        functionality.GetMISC(byte6, word0, status, word1, word2);
    }
    if (status == NotEnoughPower) {
        throw ExceptionOutOfBound(Translated("Not enough power available"));
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
    throw ExceptionOutOfBound(Translated(prefix) + *failure.Text());
}

}
