#include "sim/Instrument.h"

#include <algorithm>
#include <cmath>
#include <sstream>
#include <stdexcept>

#include "sim/FactoryCalibration.h"
#include "sim/SimLog.h"

namespace OrbelSim {

namespace {

constexpr std::uint8_t kMeasureRequest = 192;
constexpr std::uint8_t kSetMeasureParameters = 193;
constexpr std::uint8_t kGetMeasureParameters = 194;
constexpr std::uint8_t kWriteEeprom = 195;
constexpr std::uint8_t kReadEeprom = 196;
constexpr std::uint8_t kWriteCpld = 199;
constexpr std::uint8_t kReadCpld = 200;
constexpr std::uint8_t kGetMisc = 201;
constexpr std::uint8_t kReset = 202;

constexpr float kIntegrationTick = 6.8e-5f;
constexpr double kLampTickInIntegrationTicks = 130.0;
constexpr std::size_t kMaxQueuedPresses = 16;
// Keeps a wrong count from asking for more memory than a scan of minutes would.
constexpr std::size_t kMaxMeasurements = 65536;

struct CommandShape {
    std::uint8_t code;
    std::uint8_t direction;
    std::uint32_t length;
};

constexpr CommandShape kCommands[] = {
    {kMeasureRequest, 0, 0},
    {kSetMeasureParameters, 0, 8},
    {kGetMeasureParameters, 1, 8},
    {kWriteEeprom, 0, 8},
    {kReadEeprom, 0, 8},
    {kWriteCpld, 0, 6},
    {kReadCpld, 1, 2},
    {kGetMisc, 1, 8},
    {kReset, 0, 1},
};

const CommandShape* FindCommand(std::uint8_t code)
{
    for (const CommandShape& shape : kCommands) {
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
    : serial_(options.serial), clock_(options.timeScale), noise_(options.noise), eeprom_({}),
      engine_(options.uvCut, options.noise, options.serial)
{
    eeprom_ =
        Eeprom(options.eepromImage ? *options.eepromImage : FactoryCalibration::Image(engine_.GetOptics(), serial_));
    if (!options.eepromFile.empty()) {
        eeprom_.KeepInFile(options.eepromFile);
    }
    target_ = TargetCatalog::Parse("tile", engine_.GetOptics().TileRecord());
}

void Instrument::SetCableListener(CableListener listener)
{
    std::lock_guard<std::mutex> lock(mutex_);
    cableListener_ = std::move(listener);
}

// Tells the listener the cable's state as it is now, not as it was when it changed: a drop
// reported late, behind a plug that followed it, must not take the socket away again.
void Instrument::NotifyCable()
{
    std::lock_guard<std::mutex> notifying(cableMutex_);
    CableListener listener;
    bool plugged = false;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        listener = cableListener_;
        plugged = plugged_;
    }
    if (listener) {
        listener(plugged);
    }
}

std::optional<std::uint32_t> Instrument::Connect()
{
    std::lock_guard<std::mutex> lock(mutex_);
    if (!plugged_) {
        return std::nullopt;
    }
    const std::uint32_t id = nextConnection_++;
    connections_[id] = Connection{};
    return id;
}

void Instrument::Disconnect(std::uint32_t connection)
{
    std::lock_guard<std::mutex> lock(mutex_);
    connections_.erase(connection);
    changed_.notify_all();
}

Instrument::Connection* Instrument::Live(std::uint32_t connection)
{
    const auto found = connections_.find(connection);
    if (found == connections_.end() || found->second.gone || !plugged_) {
        return nullptr;
    }
    return &found->second;
}

TransferResult Instrument::Refuse(TransferStatus status, const std::string& note)
{
    if (status == TransferStatus::Stall) {
        ++counters_.stalls;
    }
    if (status == TransferStatus::Timeout) {
        ++counters_.timeouts;
    }
    return {status, {}, note};
}

void Instrument::DropCableLocked()
{
    plugged_ = false;
    for (auto& [id, connection] : connections_) {
        connection.gone = true;
        connection.pending.reset();
    }
    lampOn_ = false;
    changed_.notify_all();
}

std::optional<TransferResult> Instrument::Prelude(std::uint32_t connection, bool& dropped)
{
    if (!Live(connection)) {
        return TransferResult{TransferStatus::NoDevice, {}, "the instrument is unplugged"};
    }
    if (faults_.CountTransferForDrop()) {
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
        std::lock_guard<std::mutex> lock(mutex_);
        ++counters_.control;
        if (auto failed = Prelude(connection, dropped)) {
            result = *failed;
        } else if (faults_.Take(FaultKind::ControlTimeout)) {
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
    if (setup.size() != WireFrame::kControlRequestSize) {
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
    case kMeasureRequest:
        return StartMeasurement(connection);
    case kSetMeasureParameters:
        parameters_.integrationTicks = WireFrame::GetU16(payload.data());
        parameters_.lampTicks = WireFrame::GetU16(payload.data() + 2);
        parameters_.count = WireFrame::GetU16(payload.data() + 4);
        parameters_.flags = payload[6];
        return {};
    case kGetMeasureParameters:
        return {TransferStatus::Ok, ParameterAnswer(), ""};
    case kWriteEeprom:
        return StartEepromWrite(connection, payload);
    case kReadEeprom:
        return StartEepromRead(connection, payload);
    case kWriteCpld:
        lastCpldRegister_ = WireFrame::GetU16(payload.data());
        cpld_[lastCpldRegister_] = {WireFrame::GetU16(payload.data() + 2), WireFrame::GetU16(payload.data() + 4)};
        return {};
    case kReadCpld: {
        std::vector<std::uint8_t> answer;
        WireFrame::PutU16(answer, cpld_[lastCpldRegister_].first);
        return {TransferStatus::Ok, answer, ""};
    }
    case kGetMisc:
        return {TransferStatus::Ok, MiscAnswer(), ""};
    default:
        lastReset_ = payload[0];
        ++counters_.resets;
        connection.pending.reset();
        connection.writeRemaining = 0;
        lampOn_ = false;
        return {};
    }
}

std::vector<std::uint8_t> Instrument::ParameterAnswer() const
{
    std::vector<std::uint8_t> answer;
    WireFrame::PutU16(answer, parameters_.integrationTicks);
    WireFrame::PutU16(answer, parameters_.lampTicks);
    WireFrame::PutU16(answer, parameters_.count);
    answer.push_back(parameters_.flags);
    answer.push_back(0);
    return answer;
}

std::vector<std::uint8_t> Instrument::MiscAnswer()
{
    std::vector<std::uint8_t> answer;
    WireFrame::PutU16(answer, 0x0102);
    WireFrame::PutU16(answer, 0x0001);
    WireFrame::PutU16(answer, kWrapThreshold);
    answer.push_back(1);
    answer.push_back(faults_.Take(FaultKind::LowPower) ? kLowPowerStatus : 0);
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
    data.bytes = eeprom_.Read(address, size);
    data.readiness.emplace_back(data.bytes.size(), clock_.Now());
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
    const MeasureParameters p = parameters_;
    if (p.count == 0) {
        return Refuse(TransferStatus::Stall, "measurement request with a count of 0");
    }
    const double integrationTime = static_cast<float>(p.integrationTicks * kIntegrationTick);
    const double lampTime = p.lampTicks * kLampTickInIntegrationTicks * kIntegrationTick;
    const int gain = (p.flags & 0x04) ? 1 : 0;
    const bool lampOn = (p.flags & 0x02) == 0;
    const bool scan = (p.flags & 0x01) != 0;
    connection.pending = scan ? Scan(gain, integrationTime, lampTime, lampOn)
                              : SingleMeasurement(gain, integrationTime, lampTime, lampOn);
    if (connection.pending->bytes.empty()) {
        connection.pending.reset();
        return Refuse(TransferStatus::Stall, "measurement request for more than 65536 measurements");
    }
    lampOn_ = lampOn && (p.flags & 0x08) != 0;
    return {};
}

Instrument::PendingData Instrument::SingleMeasurement(int gain, double integrationTime, double lampTime, bool lampOn)
{
    PendingData data;
    const std::size_t count = parameters_.count;
    const Scene scene = engine_.SceneOf(target_);
    for (std::size_t i = 0; i < count; ++i) {
        Sensor::AppendBlock(data.bytes, engine_.Read(scene, lampOn, gain, integrationTime));
    }
    data.readiness.emplace_back(data.bytes.size(), clock_.After(clock_.Now(), lampTime + count * integrationTime));
    ++(lampOn ? counters_.measurements : counters_.darkMeasurements);
    return data;
}

Instrument::PendingData Instrument::Scan(int gain, double integrationTime, double lampTime, bool lampOn)
{
    PendingData data;
    data.scan = true;
    const Strip strip = strip_ ? *strip_ : Strip::Uniform(target_);
    std::vector<Scene> scenes;
    for (const Patch& patch : strip.Patches()) {
        scenes.push_back(engine_.SceneOf(patch.target));
    }
    const double step = speed_ * integrationTime;
    const std::size_t count = parameters_.count;
    const std::size_t along = step > 0.0 ? static_cast<std::size_t>(std::floor(strip.Travel() / step)) + 1 : 1;
    const std::size_t measurements = (along + count - 1) / count * count;
    if (measurements > kMaxMeasurements) {
        return data;
    }
    const auto start = clock_.Now();
    for (std::size_t i = 0; i < measurements; ++i) {
        const double travelled = std::min(static_cast<double>(i) * step, strip.Travel());
        const double smear = i + 1 < along ? step : 0.0;
        const Scene scene = MeasurementEngine::Mix(scenes, strip.Shares(travelled, smear));
        Sensor::AppendBlock(data.bytes, engine_.Read(scene, lampOn, gain, integrationTime));
        data.readiness.emplace_back(data.bytes.size(), clock_.After(start, lampTime + (i + 1) * integrationTime));
    }
    ++counters_.scans;
    return data;
}

TransferResult Instrument::BulkRead(
    std::uint32_t connection, std::uint32_t length, std::uint32_t timeoutMs, std::uint32_t requestId)
{
    bool dropped = false;
    TransferResult result;
    {
        Lock lock(mutex_);
        ++counters_.bulkIn;
        Connection* live = Live(connection);
        if (live && TakeBulkCancel(*live, requestId)) {
            result = {TransferStatus::Cancelled, {}, "cancelled before it was served"};
        } else if (auto failed = Prelude(connection, dropped)) {
            result = *failed;
        } else if (faults_.Take(FaultKind::BulkTimeout)) {
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
        timeoutMs == 0 ? SimClock::Clock::time_point::max() : clock_.Now() + std::chrono::milliseconds(timeoutMs);
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
            auto readyAt = clock_.Now();
            for (const auto& [end, at] : data.readiness) {
                if (want == 0 || end >= data.delivered + want) {
                    readyAt = at;
                    break;
                }
            }
            if (want == 0 || readyAt <= clock_.Now()) {
                return Deliver(*live, length);
            }
            wakeAt = std::min(deadline, readyAt);
        }
        if (clock_.Now() >= deadline) {
            return Refuse(TransferStatus::Timeout, "no data within " + std::to_string(timeoutMs) + " ms");
        }
        changed_.wait_until(lock, wakeAt);
    }
}

bool Instrument::TakeBulkCancel(Connection& connection, std::uint32_t requestId)
{
    return requestId != 0 && connection.cancelledBulkReads.erase(requestId) != 0;
}

void Instrument::CancelBulkReads(std::uint32_t connection, const std::vector<std::uint32_t>& requestIds)
{
    std::lock_guard<std::mutex> lock(mutex_);
    const auto found = connections_.find(connection);
    if (found == connections_.end()) {
        return;
    }
    found->second.cancelledBulkReads.insert(requestIds.begin(), requestIds.end());
    counters_.bulkInCancelled += requestIds.size();
    changed_.notify_all();
}

TransferResult Instrument::Deliver(Connection& connection, std::uint32_t length)
{
    PendingData& data = *connection.pending;
    std::size_t want = std::min<std::size_t>(length, data.bytes.size() - data.delivered);
    const bool cut = want > 0 && faults_.Take(FaultKind::ShortRead);
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
        std::lock_guard<std::mutex> lock(mutex_);
        ++counters_.bulkOut;
        if (auto failed = Prelude(connection, dropped)) {
            result = *failed;
        } else if (faults_.Take(FaultKind::BulkTimeout)) {
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
                    eeprom_.Write(live.writeAddress, data);
                } catch (const std::exception& error) {
                    SimLog::Write(error.what());
                }
                live.writeAddress += static_cast<std::uint32_t>(data.size());
                live.writeRemaining -= static_cast<std::uint32_t>(data.size());
                counters_.eepromBytesWritten += data.size();
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
    Lock lock(mutex_);
    Connection* live = Live(connection);
    if (!live) {
        return {TransferStatus::NoDevice, {}, "the instrument is unplugged"};
    }
    if (live->interruptWaiting) {
        return Refuse(TransferStatus::Stall, "an interrupt read is outstanding already");
    }
    live->interruptWaiting = true;
    changed_.wait(lock, [&] {
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
    keyLatch_ = false;
    ++counters_.interrupts;
    return result;
}

// The read is named, so that a cancel that comes before the read has begun to wait still ends it,
// while one that comes after the read has ended can't end the next.
void Instrument::CancelInterrupt(std::uint32_t connection, std::uint32_t requestId)
{
    std::lock_guard<std::mutex> lock(mutex_);
    const auto found = connections_.find(connection);
    if (found != connections_.end()) {
        found->second.cancelledInterrupt = requestId;
        changed_.notify_all();
    }
}

void Instrument::Press()
{
    std::lock_guard<std::mutex> lock(mutex_);
    if (!plugged_) {
        throw std::invalid_argument("the instrument is unplugged; plug it first");
    }
    ++counters_.presses;
    keyLatch_ = true;
    const std::vector<std::uint8_t> packet = {1, 1, static_cast<std::uint8_t>(counters_.presses >> 8),
        static_cast<std::uint8_t>(counters_.presses), 0, 0, 0, 0};
    for (auto& [id, connection] : connections_) {
        if (!connection.gone && connection.interrupts.size() < kMaxQueuedPresses) {
            connection.interrupts.push_back(packet);
        }
    }
    changed_.notify_all();
}

void Instrument::Place(const std::string& spec)
{
    Target target = TargetCatalog::Parse(spec, engine_.GetOptics().TileRecord());
    std::lock_guard<std::mutex> lock(mutex_);
    target_ = std::move(target);
}

void Instrument::SetStrip(const std::string& spec, double speedMmPerSecond)
{
    if (!(speedMmPerSecond > 0.0) || speedMmPerSecond > 10000.0) {
        throw std::invalid_argument("the speed must lie above 0 and at most 10000 mm/s");
    }
    Strip strip = Strip::Parse(spec);
    std::lock_guard<std::mutex> lock(mutex_);
    strip_ = std::move(strip);
    speed_ = speedMmPerSecond;
}

void Instrument::BreakLogFile(std::uint16_t id)
{
    const auto range = eeprom_.FileRange(id);
    if (!range || range->second < 4) {
        throw std::invalid_argument("the EEPROM holds no log file " + std::to_string(id) + " to break");
    }
    std::vector<std::uint8_t> word = eeprom_.Read(range->first, 4);
    word[3] = static_cast<std::uint8_t>(word[3] + 1);
    eeprom_.Write(range->first, word);
}

void Instrument::Fault(const std::string& kind, unsigned count)
{
    if (count == 0) {
        throw std::invalid_argument("the count of a fault must be at least 1");
    }
    std::lock_guard<std::mutex> lock(mutex_);
    if (kind == "erase-eeprom") {
        eeprom_.Erase();
    } else if (kind == "break-log-main") {
        BreakLogFile(10002);
    } else if (kind == "break-log-mirror") {
        BreakLogFile(11002);
    } else if (const auto transferFault = Faults::Parse(kind)) {
        faults_.Arm(*transferFault, count);
    } else {
        throw std::invalid_argument("unknown fault '" + kind +
            "'; expected control-timeout, bulk-timeout, short-read, low-power, drop, "
            "erase-eeprom, break-log-main or break-log-mirror");
    }
}

void Instrument::Unplug()
{
    {
        std::lock_guard<std::mutex> lock(mutex_);
        if (!plugged_) {
            throw std::invalid_argument("the instrument is unplugged already");
        }
        DropCableLocked();
    }
    NotifyCable();
}

void Instrument::Plug()
{
    {
        std::lock_guard<std::mutex> lock(mutex_);
        if (plugged_) {
            throw std::invalid_argument("the instrument is plugged in already");
        }
        plugged_ = true;
        parameters_ = MeasureParameters{};
        cpld_.clear();
        keyLatch_ = false;
    }
    NotifyCable();
}

std::string Instrument::StatusJson() const
{
    std::lock_guard<std::mutex> lock(mutex_);
    std::size_t live = 0;
    for (const auto& [id, connection] : connections_) {
        live += connection.gone ? 0 : 1;
    }
    std::ostringstream json;
    json << "{\"serial\":" << serial_ << ",\"path\":\"sim:" << serial_ << "\",\"plugged\":" << Bool(plugged_)
         << ",\"target\":" << Quoted(target_.description)
         << ",\"strip\":" << (strip_ ? Quoted(strip_->Description()) : std::string("null")) << ",\"speed\":" << speed_
         << ",\"key_latch\":" << Bool(keyLatch_) << ",\"filter\":\""
         << (engine_.GetOptics().UvCut() ? "uv-cut" : "none") << "\",\"noise\":" << Bool(noise_)
         << ",\"time_scale\":" << clock_.Scale() << ",\"lamp_on\":" << Bool(lampOn_) << ",\"connections\":" << live
         << ",\"last_reset\":" << lastReset_
         << ",\"parameters\":{\"integration_ticks\":" << parameters_.integrationTicks
         << ",\"lamp_ticks\":" << parameters_.lampTicks << ",\"count\":" << parameters_.count
         << ",\"flags\":" << static_cast<int>(parameters_.flags) << "},\"counters\":{\"control\":" << counters_.control
         << ",\"bulk_in\":" << counters_.bulkIn << ",\"bulk_in_cancelled\":" << counters_.bulkInCancelled
         << ",\"bulk_out\":" << counters_.bulkOut << ",\"interrupts\":" << counters_.interrupts
         << ",\"stalls\":" << counters_.stalls << ",\"timeouts\":" << counters_.timeouts
         << ",\"measurements\":" << counters_.measurements << ",\"dark_measurements\":" << counters_.darkMeasurements
         << ",\"scans\":" << counters_.scans << ",\"presses\":" << counters_.presses
         << ",\"eeprom_bytes_written\":" << counters_.eepromBytesWritten << ",\"resets\":" << counters_.resets
         << "},\"faults\":" << faults_.Json() << "}";
    return json.str();
}

} // namespace OrbelSim
