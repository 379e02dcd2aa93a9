#include "tests/sim/SimHarness.h"

#include <algorithm>
#include <arpa/inet.h>
#include <bit>
#include <fstream>
#include <netinet/in.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace OrbelSimTest {

using OrbelSim::TransferKind;
using OrbelSim::WireFrame;

std::string JsonField(const std::string& json, const std::string& key)
{
    const std::string quoted = "\"" + key + "\":";
    const std::size_t at = json.find(quoted);
    if (at == std::string::npos) {
        return {};
    }
    const std::size_t start = at + quoted.size();
    std::size_t end = start;
    int depth = 0;
    bool inString = false;
    for (; end < json.size(); ++end) {
        const char c = json[end];
        if (c == '"') {
            inString = !inString;
        } else if (!inString && (c == '{' || c == '[')) {
            ++depth;
        } else if (!inString && (c == '}' || c == ']')) {
            if (depth == 0) {
                break;
            }
            --depth;
        } else if (!inString && depth == 0 && c == ',') {
            break;
        }
    }
    return json.substr(start, end - start);
}

RawHost::RawHost(const std::string& socketPath) : socket(OrbelSim::UnixSocket::Connect(socketPath)) { }

std::uint32_t RawHost::Send(
    TransferKind kind, std::uint32_t transferLength, std::uint32_t timeoutMs, const std::vector<std::uint8_t>& body)
{
    const std::uint32_t id = nextId++;
    SendRaw(WireFrame::EncodeRequest({static_cast<std::uint8_t>(kind), id, timeoutMs, transferLength, 0}, body));
    return id;
}

std::optional<Answer> RawHost::Await(std::uint32_t requestId, int timeoutMs)
{
    while (true) {
        if (const auto found = early.find(requestId); found != early.end()) {
            Answer answer = found->second;
            early.erase(found);
            return answer;
        }
        if (!socket.WaitReadable(timeoutMs)) {
            ADD_FAILURE() << "no answer to request " << requestId;
            return std::nullopt;
        }
        std::uint8_t header[WireFrame::answerHeaderSize];
        if (!socket.ReadExact(header, sizeof header)) {
            return std::nullopt;
        }
        const auto decoded = WireFrame::DecodeAnswerHeader(header);
        if (!decoded) {
            ADD_FAILURE() << "malformed answer";
            return std::nullopt;
        }
        Answer answer{decoded->status, std::vector<std::uint8_t>(decoded->bodyLength)};
        if (!answer.data.empty() && !socket.ReadExact(answer.data.data(), answer.data.size())) {
            return std::nullopt;
        }
        early[decoded->requestId] = answer;
    }
}

Answer RawHost::Control(
    std::uint8_t direction, std::uint8_t code, const std::vector<std::uint8_t>& payload, std::uint32_t inLength)
{
    std::vector<std::uint8_t> body(WireFrame::controlRequestSize + payload.size(), 0);
    body[0] = direction;
    body[1] = 2;
    body[4] = code;
    std::copy(payload.begin(), payload.end(), body.begin() + WireFrame::controlRequestSize);
    const std::uint32_t length = direction == 0 ? static_cast<std::uint32_t>(payload.size()) : inLength;
    return Await(Send(TransferKind::Control, length, 0, body)).value_or(Answer{TransferStatus::NoDevice, {}});
}

Answer RawHost::BulkRead(std::uint32_t length, std::uint32_t timeoutMs)
{
    return Await(Send(TransferKind::BulkRead, length, timeoutMs, {}), static_cast<int>(timeoutMs) + 20000)
        .value_or(Answer{TransferStatus::NoDevice, {}});
}

Answer RawHost::BulkWrite(const std::vector<std::uint8_t>& data)
{
    return Await(Send(TransferKind::BulkWrite, static_cast<std::uint32_t>(data.size()), 0, data))
        .value_or(Answer{TransferStatus::NoDevice, {}});
}

std::vector<std::uint8_t> RawHost::ReadEeprom(std::uint32_t address, std::uint16_t size)
{
    std::vector<std::uint8_t> payload;
    WireFrame::PutU32(payload, address);
    WireFrame::PutU16(payload, size);
    WireFrame::PutU16(payload, 0);
    EXPECT_EQ(Control(0, 196, payload).status, TransferStatus::Ok);
    const Answer answer = BulkRead(size);
    EXPECT_EQ(answer.status, TransferStatus::Ok);
    return answer.data;
}

void RawHost::WriteEeprom(std::uint32_t address, const std::vector<std::uint8_t>& data)
{
    std::vector<std::uint8_t> payload;
    WireFrame::PutU32(payload, address);
    WireFrame::PutU16(payload, static_cast<std::uint16_t>(data.size()));
    WireFrame::PutU16(payload, 0);
    ASSERT_EQ(Control(0, 195, payload).status, TransferStatus::Ok);
    ASSERT_EQ(BulkWrite(data).status, TransferStatus::Ok);
    ASSERT_EQ(BulkWrite({0}).status, TransferStatus::Ok);
    ASSERT_EQ(BulkWrite({0}).status, TransferStatus::Ok);
}

void RawHost::SetParameters(std::uint16_t ticks, std::uint16_t lampTicks, std::uint16_t count, std::uint8_t flags)
{
    std::vector<std::uint8_t> payload;
    WireFrame::PutU16(payload, ticks);
    WireFrame::PutU16(payload, lampTicks);
    WireFrame::PutU16(payload, count);
    payload.push_back(flags);
    payload.push_back(0);
    ASSERT_EQ(Control(0, 193, payload).status, TransferStatus::Ok);
}

std::vector<std::uint8_t> RawHost::Misc()
{
    const Answer answer = Control(1, 201, {}, 8);
    EXPECT_EQ(answer.status, TransferStatus::Ok);
    return answer.data;
}

Rows RawHost::Measure(std::uint16_t ticks, std::uint16_t count, std::uint8_t flags)
{
    const std::uint16_t wrap = WireFrame::GetU16(Misc().data() + 4);
    SetParameters(ticks, 17, count, flags);
    EXPECT_EQ(Control(0, 192, {}).status, TransferStatus::Ok);
    const Answer answer = BulkRead(count * 256u);
    EXPECT_EQ(answer.status, TransferStatus::Ok);
    Rows rows;
    for (std::size_t block = 0; block + 256 <= answer.data.size(); block += 256) {
        std::vector<long> row(128);
        for (std::size_t p = 0; p < 127; ++p) {
            const long word = WireFrame::GetU16(answer.data.data() + block + 2 * p);
            row[p] = word > wrap ? word - 65536 : word;
        }
        row[127] = row[126];
        rows.push_back(row);
    }
    return rows;
}

SimHarness::SimHarness(const std::vector<std::string>& startArgs, std::uint32_t serial) : serial(serial)
{
    std::vector<std::string> args = {"start", "--serial", std::to_string(serial)};
    args.insert(args.end(), startArgs.begin(), startArgs.end());
    const ProgramResult started = Sim(args);
    if (started.exitCode != 0) {
        throw std::runtime_error("orbel-sim start failed: " + started.err);
    }
}

SimHarness::~SimHarness()
{
    Sim({"stop"});
}

ProgramResult SimHarness::Sim(std::vector<std::string> args) const
{
    const bool isStart = !args.empty() && args[0] == "start";
    if (!isStart && std::find(args.begin(), args.end(), "--serial") == args.end()) {
        args.push_back("--serial");
        args.push_back(std::to_string(serial));
    }
    return ProgramRunner::Run(ORBEL_SIM_BINARY, args, "ORBEL_SIM_DIR", directory.Path());
}

void SimHarness::Ok(const std::vector<std::string>& args) const
{
    const ProgramResult result = Sim(args);
    ASSERT_EQ(result.exitCode, 0) << result.err;
}

EepromFiles::EepromFiles(const std::vector<std::uint8_t>& image) : image(image)
{
    const std::uint8_t* list = this->image.data() + 4096;
    if (WireFrame::GetU16(list) != 1) {
        return;
    }
    const std::uint32_t used = WireFrame::GetU16(list + 2);
    for (std::uint32_t at = 4; at + 12 <= used; at += 6) {
        const std::uint32_t address = WireFrame::GetU32(list + at + 2);
        files[WireFrame::GetU16(list + at)] = {address, WireFrame::GetU32(list + at + 8) - address};
    }
}

std::vector<std::uint32_t> EepromFiles::Words(std::uint16_t id) const
{
    const auto [address, size] = files.at(id);
    std::vector<std::uint32_t> words;
    for (std::uint32_t at = address; at + 4 <= address + size; at += 4) {
        words.push_back(WireFrame::GetU32(image.data() + at));
    }
    return words;
}

std::vector<float> EepromFiles::Floats(std::uint16_t id) const
{
    std::vector<float> values;
    for (std::uint32_t word : Words(id)) {
        values.push_back(std::bit_cast<float>(word));
    }
    return values;
}

std::uint32_t EepromFiles::SumBetween(std::uint16_t above, std::uint16_t below) const
{
    std::uint32_t sum = 0;
    for (const auto& [id, range] : files) {
        if (id > above && id < below) {
            for (std::uint32_t word : Words(id)) {
                sum += word;
            }
        }
    }
    return sum;
}

OrbelSim::UnixSocket ConnectLoopback(const std::string& portFile)
{
    int port = 0;
    if (!(std::ifstream(portFile) >> port)) {
        throw std::runtime_error("no port in " + portFile);
    }
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0 || ::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        if (fd >= 0) {
            ::close(fd);
        }
        throw std::runtime_error("no instrument at port " + std::to_string(port));
    }
    return OrbelSim::UnixSocket(fd);
}

} // namespace OrbelSimTest
