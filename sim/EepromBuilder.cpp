#include "sim/EepromBuilder.h"

#include <cstring>
#include <stdexcept>
#include <utility>

#include "sim/Eeprom.h"
#include "sim/WireFrame.h"

namespace OrbelSim {

namespace {

struct Entry {
    std::uint16_t id;
    std::uint32_t address;
};

void PlaceRegion(std::vector<std::uint8_t>& image, std::vector<Entry>& entries, const EepromFiles& files,
    std::uint32_t address, std::uint16_t idOffset, std::uint16_t endMark)
{
    for (const auto& [id, words] : files) {
        entries.push_back({static_cast<std::uint16_t>(id + idOffset), address});
        for (std::uint32_t word : words) {
            std::vector<std::uint8_t> bytes;
            WireFrame::PutU32(bytes, word);
            std::memcpy(image.data() + address, bytes.data(), 4);
            address += 4;
        }
    }
    entries.push_back({endMark, address});
}

} // namespace

std::uint32_t EepromBuilder::FloatBits(float value)
{
    std::uint32_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

std::uint32_t EepromBuilder::Checksum(const EepromFiles& log)
{
    std::uint32_t sum = 0;
    for (const auto& [id, words] : log) {
        if (id == checksumId) {
            continue;
        }
        for (std::uint32_t word : words) {
            sum += word;
        }
    }
    return sum;
}

std::vector<std::uint8_t> EepromBuilder::Build(const EepromFiles& log, const EepromFiles& calibration)
{
    EepromFiles withChecksum = log;
    withChecksum[checksumId] = {Checksum(log)};
    std::vector<std::uint8_t> image(Eeprom::size, 0xFF);
    std::vector<Entry> entries;
    PlaceRegion(image, entries, withChecksum, logAddress, 0, 1);
    PlaceRegion(image, entries, withChecksum, mirrorAddress, mirrorOffset, 3);
    PlaceRegion(image, entries, calibration, calibrationAddress, 0, 2);
    if (entries.size() * 6 + 4 > Eeprom::entryListSize) {
        throw std::logic_error("too many EEPROM files for the entry list");
    }
    std::vector<std::uint8_t> list;
    WireFrame::PutU16(list, 1);
    WireFrame::PutU16(list, static_cast<std::uint16_t>(entries.size() * 6 + 4));
    for (const Entry& entry : entries) {
        WireFrame::PutU16(list, entry.id);
        WireFrame::PutU32(list, entry.address);
    }
    std::memcpy(image.data() + Eeprom::entryListAddress, list.data(), list.size());
    return image;
}

} // namespace OrbelSim
