#pragma once
// Test side of the cable: starts orbel-sim in a private directory, and speaks raw transfers to it
// through its socket, as a host's platform layer would.

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "sim/WireFrame.h"
#include "sim/platform/UnixSocket.h"
#include "tests/TemporaryDirectory.h"
#include "tests/support/ProgramRunner.h"

namespace OrbelSimTest {

using OrbelTest::ProgramResult;
using OrbelTest::ProgramRunner;

using OrbelSim::TransferStatus;

struct Answer {
    TransferStatus status = TransferStatus::Stall;
    std::vector<std::uint8_t> data;
};

using Rows = std::vector<std::vector<long>>;

class RawHost {
public:
    explicit RawHost(const std::string& socketPath);
    explicit RawHost(OrbelSim::UnixSocket connected) : socket(std::move(connected)) { }

    std::uint32_t Send(OrbelSim::TransferKind kind, std::uint32_t transferLength, std::uint32_t timeoutMs,
        const std::vector<std::uint8_t>& body);
    void SendRaw(const std::vector<std::uint8_t>& bytes) { socket.WriteAll(bytes.data(), bytes.size()); }
    // The answer to a request; empty if the instrument closed the connection first.
    std::optional<Answer> Await(std::uint32_t requestId, int timeoutMs = 20000);
    bool WaitReadable(int milliseconds) { return socket.WaitReadable(milliseconds); }

    Answer Control(std::uint8_t direction, std::uint8_t code, const std::vector<std::uint8_t>& payload,
        std::uint32_t inLength = 0);
    Answer BulkRead(std::uint32_t length, std::uint32_t timeoutMs = 20000);
    Answer BulkWrite(const std::vector<std::uint8_t>& data);

    std::vector<std::uint8_t> ReadEeprom(std::uint32_t address, std::uint16_t size);
    void WriteEeprom(std::uint32_t address, const std::vector<std::uint8_t>& data);
    void SetParameters(std::uint16_t ticks, std::uint16_t lampTicks, std::uint16_t count, std::uint8_t flags);
    // One request of `count` measurements: rows of 128 signed pixels, by the wrap threshold of MISC.
    Rows Measure(std::uint16_t ticks, std::uint16_t count, std::uint8_t flags);
    std::vector<std::uint8_t> Misc();

private:
    OrbelSim::UnixSocket socket;
    std::uint32_t nextId = 1;
    std::map<std::uint32_t, Answer> early;
};

class SimHarness {
public:
    // Starts an instrument with these extra arguments of `start` in a new private directory.
    explicit SimHarness(const std::vector<std::string>& startArgs = {"--noise", "off", "--time-scale", "0.01"},
        std::uint32_t serial = 1000001);
    ~SimHarness();
    SimHarness(const SimHarness&) = delete;
    SimHarness& operator=(const SimHarness&) = delete;

    ProgramResult Sim(std::vector<std::string> args) const;
    void Ok(const std::vector<std::string>& args) const;
    const std::string& Directory() const { return directory.Path(); }
    std::string SocketPath() const { return directory / (std::to_string(serial) + ".sock"); }
    std::string Status() const { return Sim({"status"}).out; }

private:
    TemporaryDirectory directory;
    std::uint32_t serial;
};

// The EEPROM as files, by its entry list.
class EepromFiles {
public:
    explicit EepromFiles(const std::vector<std::uint8_t>& image);
    bool Has(std::uint16_t id) const { return files.count(id) > 0; }
    std::vector<std::uint32_t> Words(std::uint16_t id) const;
    std::vector<float> Floats(std::uint16_t id) const;
    std::uint32_t U32(std::uint16_t id) const { return Words(id).at(0); }
    float Float(std::uint16_t id) const { return Floats(id).at(0); }
    std::uint32_t Address(std::uint16_t id) const { return files.at(id).first; }
    // The sum of the words of the files whose ids lie between these, as the checksums of the log take it.
    std::uint32_t SumBetween(std::uint16_t above, std::uint16_t below) const;

private:
    std::vector<std::uint8_t> image;
    std::map<std::uint16_t, std::pair<std::uint32_t, std::uint32_t>> files;
};

std::string JsonField(const std::string& json, const std::string& key);

// A TCP connection to 127.0.0.1 at the port written in the file; raises std::runtime_error.
OrbelSim::UnixSocket ConnectLoopback(const std::string& portFile);

} // namespace OrbelSimTest
