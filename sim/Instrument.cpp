#include "sim/Instrument.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>

#include "sim/CommandTable.h"
#include "sim/FactoryCalibration.h"
#include "sim/SimLog.h"

namespace OrbelSim {

namespace {

constexpr std::size_t maxQueuedPresses = 16;

std::string Bool(bool value)
{
    return value ? "true" : "false";
}

std::string Quoted(const std::string& text)
{
    std::string out = "\"";
    for (char c : text) {
        if (c == '"' || c == '\\') {
            out += '\\';
        }
        out += static_cast<unsigned char>(c) < 0x20 ? ' ' : c;
    }
    return out + "\"";
}

} // namespace

Instrument::Instrument(const InstrumentOptions& options)
    : serial(options.serial), clock(options.timeScale), noise(options.noise), eeprom({}),
      engine(options.uvCut, options.noise, options.serial), scheduler(engine, clock)
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
        pluggedNow = plugged;
    }
    if (listener) {
        listener(pluggedNow);
    }
}

std::optional<std::uint32_t> Instrument::Connect()
{
    std::lock_guard<std::mutex> lock(mutex);
    if (!plugged) {
        return std::nullopt;
    }
    const std::uint32_t id = nextConnection++;
    connections[id] = Connection{};
    return id;
}

void Instrument::Disconnect(std::uint32_t connection)
{
    std::lock_guard<std::mutex> lock(mutex);
    connections.erase(connection);
    changed.notify_all();
}

Instrument::Connection* Instrument::Live(std::uint32_t connection)
{
    const auto found = connections.find(connection);
    if (found == connections.end() || found->second.gone || !plugged) {
        return nullptr;
    }
    return &found->second;
}

TransferResult Instrument::Refuse(TransferStatus status, const std::string& note)
{
    if (status == TransferStatus::Stall) {
        ++counters.stalls;
    }
    if (status == TransferStatus::Timeout) {
        ++counters.timeouts;
    }
    return {status, {}, note};
}

void Instrument::DropCableLocked()
{
    plugged = false;
    for (auto& [id, connection] : connections) {
        connection.gone = true;
        connection.pending.reset();
    }
    lampOn = false;
    changed.notify_all();
}

std::optional<TransferResult> Instrument::Prelude(std::uint32_t connection, bool& dropped)
{
    if (!Live(connection)) {
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
            result = Refuse(TransferStatus::Timeout, "fault control-timeout");
        } else {
            result = ControlLocked(*Live(connection), setup, payload, length);
        }
    }
    if (dropped) {
        NotifyCable();
    }
    return result;
}

TransferResult Instrument::ControlLocked(Connection& connection, const std::vector<std::uint8_t>& setup,
    const std::vector<std::uint8_t>& payload, std::uint32_t length)
{
    if (const auto refusal = CommandTable::Refusal(setup, payload, length)) {
        return Refuse(TransferStatus::Stall, *refusal);
    }
    return Execute(connection, CommandTable::Code(setup), payload);
}

TransferResult Instrument::Execute(Connection& connection, std::uint8_t code, const std::vector<std::uint8_t>& payload)
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
        return StartEepromWrite(connection, payload);
    case CommandTable::readEeprom:
        return StartEepromRead(connection, payload);
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

TransferResult Instrument::StartEepromRead(Connection& connection, const std::vector<std::uint8_t>& payload)
{
    const std::uint32_t address = WireFrame::GetU32(payload.data());
    const std::uint32_t size = WireFrame::GetU16(payload.data() + 4);
    if (!Eeprom::InRange(address, size)) {
        return Refuse(TransferStatus::Stall,
            "EEPROM read of " + std::to_string(size) + " bytes at " + std::to_string(address) + " goes past the end");
    }
    PendingData data;
    data.bytes = eeprom.Read(address, size);
    data.readiness.emplace_back(data.bytes.size(), clock.Now());
    connection.pending = std::move(data);
    return {};
}

TransferResult Instrument::StartEepromWrite(Connection& connection, const std::vector<std::uint8_t>& payload)
{
    const std::uint32_t address = WireFrame::GetU32(payload.data());
    const std::uint32_t size = WireFrame::GetU16(payload.data() + 4);
    if (!Eeprom::InRange(address, size)) {
        return Refuse(TransferStatus::Stall,
            "EEPROM write of " + std::to_string(size) + " bytes at " + std::to_string(address) + " goes past the end");
    }
    connection.writeAddress = address;
    connection.writeRemaining = size;
    return {};
}

TransferResult Instrument::StartMeasurement(Connection& connection)
{
    if (scheduler.Parameters().count == 0) {
        return Refuse(TransferStatus::Stall, "measurement request with a count of 0");
    }
    connection.pending = scheduler.Start();
    if (connection.pending->bytes.empty()) {
        connection.pending.reset();
        return Refuse(TransferStatus::Stall, "measurement request for more than 65536 measurements");
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
        Connection* live = Live(connection);
        if (live && TakeBulkCancel(*live, requestId)) {
            result = {TransferStatus::Cancelled, {}, "cancelled before it was served"};
        } else if (auto failed = Prelude(connection, dropped)) {
            result = *failed;
        } else if (faults.Take(FaultKind::BulkTimeout)) {
            result = Refuse(TransferStatus::Timeout, "fault bulk-timeout");
        } else {
            result = BulkReadLocked(lock, connection, length, timeoutMs, requestId);
        }
    }
    if (dropped) {
        NotifyCable();
    }
    return result;
}

TransferResult Instrument::BulkReadLocked(
    Lock& lock, std::uint32_t connection, std::uint32_t length, std::uint32_t timeoutMs, std::uint32_t requestId)
{
    const auto deadline =
        timeoutMs == 0 ? SimClock::Clock::time_point::max() : clock.Now() + std::chrono::milliseconds(timeoutMs);
    while (true) {
        Connection* live = Live(connection);
        if (!live) {
            return {TransferStatus::NoDevice, {}, "the instrument is unplugged"};
        }
        if (TakeBulkCancel(*live, requestId)) {
            return {TransferStatus::Cancelled, {}, "cancelled while waiting for data"};
        }
        auto wakeAt = deadline;
        if (live->pending) {
            const PendingData& data = *live->pending;
            const std::size_t want = std::min<std::size_t>(length, data.bytes.size() - data.delivered);
            auto readyAt = clock.Now();
            for (const auto& [end, at] : data.readiness) {
                if (want == 0 || end >= data.delivered + want) {
                    readyAt = at;
                    break;
                }
            }
            if (want == 0 || readyAt <= clock.Now()) {
                return Deliver(*live, length);
            }
            wakeAt = std::min(deadline, readyAt);
        }
        if (clock.Now() >= deadline) {
            return Refuse(TransferStatus::Timeout, "no data within " + std::to_string(timeoutMs) + " ms");
        }
        changed.wait_until(lock, wakeAt);
    }
}

bool Instrument::TakeBulkCancel(Connection& connection, std::uint32_t requestId)
{
    return requestId != 0 && connection.cancelledBulkReads.erase(requestId) != 0;
}

void Instrument::CancelBulkReads(std::uint32_t connection, const std::vector<std::uint32_t>& requestIds)
{
    std::lock_guard<std::mutex> lock(mutex);
    const auto found = connections.find(connection);
    if (found == connections.end()) {
        return;
    }
    found->second.cancelledBulkReads.insert(requestIds.begin(), requestIds.end());
    counters.bulkInCancelled += requestIds.size();
    changed.notify_all();
}

TransferResult Instrument::Deliver(Connection& connection, std::uint32_t length)
{
    PendingData& data = *connection.pending;
    std::size_t want = std::min<std::size_t>(length, data.bytes.size() - data.delivered);
    const bool cut = want > 0 && faults.Take(FaultKind::ShortRead);
    if (cut) {
        want /= 2;
    }
    TransferResult result;
    result.data.assign(data.bytes.begin() + static_cast<std::ptrdiff_t>(data.delivered),
        data.bytes.begin() + static_cast<std::ptrdiff_t>(data.delivered + want));
    data.delivered += want;
    result.status = want == length ? TransferStatus::Ok : TransferStatus::Short;
    if (cut) {
        result.note = "fault short-read";
    }
    const bool exhausted = data.delivered == data.bytes.size();
    if (cut || (exhausted && (!data.scan || want < length))) {
        connection.pending.reset();
    }
    return result;
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
            result = Refuse(TransferStatus::Timeout, "fault bulk-timeout");
        } else {
            Connection& live = *Live(connection);
            if (live.writeRemaining == 0) {
                result = data == std::vector<std::uint8_t>{0}
                    ? TransferResult{}
                    : Refuse(TransferStatus::Stall, "bulk-out data that no request announced");
            } else if (data.size() > live.writeRemaining) {
                live.writeRemaining = 0;
                result = Refuse(TransferStatus::Stall,
                    "bulk-out of " + std::to_string(data.size()) + " bytes, more than announced");
            } else {
                try {
                    eeprom.Write(live.writeAddress, data);
                } catch (const std::exception& error) {
                    SimLog::Write(error.what());
                }
                live.writeAddress += static_cast<std::uint32_t>(data.size());
                live.writeRemaining -= static_cast<std::uint32_t>(data.size());
                counters.eepromBytesWritten += data.size();
            }
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
    Connection* live = Live(connection);
    if (!live) {
        return {TransferStatus::NoDevice, {}, "the instrument is unplugged"};
    }
    if (live->interruptWaiting) {
        return Refuse(TransferStatus::Stall, "an interrupt read is outstanding already");
    }
    live->interruptWaiting = true;
    changed.wait(lock, [&] {
        live = Live(connection);
        return !live || !live->interrupts.empty() || live->cancelledInterrupt == requestId;
    });
    if (!live) {
        return {TransferStatus::NoDevice, {}, "the instrument is unplugged"};
    }
    live->interruptWaiting = false;
    if (live->cancelledInterrupt == requestId) {
        live->cancelledInterrupt.reset();
        return {TransferStatus::Cancelled, {}, ""};
    }
    TransferResult result{TransferStatus::Ok, live->interrupts.front(), ""};
    live->interrupts.pop_front();
    eyLatch_ = false;
    ++counters.interrupts;
    return result;
}

// The read is named, so that a cancel that comes before the read has begun to wait still ends it,
// while one that comes after the read has ended can't end the next.
void Instrument::CancelInterrupt(std::uint32_t connection, std::uint32_t requestId)
{
    std::lock_guard<std::mutex> lock(mutex);
    const auto found = connections.find(connection);
    if (found != connections.end()) {
        found->second.cancelledInterrupt = requestId;
        changed.notify_all();
    }
}

void Instrument::Press()
{
    std::lock_guard<std::mutex> lock(mutex);
    if (!plugged) {
        throw std::invalid_argument("the instrument is unplugged; plug it first");
    }
    ++counters.presses;
    eyLatch_ = true;
    const std::vector<std::uint8_t> packet = {1, 1, static_cast<std::uint8_t>(counters.presses >> 8),
        static_cast<std::uint8_t>(counters.presses), 0, 0, 0, 0};
    for (auto& [id, connection] : connections) {
        if (!connection.gone && connection.interrupts.size() < maxQueuedPresses) {
            connection.interrupts.push_back(packet);
        }
    }
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

void Instrument::BreakLogFile(std::uint16_t id)
{
    const auto range = eeprom.FileRange(id);
    if (!range || range->second < 4) {
        throw std::invalid_argument("the EEPROM holds no log file " + std::to_string(id) + " to break");
    }
    std::vector<std::uint8_t> word = eeprom.Read(range->first, 4);
    word[3] = static_cast<std::uint8_t>(word[3] + 1);
    eeprom.Write(range->first, word);
}

void Instrument::Fault(const std::string& kind, unsigned count)
{
    if (count == 0) {
        throw std::invalid_argument("the count of a fault must be at least 1");
    }
    std::lock_guard<std::mutex> lock(mutex);
    if (kind == "erase-eeprom") {
        eeprom.Erase();
    } else if (kind == "break-log-main") {
        BreakLogFile(10002);
    } else if (kind == "break-log-mirror") {
        BreakLogFile(11002);
    } else if (const auto transferFault = Faults::Parse(kind)) {
        faults.Arm(*transferFault, count);
    } else {
        throw std::invalid_argument("unknown fault '" + kind +
            "'; expected control-timeout, bulk-timeout, short-read, low-power, drop, "
            "erase-eeprom, break-log-main or break-log-mirror");
    }
}

void Instrument::Unplug()
{
    {
        std::lock_guard<std::mutex> lock(mutex);
        if (!plugged) {
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
        if (plugged) {
            throw std::invalid_argument("the instrument is plugged in already");
        }
        plugged = true;
        scheduler.ResetParameters();
        cpld.clear();
        eyLatch_ = false;
    }
    NotifyCable();
}

std::string Instrument::StatusJson() const
{
    std::lock_guard<std::mutex> lock(mutex);
    const MeasureParameters& parameters = scheduler.Parameters();
    const MeasurementScheduler::Counts& done = scheduler.Done();
    std::size_t live = 0;
    for (const auto& [id, connection] : connections) {
        live += connection.gone ? 0 : 1;
    }
    std::ostringstream json;
    json << "{\"serial\":" << serial << ",\"path\":\"sim:" << serial << "\",\"plugged\":" << Bool(plugged)
         << ",\"target\":" << Quoted(scheduler.Placed().description)
         << ",\"strip\":" << (scheduler.Drawn() ? Quoted(scheduler.Drawn()->Description()) : std::string("null"))
         << ",\"speed\":" << scheduler.Speed() << ",\"key_latch\":" << Bool(eyLatch_) << ",\"filter\":\""
         << (engine.GetOptics().UvCut() ? "uv-cut" : "none") << "\",\"noise\":" << Bool(noise)
         << ",\"time_scale\":" << clock.Scale() << ",\"lamp_on\":" << Bool(lampOn) << ",\"connections\":" << live
         << ",\"last_reset\":" << lastReset << ",\"parameters\":{\"integration_ticks\":" << parameters.integrationTicks
         << ",\"lamp_ticks\":" << parameters.lampTicks << ",\"count\":" << parameters.count
         << ",\"flags\":" << static_cast<int>(parameters.flags) << "},\"counters\":{\"control\":" << counters.control
         << ",\"bulk_in\":" << counters.bulkIn << ",\"bulk_in_cancelled\":" << counters.bulkInCancelled
         << ",\"bulk_out\":" << counters.bulkOut << ",\"interrupts\":" << counters.interrupts
         << ",\"stalls\":" << counters.stalls << ",\"timeouts\":" << counters.timeouts
         << ",\"measurements\":" << done.measurements << ",\"dark_measurements\":" << done.darkMeasurements
         << ",\"scans\":" << done.scans << ",\"presses\":" << counters.presses
         << ",\"eeprom_bytes_written\":" << counters.eepromBytesWritten << ",\"resets\":" << counters.resets
         << "},\"faults\":" << faults.Json() << "}";
    return json.str();
}

} // namespace OrbelSim
