#include "sim/Instrument.h"

#include <algorithm>
#include <cmath>
#include <sstream>
#include <stdexcept>

#include "sim/FactoryCalibration.h"
#include "sim/SimLog.h"

namespace OrbelSim {

namespace {

constexpr std::uint8_t measureRequest = 192;
constexpr std::uint8_t setMeasureParameters = 193;
constexpr std::uint8_t getMeasureParameters = 194;
constexpr std::uint8_t writeEeprom = 195;
constexpr std::uint8_t readEeprom = 196;
constexpr std::uint8_t writeCpld = 199;
constexpr std::uint8_t readCpld = 200;
constexpr std::uint8_t getMisc = 201;
constexpr std::uint8_t reset = 202;

constexpr float integrationTick = 6.8e-5f;
constexpr double lampTickInIntegrationTicks = 130.0;
constexpr std::size_t blockBytes = 256;
constexpr std::size_t maxQueuedPresses = 16;
// Keeps a wrong count from asking for more memory than a scan of minutes would.
constexpr std::size_t maxMeasurements = 65536;

struct CommandShape {
    std::uint8_t code;
    std::uint8_t direction;
    std::uint32_t length;
};

constexpr CommandShape commands[] = {
    {measureRequest, 0, 0},
    {setMeasureParameters, 0, 8},
    {getMeasureParameters, 1, 8},
    {writeEeprom, 0, 8},
    {readEeprom, 0, 8},
    {writeCpld, 0, 6},
    {readCpld, 1, 2},
    {getMisc, 1, 8},
    {reset, 0, 1},
};

const CommandShape* FindCommand(std::uint8_t code)
{
    for (const CommandShape& shape : commands) {
        if (shape.code == code) {
            return &shape;
        }
    }
    return nullptr;
}

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
      engine(options.uvCut, options.noise, options.serial)
{
    eeprom = Eeprom(options.eepromImage ? *options.eepromImage : FactoryCalibration::Image(engine.GetOptics(), serial));
    if (!options.eepromFile.empty()) {
        eeprom.KeepInFile(options.eepromFile);
    }
    target = TargetCatalog::Parse("tile", engine.GetOptics().TileRecord());
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
    if (setup.size() != WireFrame::controlRequestSize) {
        return Refuse(TransferStatus::Stall, "control request of " + std::to_string(setup.size()) + " bytes, not 10");
    }
    const std::uint8_t direction = setup[0];
    const std::uint8_t code = setup[4];
    if (setup[1] != 2 || setup[2] != 0) {
        return Refuse(TransferStatus::Stall,
            "request type " + std::to_string(setup[1]) + ", recipient " + std::to_string(setup[2]) +
                ": only vendor requests to the device");
    }
    const CommandShape* shape = FindCommand(code);
    if (!shape) {
        return Refuse(TransferStatus::Stall, "unknown request code " + std::to_string(code));
    }
    if (direction != shape->direction) {
        return Refuse(
            TransferStatus::Stall, "request " + std::to_string(code) + " with direction " + std::to_string(direction));
    }
    if (length != shape->length || (direction == 0 && payload.size() != length)) {
        return Refuse(TransferStatus::Stall,
            "request " + std::to_string(code) + " with a payload of " +
                std::to_string(direction == 0 ? payload.size() : length) + " bytes, not " +
                std::to_string(shape->length));
    }
    return Execute(connection, code, payload);
}

TransferResult Instrument::Execute(Connection& connection, std::uint8_t code, const std::vector<std::uint8_t>& payload)
{
    switch (code) {
    case measureRequest:
        return StartMeasurement(connection);
    case setMeasureParameters:
        parameters.integrationTicks = WireFrame::GetU16(payload.data());
        parameters.lampTicks = WireFrame::GetU16(payload.data() + 2);
        parameters.count = WireFrame::GetU16(payload.data() + 4);
        parameters.flags = payload[6];
        return {};
    case getMeasureParameters:
        return {TransferStatus::Ok, ParameterAnswer(), ""};
    case writeEeprom:
        return StartEepromWrite(connection, payload);
    case readEeprom:
        return StartEepromRead(connection, payload);
    case writeCpld:
        lastCpldRegister = WireFrame::GetU16(payload.data());
        cpld[lastCpldRegister] = {WireFrame::GetU16(payload.data() + 2), WireFrame::GetU16(payload.data() + 4)};
        return {};
    case readCpld: {
        std::vector<std::uint8_t> answer;
        WireFrame::PutU16(answer, cpld[lastCpldRegister].first);
        return {TransferStatus::Ok, answer, ""};
    }
    case getMisc:
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

std::vector<std::uint8_t> Instrument::ParameterAnswer() const
{
    std::vector<std::uint8_t> answer;
    WireFrame::PutU16(answer, parameters.integrationTicks);
    WireFrame::PutU16(answer, parameters.lampTicks);
    WireFrame::PutU16(answer, parameters.count);
    answer.push_back(parameters.flags);
    answer.push_back(0);
    return answer;
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
    const MeasureParameters p = parameters;
    if (p.count == 0) {
        return Refuse(TransferStatus::Stall, "measurement request with a count of 0");
    }
    const double integrationTime = static_cast<float>(p.integrationTicks * integrationTick);
    const double lampTime = p.lampTicks * lampTickInIntegrationTicks * integrationTick;
    const int gain = (p.flags & 0x04) ? 1 : 0;
    const bool lampLit = (p.flags & 0x02) == 0;
    const bool scan = (p.flags & 0x01) != 0;
    connection.pending = scan ? Scan(gain, integrationTime, lampTime, lampLit)
                              : SingleMeasurement(gain, integrationTime, lampTime, lampLit);
    if (connection.pending->bytes.empty()) {
        connection.pending.reset();
        return Refuse(TransferStatus::Stall, "measurement request for more than 65536 measurements");
    }
    lampOn = lampLit && (p.flags & 0x08) != 0;
    return {};
}

Instrument::PendingData Instrument::SingleMeasurement(int gain, double integrationTime, double lampTime, bool lampLit)
{
    PendingData data;
    const std::size_t count = parameters.count;
    const Scene scene = engine.SceneOf(target);
    for (std::size_t i = 0; i < count; ++i) {
        Sensor::AppendBlock(data.bytes, engine.Read(scene, lampLit, gain, integrationTime));
    }
    data.readiness.emplace_back(data.bytes.size(), clock.After(clock.Now(), lampTime + count * integrationTime));
    ++(lampLit ? counters.measurements : counters.darkMeasurements);
    return data;
}

Instrument::PendingData Instrument::Scan(int gain, double integrationTime, double lampTime, bool lampLit)
{
    PendingData data;
    data.scan = true;
    const Strip drawn = strip ? *strip : Strip::Uniform(target);
    std::vector<Scene> scenes;
    for (const Patch& patch : drawn.Patches()) {
        scenes.push_back(engine.SceneOf(patch.target));
    }
    const double step = speed * integrationTime;
    const std::size_t count = parameters.count;
    const std::size_t along = step > 0.0 ? static_cast<std::size_t>(std::floor(drawn.Travel() / step)) + 1 : 1;
    const std::size_t measurements = (along + count - 1) / count * count;
    if (measurements > maxMeasurements) {
        return data;
    }
    const auto start = clock.Now();
    for (std::size_t i = 0; i < measurements; ++i) {
        const double travelled = std::min(static_cast<double>(i) * step, drawn.Travel());
        const double smear = i + 1 < along ? step : 0.0;
        const Scene scene = MeasurementEngine::Mix(scenes, drawn.Shares(travelled, smear));
        Sensor::AppendBlock(data.bytes, engine.Read(scene, lampLit, gain, integrationTime));
        data.readiness.emplace_back(data.bytes.size(), clock.After(start, lampTime + (i + 1) * integrationTime));
    }
    ++counters.scans;
    return data;
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
    target = std::move(parsed);
}

void Instrument::SetStrip(const std::string& spec, double speedMmPerSecond)
{
    if (!(speedMmPerSecond > 0.0) || speedMmPerSecond > 10000.0) {
        throw std::invalid_argument("the speed must lie above 0 and at most 10000 mm/s");
    }
    Strip parsed = Strip::Parse(spec);
    std::lock_guard<std::mutex> lock(mutex);
    strip = std::move(parsed);
    speed = speedMmPerSecond;
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
        parameters = MeasureParameters{};
        cpld.clear();
        eyLatch_ = false;
    }
    NotifyCable();
}

std::string Instrument::StatusJson() const
{
    std::lock_guard<std::mutex> lock(mutex);
    std::size_t live = 0;
    for (const auto& [id, connection] : connections) {
        live += connection.gone ? 0 : 1;
    }
    std::ostringstream json;
    json << "{\"serial\":" << serial << ",\"path\":\"sim:" << serial << "\",\"plugged\":" << Bool(plugged)
         << ",\"target\":" << Quoted(target.description)
         << ",\"strip\":" << (strip ? Quoted(strip->Description()) : std::string("null")) << ",\"speed\":" << speed
         << ",\"key_latch\":" << Bool(eyLatch_) << ",\"filter\":\"" << (engine.GetOptics().UvCut() ? "uv-cut" : "none")
         << "\",\"noise\":" << Bool(noise) << ",\"time_scale\":" << clock.Scale() << ",\"lamp_on\":" << Bool(lampOn)
         << ",\"connections\":" << live << ",\"last_reset\":" << lastReset
         << ",\"parameters\":{\"integration_ticks\":" << parameters.integrationTicks
         << ",\"lamp_ticks\":" << parameters.lampTicks << ",\"count\":" << parameters.count
         << ",\"flags\":" << static_cast<int>(parameters.flags) << "},\"counters\":{\"control\":" << counters.control
         << ",\"bulk_in\":" << counters.bulkIn << ",\"bulk_in_cancelled\":" << counters.bulkInCancelled
         << ",\"bulk_out\":" << counters.bulkOut << ",\"interrupts\":" << counters.interrupts
         << ",\"stalls\":" << counters.stalls << ",\"timeouts\":" << counters.timeouts
         << ",\"measurements\":" << counters.measurements << ",\"dark_measurements\":" << counters.darkMeasurements
         << ",\"scans\":" << counters.scans << ",\"presses\":" << counters.presses
         << ",\"eeprom_bytes_written\":" << counters.eepromBytesWritten << ",\"resets\":" << counters.resets
         << "},\"faults\":" << faults.Json() << "}";
    return json.str();
}

} // namespace OrbelSim
