#include "sim/EepromAccess.h"

#include <stdexcept>
#include <string>

#include "sim/SimLog.h"
#include "sim/WireFrame.h"

namespace OrbelSim {

namespace {

struct EepromRange {
    std::uint32_t address;
    std::uint32_t size;
};

// Address (4), size (2).
EepromRange RangeOf(const std::vector<std::uint8_t>& payload)
{
    return {WireFrame::GetU32(payload.data()), WireFrame::GetU16(payload.data() + 4)};
}

std::string PastTheEnd(const std::string& what, const EepromRange& range)
{
    return "EEPROM " + what + " of " + std::to_string(range.size) + " bytes at " + std::to_string(range.address) +
        " goes past the end";
}

} // namespace

EepromAccess::EepromAccess(Eeprom& eeprom, TransferCounters& counters, const SimClock& clock)
    : eeprom(eeprom), counters(counters), clock(clock)
{
}

TransferResult EepromAccess::StartRead(ConnectionState& connection, const std::vector<std::uint8_t>& payload)
{
    const EepromRange range = RangeOf(payload);
    if (!Eeprom::InRange(range.address, range.size)) {
        return counters.Refuse(TransferStatus::Stall, PastTheEnd("read", range));
    }
    PendingData data;
    data.bytes = eeprom.Read(range.address, range.size);
    data.readiness.emplace_back(data.bytes.size(), clock.Now());
    connection.pending = std::move(data);
    return {};
}

TransferResult EepromAccess::StartWrite(ConnectionState& connection, const std::vector<std::uint8_t>& payload)
{
    const EepromRange range = RangeOf(payload);
    if (!Eeprom::InRange(range.address, range.size)) {
        return counters.Refuse(TransferStatus::Stall, PastTheEnd("write", range));
    }
    connection.writeAddress = range.address;
    connection.writeRemaining = range.size;
    return {};
}

TransferResult EepromAccess::Write(ConnectionState& connection, const std::vector<std::uint8_t>& data)
{
    if (connection.writeRemaining == 0) {
        return data == std::vector<std::uint8_t>{0}
            ? TransferResult{}
            : counters.Refuse(TransferStatus::Stall, "bulk-out data that no request announced");
    }
    if (data.size() > connection.writeRemaining) {
        connection.writeRemaining = 0;
        return counters.Refuse(
            TransferStatus::Stall, "bulk-out of " + std::to_string(data.size()) + " bytes, more than announced");
    }
    try {
        eeprom.Write(connection.writeAddress, data);
    } catch (const std::exception& error) {
        SimLog::Write(error.what());
    }
    connection.writeAddress += static_cast<std::uint32_t>(data.size());
    connection.writeRemaining -= static_cast<std::uint32_t>(data.size());
    counters.eepromBytesWritten += data.size();
    return {};
}

} // namespace OrbelSim
