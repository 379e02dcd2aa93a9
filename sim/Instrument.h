#pragma once
// The virtual instrument at the transfer level, the façade the rest of the simulator uses: it
// answers the command table of the control pipe (see CommandTable.h) and hands the bulk pipes, the
// interrupt pipe, the EEPROM, the cable and the faults to their own classes.
// Thread-safe: every connection's transfers and the person's commands may come from any thread.
// One mutex and one condition variable guard all state; the collaborators are called under it.

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "sim/BulkPipe.h"
#include "sim/Cable.h"
#include "sim/Eeprom.h"
#include "sim/EepromAccess.h"
#include "sim/FaultInjector.h"
#include "sim/Faults.h"
#include "sim/InterruptPipe.h"
#include "sim/MeasurementEngine.h"
#include "sim/MeasurementScheduler.h"
#include "sim/SimClock.h"
#include "sim/TransferCounters.h"
#include "sim/TransferResult.h"

namespace OrbelSim {

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
    using Lock = std::unique_lock<std::mutex>;

    std::optional<TransferResult> Prelude(std::uint32_t connection, bool& dropped);
    void DropCableLocked();
    void NotifyCable();

    TransferResult ControlLocked(ConnectionState& connection, const std::vector<std::uint8_t>& setup,
        const std::vector<std::uint8_t>& payload, std::uint32_t length);
    TransferResult Execute(ConnectionState& connection, std::uint8_t code, const std::vector<std::uint8_t>& payload);
    TransferResult StartMeasurement(ConnectionState& connection);
    std::vector<std::uint8_t> MiscAnswer();

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
    Cable cable;
    Faults faults;
    TransferCounters counters;
    EepromAccess eepromAccess;
    BulkPipe bulk;
    InterruptPipe interrupts;
    FaultInjector faultInjector;
    std::map<std::uint16_t, std::pair<std::uint16_t, std::uint16_t>> cpld;
    std::uint16_t lastCpldRegister = 0;
    bool lampOn = false;
    int lastReset = -1;
};

} // namespace OrbelSim
