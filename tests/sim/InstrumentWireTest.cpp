// The virtual instrument seen from the host's side of the cable: raw transfers through its socket.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <numeric>

#include <gtest/gtest.h>

#include "sim/SpectralTables.h"
#include "sim/Target.h"
#include "tests/sim/SimHarness.h"

namespace OrbelSimTest {
namespace {

using OrbelSim::TransferKind;
using OrbelSim::WireFrame;

constexpr std::uint16_t tileTicks = 300; // 0.0204 s
constexpr std::uint8_t gain1 = 0x04;
constexpr std::uint8_t lampOff = 0x02;
constexpr std::uint8_t scan = 0x01;

std::vector<std::uint8_t> ReadWholeEeprom(RawHost& host)
{
    std::vector<std::uint8_t> image;
    for (std::uint32_t address = 0; address < 8192; address += 2048) {
        const std::vector<std::uint8_t> part = host.ReadEeprom(address, 2048);
        image.insert(image.end(), part.begin(), part.end());
    }
    return image;
}

// The host's chain, written from the records alone: mean, linearise, subtract dark, fold.
std::vector<double> MeanRow(const Rows& rows)
{
    std::vector<double> mean(128);
    for (std::size_t p = 0; p < 128; ++p) {
        long sum = 0;
        for (const auto& row : rows) {
            sum += row[p];
        }
        mean[p] = static_cast<double>(sum / static_cast<long>(rows.size()));
    }
    return mean;
}

std::vector<double> Linearise(std::vector<double> row, const std::vector<float>& c)
{
    for (double& x : row) {
        double y = c.back();
        for (std::size_t i = c.size() - 1; i-- > 0;) {
            y = x * y + c[i];
        }
        x = y;
    }
    return row;
}

std::vector<double> Fold(const std::vector<double>& row, const EepromFiles& records)
{
    const auto first = records.Words(1002);
    const auto count = records.Words(1003);
    const auto coefficients = records.Floats(1004);
    std::vector<double> out;
    std::size_t next = 0;
    for (std::size_t k = 0; k < first.size(); ++k) {
        double sum = 0.0;
        for (std::uint32_t j = 0; j < count[k]; ++j) {
            sum += coefficients[next++] * row[first[k] + j];
        }
        out.push_back(sum);
    }
    return out;
}

class HostCalculation {
public:
    HostCalculation(RawHost& host, std::uint8_t gainFlag, std::uint16_t ticks)
        : host(host), records(ReadWholeEeprom(host)), gainFlag(gainFlag), ticks(ticks)
    {
        dark = Linearise(MeanRow(this->host.Measure(this->ticks, 4, this->gainFlag | lampOff)), Polynomial());
    }

    std::vector<double> Signal(std::uint8_t lampFlag)
    {
        std::vector<double> linear = Linearise(MeanRow(host.Measure(ticks, 4, gainFlag | lampFlag)), Polynomial());
        for (std::size_t p = 0; p < linear.size(); ++p) {
            linear[p] -= dark[p];
        }
        return Fold(linear, records);
    }

    const EepromFiles& Records() const { return records; }

private:
    std::vector<float> Polynomial() const { return records.Floats(gainFlag ? 1000 : 1001); }

    RawHost& host;
    EepromFiles records;
    std::uint8_t gainFlag;
    std::uint16_t ticks;
    std::vector<double> dark;
};

TEST(InstrumentWire, StartIsQuickAndStopLeavesNothingBehind)
{
    const TemporaryDirectory directory;
    const auto run = [&](const std::string& command) {
        return ProgramRunner::Run(ORBEL_SIM_BINARY, {command, "--serial", "4711"}, "ORBEL_SIM_DIR", directory.Path());
    };
    const auto before = std::chrono::steady_clock::now();
    const ProgramResult started = run("start");
    const auto took = std::chrono::steady_clock::now() - before;
    ASSERT_EQ(started.exitCode, 0) << started.err;
    EXPECT_EQ(started.out, "sim:4711\n");
    EXPECT_LT(took, std::chrono::seconds(1));
    EXPECT_TRUE(std::filesystem::exists(directory / "4711.sock"));
    const long pid = std::stol(JsonField(run("status").out, "pid"));
    EXPECT_TRUE(ProgramRunner::ProcessAlive(pid));

    const ProgramResult again = run("start");
    EXPECT_EQ(again.exitCode, 1);
    EXPECT_EQ(again.err, "orbel-sim: an instrument with serial 4711 runs already (sim:4711)\n");

    const ProgramResult stopped = run("stop");
    EXPECT_EQ(stopped.exitCode, 0) << stopped.err;
    EXPECT_FALSE(ProgramRunner::ProcessAlive(pid));
    EXPECT_TRUE(std::filesystem::is_empty(directory.Path()));
    const ProgramResult none = run("press");
    EXPECT_EQ(none.exitCode, 1);
    EXPECT_EQ(none.err, "orbel-sim: no instrument with serial 4711 is running\n");
}

TEST(InstrumentWire, EepromReadsBackByteForByteAndKeepsWritesAcrossRuns)
{
    const TemporaryDirectory directory;
    const std::string file = directory / "eeprom.bin";
    {
        SimHarness sim({"--noise", "off", "--eeprom", file});
        RawHost host(sim.SocketPath());
        const std::vector<std::uint8_t> image = ReadWholeEeprom(host);
        const std::string onDisk = directory.Read("eeprom.bin");
        EXPECT_EQ(image, std::vector<std::uint8_t>(onDisk.begin(), onDisk.end()));
        EXPECT_EQ(host.ReadEeprom(4096, 4), (std::vector<std::uint8_t>{0, 1, image[4098], image[4099]}));

        host.WriteEeprom(100, {1, 2, 3, 4, 5});
        EXPECT_EQ(host.ReadEeprom(98, 9),
            (std::vector<std::uint8_t>{image[98], image[99], 1, 2, 3, 4, 5, image[105], image[106]}));
        sim.Ok({"unplug"});
        sim.Ok({"plug"});
        RawHost again(sim.SocketPath());
        EXPECT_EQ(again.ReadEeprom(100, 5), (std::vector<std::uint8_t>{1, 2, 3, 4, 5}));
    }
    SimHarness second({"--noise", "off", "--eeprom", file}, 1000002);
    RawHost host(second.SocketPath());
    EXPECT_EQ(host.ReadEeprom(100, 5), (std::vector<std::uint8_t>{1, 2, 3, 4, 5}));
}

TEST(InstrumentWire, EntryListAndRecordsFollowTheFileSystem)
{
    SimHarness sim({"--noise", "off"}, 1234567);
    RawHost host(sim.SocketPath());
    const EepromFiles files(ReadWholeEeprom(host));
    for (std::uint16_t id : {1000, 1001, 1002, 1003, 1004, 1100, 1101, 1102, 1204, 1205, 1207, 1208, 1211, 1212, 1213,
             1221, 1222, 3001, 3002, 3007, 3008, 3010, 3011, 3012, 3013, 3014, 4000, 10000, 10001, 10002, 10003, 10004,
             10005, 10010, 10011, 10012, 10013, 10020, 10021, 11000, 11021}) {
        EXPECT_TRUE(files.Has(id)) << id;
    }
    EXPECT_EQ(files.Address(10000), 0u);
    EXPECT_LE(files.Address(10021) + 4, 0x800u);
    EXPECT_LE(files.Address(11021) + 4, 0x1000u);
    EXPECT_EQ(files.Address(11000), 0x800u);
    EXPECT_EQ(files.Address(1000), 0x1200u);
    EXPECT_EQ(files.U32(1211), 1234567u);
    EXPECT_EQ(files.U32(1204), 40000u);
    EXPECT_EQ(files.U32(1205), 2500u);
    EXPECT_EQ(files.U32(3012), 129u);
    EXPECT_FLOAT_EQ(files.Float(1213), 8.0f);
    EXPECT_FLOAT_EQ(files.Float(1221), 0.0068f);
    EXPECT_FLOAT_EQ(files.Float(1222), 4.0f);
    EXPECT_EQ(files.Words(1002).size(), 36u);
    EXPECT_EQ(files.Words(1003).size(), 36u);
    const auto counts = files.Words(1003);
    EXPECT_EQ(files.Floats(1004).size(), std::accumulate(counts.begin(), counts.end(), 0u));
    EXPECT_EQ(files.Floats(1100).size(), 36u);
    EXPECT_EQ(files.Words(10010).size(), 128u);

    for (const std::uint16_t copy : {10000, 11000}) {
        const std::uint32_t sum = files.SumBetween(copy, static_cast<std::uint16_t>(copy + 1000));
        EXPECT_EQ(files.U32(copy), sum) << "copy " << copy;
        EXPECT_NE(sum, 0u);
    }
}

TEST(InstrumentWire, TileIsBelowSaturationAndDarkBelowItsLimit)
{
    SimHarness sim({"--time-scale", "0.01"});
    RawHost host(sim.SocketPath());
    const Rows tile = host.Measure(tileTicks, 4, gain1);
    ASSERT_EQ(tile.size(), 4u);
    long peak = 0;
    for (const auto& row : tile) {
        peak = std::max(peak, *std::max_element(row.begin() + 1, row.end()));
    }
    EXPECT_NEAR(peak, 40000, 2000);

    const Rows dark = host.Measure(tileTicks, 4, gain1 | lampOff);
    double sum = 0.0;
    for (const auto& row : dark) {
        sum += std::accumulate(row.begin() + 1, row.end(), 0.0);
    }
    EXPECT_LT(sum / (4.0 * 127.0), 2500.0);
    EXPECT_GT(sum / (4.0 * 127.0), 1000.0);

    const std::vector<std::uint8_t> misc = host.Misc();
    EXPECT_EQ(WireFrame::GetU16(misc.data() + 4), 0xF000);
    EXPECT_EQ(misc[7], 0);
}

TEST(InstrumentWire, RoundTripRecoversReflectanceFromTheRecords)
{
    SimHarness sim;
    RawHost host(sim.SocketPath());
    HostCalculation host_side(host, gain1, tileTicks);
    const std::vector<double> tile = host_side.Signal(0);
    const std::vector<float> tileRecord = host_side.Records().Floats(1100);
    for (const std::string name : {"tcs01", "tcs05", "tcs09", "tcs12", "tcs14", "grey10", "grey90"}) {
        sim.Ok({"place", "sample:" + name});
        const std::vector<double> sample = host_side.Signal(0);
        const OrbelSim::Spectrum36 truth = OrbelSim::TargetCatalog::Sample(name).values;
        for (std::size_t k = 0; k < 36; ++k) {
            EXPECT_NEAR(sample[k] * tileRecord[k] / tile[k], truth[k], 0.002)
                << name << " at " << 380 + 10 * k << " nm";
        }
    }
}

TEST(InstrumentWire, EmissionOfADisplayWhiteGivesItsLuminance)
{
    SimHarness sim;
    RawHost host(sim.SocketPath());
    constexpr std::uint16_t halfSecond = 7353;
    HostCalculation host_side(host, gain1, halfSecond);
    sim.Ok({"place", "display:white"});
    const Rows raw = host.Measure(halfSecond, 2, gain1 | lampOff);
    EXPECT_LT(*std::max_element(raw[0].begin() + 1, raw[0].end()), 60000);
    const std::vector<double> signal = host_side.Signal(lampOff);
    const std::vector<float> factors = host_side.Records().Floats(1101);
    const double time = halfSecond * 6.8e-5;
    double luminance = 0.0;
    for (std::size_t k = 0; k < 36; ++k) {
        const double radiance = signal[k] * factors[k] / time;
        EXPECT_NEAR(radiance, OrbelSim::SpectralTables::Displays().front().values[k], 0.01) << k;
        luminance += 6.83 * OrbelSim::SpectralTables::ObserverY()[k] * radiance;
    }
    EXPECT_NEAR(luminance, 200.0, 1.0);
}

// The white check of the driver: the tile's emission over its reflectance, normalised at 550 nm.
std::pair<double, double> WhiteCheck(SimHarness& sim)
{
    RawHost host(sim.SocketPath());
    HostCalculation host_side(host, gain1, tileTicks);
    const std::vector<double> signal = host_side.Signal(0);
    const std::vector<float> factors = host_side.Records().Floats(1101);
    const std::vector<float> tile = host_side.Records().Floats(1100);
    std::vector<double> s(36);
    for (std::size_t k = 0; k < 36; ++k) {
        s[k] = signal[k] * factors[k] / tile[k];
    }
    const double norm = s[17];
    for (double& v : s) {
        v /= norm;
    }
    return {std::fabs(s[0] + s[1]) / 2, std::fabs(s[22] + s[23] + s[24] + s[25] + s[26] + s[27]) / 6};
}

TEST(InstrumentWire, LampPassesTheWhiteCheckWithMarginForEitherFilter)
{
    SimHarness plain;
    const auto [a, b] = WhiteCheck(plain);
    EXPECT_GT(a, 0.13);
    EXPECT_LT(a, 0.20);
    EXPECT_GT(b, 1.40);
    EXPECT_LT(b, 1.55);

    SimHarness filtered({"--noise", "off", "--time-scale", "0.01", "--uv-cut"}, 1000002);
    const auto [aCut, bCut] = WhiteCheck(filtered);
    EXPECT_LT(aCut, 0.03);
    EXPECT_GT(bCut, 1.3);
    EXPECT_LT(bCut, 1.65);
    RawHost host(filtered.SocketPath());
    EXPECT_EQ(EepromFiles(ReadWholeEeprom(host)).U32(3012), 130u);
    EXPECT_EQ(JsonField(filtered.Status(), "filter"), "\"uv-cut\"");
}

TEST(InstrumentWire, DataComeAfterLampTimeAndIntegrationTimesScaled)
{
    SimHarness sim({"--noise", "off", "--time-scale", "0.5"});
    RawHost host(sim.SocketPath());
    host.SetParameters(14706, 0, 2, gain1); // two measurements of 1 s: ready after 1 s at this scale
    ASSERT_EQ(host.Control(0, 192, {}).status, TransferStatus::Ok);
    EXPECT_EQ(host.BulkRead(512, 300).status, TransferStatus::Timeout);
    const Answer answer = host.BulkRead(512, 5000);
    EXPECT_EQ(answer.status, TransferStatus::Ok);
    EXPECT_EQ(answer.data.size(), 512u);
    EXPECT_EQ(host.BulkRead(512, 50).status, TransferStatus::Timeout);

    host.SetParameters(tileTicks, 17, 1, gain1);
    ASSERT_EQ(host.Control(0, 192, {}).status, TransferStatus::Ok);
    const Answer more = host.BulkRead(1024, 5000);
    EXPECT_EQ(more.status, TransferStatus::Short);
    EXPECT_EQ(more.data.size(), 256u);
    const Answer parameters = host.Control(1, 194, {}, 8);
    EXPECT_EQ(parameters.data, (std::vector<std::uint8_t>{0x01, 0x2C, 0, 17, 0, 1, gain1, 0}));
}

TEST(InstrumentWire, ProgrammableLogicAndResetAreServed)
{
    SimHarness sim;
    RawHost host(sim.SocketPath());
    EXPECT_EQ(host.Control(0, 199, {0, 5, 0x12, 0x34, 0xFF, 0xFF}).status, TransferStatus::Ok);
    EXPECT_EQ(host.Control(1, 200, {}, 2).data, (std::vector<std::uint8_t>{0x12, 0x34}));
    EXPECT_EQ(host.Control(0, 199, {0, 6, 0xAB, 0xCD, 0, 0}).status, TransferStatus::Ok);
    EXPECT_EQ(host.Control(1, 200, {}, 2).data, (std::vector<std::uint8_t>{0xAB, 0xCD}));

    host.SetParameters(tileTicks, 17, 1, gain1);
    ASSERT_EQ(host.Control(0, 192, {}).status, TransferStatus::Ok);
    EXPECT_EQ(host.Control(0, 202, {0x1F}).status, TransferStatus::Ok);
    EXPECT_EQ(host.BulkRead(256, 100).status, TransferStatus::Timeout);
    EXPECT_EQ(JsonField(sim.Status(), "last_reset"), "31");
}

TEST(InstrumentWire, PressArrivesAsOneInterruptPacket)
{
    SimHarness sim;
    RawHost host(sim.SocketPath());
    const std::uint32_t read = host.Send(TransferKind::InterruptRead, 8, 0, {});
    EXPECT_FALSE(host.WaitReadable(100));
    sim.Ok({"press"});
    const auto packet = host.Await(read);
    ASSERT_TRUE(packet);
    EXPECT_EQ(packet->status, TransferStatus::Ok);
    EXPECT_EQ(packet->data.size(), 8u);

    const std::uint32_t second = host.Send(TransferKind::InterruptRead, 8, 0, {});
    EXPECT_FALSE(host.WaitReadable(200));
    const std::uint32_t doubled = host.Send(TransferKind::InterruptRead, 8, 0, {});
    EXPECT_EQ(host.Await(doubled)->status, TransferStatus::Stall);
    const std::uint32_t cancel = host.Send(TransferKind::Cancel, 0, 0, {});
    EXPECT_EQ(host.Await(second)->status, TransferStatus::Cancelled);
    EXPECT_EQ(host.Await(cancel)->status, TransferStatus::Ok);
    EXPECT_EQ(JsonField(sim.Status(), "key_latch"), "false");
}

// A cancel reaches the reads sent before it, however closely it follows them, and nothing after.
TEST(InstrumentWire, CancelsEndTheReadsSentBeforeThem)
{
    SimHarness sim;
    RawHost host(sim.SocketPath());
    for (int round = 0; round < 50; ++round) {
        const std::uint32_t read = host.Send(TransferKind::InterruptRead, 8, 0, {});
        const std::uint32_t cancel = host.Send(TransferKind::Cancel, 0, 0, {});
        const auto answer = host.Await(read, 2000);
        ASSERT_TRUE(answer) << "round " << round;
        ASSERT_EQ(answer->status, TransferStatus::Cancelled) << "round " << round;
        ASSERT_EQ(host.Await(cancel)->status, TransferStatus::Ok);
    }
    const std::uint32_t late = host.Send(TransferKind::Cancel, 0, 0, {});
    EXPECT_EQ(host.Await(late)->status, TransferStatus::Ok);
    const std::uint32_t read = host.Send(TransferKind::InterruptRead, 8, 0, {});
    sim.Ok({"press"});
    EXPECT_EQ(host.Await(read)->status, TransferStatus::Ok);

    // No data comes: one read waits at the instrument, one behind it; both end, and the next
    // transfer is served at once.
    const std::uint32_t served = host.Send(TransferKind::BulkRead, 256, 60000, {});
    const std::uint32_t queued = host.Send(TransferKind::BulkRead, 256, 60000, {});
    const std::uint32_t cancelBulk = host.Send(TransferKind::CancelBulkReads, 0, 0, {});
    EXPECT_EQ(host.Await(cancelBulk, 2000)->status, TransferStatus::Ok);
    EXPECT_EQ(host.Await(served, 2000)->status, TransferStatus::Cancelled);
    EXPECT_EQ(host.Await(queued, 2000)->status, TransferStatus::Cancelled);
    EXPECT_EQ(host.Misc().size(), 8u);
    EXPECT_EQ(JsonField(sim.Status(), "bulk_in_cancelled"), "2");
    const std::uint32_t nothingLeft = host.Send(TransferKind::CancelBulkReads, 0, 0, {});
    EXPECT_EQ(host.Await(nothingLeft)->status, TransferStatus::Ok);
    EXPECT_EQ(host.BulkRead(256, 50).status, TransferStatus::Timeout);
}

TEST(InstrumentWire, UnplugEndsAnInterruptReadAndPlugBringsTheInstrumentBack)
{
    SimHarness sim;
    RawHost host(sim.SocketPath());
    RawHost other(sim.SocketPath());
    const std::uint32_t read = host.Send(TransferKind::InterruptRead, 8, 0, {});
    const std::uint32_t otherRead = other.Send(TransferKind::InterruptRead, 8, 0, {});
    EXPECT_FALSE(host.WaitReadable(100));
    sim.Ok({"unplug"});
    EXPECT_EQ(host.Await(read)->status, TransferStatus::NoDevice);
    EXPECT_EQ(other.Await(otherRead)->status, TransferStatus::NoDevice);
    EXPECT_FALSE(std::filesystem::exists(sim.SocketPath()));
    EXPECT_EQ(JsonField(sim.Status(), "plugged"), "false");
    EXPECT_EQ(sim.Sim({"press"}).err, "orbel-sim: the instrument is unplugged; plug it first\n");
    EXPECT_EQ(sim.Sim({"unplug"}).err, "orbel-sim: the instrument is unplugged already\n");

    sim.Ok({"plug"});
    RawHost fresh(sim.SocketPath());
    EXPECT_EQ(fresh.Misc().size(), 8u);
}

// Hosts without Unix sockets reach the same cable over TCP, at the port published beside the
// socket while the instrument is plugged in.
TEST(InstrumentWire, TheCableIsAlsoOnLoopbackTcpWhilePluggedIn)
{
    SimHarness sim;
    const std::string portFile = sim.Directory() + "/1000001.port";
    RawHost host(ConnectLoopback(portFile));
    EXPECT_EQ(host.Misc().size(), 8u);
    sim.Ok({"unplug"});
    EXPECT_FALSE(std::filesystem::exists(portFile));
    EXPECT_THROW(RawHost(ConnectLoopback(portFile)), std::runtime_error);
    sim.Ok({"plug"});
    RawHost again(ConnectLoopback(portFile));
    EXPECT_EQ(again.Misc().size(), 8u);
}

TEST(InstrumentWire, TransferFaultsHitExactlyTheTransfersAsked)
{
    SimHarness sim;
    RawHost host(sim.SocketPath());
    sim.Ok({"fault", "bulk-timeout"});
    host.SetParameters(tileTicks, 17, 1, gain1);
    ASSERT_EQ(host.Control(0, 192, {}).status, TransferStatus::Ok);
    EXPECT_EQ(host.BulkRead(256).status, TransferStatus::Timeout);
    EXPECT_EQ(host.BulkRead(256).status, TransferStatus::Ok);

    sim.Ok({"fault", "control-timeout", "--count", "2"});
    EXPECT_EQ(host.Control(1, 201, {}, 8).status, TransferStatus::Timeout);
    EXPECT_EQ(host.Control(1, 201, {}, 8).status, TransferStatus::Timeout);
    EXPECT_EQ(host.Control(1, 201, {}, 8).status, TransferStatus::Ok);

    sim.Ok({"fault", "low-power", "--count", "1"});
    EXPECT_EQ(host.Misc()[7], 8);
    EXPECT_EQ(host.Misc()[7], 0);

    sim.Ok({"fault", "short-read"});
    ASSERT_EQ(host.Control(0, 192, {}).status, TransferStatus::Ok);
    const Answer cut = host.BulkRead(256);
    EXPECT_EQ(cut.status, TransferStatus::Short);
    EXPECT_EQ(cut.data.size(), 128u);

    sim.Ok({"fault", "drop", "--count", "2"});
    EXPECT_EQ(host.Control(1, 201, {}, 8).status, TransferStatus::Ok);
    EXPECT_EQ(host.Control(1, 201, {}, 8).status, TransferStatus::NoDevice);
    EXPECT_EQ(JsonField(sim.Status(), "plugged"), "false");
    EXPECT_FALSE(std::filesystem::exists(sim.SocketPath()));
}

TEST(InstrumentWire, EepromDamageIsVisibleToTheHost)
{
    SimHarness sim;
    {
        RawHost host(sim.SocketPath());
        sim.Ok({"fault", "break-log-mirror"});
        const EepromFiles files(ReadWholeEeprom(host));
        EXPECT_NE(files.U32(11000), files.SumBetween(11000, 12000));
        EXPECT_EQ(files.U32(10000), files.SumBetween(10000, 11000));
    }
    sim.Ok({"fault", "erase-eeprom"});
    RawHost host(sim.SocketPath());
    const std::vector<std::uint8_t> image = ReadWholeEeprom(host);
    EXPECT_TRUE(std::all_of(image.begin(), image.end(), [](std::uint8_t b) { return b == 0xFF; }));
    EXPECT_EQ(sim.Sim({"fault", "break-log-main"}).err, "orbel-sim: the EEPROM holds no log file 10002 to break\n");
}

TEST(InstrumentWire, BadInputIsStalledLoggedAndSurvived)
{
    SimHarness sim({"--noise", "off", "--time-scale", "0.01", "--verbose"});
    RawHost host(sim.SocketPath());
    EXPECT_EQ(host.Control(0, 197, {}).status, TransferStatus::Stall);
    EXPECT_EQ(host.Control(0, 255, {1, 2}).status, TransferStatus::Stall);
    EXPECT_EQ(host.Control(0, 193, {1, 2, 3}).status, TransferStatus::Stall);
    EXPECT_EQ(host.Control(1, 193, {}, 8).status, TransferStatus::Stall);
    EXPECT_EQ(host.Control(1, 201, {}, 4).status, TransferStatus::Stall);
    EXPECT_EQ(host.Control(0, 202, {}).status, TransferStatus::Stall);
    EXPECT_EQ(host.Control(0, 196, {0, 0, 0x1F, 0xFF, 0, 2, 0, 0}).status, TransferStatus::Stall);
    EXPECT_EQ(host.Control(0, 195, {0, 0, 0x20, 0x00, 0, 1, 0, 0}).status, TransferStatus::Stall);
    EXPECT_EQ(host.BulkWrite({1, 2, 3}).status, TransferStatus::Stall);
    EXPECT_EQ(host.BulkRead(256, 50).status, TransferStatus::Timeout);
    const std::uint32_t mismatched = host.Send(TransferKind::BulkWrite, 10, 0, {1, 2});
    EXPECT_EQ(host.Await(mismatched)->status, TransferStatus::Stall);
    const std::uint32_t unknownKind = host.Send(static_cast<TransferKind>(9), 0, 0, {});
    EXPECT_EQ(host.Await(unknownKind)->status, TransferStatus::Stall);
    EXPECT_EQ(host.Misc().size(), 8u);
    EXPECT_EQ(JsonField(JsonField(sim.Status(), "counters"), "stalls"), "9");

    RawHost broken(sim.SocketPath());
    broken.SendRaw(std::vector<std::uint8_t>(24, 0x55));
    const auto answer = broken.Await(0);
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->status, TransferStatus::Stall);
    EXPECT_FALSE(broken.Await(1, 2000));

    RawHost after(sim.SocketPath());
    EXPECT_EQ(after.ReadEeprom(4096, 2), (std::vector<std::uint8_t>{0, 1}));
    std::ifstream log(sim.Directory() + "/1000001.log");
    const std::string text{std::istreambuf_iterator<char>(log), std::istreambuf_iterator<char>()};
    EXPECT_NE(text.find("unknown request code 197"), std::string::npos);
    EXPECT_NE(text.find("malformed frame"), std::string::npos);
    EXPECT_NE(text.find("EEPROM read of 2 bytes at 8191 goes past the end"), std::string::npos);
}

TEST(InstrumentWire, ScanStreamsPacketsAcrossTheStripAndEndsShort)
{
    SimHarness sim;
    sim.Ok({"strip", "builtin:primaries7", "--speed", "100"});
    RawHost host(sim.SocketPath());
    constexpr std::uint16_t scanTicks = 176; // about 0.012 s
    constexpr std::uint16_t count = 10;
    host.SetParameters(scanTicks, 17, count, gain1 | scan);
    ASSERT_EQ(host.Control(0, 192, {}).status, TransferStatus::Ok);
    std::vector<std::uint8_t> stream;
    constexpr std::uint32_t block = count * 256 * 10;
    while (true) {
        const Answer chunk = host.BulkRead(block, 10000);
        ASSERT_TRUE(chunk.status == TransferStatus::Ok || chunk.status == TransferStatus::Short);
        stream.insert(stream.end(), chunk.data.begin(), chunk.data.end());
        if (chunk.status == TransferStatus::Short) {
            break;
        }
    }
    EXPECT_EQ(stream.size() % (count * 256), 0u);
    const double travel = 12.0 / 2 + 7 * 8.0 + 12.0 / 2;
    const std::size_t measurements = stream.size() / 256;
    EXPECT_GE(measurements, static_cast<std::size_t>(travel / (100 * scanTicks * 6.8e-5)));
    EXPECT_LT(measurements, static_cast<std::size_t>(travel / (100 * scanTicks * 6.8e-5)) + count + 1);
    EXPECT_EQ(host.BulkRead(256, 100).status, TransferStatus::Timeout);
    // Paper, then the dark cyan-red side of the patches: the red end of the spectrum goes down.
    const auto pixel = [&](std::size_t measurement, std::size_t p) {
        return WireFrame::GetU16(stream.data() + measurement * 256 + 2 * p);
    };
    EXPECT_GT(pixel(0, 110), 2 * pixel(measurements / 8 + 2, 110));
    EXPECT_EQ(JsonField(JsonField(sim.Status(), "counters"), "scans"), "1");
}

} // namespace
} // namespace OrbelSimTest
