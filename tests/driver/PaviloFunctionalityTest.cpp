#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "driver/ExceptionPaviloCommunication.h"
#include "driver/PaviloFunctionality.h"
#include "driver/PaviloFunctionality_PC.h"
#include "tests/driver/PaviloSimFixture.h"
#include "tests/utilities/FailureText.h"
#include "utilities/ResolveAs.h"

namespace DeviceDriverTest {

using DeviceDriver::ExceptionPaviloCommunication;
using DeviceDriver::PaviloFunctionality;
using DeviceDriver::PaviloFunctionality_PC;
using DeviceDriver::PaviloFunctionalityByte;

namespace {

// The text of the communication failure that work raises.
template<class Action>
std::string CommunicationFailure(Action work)
{
    return FailureText<ExceptionPaviloCommunication>(work);
}

class PaviloFunctionalityTest : public PaviloSimFixture {
protected:
    void Open() { ASSERT_TRUE(functionality.OpenDevice("Default")); }

    // Measurements of 256 bytes, `count` to a packet, taken as a scan.
    void StartScanOf(std::uint32_t measurements)
    {
        DrawStripOf(measurements);
        functionality.SetMeasureParameters(100, 0, 1, 0x01);
        functionality.StartScan(256, 5);
    }

    std::uint32_t DrainScan()
    {
        std::uint32_t packets = 0;
        std::uint8_t packet[256];
        std::uint32_t size = sizeof packet;
        for (functionality.GetScanData(packet, size); size != 0; functionality.GetScanData(packet, size)) {
            ++packets;
        }
        return packets;
    }

    PaviloFunctionality functionality;
};

}

TEST(PaviloFunctionalityComponent, IsFoundByNameAndFailsWithItsPrefixesWithoutADevice)
{
    auto byName = Utilities::ResolveAs<PaviloFunctionalityByte>("PaviloFunctionality");
    ASSERT_FALSE(byName.IsNull());
    EXPECT_NE(dynamic_cast<PaviloFunctionality_PC*>(&*byName), nullptr);

    PaviloFunctionality_PC commands;
    std::uint8_t word[2];
    EXPECT_EQ(CommunicationFailure([&] { commands.ReadCPLD(word); }),
        "PaviloFunctionality_PC::ReadCPLD Failed to access to nullpointer.");
    EXPECT_EQ(CommunicationFailure([&] { commands.GetDeviceState(30001); }),
        "PaviloFunctionality_PC::Reset Failed to access to nullpointer.");
    EXPECT_EQ(CommunicationFailure([&] { commands.GetDeviceState(30003); }),
        "PaviloFunctionality_PC::Reset Device state request not supported");
    EXPECT_FALSE(commands.IsDeviceOpen());
    EXPECT_TRUE(commands.CloseDevice());

    std::uint8_t target[4] = {9, 9, 9, 9};
    std::uint32_t size = 4;
    commands.GetScanData(target, size);
    EXPECT_EQ(size, 0u);
    EXPECT_EQ(target[0], 9);
}

TEST_F(PaviloFunctionalityTest, AnswersConnectedFromTheEnumerationBeforeAnyDevice)
{
    PaviloFunctionality_PC commands;
    EXPECT_EQ(commands.GetDeviceState(30002), 1);
    EXPECT_EQ(Counter("resets"), 0u);
    sim.Command({"unplug"});
    EXPECT_EQ(commands.GetDeviceState(30002), 0);
    EXPECT_FALSE(commands.OpenDevice("default"));
}

TEST_F(PaviloFunctionalityTest, OpensByDefaultNameOrPathOnly)
{
    EXPECT_FALSE(functionality.OpenDevice("sim:4242"));
    EXPECT_FALSE(functionality.IsDeviceOpen());
    EXPECT_TRUE(functionality.OpenDevice(sim.Path().c_str()));
    EXPECT_TRUE(functionality.IsDeviceOpen());
    EXPECT_TRUE(functionality.CloseDevice());
    EXPECT_FALSE(functionality.IsDeviceOpen());
    EXPECT_TRUE(functionality.OpenDevice("DEFAULT"));
    EXPECT_TRUE(functionality.IsDeviceOpen());
    EXPECT_EQ(functionality.GetDeviceState(30002), 1);
}

TEST_F(PaviloFunctionalityTest, CommandsReachTheInstrumentAndComeBack)
{
    Open();
    functionality.SetMeasureParameters(1, 2, 3, 0x0B);
    std::uint16_t integration = 0, lamp = 0, count = 0;
    std::uint8_t flags = 0;
    functionality.GetMeasureParameters(integration, lamp, count, flags);
    EXPECT_EQ(integration, 1);
    EXPECT_EQ(lamp, 2);
    EXPECT_EQ(count, 3);
    EXPECT_EQ(flags, 0x0B);

    std::uint8_t byte6 = 0, byte7 = 9;
    std::uint16_t word0 = 0, word1 = 0, word2 = 0;
    functionality.GetMISC(byte6, word0, byte7, word1, word2);
    EXPECT_EQ(word0, 0x0102);
    EXPECT_EQ(word1, 0x0001);
    EXPECT_EQ(word2, 0xF000);
    EXPECT_EQ(byte6, 1);
    EXPECT_EQ(byte7, 0);

    functionality.WriteCPLD(5, 0x1234, 7);
    std::uint16_t word = 0;
    functionality.ReadCPLD(word);
    EXPECT_EQ(word, 0x1234);

    const std::uint64_t resets = Counter("resets");
    functionality.Reset(0x001F);
    EXPECT_EQ(Counter("resets"), resets + 1);
}

TEST_F(PaviloFunctionalityTest, MeasuresBlocksAndNamesItsFailures)
{
    Open();
    functionality.SetMeasureParameters(100, 0, 2, 0);
    std::vector<std::uint8_t> blocks(512, 0xAA);
    functionality.MeasureRequest(blocks.data(), 512, 1);
    EXPECT_EQ(blocks[254], 0);
    EXPECT_EQ(blocks[255], 0);
    EXPECT_NE(PaviloFunctionality::U16FromBytes(&blocks[20]), 0);

    sim.Command({"fault", "short-read"});
    EXPECT_EQ(CommunicationFailure([&] { functionality.MeasureRequest(blocks.data(), 512, 1); }),
        "PaviloFunctionality_PC::MeasureRequest Read data failed (Not enough data)");
    sim.Command({"fault", "control-timeout"});
    std::uint16_t word = 0;
    EXPECT_EQ(CommunicationFailure([&] { functionality.ReadCPLD(word); }),
        "PaviloFunctionality_PC::ReadCPLD Device IO control failed (Linux Error (1460) : Connection timed out )");
    EXPECT_EQ(CommunicationFailure([&] { functionality.GetDeviceState(7); }),
        "PaviloFunctionality_PC::Reset Device state request not supported");
    functionality.ReadCPLD(word);
}

TEST_F(PaviloFunctionalityTest, ReadsTheEEPROMImageOnceAConnection)
{
    Open();
    const std::uint64_t reads = Counter("bulk_in");
    std::uint8_t first[4] = {};
    functionality.ReadEEPROM(4096, 4, first, 4);
    EXPECT_EQ(Counter("bulk_in"), reads + 1);
    std::uint8_t again[4] = {};
    functionality.ReadEEPROM(4096, 4, again, 4);
    EXPECT_EQ(Counter("bulk_in"), reads + 1);
    EXPECT_EQ(std::vector<std::uint8_t>(first, first + 4), std::vector<std::uint8_t>(again, again + 4));

    const std::uint8_t written[4] = {1, 2, 3, 4};
    functionality.WriteEEPROM(8000, 4, written, 4);
    EXPECT_EQ(Counter("eeprom_bytes_written"), 4u);
    std::uint8_t copy[4] = {};
    functionality.ReadEEPROM(8000, 4, copy, 4);
    EXPECT_EQ(Counter("bulk_in"), reads + 1);
    EXPECT_EQ(std::vector<std::uint8_t>(copy, copy + 4), std::vector<std::uint8_t>(written, written + 4));

    functionality.CloseDevice();
    Open();
    std::uint8_t fresh[4] = {};
    functionality.ReadEEPROM(8000, 4, fresh, 4);
    EXPECT_EQ(Counter("bulk_in"), reads + 2);
    EXPECT_EQ(std::vector<std::uint8_t>(fresh, fresh + 4), std::vector<std::uint8_t>(written, written + 4));

    EXPECT_EQ(CommunicationFailure([&] { functionality.ReadEEPROM(8190, 4, fresh, 4); }),
        "PaviloFunctionality::ReadEEPROM address out of range");
    EXPECT_EQ(CommunicationFailure([&] { functionality.WriteEEPROM(8192, 1, written, 1); }),
        "PaviloFunctionality::WriteEEPROM address out of range");
    EXPECT_EQ(Counter("eeprom_bytes_written"), 4u);
}

// Two block reads are kept under way: the two queued behind the end of a strip are cancelled,
// whether it ends on a block boundary (at the empty block) or inside a block, and they don't hold
// up the next strip.
TEST_F(PaviloFunctionalityTest, AStripEndsAtItsLastMeasurement)
{
    Open();
    for (std::uint32_t measurements : {20u, 23u}) {
        const std::uint64_t reads = Counter("bulk_in");
        const std::uint64_t cancelled = Counter("bulk_in_cancelled");
        StartScanOf(measurements);
        EXPECT_EQ(DrainScan(), measurements);
        EXPECT_EQ(DrainScan(), 0u);
        EXPECT_TRUE(Eventually([&] { return Counter("bulk_in_cancelled") == cancelled + 2; })) << measurements;
        EXPECT_TRUE(Eventually([&] { return Counter("bulk_in") == reads + 5; })) << measurements;
    }
}

TEST_F(PaviloFunctionalityTest, AStripThatStallsFailsWithItsTexts)
{
    Open();
    DrawStripOf(23);
    functionality.SetMeasureParameters(100, 0, 1, 0x01);
    sim.Command({"fault", "bulk-timeout"});
    EXPECT_EQ(CommunicationFailure([&] { functionality.StartScan(256, 5); }),
        "PaviloFunctionality_PC::StartScan Read data failed (Timeout)");
    EXPECT_EQ(CommunicationFailure([&] { functionality.StartScan(6554, 5); }),
        "PaviloFunctionality_PC::StartScan Max packages size is 6553");
}

}
