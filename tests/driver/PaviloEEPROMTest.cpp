#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "driver/ConfigurationData.h"
#include "driver/PaviloCalibrationStore.h"
#include "driver/PaviloEEPROM.h"
#include "driver/PaviloFunctionality.h"
#include "driver/PaviloLogStore.h"
#include "driver/PaviloRecordDefaults.h"
#include "tests/driver/PaviloSimFixture.h"
#include "tests/utilities/FailureText.h"
#include "utilities/ExceptionOutOfBound.h"
#include "utilities/ExceptionResourceNotAvailable.h"

namespace DeviceDriverTest {

using DeviceDriver::ConfigurationData;
using DeviceDriver::PaviloCalibrationStore;
using DeviceDriver::PaviloEEPROM;
using DeviceDriver::PaviloFunctionality;
using DeviceDriver::PaviloLogStore;
using DeviceDriver::PaviloRecordDefaults;
using Image = std::vector<std::uint8_t>;

namespace {

std::uint32_t WordAt(const Image& image, std::uint32_t address)
{
    return PaviloFunctionality::U32FromBytes(image.data() + address);
}

// The log copy of the image whose files carry ids from `firstId` on, checked by the image's own
// entry list, independently of the classes under test.
bool CopyIsGood(const Image& image, std::uint16_t firstId)
{
    const std::uint32_t list = PaviloEEPROM::EntryListAddress;
    if (PaviloFunctionality::U16FromBytes(image.data() + list) != 1) {
        return false;
    }
    const std::uint16_t used = PaviloFunctionality::U16FromBytes(image.data() + list + 2);
    std::uint32_t sum = 0;
    std::uint32_t stored = 0;
    bool checksumFound = false;
    for (std::uint16_t at = 4; at + 12 <= used; at += 6) {
        const std::uint16_t id = PaviloFunctionality::U16FromBytes(image.data() + list + at);
        const std::uint32_t from = PaviloFunctionality::U32FromBytes(image.data() + list + at + 2);
        const std::uint32_t to = PaviloFunctionality::U32FromBytes(image.data() + list + at + 8);
        if (id < firstId || id >= firstId + 1000 || to < from || to > PaviloFunctionality::ImageSize) {
            continue;
        }
        for (std::uint32_t address = from; address + 4 <= to; address += 4) {
            if (id == firstId) {
                stored = WordAt(image, address);
                checksumFound = true;
            } else {
                sum += WordAt(image, address);
            }
        }
    }
    return checksumFound && sum == stored;
}

bool OnlyChangedWithin(const Image& before, const Image& after, std::uint32_t from, std::uint32_t to)
{
    for (std::uint32_t address = 0; address < before.size(); ++address) {
        if (before[address] != after[address] && (address < from || address >= to)) {
            return false;
        }
    }
    return true;
}

Image CalibrationPart(const Image& image)
{
    return Image(image.begin() + PaviloEEPROM::EntryListAddress, image.end());
}

// What the driver does with the EEPROM on one connection.
struct Connection {
    explicit Connection(const std::string& path) : eeprom(&functionality)
    {
        opened = functionality.OpenDevice(path.c_str());
        PaviloRecordDefaults::FillLog(log);
    }
    ~Connection() { functionality.CloseDevice(); }

    PaviloCalibrationStore Calibration() { return PaviloCalibrationStore(eeprom, functionality); }
    PaviloLogStore Log() { return PaviloLogStore(eeprom, functionality); }

    // A measurement with the lamp on, booked as the driver books it.
    void BookMeasurement()
    {
        std::uint32_t count = 0;
        log.GetU32(10002, count);
        log.SetU32(10002, count + 1);
        log.Mark(10002, true);
    }

    void Close()
    {
        Log().Write(log, false);
        Log().Write(log, true);
    }

    PaviloFunctionality functionality;
    PaviloEEPROM eeprom;
    ConfigurationData log{"LogData"};
    bool opened = false;
};

class PaviloEEPROMTest : public PaviloSimFixture {
protected:
    Image RawImage()
    {
        Connection connection(sim.Path());
        EXPECT_TRUE(connection.opened);
        Image image(PaviloFunctionality::ImageSize);
        connection.functionality.ReadEEPROM(0, PaviloFunctionality::ImageSize, image.data(), image.size());
        return image;
    }

    // A fault armed for a later transfer may still strike while the image is read.
    Image ImageDespiteFaults()
    {
        for (int attempt = 0; attempt < 50; ++attempt) {
            sim.Run({"plug"});
            Connection connection(sim.Path());
            Image image(PaviloFunctionality::ImageSize);
            try {
                if (connection.opened) {
                    connection.functionality.ReadEEPROM(0, PaviloFunctionality::ImageSize, image.data(), image.size());
                    return image;
                }
            } catch (const Utilities::Exception&) {
                // A transfer cut short may leave the cable's state behind: pulled and plugged anew.
                sim.Run({"unplug"});
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        return Image();
    }

    std::uint32_t LoggedMeasurements()
    {
        Connection connection(sim.Path());
        connection.Log().Load(connection.log);
        std::uint32_t count = 0;
        connection.log.GetU32(10002, count);
        return count;
    }
};

}

TEST(PaviloEEPROMItems, EncodeAndDecodeByType)
{
    ConfigurationData data("Items");
    data.SetU32(1, 0xFFFFFFFFu);
    data.SetFloat(2, 1.5f);
    Utilities::Vector<long> words(2);
    words[0] = -2;
    words[1] = 0x01020304;
    data.SetU32Vector(3, words);
    EXPECT_EQ(PaviloEEPROM::EncodeItem(data, 1), (Image{0xFF, 0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(PaviloEEPROM::EncodeItem(data, 2), (Image{0x3F, 0xC0, 0x00, 0x00}));
    EXPECT_EQ(PaviloEEPROM::EncodeItem(data, 3), (Image{0xFF, 0xFF, 0xFF, 0xFE, 0x01, 0x02, 0x03, 0x04}));

    data.Mark(1, true);
    PaviloEEPROM::DecodeItem(data, 1, Image{0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00, 0x00, 0x07});
    Utilities::Vector<long> decoded(0);
    data.GetU32Vector(1, decoded);
    EXPECT_EQ(decoded.Size(), 1u) << "later bytes of a scalar's file are ignored";
    EXPECT_EQ(decoded[0], -1) << "integer items hold the signed reading of a word";
    EXPECT_FALSE(data.FindItem(1)->IsMarked());

    PaviloEEPROM::DecodeItem(data, 3, Image{0x00, 0x00, 0x00, 0x05, 0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00, 0x00, 0x06});
    data.GetU32Vector(3, decoded);
    EXPECT_EQ(decoded.Size(), 3u) << "a vector is as long as its file";
    EXPECT_EQ(decoded[1], -1);

    PaviloEEPROM::DecodeItem(data, 2, Image{0x3F});
    float value = 0.0f;
    data.GetFloat(2, value);
    EXPECT_EQ(value, 1.5f) << "a file too short for a scalar leaves it as it was";
}

TEST(PaviloEEPROMItems, ChecksumWrapsAndLeavesItselfOut)
{
    ConfigurationData log("LogData");
    PaviloRecordDefaults::FillLog(log);
    EXPECT_EQ(PaviloLogStore::Checksum(log), 0u);
    EXPECT_TRUE(PaviloLogStore::IsGood(log)) << "the defaults are a good copy";
    log.SetU32(10002, 0xFFFFFFFFu);
    log.SetU32(10003, 2);
    log.SetFloat(10004, 1.0f);
    log.SetU32(10000, 12345);
    EXPECT_EQ(PaviloLogStore::Checksum(log), 1u + 0x3F800000u);
    EXPECT_FALSE(PaviloLogStore::IsGood(log));
}

TEST_F(PaviloEEPROMTest, ReadsFilesThroughTheFactoryEntryList)
{
    Connection connection(sim.Path());
    ASSERT_TRUE(connection.opened);
    PaviloEEPROM& eeprom = connection.eeprom;
    EXPECT_GT(eeprom.ReadEntryList().Size(), 40u);
    EXPECT_EQ(eeprom.FileAddress(10000), 0u);
    EXPECT_EQ(eeprom.FileAddress(11000), PaviloEEPROM::MirrorAddress);
    EXPECT_EQ(eeprom.FileSize(10010), 512u);
    EXPECT_EQ(eeprom.FileSize(1211), 4u);
    EXPECT_EQ(FailureText<Utilities::ExceptionResourceNotAvailable>([&] { eeprom.FileSize(4711); }),
        "File with ID 4711 not found in EEPROM");

    ConfigurationData calibration("Calibration");
    connection.Calibration().Read(calibration);
    std::uint32_t serial = 0;
    calibration.GetU32(1211, serial);
    EXPECT_EQ(serial, OrbelTest::SimInstrument::DefaultSerial);
    Utilities::Vector<long> firstPixels(0);
    calibration.GetU32Vector(1002, firstPixels);
    EXPECT_EQ(firstPixels.Size(), 36u);
    EXPECT_EQ(calibration.MarkedIds().Size(), 0u);

    const std::uint64_t writesBefore = Counter("bulk_out");
    std::uint8_t word[4] = {0, 0, 0, 1};
    EXPECT_TRUE(eeprom.WriteFile(1211, word, 4)) << "refused silently under protection";
    EXPECT_FALSE(eeprom.WriteFile(1211, word, 3)) << "wrong size";
    EXPECT_FALSE(eeprom.WriteFile(4711, word, 4)) << "a missing file has size 0";
    EXPECT_EQ(Counter("bulk_out"), writesBefore);
    EXPECT_EQ(FailureText<Utilities::ExceptionOutOfBound>([&] { eeprom.Repair(calibration, connection.log); }),
        "EEPROM Error: unable to correct invalid entry list");
}

TEST_F(PaviloEEPROMTest, GoodCopiesLoadWithoutWritingAndCountersSurviveReplugging)
{
    const std::uint64_t writesBefore = Counter("bulk_out");
    {
        Connection connection(sim.Path());
        connection.Log().Load(connection.log);
        EXPECT_EQ(Counter("bulk_out"), writesBefore);
        std::uint32_t count = 0;
        connection.log.GetU32(10002, count);
        EXPECT_EQ(count, 212u);
        EXPECT_EQ(connection.log.MarkedIds().Size(), 0u);
        connection.BookMeasurement();
        connection.Close();
    }
    const Image image = RawImage();
    EXPECT_TRUE(CopyIsGood(image, 10000));
    EXPECT_TRUE(CopyIsGood(image, 11000));
    sim.Command({"unplug"});
    sim.Command({"plug"});
    EXPECT_EQ(LoggedMeasurements(), 213u);
}

TEST_F(PaviloEEPROMTest, ErasedEEPROMKeepsTheDefaultsAndRefusesToWriteTheLog)
{
    sim.Command({"fault", "erase-eeprom"});
    const Image erased = RawImage();
    Connection connection(sim.Path());
    connection.Log().Load(connection.log);
    std::uint32_t count = 1;
    connection.log.GetU32(10002, count);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(FailureText<Utilities::ExceptionResourceNotAvailable>([&] { connection.eeprom.ReadEntryList(); }),
        "EEPROM Error: unable to correct invalid entry list");

    ConfigurationData calibration("Calibration");
    connection.Calibration().Read(calibration);
    std::uint32_t serial = 0;
    calibration.GetU32(1211, serial);
    EXPECT_EQ(serial, 0xFFFFFFFFu) << "every file counts as missing";

    connection.Log().Write(connection.log, false);
    connection.BookMeasurement();
    EXPECT_EQ(FailureText<Utilities::ExceptionOutOfBound>([&] { connection.Close(); }),
        "EEPROM Error: unable to correct invalid entry list");
    EXPECT_EQ(RawImage(), erased);
}

// A broken copy is rewritten from the other, and nothing else is; two broken copies get the defaults.
TEST_F(PaviloEEPROMTest, BrokenLogCopiesAreRestored)
{
    const auto restores = [&](const char* fault, std::uint16_t copy, std::uint32_t from, std::uint32_t to) {
        sim.Command({"fault", fault});
        const Image broken = RawImage();
        ASSERT_FALSE(CopyIsGood(broken, copy)) << fault;
        EXPECT_EQ(LoggedMeasurements(), 212u) << fault;
        const Image restored = RawImage();
        EXPECT_TRUE(CopyIsGood(restored, copy)) << fault;
        EXPECT_TRUE(OnlyChangedWithin(broken, restored, from, to)) << fault;
    };
    restores("break-log-main", 10000, PaviloEEPROM::LogAddress, PaviloEEPROM::MirrorAddress);
    restores("break-log-mirror", 11000, PaviloEEPROM::MirrorAddress, PaviloEEPROM::EntryListAddress);

    sim.Command({"fault", "break-log-main"});
    sim.Command({"fault", "break-log-mirror"});
    EXPECT_EQ(LoggedMeasurements(), 0u);
    const Image image = RawImage();
    EXPECT_TRUE(CopyIsGood(image, 10000));
    EXPECT_TRUE(CopyIsGood(image, 11000));
}

TEST_F(PaviloEEPROMTest, GrowingCalibrationVectorIsRepairedOnceAndWritten)
{
    const Image before = RawImage();
    Connection connection(sim.Path());
    ConfigurationData calibration("Calibration");
    connection.Calibration().Read(calibration);
    const ConfigurationData original = calibration;
    Utilities::Vector<float> tile(0);
    calibration.GetFloatVector(1100, tile);
    Utilities::Vector<float> longer(tile.Size() + 1);
    for (unsigned long i = 0; i < tile.Size(); ++i) {
        longer[i] = tile[i];
    }
    longer[tile.Size()] = 0.5f;
    calibration.SetFloatVector(1100, longer);
    calibration.Mark(1100, true);

    EXPECT_EQ(FailureText<Utilities::ExceptionOutOfBound>(
                  [&] { connection.Calibration().Write(calibration, false, connection.log); }),
        "EEPROM Error: unable to correct invalid entry list");
    EXPECT_EQ(RawImage(), before);

    connection.Log().Load(connection.log);
    connection.Calibration().Write(calibration, true, connection.log);
    EXPECT_TRUE(connection.eeprom.IsProtected());
    EXPECT_EQ(calibration.MarkedIds().Size(), 0u);

    Connection again(sim.Path());
    ConfigurationData readBack("Calibration");
    again.Calibration().Read(readBack);
    Utilities::Vector<float> stored(0);
    readBack.GetFloatVector(1100, stored);
    EXPECT_TRUE(stored == longer);
    for (std::uint16_t id : {1000, 1004, 1204, 1211, 1222, 3014, 4000}) {
        EXPECT_EQ(PaviloEEPROM::EncodeItem(readBack, id), PaviloEEPROM::EncodeItem(original, id)) << id;
    }
    const Image after = RawImage();
    EXPECT_TRUE(CopyIsGood(after, 10000));
    EXPECT_TRUE(CopyIsGood(after, 11000));
}

TEST_F(PaviloEEPROMTest, CommunicationFailuresCarryTheLogTexts)
{
    {
        Connection connection(sim.Path());
        sim.Command({"fault", "bulk-timeout"});
        const std::string text =
            FailureText<Utilities::ExceptionOutOfBound>([&] { connection.Log().Load(connection.log); });
        EXPECT_EQ(text.rfind("Log Error (ID ", 0), 0u) << text;
        EXPECT_NE(text.find("): PaviloFunctionality_PC::ReadEEPROM "), std::string::npos) << text;
    }
    Connection connection(sim.Path());
    connection.Log().Load(connection.log);
    connection.BookMeasurement();
    const std::uint64_t resetsBefore = Counter("resets");
    sim.Command({"fault", "bulk-timeout"});
    std::string text =
        FailureText<Utilities::ExceptionOutOfBound>([&] { connection.Log().Write(connection.log, true); });
    EXPECT_EQ(text.rfind("Log Error (ID ", 0), 0u) << text;
    EXPECT_NE(text.find(" mirror): PaviloFunctionality_PC::WriteEEPROM "), std::string::npos) << text;
    EXPECT_EQ(Counter("resets"), resetsBefore + 1);

    sim.Command({"fault", "drop"});
    text = FailureText<Utilities::ExceptionOutOfBound>([&] { connection.Log().Write(connection.log, false); });
    EXPECT_NE(text.find("): [reset impossible] PaviloFunctionality_PC::WriteEEPROM "), std::string::npos) << text;
    EXPECT_EQ(text.find("mirror"), std::string::npos) << text;
}

TEST_F(PaviloEEPROMTest, NoSequenceOfFaultsLosesCalibrationOrBothLogCopies)
{
    const Image calibrationBefore = CalibrationPart(RawImage());
    std::mt19937 random(20240611);
    const std::vector<std::string> kinds = {"drop", "bulk-timeout", "control-timeout"};
    int failedCycles = 0;
    for (int cycle = 0; cycle < 40; ++cycle) {
        const std::string kind = kinds[random() % kinds.size()];
        const unsigned stage = random() % 4;
        const std::string count = std::to_string(1 + random() % (kind == "drop" ? 40 : 2));
        const auto armAt = [&](unsigned at) {
            if (at == stage) {
                sim.Command({"fault", kind, "--count", count});
            }
        };
        try {
            armAt(0);
            Connection connection(sim.Path());
            armAt(1);
            connection.Log().Load(connection.log);
            connection.BookMeasurement();
            armAt(2);
            connection.Log().Write(connection.log, false);
            armAt(3);
            connection.Log().Write(connection.log, true);
        } catch (const Utilities::Exception&) {
            // Every failure is allowed here; what counts is what the EEPROM holds afterwards.
            ++failedCycles;
        }
        const Image image = ImageDespiteFaults();
        ASSERT_FALSE(image.empty()) << "cycle " << cycle;
        ASSERT_EQ(CalibrationPart(image), calibrationBefore) << "cycle " << cycle << ", " << kind;
        ASSERT_TRUE(CopyIsGood(image, 10000) || CopyIsGood(image, 11000)) << "cycle " << cycle << ", " << kind;
    }
    EXPECT_GT(failedCycles, 10) << "the faults must strike inside the cycles";
}

}
