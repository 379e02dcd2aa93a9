#include "sim/Eeprom.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "sim/WireFrame.h"

namespace OrbelSim {

Eeprom::Eeprom(std::vector<std::uint8_t> image) : image(std::move(image))
{
    this->image.resize(size, 0xFF);
}

std::optional<std::vector<std::uint8_t>> Eeprom::LoadFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        return std::nullopt;
    }
    std::vector<std::uint8_t> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (bytes.size() != size) {
        throw std::runtime_error("EEPROM file " + path + " holds " + std::to_string(bytes.size()) + " bytes, not 8192");
    }
    return bytes;
}

void Eeprom::KeepInFile(const std::string& path)
{
    file = path;
    Save();
}

void Eeprom::Save() const
{
    if (file.empty()) {
        return;
    }
    const std::string temporary = file + ".new";
    {
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(image.data()), static_cast<std::streamsize>(image.size()));
        if (!out) {
            throw std::runtime_error("unable to write EEPROM file " + temporary);
        }
    }
    std::rename(temporary.c_str(), file.c_str());
}

bool Eeprom::InRange(std::uint32_t address, std::uint32_t length)
{
    return address <= size && length <= size - address;
}

std::vector<std::uint8_t> Eeprom::Read(std::uint32_t address, std::uint32_t length) const
{
    return {image.begin() + address, image.begin() + address + length};
}

void Eeprom::Write(std::uint32_t address, const std::vector<std::uint8_t>& bytes)
{
    std::copy(bytes.begin(), bytes.end(), image.begin() + address);
    Save();
}

void Eeprom::Erase()
{
    std::fill(image.begin(), image.end(), 0xFF);
    Save();
}

std::optional<std::pair<std::uint32_t, std::uint32_t>> Eeprom::FileRange(std::uint16_t id) const
{
    const std::uint8_t* list = image.data() + entryListAddress;
    if (WireFrame::GetU16(list) != 1) {
        return std::nullopt;
    }
    const std::uint32_t used = std::min<std::uint32_t>(WireFrame::GetU16(list + 2), entryListSize);
    for (std::uint32_t at = 4; at + 6 <= used; at += 6) {
        if (WireFrame::GetU16(list + at) != id) {
            continue;
        }
        const std::uint32_t address = WireFrame::GetU32(list + at + 2);
        if (at + 12 > used) {
            return std::nullopt;
        }
        const std::uint32_t next = WireFrame::GetU32(list + at + 8);
        if (next < address || !InRange(address, next - address)) {
            return std::nullopt;
        }
        return std::make_pair(address, next - address);
    }
    return std::nullopt;
}

} // namespace OrbelSim
