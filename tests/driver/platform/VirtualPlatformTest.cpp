#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <future>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include <gtest/gtest.h>

#include "driver/platform/VirtualPlatform.h"
#include "driver/platform/VirtualWireFrame.h"
#include "tests/driver/VectorLists.h"
#include "tests/support/SimInstrument.h"

namespace DeviceDriverTest {

using OrbelTest::ProgramResult;
using OrbelTest::SimInstrument;

using DeviceDriver::UsbConnection;
using DeviceDriver::UsbResult;
using DeviceDriver::VirtualPlatform;
using DeviceDriver::VirtualWireFrame;
using Bytes = std::vector<std::uint8_t>;
using namespace std::chrono_literals;

namespace {

constexpr std::uint8_t MeasureRequest = 192;
constexpr std::uint8_t SetMeasureParameters = 193;
constexpr std::uint8_t GetMeasureParameters = 194;
constexpr std::uint8_t ReadEeprom = 196;
constexpr std::uint8_t GetMisc = 201;
constexpr std::uint32_t EepromSize = 8192;
constexpr std::uint32_t BlockSize = 256;
constexpr std::uint32_t Patience = 10000;

Bytes Request(std::uint8_t direction, std::uint8_t code)
{
    Bytes request(UsbConnection::ControlRequestSize, 0);
    request[0] = direction;
    request[1] = 2;
    request[4] = code;
    return request;
}

UsbResult Control(UsbConnection& connection, std::uint8_t direction, std::uint8_t code, Bytes& payload)
{
    const Bytes request = Request(direction, code);
    return connection.ControlTransfer(request.data(), payload.data(), static_cast<std::uint32_t>(payload.size()), 2000);
}

Bytes EepromRange(std::uint32_t address, std::uint16_t size)
{
    return {static_cast<std::uint8_t>(address >> 24), static_cast<std::uint8_t>(address >> 16),
        static_cast<std::uint8_t>(address >> 8), static_cast<std::uint8_t>(address),
        static_cast<std::uint8_t>(size >> 8), static_cast<std::uint8_t>(size), 0, 0};
}

// Reads EEPROM bytes as the driver does: request 196, then the bytes on bulk-in. Empty on failure.
Bytes ReadEepromBytes(UsbConnection& connection, std::uint32_t address, std::uint16_t size)
{
    Bytes range = EepromRange(address, size);
    if (!Control(connection, 0, ReadEeprom, range).Succeeded()) {
        return {};
    }
    Bytes data(size);
    const UsbResult read = connection.BulkRead(data.data(), size, Patience);
    return read.Succeeded() && read.Transferred() == size ? data : Bytes();
}

void StartMeasurement(UsbConnection& connection, std::uint16_t count)
{
    Bytes parameters = {0, 100, 0, 1, 0, static_cast<std::uint8_t>(count), 0, 0};
    ASSERT_TRUE(Control(connection, 0, SetMeasureParameters, parameters).Succeeded());
    Bytes none;
    ASSERT_TRUE(Control(connection, 0, MeasureRequest, none).Succeeded());
}

std::string Text(const UsbResult& result)
{
    return result.Text().ToStdString();
}

// A socket file whose instrument is gone: bound once, never listening.
void LeaveStaleSocket(const std::string& file)
{
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    file.copy(address.sun_path, sizeof address.sun_path - 1);
    ASSERT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ::close(socket);
}

}

class VirtualPlatformTest : public ::testing::Test {
protected:
    std::unique_ptr<UsbConnection> Open()
    {
        std::unique_ptr<UsbConnection> connection;
        const UsbResult opened = platform.Open(Utilities::String(sim.Path()), connection);
        EXPECT_TRUE(opened.Succeeded()) << Text(opened);
        return connection;
    }

    SimInstrument sim;
    VirtualPlatform platform{Utilities::String(sim.Directory())};
};

TEST_F(VirtualPlatformTest, EnumerationListsTheInstrumentsThatAnswerUntilUnplugged)
{
    EXPECT_EQ(Texts(platform.EnumerateDevices()), (std::vector<std::string>{"sim:1000001"}));

    LeaveStaleSocket(sim.Directory() + "/1234.sock");
    ::close(::open((sim.Directory() + "/555.sock").c_str(), O_CREAT | O_WRONLY, 0600));
    const SimInstrument neighbour(sim, 999);
    EXPECT_EQ(Texts(platform.EnumerateDevices()), (std::vector<std::string>{"sim:999", "sim:1000001"}));

    sim.Command({"unplug"});
    EXPECT_EQ(Texts(platform.EnumerateDevices()), (std::vector<std::string>{"sim:999"}));
    std::unique_ptr<UsbConnection> connection;
    EXPECT_TRUE(platform.Open(Utilities::String(sim.Path()), connection).IsNoDevice());
    EXPECT_EQ(connection, nullptr);

    sim.Command({"plug"});
    EXPECT_EQ(Texts(platform.EnumerateDevices()), (std::vector<std::string>{"sim:999", "sim:1000001"}));
    EXPECT_TRUE(VirtualPlatform(Utilities::String(sim.Directory() + "/none")).EnumerateDevices().empty());
}

TEST_F(VirtualPlatformTest, OpenRefusesPathsOfNoInstrument)
{
    std::unique_ptr<UsbConnection> connection;
    const UsbResult absent = platform.Open("sim:424242", connection);
    EXPECT_EQ(absent.Error(), static_cast<std::uint32_t>(ENODEV));
    EXPECT_EQ(Text(absent), "No such device");
    for (const char* malformed : {"sim:", "sim:..", "sim:../1000001", "usb:1-2", "1000001"}) {
        const UsbResult refused = platform.Open(malformed, connection);
        EXPECT_EQ(refused.Error(), static_cast<std::uint32_t>(EINVAL)) << malformed;
        EXPECT_EQ(Text(refused), "Invalid argument");
        EXPECT_EQ(connection, nullptr);
    }
    EXPECT_TRUE(platform.Serves("sim:1"));
    EXPECT_FALSE(platform.Serves("usb:1-2"));
}

TEST_F(VirtualPlatformTest, ControlTransfersCarryPayloadsBothWays)
{
    const auto connection = Open();
    Bytes parameters = {0x01, 0x2C, 0x00, 0x11, 0x00, 0x03, 0x0B, 0xEE};
    const UsbResult set = Control(*connection, 0, SetMeasureParameters, parameters);
    ASSERT_TRUE(set.Succeeded()) << Text(set);
    EXPECT_EQ(set.Transferred(), 8u);
    Bytes echoed(8, 0xFF);
    const UsbResult answered = Control(*connection, 1, GetMeasureParameters, echoed);
    ASSERT_TRUE(answered.Succeeded()) << Text(answered);
    EXPECT_EQ(answered.Transferred(), 8u);
    EXPECT_EQ(echoed, (Bytes{0x01, 0x2C, 0x00, 0x11, 0x00, 0x03, 0x0B, 0x00}));

    Bytes unused(8);
    const UsbResult stalled = Control(*connection, 1, 197, unused);
    EXPECT_EQ(stalled.Error(), static_cast<std::uint32_t>(EPIPE));
    EXPECT_EQ(Text(stalled), "Broken pipe");
    EXPECT_TRUE(Control(*connection, 1, GetMeasureParameters, echoed).Succeeded());
}

TEST_F(VirtualPlatformTest, BulkReadsDeliverEepromAndMeasurementBlocksAsTheyCame)
{
    const auto connection = Open();
    const Bytes image = ReadEepromBytes(*connection, 0, EepromSize);
    ASSERT_EQ(image.size(), EepromSize);
    EXPECT_EQ(image[4096], 0);
    EXPECT_EQ(image[4097], 1);
    EXPECT_EQ(ReadEepromBytes(*connection, 4096, 6), Bytes(image.begin() + 4096, image.begin() + 4102));

    StartMeasurement(*connection, 2);
    Bytes blocks(2 * BlockSize);
    const UsbResult read = connection->BulkRead(blocks.data(), 2 * BlockSize, Patience);
    ASSERT_TRUE(read.Succeeded()) << Text(read);
    EXPECT_EQ(read.Transferred(), 2 * BlockSize);
    for (std::uint32_t block = 0; block < 2; ++block) {
        const std::uint8_t* words = blocks.data() + block * BlockSize;
        EXPECT_GT((words[2] << 8) | words[3], 0) << "pixel 1 of block " << block;
        EXPECT_EQ((words[254] << 8) | words[255], 0) << "word 127 of block " << block;
    }

    // A read of more than came, or cut short by the instrument, succeeds with what came.
    StartMeasurement(*connection, 1);
    const UsbResult more = connection->BulkRead(blocks.data(), 2 * BlockSize, Patience);
    ASSERT_TRUE(more.Succeeded()) << Text(more);
    EXPECT_EQ(more.Transferred(), BlockSize);
    sim.Command({"fault", "short-read"});
    StartMeasurement(*connection, 2);
    const UsbResult cut = connection->BulkRead(blocks.data(), 2 * BlockSize, Patience);
    ASSERT_TRUE(cut.Succeeded()) << Text(cut);
    EXPECT_EQ(cut.Transferred(), BlockSize);
}

TEST_F(VirtualPlatformTest, TimeOutsHaveTheNumber1460)
{
    const auto connection = Open();
    sim.Command({"fault", "bulk-timeout"});
    StartMeasurement(*connection, 1);
    Bytes block(BlockSize);
    const UsbResult faulted = connection->BulkRead(block.data(), BlockSize, Patience);
    EXPECT_TRUE(faulted.IsTimeout());
    EXPECT_EQ(faulted.Error(), 1460u);
    EXPECT_EQ(Text(faulted), "Connection timed out");
    EXPECT_EQ(connection->BulkRead(block.data(), BlockSize, Patience).Transferred(), BlockSize);

    EXPECT_EQ(connection->BulkRead(block.data(), BlockSize, 50).Error(), 1460u);

    sim.Command({"fault", "control-timeout"});
    Bytes misc(8);
    EXPECT_EQ(Control(*connection, 1, GetMisc, misc).Error(), 1460u);
    EXPECT_TRUE(Control(*connection, 1, GetMisc, misc).Succeeded());
}

TEST_F(VirtualPlatformTest, PressesArriveOnTheInterruptRead)
{
    const auto connection = Open();
    auto waiting = std::async(std::launch::async, [&] {
        Bytes packet(8);
        const UsbResult read = connection->InterruptRead(packet.data(), 8);
        return std::make_pair(read, packet);
    });
    EXPECT_EQ(waiting.wait_for(50ms), std::future_status::timeout);
    sim.Command({"press"});
    ASSERT_EQ(waiting.wait_for(10s), std::future_status::ready);
    const auto [read, packet] = waiting.get();
    ASSERT_TRUE(read.Succeeded()) << Text(read);
    EXPECT_EQ(read.Transferred(), 8u);
    EXPECT_EQ(packet, (Bytes{1, 1, 0, 1, 0, 0, 0, 0}));

    sim.Command({"press"});
    sim.Command({"press"});
    Bytes packet2(8);
    ASSERT_TRUE(connection->InterruptRead(packet2.data(), 8).Succeeded());
    EXPECT_EQ(packet2[3], 2);
    ASSERT_TRUE(connection->InterruptRead(packet2.data(), 8).Succeeded());
    EXPECT_EQ(packet2[3], 3);
}

// Reads submitted one behind the other are served in turn; those left waiting for data that
// never comes end at once when cancelled, and the connection serves what follows.
TEST_F(VirtualPlatformTest, SubmittedBulkReadsCompleteInTurnOrAreCancelled)
{
    const auto connection = Open();
    const Bytes expected = ReadEepromBytes(*connection, 100, 16);
    Bytes range = EepromRange(100, 16);
    ASSERT_TRUE(Control(*connection, 0, ReadEeprom, range).Succeeded());
    Bytes first(8);
    Bytes second(8);
    const auto firstTicket = connection->SubmitBulkRead(first.data(), 8, Patience);
    const auto secondTicket = connection->SubmitBulkRead(second.data(), 8, Patience);
    EXPECT_EQ(connection->AwaitBulkRead(firstTicket, Patience).Transferred(), 8u);
    EXPECT_EQ(connection->AwaitBulkRead(secondTicket, Patience).Transferred(), 8u);
    EXPECT_EQ(Bytes(expected.begin(), expected.begin() + 8), first);
    EXPECT_EQ(Bytes(expected.begin() + 8, expected.end()), second);

    const auto waiting = connection->SubmitBulkRead(first.data(), 8, 60000);
    const auto behind = connection->SubmitBulkRead(second.data(), 8, 60000);
    connection->CancelBulkReads();
    EXPECT_TRUE(connection->AwaitBulkRead(waiting, 60000).IsCancelled());
    EXPECT_TRUE(connection->AwaitBulkRead(behind, 60000).IsCancelled());
    EXPECT_EQ(ReadEepromBytes(*connection, 100, 16), expected);
    EXPECT_EQ(connection->AwaitBulkRead(connection->SubmitBulkRead(nullptr, 8, 100), 100).Error(),
        static_cast<std::uint32_t>(EINVAL));
}

// Whichever waiting thread reads the socket files the answers of the others: two reads awaited
// side by side get their own halves, and a key press reaches the listener while transfers run.
TEST_F(VirtualPlatformTest, WaitingThreadsReadForEachOther)
{
    const auto connection = Open();
    const Bytes expected = ReadEepromBytes(*connection, 100, 16);
    std::atomic<bool> heard = false;
    auto listener = std::async(std::launch::async, [&] {
        Bytes packet(8);
        const UsbResult read = connection->InterruptRead(packet.data(), 8);
        heard = true;
        return read;
    });
    Bytes range = EepromRange(100, 16);
    EXPECT_TRUE(Control(*connection, 0, ReadEeprom, range).Succeeded());
    Bytes first(8);
    Bytes second(8);
    const auto firstTicket = connection->SubmitBulkRead(first.data(), 8, Patience);
    const auto secondTicket = connection->SubmitBulkRead(second.data(), 8, Patience);
    auto firstRead = std::async(std::launch::async, [&] { return connection->AwaitBulkRead(firstTicket, Patience); });
    auto secondRead = std::async(std::launch::async, [&] { return connection->AwaitBulkRead(secondTicket, Patience); });
    EXPECT_EQ(firstRead.get().Transferred(), 8u);
    EXPECT_EQ(secondRead.get().Transferred(), 8u);
    EXPECT_EQ(first, Bytes(expected.begin(), expected.begin() + 8));
    EXPECT_EQ(second, Bytes(expected.begin() + 8, expected.end()));

    auto transfers = std::async(std::launch::async, [&] {
        Bytes misc(8);
        bool allServed = true;
        while (!heard) {
            allServed = Control(*connection, 1, GetMisc, misc).Succeeded() && allServed;
        }
        return allServed;
    });
    sim.Command({"press"});
    ASSERT_EQ(listener.wait_for(10s), std::future_status::ready);
    const UsbResult pressed = listener.get();
    EXPECT_TRUE(pressed.Succeeded()) << Text(pressed);
    EXPECT_TRUE(transfers.get());
}

TEST_F(VirtualPlatformTest, CancelEndsTheInterruptReadFromAnotherThread)
{
    const auto connection = Open();
    auto waiting = std::async(std::launch::async, [&] {
        Bytes packet(8);
        return connection->InterruptRead(packet.data(), 8);
    });
    EXPECT_EQ(waiting.wait_for(50ms), std::future_status::timeout);
    connection->Cancel();
    ASSERT_EQ(waiting.wait_for(10s), std::future_status::ready);
    const UsbResult cancelled = waiting.get();
    EXPECT_TRUE(cancelled.IsCancelled());
    EXPECT_EQ(cancelled.Error(), static_cast<std::uint32_t>(ECANCELED));
    EXPECT_EQ(Text(cancelled), "Operation canceled");

    // A cancel that finds no read under way ends the next one, and only that one.
    connection->Cancel();
    Bytes packet(8);
    EXPECT_TRUE(connection->InterruptRead(packet.data(), 8).IsCancelled());
    sim.Command({"press"});
    const UsbResult pressed = connection->InterruptRead(packet.data(), 8);
    EXPECT_TRUE(pressed.Succeeded()) << Text(pressed);
    Bytes misc(8);
    EXPECT_TRUE(Control(*connection, 1, GetMisc, misc).Succeeded());
}

TEST_F(VirtualPlatformTest, UnpluggingOrStoppingEndsTheInterruptReadAndEveryTransfer)
{
    const auto connection = Open();
    auto waiting = std::async(std::launch::async, [&] {
        Bytes packet(8);
        return connection->InterruptRead(packet.data(), 8);
    });
    sim.Command({"unplug"});
    ASSERT_EQ(waiting.wait_for(10s), std::future_status::ready);
    const UsbResult ended = waiting.get();
    EXPECT_TRUE(ended.IsNoDevice());
    EXPECT_EQ(ended.Error(), static_cast<std::uint32_t>(ENODEV));
    EXPECT_EQ(Text(ended), "No such device");

    Bytes buffer(8);
    EXPECT_TRUE(Control(*connection, 1, GetMisc, buffer).IsNoDevice());
    EXPECT_TRUE(connection->BulkRead(buffer.data(), 8, Patience).IsNoDevice());
    EXPECT_TRUE(connection->BulkWrite(buffer.data(), 1, Patience).IsNoDevice());
    EXPECT_TRUE(connection->InterruptRead(buffer.data(), 8).IsNoDevice());

    sim.Command({"plug"});
    EXPECT_TRUE(Control(*connection, 1, GetMisc, buffer).IsNoDevice());
    const auto fresh = Open();
    ASSERT_NE(fresh, nullptr);
    EXPECT_TRUE(Control(*fresh, 1, GetMisc, buffer).Succeeded());

    sim.Run({"stop"});
    EXPECT_TRUE(fresh->InterruptRead(buffer.data(), 8).IsNoDevice()) << "stopping the instrument ends its connections";
    EXPECT_TRUE(Control(*fresh, 1, GetMisc, buffer).IsNoDevice());
}

// Each connection gets its own bulk data, whoever else talks to the instrument meanwhile.
TEST_F(VirtualPlatformTest, ConnectionsFromThreadsAndProcessesDoNotMix)
{
    Bytes image;
    {
        const auto first = Open();
        image = ReadEepromBytes(*first, 0, EepromSize);
        ASSERT_EQ(image.size(), EepromSize);
    }
    const auto readsAgree = [&](std::uint32_t seed) {
        std::unique_ptr<UsbConnection> connection;
        if (!platform.Open(Utilities::String(sim.Path()), connection).Succeeded()) {
            return false;
        }
        for (std::uint32_t i = 0; i < 40; ++i) {
            const std::uint32_t address = (seed * 1031 + i * 197) % (EepromSize - 300);
            const std::uint16_t size = static_cast<std::uint16_t>(1 + (seed + i * 37) % 300);
            if (ReadEepromBytes(*connection, address, size) !=
                Bytes(image.begin() + address, image.begin() + address + size)) {
                return false;
            }
        }
        return true;
    };

    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        ::_exit(readsAgree(7) ? 0 : 1);
    }
    auto second = std::async(std::launch::async, readsAgree, 11);
    const bool firstAgrees = readsAgree(3);
    EXPECT_TRUE(firstAgrees);
    EXPECT_TRUE(second.get());
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

TEST(VirtualPlatformDirectory, FollowsTheEnvironment)
{
    const char* savedSim = std::getenv("ORBEL_SIM_DIR");
    const char* savedRuntime = std::getenv("XDG_RUNTIME_DIR");
    const std::string simDirectory = savedSim ? savedSim : "";
    const std::string runtimeDirectory = savedRuntime ? savedRuntime : "";

    ::setenv("ORBEL_SIM_DIR", "/somewhere/sims", 1);
    ::setenv("XDG_RUNTIME_DIR", "/run/user/4321", 1);
    EXPECT_EQ(VirtualPlatform::DefaultDirectory().ToStdString(), "/somewhere/sims");
    ::setenv("ORBEL_SIM_DIR", "", 1);
    EXPECT_EQ(VirtualPlatform::DefaultDirectory().ToStdString(), "/run/user/4321/orbel-sim");
    ::unsetenv("XDG_RUNTIME_DIR");
    EXPECT_EQ(VirtualPlatform::DefaultDirectory().ToStdString(), "/tmp/orbel-sim-" + std::to_string(::getuid()));

    {
        const SimInstrument sim;
        ::setenv("ORBEL_SIM_DIR", sim.Directory().c_str(), 1);
        EXPECT_EQ(Texts(VirtualPlatform().EnumerateDevices()), (std::vector<std::string>{"sim:1000001"}));
    }

    savedSim ? ::setenv("ORBEL_SIM_DIR", simDirectory.c_str(), 1) : ::unsetenv("ORBEL_SIM_DIR");
    savedRuntime ? ::setenv("XDG_RUNTIME_DIR", runtimeDirectory.c_str(), 1) : ::unsetenv("XDG_RUNTIME_DIR");
}

TEST(VirtualWireFrame, RequestsAreBigEndianHeadersBeforeTheirBody)
{
    const Bytes body = {0xAA, 0xBB, 0xCC};
    const Bytes frame = VirtualWireFrame::Encode(
        {VirtualWireFrame::Kind::BulkWrite, 0x01020304, 0x0A0B0C0D, 3}, body.data(), body.size());
    EXPECT_EQ(frame,
        (Bytes{'O', 'B', 'S', 'M', 1, 3, 0, 0, 1, 2, 3, 4, 10, 11, 12, 13, 0, 0, 0, 3, 0, 0, 0, 3, 0xAA, 0xBB, 0xCC}));
}

TEST(VirtualWireFrame, AnswerHeadersAreReadOrRefused)
{
    const Bytes answer = {'O', 'B', 'S', 'M', 1, 2, 3, 0, 0, 0, 1, 7, 0, 0, 1, 0};
    const auto header = VirtualWireFrame::DecodeAnswerHeader(answer.data());
    ASSERT_TRUE(header.has_value());
    EXPECT_EQ(header->kind, VirtualWireFrame::Kind::BulkRead);
    EXPECT_EQ(header->status, VirtualWireFrame::Status::Short);
    EXPECT_EQ(header->requestId, 263u);
    EXPECT_EQ(header->bodyLength, 256u);

    Bytes wrongMagic = answer;
    wrongMagic[0] = 'X';
    EXPECT_FALSE(VirtualWireFrame::DecodeAnswerHeader(wrongMagic.data()).has_value());
    Bytes wrongVersion = answer;
    wrongVersion[4] = 2;
    EXPECT_FALSE(VirtualWireFrame::DecodeAnswerHeader(wrongVersion.data()).has_value());
    Bytes tooLong = answer;
    tooLong[13] = 0x10;
    tooLong[14] = 0x00;
    tooLong[15] = 0x01;
    EXPECT_FALSE(VirtualWireFrame::DecodeAnswerHeader(tooLong.data()).has_value());
}

}
