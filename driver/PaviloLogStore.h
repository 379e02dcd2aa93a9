#pragma once

#include <cstdint>

#include "utilities/String.h"

namespace Utilities {
class Exception;
}

namespace DeviceDriver {

class ConfigurationData;
class PaviloEEPROM;
class PaviloFunctionality;

// The log data, held twice in the EEPROM: a main copy and a mirror whose files bear the ids plus
// 1000, each with its checksum in the checksum record. A copy is good if that item equals the checksum.
class PaviloLogStore {
public:
    PaviloLogStore(PaviloEEPROM& eeprom, PaviloFunctionality& functionality);

    // Reads both copies into the log data; a bad copy is written again from the good one, and
    // the defaults go to both if neither is good.
    void Load(ConfigurationData& log);
    // Writes the marked items to one copy; the marks stay, so that the other copy gets the same.
    void Write(ConfigurationData& log, bool mirror);

    // The 32-bit sum, with wrap-around, of every word of every item but the checksum itself.
    static std::uint32_t Checksum(const ConfigurationData& copy);
    static bool IsGood(const ConfigurationData& copy);

private:
    void LoadItem(ConfigurationData& log, ConfigurationData& mirrorCopy, std::uint16_t id);
    // False at the first file of another size.
    bool WriteMarked(const ConfigurationData& log, bool mirror);
    void RepairFileSystem(ConfigurationData& log);
    // "[reset impossible] " when the reset fails as well, else nothing.
    Utilities::String ResetAfterFailure(std::uint16_t code);
    [[noreturn]] void RaiseLogError(
        std::uint16_t id, const char* copy, const Utilities::Exception& failure, const Utilities::String& resetNote);

    PaviloEEPROM& eeprom;
    PaviloFunctionality& functionality;
};

}
