#pragma once

#include <cstdint>

namespace DeviceDriver {

class ConfigurationData;
class PaviloEEPROM;
class PaviloFunctionality;

// The calibration records, item by item through the files of the EEPROM. A communication failure
// resets the instrument (5 after a read, 9 after a write) and comes out as ExceptionOutOfBound
// with "EEPROM Error (ID ", the id, "): " and the failure's text.
class PaviloCalibrationStore {
public:
    PaviloCalibrationStore(PaviloEEPROM& eeprom, PaviloFunctionality& functionality);

    // An empty map is filled with the defaults first. Each marked item is read and its mark
    // cleared; an item whose file the EEPROM doesn't have keeps its value.
    void Read(ConfigurationData& calibration);
    // Writes each marked item and clears its mark. With unlock the write protection is lifted
    // for the call. A file of another size makes the file system be laid out anew, once, for
    // the records, those of the map over those in the EEPROM, and the log data, which is then
    // marked to be written again; a second wrong size raises "EEPROM Error: file system problem".
    void Write(ConfigurationData& calibration, bool unlock, ConfigurationData& log);

private:
    void ReadItem(ConfigurationData& calibration, std::uint16_t id);
    // False if the file has another size.
    bool WriteItem(const ConfigurationData& calibration, std::uint16_t id);
    bool WriteMarked(ConfigurationData& calibration);
    void RebuildAround(ConfigurationData& calibration, ConfigurationData& log);
    void ResetIgnoringFailure(std::uint16_t code);

    PaviloEEPROM& eeprom;
    PaviloFunctionality& functionality;
};

}
