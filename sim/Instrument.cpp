#include "sim/Instrument.h"

#include <stdexcept>

#include "sim/CommandTable.h"
#include "sim/FactoryCalibration.h"
#include "sim/StatusReport.h"
#include "sim/WireFrame.h"

namespace OrbelSim {

Instrument::Instrument(const InstrumentOptions& options)
    : serial(options.serial), clock(options.timeScale), noise(options.noise), eeprom({}),
      engine(options.uvCut, options.noise, options.serial), scheduler(engine, clock),
      eepromAccess(eeprom, counters, clock), bulk(cable, faults, counters, clock), interrupts(cable, counters),
      faultInjector(faults, eeprom)
{
    eeprom = Eeprom(options.eepromImage ? *options.eepromImage : FactoryCalibration::Image(engine.GetOptics(), serial));
    if (!options.eepromFile.empty()) {
        eeprom.KeepInFile(options.eepromFile);
    }
}

void Instrument::SetCableListener(CableListener listener)
{
    std::lock_guard<std::mutex> lock(mutex);
    cableListener = std::move(listener);
}

// Tells the listener the cable's state as it is now, not as it was when it changed: a drop
// reported late, behind a plug that followed it, must not take the socket away again.
void Instrument::NotifyCable()
{
    std::lock_guard<std::mutex> notifying(cableMutex);
    CableListener listener;
    bool pluggedNow = false;
    {
        std::lock_guard<std::mutex> lock(mutex);
        listener = cableListener;
        pluggedNow = cable.Plugged();
    }
    if (listener) {
        listener(pluggedNow);
    }
}

std::optional<std::uint32_t> Instrument::Connect()
{
    std::lock_guard<std::mutex> lock(mutex);
    return cable.Connect();
}

void Instrument::Disconnect(std::uint32_t connection)
{
    std::lock_guard<std::mutex> lock(mutex);
    cable.Disconnect(connection);
    changed.notify_all();
}

void Instrument::DropCableLocked()
{
    cable.Drop();
    lampOn = false;
    changed.notify_all();
}

std::optional<TransferResult> Instrument::Prelude(std::uint32_t connection, bool& dropped)
{
    if (!cable.Live(connection)) {
        return TransferResult{TransferStatus::NoDevice, {}, "the instrument is unplugged"};
    }
    if (faults.CountTransferForDrop()) {
        DropCableLocked();
        dropped = true;
        return TransferResult{TransferStatus::NoDevice, {}, "fault drop: the cable went during the transfer"};
    }
    return std::nullopt;
}

TransferResult Instrument::Control(std::uint32_t connection, const std::vector<std::uint8_t>& setup,
    const std::vector<std::uint8_t>& payload, std::uint32_t length)
{
    bool dropped = false;
    TransferResult result;
    {
        std::lock_guard<std::mutex> lock(mutex);
        ++counters.control;
        if (auto failed = Prelude(connection, dropped)) {
            result = *failed;
        } else if (faults.Take(FaultKind::ControlTimeout)) {
            result = counters.Refuse(TransferStatus::Timeout, "fault control-timeout");
        } else {
            result = ControlLocked(*cable.Live(connection), setup, payload, length);
        }
    }
    if (dropped) {
        NotifyCable();
    }
    return result;
}

TransferResult Instrument::ControlLocked(ConnectionState& connection, const std::vector<std::uint8_t>& setup,
    const std::vector<std::uint8_t>& payload, std::uint32_t length)
{
    if (const auto refusal = CommandTable::Refusal(setup, payload, length)) {
        return counters.Refuse(TransferStatus::Stall, *refusal);
    }
    return Execute(connection, CommandTable::Code(setup), payload);
}

TransferResult Instrument::Execute(
    ConnectionState& connection, std::uint8_t code, const std::vector<std::uint8_t>& payload)
{
    switch (code) {
    case CommandTable::measureRequest:
        return StartMeasurement(connection);
    case CommandTable::setMeasureParameters:
        scheduler.SetParameters(payload);
        return {};
    case CommandTable::getMeasureParameters:
        return {TransferStatus::Ok, scheduler.ParameterAnswer(), ""};
    case CommandTable::writeEeprom:
        return eepromAccess.StartWrite(connection, payload);
    case CommandTable::readEeprom:
        return eepromAccess.StartRead(connection, payload);
    case CommandTable::writeCpld:
        lastCpldRegister = WireFrame::GetU16(payload.data());
        cpld[lastCpldRegister] = {WireFrame::GetU16(payload.data() + 2), WireFrame::GetU16(payload.data() + 4)};
        return {};
    case CommandTable::readCpld: {
        std::vector<std::uint8_t> answer;
        WireFrame::PutU16(answer, cpld[lastCpldRegister].first);
        return {TransferStatus::Ok, answer, ""};
    }
    case CommandTable::getMisc:
        return {TransferStatus::Ok, MiscAnswer(), ""};
    default:
        lastReset = payload[0];
        ++counters.resets;
        connection.pending.reset();
        connection.writeRemaining = 0;
        lampOn = false;
        return {};
    }
}

std::vector<std::uint8_t> Instrument::MiscAnswer()
{
    std::vector<std::uint8_t> answer;
    WireFrame::PutU16(answer, 0x0102);
    WireFrame::PutU16(answer, 0x0001);
    WireFrame::PutU16(answer, wrapThreshold);
    answer.push_back(1);
    answer.push_back(faults.Take(FaultKind::LowPower) ? lowPowerStatus : 0);
    return answer;
}

TransferResult Instrument::StartMeasurement(ConnectionState& connection)
{
    if (scheduler.Parameters().count == 0) {
        return counters.Refuse(TransferStatus::Stall, "measurement request with a count of 0");
    }
    connection.pending = scheduler.Start();
    if (connection.pending->bytes.empty()) {
        connection.pending.reset();
        return counters.Refuse(TransferStatus::Stall, "measurement request for more than 65536 measurements");
    }
    lampOn = scheduler.LampOnAfter();
    return {};
}

TransferResult Instrument::BulkRead(
    std::uint32_t connection, std::uint32_t length, std::uint32_t timeoutMs, std::uint32_t requestId)
{
    bool dropped = false;
    TransferResult result;
    {
        Lock lock(mutex);
        ++counters.bulkIn;
        ConnectionState* live = cable.Live(connection);
        if (live && BulkPipe::TakeCancel(*live, requestId)) {
            result = {TransferStatus::Cancelled, {}, "cancelled before it was served"};
        } else if (auto failed = Prelude(connection, dropped)) {
            result = *failed;
        } else if (faults.Take(FaultKind::BulkTimeout)) {
            result = counters.Refuse(TransferStatus::Timeout, "fault bulk-timeout");
        } else {
            result = bulk.Read(lock, changed, connection, length, timeoutMs, requestId);
        }
    }
    if (dropped) {
        NotifyCable();
    }
    return result;
}

void Instrument::CancelBulkReads(std::uint32_t connection, const std::vector<std::uint32_t>& requestIds)
{
    std::lock_guard<std::mutex> lock(mutex);
    if (bulk.Cancel(connection, requestIds)) {
        changed.notify_all();
    }
}

TransferResult Instrument::BulkWrite(std::uint32_t connection, const std::vector<std::uint8_t>& data)
{
    bool dropped = false;
    TransferResult result;
    {
        std::lock_guard<std::mutex> lock(mutex);
        ++counters.bulkOut;
        if (auto failed = Prelude(connection, dropped)) {
            result = *failed;
        } else if (faults.Take(FaultKind::BulkTimeout)) {
            result = counters.Refuse(TransferStatus::Timeout, "fault bulk-timeout");
        } else {
            result = eepromAccess.Write(*cable.Live(connection), data);
        }
    }
    if (dropped) {
        NotifyCable();
    }
    return result;
}

TransferResult Instrument::InterruptRead(std::uint32_t connection, std::uint32_t requestId)
{
    Lock lock(mutex);
    return interrupts.Read(lock, changed, connection, requestId);
}

void Instrument::CancelInterrupt(std::uint32_t connection, std::uint32_t requestId)
{
    std::lock_guard<std::mutex> lock(mutex);
    if (interrupts.Cancel(connection, requestId)) {
        changed.notify_all();
    }
}

void Instrument::Press()
{
    std::lock_guard<std::mutex> lock(mutex);
    if (!cable.Plugged()) {
        throw std::invalid_argument("the instrument is unplugged; plug it first");
    }
    interrupts.Press();
    changed.notify_all();
}

void Instrument::Place(const std::string& spec)
{
    Target parsed = TargetCatalog::Parse(spec, engine.GetOptics().TileRecord());
    std::lock_guard<std::mutex> lock(mutex);
    scheduler.Place(std::move(parsed));
}

void Instrument::SetStrip(const std::string& spec, double speedMmPerSecond)
{
    if (!(speedMmPerSecond > 0.0) || speedMmPerSecond > 10000.0) {
        throw std::invalid_argument("the speed must lie above 0 and at most 10000 mm/s");
    }
    Strip parsed = Strip::Parse(spec);
    std::lock_guard<std::mutex> lock(mutex);
    scheduler.SetStrip(std::move(parsed), speedMmPerSecond);
}

void Instrument::Fault(const std::string& kind, unsigned count)
{
    std::lock_guard<std::mutex> lock(mutex);
    faultInjector.Inject(kind, count);
}

void Instrument::Unplug()
{
    {
        std::lock_guard<std::mutex> lock(mutex);
        if (!cable.Plugged()) {
            throw std::invalid_argument("the instrument is unplugged already");
        }
        DropCableLocked();
    }
    NotifyCable();
}

void Instrument::Plug()
{
    {
        std::lock_guard<std::mutex> lock(mutex);
        if (cable.Plugged()) {
            throw std::invalid_argument("the instrument is plugged in already");
        }
        cable.Plug();
        scheduler.ResetParameters();
        cpld.clear();
        interrupts.ReleaseKey();
    }
    NotifyCable();
}

std::string Instrument::StatusJson() const
{
    std::lock_guard<std::mutex> lock(mutex);
    const StatusFacts facts{serial, cable.Plugged(), interrupts.KeyLatched(), engine.GetOptics().UvCut(), noise,
        clock.Scale(), lampOn, cable.PresentCount(), lastReset};
    return StatusReport::Json(facts, scheduler, counters, faults);
}

} // namespace OrbelSim
