#include "sim/StatusReport.h"

#include <sstream>

namespace OrbelSim {

namespace {

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

std::string StatusReport::Json(const StatusFacts& facts, const MeasurementScheduler& scheduler,
    const TransferCounters& counters, const Faults& faults)
{
    const MeasureParameters& parameters = scheduler.Parameters();
    const MeasurementScheduler::Counts& done = scheduler.Done();
    std::ostringstream json;
    json << "{\"serial\":" << facts.serial << ",\"path\":\"sim:" << facts.serial
         << "\",\"plugged\":" << Bool(facts.plugged) << ",\"target\":" << Quoted(scheduler.Placed().description)
         << ",\"strip\":" << (scheduler.Drawn() ? Quoted(scheduler.Drawn()->Description()) : std::string("null"))
         << ",\"speed\":" << scheduler.Speed() << ",\"key_latch\":" << Bool(facts.keyLatch) << ",\"filter\":\""
         << (facts.uvCut ? "uv-cut" : "none") << "\",\"noise\":" << Bool(facts.noise)
         << ",\"time_scale\":" << facts.timeScale << ",\"lamp_on\":" << Bool(facts.lampOn)
         << ",\"connections\":" << facts.connections << ",\"last_reset\":" << facts.lastReset
         << ",\"parameters\":{\"integration_ticks\":" << parameters.integrationTicks
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
