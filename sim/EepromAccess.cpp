#include "sim/EepromAccess.h"

#include <stdexcept>
#include <string>

#include "sim/SimLog.h"
#include "sim/WireFrame.h"

namespace OrbelSim {

EepromAccess::EepromAccess(Eeprom& eeprom, TransferCounters& counters, const SimClock& clock)
    : eeprom(eeprom), counters(counters), clock(clock)
{
}

TransferResult EepromAccess::StartRead(ConnectionState& connection, const std::vector<std::uint8_t>& payload)
{
    const std::uint32_t address = WireFrame::GetU32(payload.data());
    const std::uint32_t size = WireFrame::GetU16(payload.data() + 4);
    if (!Eeprom::InRange(address, size)) {
        return counters.Refuse(TransferStatus::Stall,
            "EEPROM read of " + std::to_string(size) + " bytes at " + std::to_string(address) + " goes past the end");
    }
    PendingData data;
    data.bytes = eeprom.Read(address, size);
    data.readiness.emplace_back(data.bytes.size(), clock.Now());
    connection.pending = std::move(data);
    return {};
}

TransferResult EepromAccess::StartWrite(ConnectionState& connection, const std::vector<std::uint8_t>& payload)
{
    const std::uint32_t address = WireFrame::GetU32(payload.data());
    const std::uint32_t size = WireFrame::GetU16(payload.data() + 4);
    if (!Eeprom::InRange(address, size)) {
        return counters.Refuse(TransferStatus::Stall,
            "EEPROM write of " + std::to_string(size) + " bytes at " + std::to_string(address) + " goes past the end");
    }
    connection.writeAddress = address;
    connection.writeRemaining = size;
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
