#pragma once

#include <cstdint>
#include <vector>

#include "utilities/List.h"
#include "utilities/Pair.h"

namespace DeviceDriver {

class ConfigurationData;
class PaviloFunctionality;

// The tiny file system in the instrument's EEPROM: numbered files of fixed length, found through
// an entry list of 512 bytes at address 4096. The list is read at first use. Write protection,
// on from construction, keeps the entry list and the calibration files (from address 4096 on)
// from being written; the log files below it can always be written.
class PaviloEEPROM {
public:
    using Entry = Utilities::Pair<std::uint16_t, std::uint32_t>;

    static constexpr std::uint32_t LogAddress = 0x0000;
    static constexpr std::uint32_t MirrorAddress = 0x0800;
    static constexpr std::uint32_t EntryListAddress = 0x1000;
    static constexpr std::uint32_t CalibrationAddress = 0x1200;
    static constexpr std::uint32_t EndAddress = 0x2000;
    static constexpr std::uint16_t EntryListSize = 512;
    static constexpr std::uint16_t MaximumEntries = 84;
    static constexpr std::uint16_t MirrorOffset = 1000;
    static constexpr std::uint16_t EndOfLog = 1;
    static constexpr std::uint16_t EndOfCalibration = 2;
    static constexpr std::uint16_t EndOfMirror = 3;

    explicit PaviloEEPROM(PaviloFunctionality* functionality);
    PaviloEEPROM(const PaviloEEPROM&) = delete;
    PaviloEEPROM& operator=(const PaviloEEPROM&) = delete;

    // A list whose format word isn't 1 is laid out anew from the defaults; under write protection
    // that raises ExceptionResourceNotAvailable, and every file counts as missing.
    Utilities::List<Entry> ReadEntryList();
    void WriteEntryList();
    // Lays the directory out anew for the items of both maps and writes it; the caller writes all
    // data again. Raises ExceptionOutOfBound under write protection.
    void Repair(const ConfigurationData& calibration, const ConfigurationData& log);

    // A missing id raises ExceptionResourceNotAvailable.
    std::uint32_t FileAddress(std::uint16_t id);
    std::uint16_t FileSize(std::uint16_t id);
    void ReadFile(std::uint16_t id, std::vector<std::uint8_t>& buffer, std::uint16_t& size);
    // False if the size differs from the file's; a missing file has size 0 here.
    bool WriteFile(std::uint16_t id, const std::uint8_t* data, std::uint16_t size);

    void Unprotect() { protectedFromWrites = false; }
    void Protect() { protectedFromWrites = true; }
    bool IsProtected() const { return protectedFromWrites; }

    // The file bytes of an item by its type, and back. Decoding clears the item's mark; a file
    // too short for a scalar leaves the item's value as it was.
    static std::vector<std::uint8_t> EncodeItem(const ConfigurationData& data, std::uint16_t id);
    static void DecodeItem(ConfigurationData& data, std::uint16_t id, const std::vector<std::uint8_t>& bytes);

private:
    void ParseEntryList(const std::uint8_t* block);
    void RepairWithDefaults();
    const Entry* FindEntry(std::uint16_t id, const Entry** following);
    void EnsureEntryList();
    static std::uint32_t LayOutRegion(Utilities::List<Entry>& layout, const ConfigurationData& data,
        std::uint32_t address, std::uint16_t idOffset, std::uint16_t endMark, std::uint32_t limit);

    Utilities::List<Entry> entries;
    bool protectedFromWrites;
    PaviloFunctionality* functionality;
};

}
