#pragma once
// The instrument's 8192-byte EEPROM, optionally kept in a file across runs (start --eeprom FILE):
// every write goes through to the file.

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace OrbelSim {

class Eeprom {
public:
    static constexpr std::uint32_t size = 8192;
    static constexpr std::uint32_t entryListAddress = 4096;
    static constexpr std::uint32_t entryListSize = 512;

    explicit Eeprom(std::vector<std::uint8_t> image);

    // The image kept in a file; empty if there is no such file. Raises std::runtime_error with a text
    // for a file that can't be read or has the wrong size.
    static std::optional<std::vector<std::uint8_t>> LoadFile(const std::string& path);
    // From now on every change is saved to the file; saves at once.
    void KeepInFile(const std::string& path);

    static bool InRange(std::uint32_t address, std::uint32_t length);
    std::vector<std::uint8_t> Read(std::uint32_t address, std::uint32_t length) const;
    void Write(std::uint32_t address, const std::vector<std::uint8_t>& bytes);
    void Erase();

    // Address and size of a file, by the entry list; empty if the list doesn't hold the id.
    std::optional<std::pair<std::uint32_t, std::uint32_t>> FileRange(std::uint16_t id) const;

private:
    void Save() const;

    std::vector<std::uint8_t> image;
    std::string file;
};

} // namespace OrbelSim
