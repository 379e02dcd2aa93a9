#pragma once
// The virtual instrument at the transfer level: the command table of the control pipe, the
// bulk pipes, the interrupt pipe, the EEPROM, the measurement physics, the cable and the faults.
// Thread-safe: every connection's transfers and the person's commands may come from any thread.
//
// Command table (request code, direction, payload length):
//   192 MeasureRequest          0, 0  starts `count` measurements with the present parameters; the
//                                     blocks of 256 bytes (128 big-endian words, word 127 is 0) are
//                                     ready after lamp time + count * integration time. With flag
//                                     bit 0 set it starts a scan instead (see below).
//   193 SetMeasureParameters    0, 8  integration ticks (68 us), lamp ticks (130 integration ticks),
//                                     count, flags (bit 0 scan, bit 1 lamp off, bit 2 gain 1, bit 3
//                                     lamp on after), byte 7 ignored
//   194 GetMeasureParameters    1, 8  the same; byte 7 is 0
//   195 WriteEEPROM             0, 8  address (4), size (2); then `size` bytes on bulk-out, then
//                                     one-byte writes of 0x00, which are accepted
//   196 ReadEEPROM              0, 8  address (4), size (2); then `size` bytes on bulk-in
//   199 WriteCPLD               0, 6  words a, b, c: register a of the programmable logic := b; c is
//                                     kept beside it
//   200 ReadCPLD                1, 2  the register last written
//   201 GetMISC                 1, 8  word 0 firmware 0x0102, word 1 hardware 0x0001, word 2 the wrap
//                                     threshold 0xF000, byte 6 instrument kind 1, byte 7 status (8 =
//                                     not enough power, else 0)
//   202 Reset                   0, 1  the code; ends the connection's pending bulk data and EEPROM
//                                     write, switches the lamp off
// Anything else, a wrong direction, request type other than 2 (vendor), recipient other than 0,
// a wrong payload length, an EEPROM range past 8192, or a count of 0 is stalled.
//
// Scan: the hand draws the instrument across the strip (or across what is placed, if no strip is
// set) at the strip's speed, one measurement per integration time after the lamp time. The
// measurements travel as packets of `count` measurements; their number is rounded up to whole
// packets (the hand rests on the last patch). A bulk read completes when all its bytes are
// measured; the read that finds the strip's end gets what is left, fewer bytes than asked (status
// short); if the end falls on a read's boundary the next read gets 0 bytes.
//
// Bulk-in data are kept per connection: a request's data go to the connection that asked.

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "sim/Eeprom.h"
#include "sim/Faults.h"
#include "sim/MeasurementEngine.h"
#include "sim/MeasurementScheduler.h"
#include "sim/PendingData.h"
#include "sim/SimClock.h"
#include "sim/WireFrame.h"

namespace OrbelSim {

struct TransferResult {
    TransferStatus status = TransferStatus::Ok;
    std::vector<std::uint8_t> data;
    // Why a transfer was refused or failed, for the verbose log.
    std::string note;
};

struct InstrumentOptions {
    std::uint32_t serial = 1000001;
    bool uvCut = false;
    bool noise = true;
    double timeScale = 1.0;
    // The EEPROM to start with; the factory's when empty.
    std::optional<std::vector<std::uint8_t>> eepromImage;
    // Where the EEPROM is kept across runs; none when empty.
    std::string eepromFile;
};

class Instrument {
public:
    static constexpr std::uint16_t wrapThreshold = 0xF000;
    static constexpr std::uint8_t lowPowerStatus = 8;

    using CableListener = std::function<void(bool plugged)>;

    explicit Instrument(const InstrumentOptions& options);

    // Told, outside any lock, when the cable goes (unplug, drop) or comes back.
    void SetCableListener(CableListener listener);

    // The host's side: one connection for each opened instrument. Empty while unplugged.
    std::optional<std::uint32_t> Connect();
    void Disconnect(std::uint32_t connection);
    TransferResult Control(std::uint32_t connection, const std::vector<std::uint8_t>& setup,
        const std::vector<std::uint8_t>& payload, std::uint32_t length);
    // `requestId` names the read for CancelBulkReads; 0 can't be cancelled.
    TransferResult BulkRead(
        std::uint32_t connection, std::uint32_t length, std::uint32_t timeoutMs, std::uint32_t requestId = 0);
    TransferResult BulkWrite(std::uint32_t connection, const std::vector<std::uint8_t>& data);
    // Blocks until a press, the cable goes, a cancel, or the connection ends.
    TransferResult InterruptRead(std::uint32_t connection, std::uint32_t requestId);
    // Cancels the interrupt read `requestId`, also one that hasn't begun to wait yet.
    void CancelInterrupt(std::uint32_t connection, std::uint32_t requestId);
    // Cancels these bulk reads, being served or still to come; each then ends with status cancelled.
    void CancelBulkReads(std::uint32_t connection, const std::vector<std::uint32_t>& requestIds);

    // The person's side. Place, SetStrip and Fault raise std::invalid_argument with a text.
    void Press();
    void Place(const std::string& spec);
    void SetStrip(const std::string& spec, double speedMmPerSecond);
    void Fault(const std::string& kind, unsigned count);
    void Unplug();
    void Plug();
    std::string StatusJson() const;

private:
    struct Connection {
        std::optional<PendingData> pending;
        std::uint32_t writeAddress = 0;
        std::uint32_t writeRemaining = 0;
        std::deque<std::vector<std::uint8_t>> interrupts;
        bool interruptWaiting = false;
        std::optional<std::uint32_t> cancelledInterrupt;
        std::set<std::uint32_t> cancelledBulkReads;
        bool gone = false;
    };

    struct Counters {
        std::uint64_t control = 0;
        std::uint64_t bulkIn = 0;
        std::uint64_t bulkInCancelled = 0;
        std::uint64_t bulkOut = 0;
        std::uint64_t interrupts = 0;
        std::uint64_t stalls = 0;
        std::uint64_t timeouts = 0;
        std::uint64_t presses = 0;
        std::uint64_t eepromBytesWritten = 0;
        std::uint64_t resets = 0;
    };

    using Lock = std::unique_lock<std::mutex>;

    Connection* Live(std::uint32_t connection);
    std::optional<TransferResult> Prelude(std::uint32_t connection, bool& dropped);
    void DropCableLocked();
    void NotifyCable();
    TransferResult Refuse(TransferStatus status, const std::string& note);

    TransferResult ControlLocked(Connection& connection, const std::vector<std::uint8_t>& setup,
        const std::vector<std::uint8_t>& payload, std::uint32_t length);
    TransferResult Execute(Connection& connection, std::uint8_t code, const std::vector<std::uint8_t>& payload);
    TransferResult StartMeasurement(Connection& connection);
    TransferResult StartEepromRead(Connection& connection, const std::vector<std::uint8_t>& payload);
    TransferResult StartEepromWrite(Connection& connection, const std::vector<std::uint8_t>& payload);
    std::vector<std::uint8_t> MiscAnswer();
    TransferResult BulkReadLocked(
        Lock& lock, std::uint32_t connection, std::uint32_t length, std::uint32_t timeoutMs, std::uint32_t requestId);
    bool TakeBulkCancel(Connection& connection, std::uint32_t requestId);
    TransferResult Deliver(Connection& connection, std::uint32_t length);
    void BreakLogFile(std::uint16_t id);

    mutable std::mutex mutex;
    std::mutex cableMutex;
    std::condition_variable changed;
    CableListener cableListener;
    const std::uint32_t serial;
    SimClock clock;
    bool noise;
    Eeprom eeprom;
    MeasurementEngine engine;
    MeasurementScheduler scheduler;
    bool plugged = true;
    std::uint32_t nextConnection = 1;
    std::map<std::uint32_t, Connection> connections;
    std::map<std::uint16_t, std::pair<std::uint16_t, std::uint16_t>> cpld;
    std::uint16_t lastCpldRegister = 0;
    Faults faults;
    Counters counters;
    bool eyLatch_ = false;
    bool lampOn = false;
    int lastReset = -1;
};

} // namespace OrbelSim
