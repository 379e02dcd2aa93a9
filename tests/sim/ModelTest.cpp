// The parts of the virtual instrument that need no socket: framing, targets, strips, the solver,
// faults and the command line's refusals.
#include <cmath>
#include <filesystem>
#include <sstream>

#include <gtest/gtest.h>

#include "sim/CommandLine.h"
#include "sim/Eeprom.h"
#include "sim/Instrument.h"
#include "sim/MeasurementEngine.h"
#include "sim/SpectralTables.h"
#include "sim/Strip.h"
#include "sim/Target.h"
#include "sim/WireFrame.h"
#include "tests/sim/SimHarness.h"

namespace OrbelSimTest {
namespace {

using namespace OrbelSim;

std::string WriteText(const TemporaryDirectory& directory, const std::string& name, const std::string& text)
{
    directory.Write(name, text);
    return directory / name;
}

// The text of the std::invalid_argument that a call throws.
template<class Call>
std::string Refusal(Call call)
{
    try {
        call();
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
    return "accepted";
}

std::array<double, 3> Lab(const Spectrum36& reflectance)
{
    const Spectrum36* observer[3] = {
        &SpectralTables::ObserverX(), &SpectralTables::ObserverY(), &SpectralTables::ObserverZ()};
    const Spectrum36& light = SpectralTables::IlluminantD65();
    std::array<double, 3> f{};
    for (int c = 0; c < 3; ++c) {
        double value = 0.0;
        double white = 0.0;
        for (std::size_t k = 0; k < 36; ++k) {
            value += (*observer[c])[k] * light[k] * reflectance[k];
            white += (*observer[c])[k] * light[k];
        }
        const double t = value / white;
        f[c] = t > 216.0 / 24389.0 ? std::cbrt(t) : (24389.0 / 27.0 * t + 16.0) / 116.0;
    }
    return {116.0 * f[1] - 16.0, 500.0 * (f[0] - f[1]), 200.0 * (f[1] - f[2])};
}

TEST(SimModel, FramesRoundTripAndRefuseWhatCannotBeFollowed)
{
    const std::vector<std::uint8_t> frame = WireFrame::EncodeRequest({2, 77, 1500, 2560, 0}, {});
    ASSERT_EQ(frame.size(), WireFrame::requestHeaderSize);
    EXPECT_EQ((std::vector<std::uint8_t>(frame.begin(), frame.begin() + 8)),
        (std::vector<std::uint8_t>{'O', 'B', 'S', 'M', 1, 2, 0, 0}));
    const auto header = WireFrame::DecodeRequestHeader(frame.data());
    ASSERT_TRUE(header);
    EXPECT_EQ(header->requestId, 77u);
    EXPECT_EQ(header->timeoutMs, 1500u);
    EXPECT_EQ(header->transferLength, 2560u);

    std::vector<std::uint8_t> wrongVersion = frame;
    wrongVersion[4] = 2;
    EXPECT_FALSE(WireFrame::DecodeRequestHeader(wrongVersion.data()));
    std::vector<std::uint8_t> huge = frame;
    huge[20] = 0x7F;
    EXPECT_FALSE(WireFrame::DecodeRequestHeader(huge.data()));

    const std::vector<std::uint8_t> answer = WireFrame::EncodeAnswer({1, TransferStatus::Short, 9, 0}, {5, 6});
    const auto decoded = WireFrame::DecodeAnswerHeader(answer.data());
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->status, TransferStatus::Short);
    EXPECT_EQ(decoded->bodyLength, 2u);
}

TEST(SimModel, TargetsAreNamedOrReadAndBadOnesExplained)
{
    const Spectrum36 tile{};
    EXPECT_EQ(TargetCatalog::Parse("sample:grey30", tile).values[20], 0.3);
    EXPECT_EQ(TargetCatalog::Parse("display:red", tile).kind, TargetKind::Emission);
    EXPECT_DOUBLE_EQ(TargetCatalog::Parse("sample:tcs09", tile).values[0], 0.066);
    const TemporaryDirectory directory;
    std::string values;
    for (int i = 0; i < 36; ++i) {
        values += std::to_string(i / 100.0) + (i % 5 == 4 ? "\n" : i % 2 ? ", " : " ");
    }
    EXPECT_DOUBLE_EQ(
        TargetCatalog::Parse("reflectance:" + WriteText(directory, "good.txt", values), tile).values[35], 0.35);
    const std::string shortFile = WriteText(directory, "short.txt", "0.1 0.2");
    const std::string wordFile = WriteText(directory, "word.txt", "0.1 abc");
    const auto refusal = [&](const std::string& spec) { return Refusal([&] { TargetCatalog::Parse(spec, tile); }); };
    EXPECT_EQ(refusal("reflectance:" + shortFile), shortFile + " holds 2 values, not 36 (380 to 730 nm)");
    EXPECT_EQ(refusal("emission:" + wordFile), wordFile + ": 'abc' is not a number");
    EXPECT_EQ(refusal("emission:" + directory / "none"), "unable to read " + directory / "none");
    EXPECT_EQ(refusal("sample:grey95"), "unknown sample 'grey95'; known: tcs01 ... tcs14, grey10 ... grey90");
    EXPECT_EQ(refusal("light:sun"), "unknown light 'sun'; known: a, daylight, fluorescent");
    EXPECT_EQ(refusal("paper"),
        "unknown target 'paper'; expected tile, black, sample:<name>, reflectance:<file>, "
        "emission:<file>, display:<name> or light:<name>");
}

TEST(SimModel, StripsBlurAtEdgesAndBuiltinNeighboursDifferClearly)
{
    const Strip strip = Strip::Builtin("colour24");
    EXPECT_EQ(strip.Patches().size(), 26u);
    EXPECT_DOUBLE_EQ(strip.Travel(), 15.0 / 2 + 24 * 10.0 + 15.0 / 2);
    const std::vector<double> start = strip.Shares(0.0, 0.0);
    EXPECT_NEAR(start[0], 1.0, 1e-12);
    const std::vector<double> edge = strip.Shares(7.5, 0.0);
    EXPECT_NEAR(edge[0], 0.5, 1e-9);
    EXPECT_NEAR(edge[1], 0.5, 1e-9);
    const std::vector<double> near = strip.Shares(7.5 + Strip::apertureDiameter / 2 - 0.5, 1.0);
    double sum = 0.0;
    for (double share : near) {
        sum += share;
    }
    EXPECT_NEAR(sum, 1.0, 1e-9);
    EXPECT_GT(near[0], 0.0);
    EXPECT_NEAR(strip.Shares(7.5 + Strip::apertureDiameter / 2, 0.0)[1], 1.0, 1e-9);

    for (const NamedStrip& builtin : SpectralTables::Strips()) {
        EXPECT_GE(builtin.patches.size(), 9u) << builtin.name;
        for (std::size_t i = 0; i + 1 < builtin.patches.size(); ++i) {
            const auto a = Lab(builtin.patches[i].reflectance);
            const auto b = Lab(builtin.patches[i + 1].reflectance);
            EXPECT_GE(std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]), 15.0) << builtin.name << " patch " << i;
        }
    }
}

TEST(SimModel, StripFilesAreCheckedLineByLine)
{
    const TemporaryDirectory directory;
    std::string patch = "10";
    for (int i = 0; i < 36; ++i) {
        patch += ",0.5";
    }
    const std::string good = WriteText(directory, "good.txt", "# two patches\n\n" + patch + "\n" + patch + "\n");
    EXPECT_EQ(Strip::Parse(good).Patches().size(), 2u);
    const auto refusal = [](const std::string& spec) { return Refusal([&] { Strip::Parse(spec); }); };
    const std::string shortLine = WriteText(directory, "short.txt", patch + "\n10 0.5 0.5\n");
    EXPECT_EQ(refusal(shortLine), shortLine + " line 2: expected a width and 36 values, found 3 numbers");
    const std::string zeroWidth = WriteText(directory, "zero.txt", "0" + patch.substr(2) + "\n");
    EXPECT_EQ(refusal(zeroWidth), zeroWidth + " line 1: the width must be above 0 mm");
    const std::string empty = WriteText(directory, "empty.txt", "# nothing\n");
    EXPECT_EQ(refusal(empty), "strip file " + empty + " holds no patches");
    EXPECT_EQ(refusal("builtin:rainbow"), "unknown built-in strip 'rainbow'; known: colour24, grey8, primaries7");
}

TEST(SimModel, PixelSpectraFoldBackToTheirValues)
{
    MeasurementEngine engine(false, false, 1);
    const Optics& optics = engine.GetOptics();
    const Target sample = TargetCatalog::Sample("tcs03");
    const Scene scene = engine.SceneOf(sample);
    for (int k = 0; k < Optics::outputs; ++k) {
        double sampleFold = 0.0;
        double tileFold = 0.0;
        for (int p = 0; p < Optics::pixels; ++p) {
            const double weight = optics.MatrixRows()[k][p] * optics.Responsivity()[p] * optics.LampRadiance()[p];
            sampleFold += weight * scene.reflectance[p];
            tileFold += weight * optics.TileReflectance()[p];
        }
        EXPECT_NEAR(optics.TileRecord()[k] * sampleFold / tileFold, sample.values[k], 1e-9) << k;
    }
    const Scene grey = engine.SceneOf(TargetCatalog::Sample("grey50"));
    for (int p = 10; p < 120; ++p) {
        EXPECT_NEAR(grey.reflectance[p], 0.5, 0.02) << p;
    }
    for (int k = 0; k < Optics::outputs; ++k) {
        EXPECT_GE(optics.Matrix().count[k], 3u);
        EXPECT_LE(optics.Matrix().count[k], 4u);
    }
}

TEST(SimModel, InstrumentRefusesMalformedControlTransfersDirectly)
{
    InstrumentOptions options;
    options.noise = false;
    options.timeScale = 0.0;
    Instrument instrument(options);
    const auto connection = instrument.Connect();
    ASSERT_TRUE(connection);
    EXPECT_EQ(instrument.Control(*connection, {1, 2, 3}, {}, 0).note, "control request of 3 bytes, not 10");
    EXPECT_EQ(instrument.Control(*connection, {0, 1, 0, 0, 192, 0, 0, 0, 0, 0}, {}, 0).status, TransferStatus::Stall);
    EXPECT_EQ(instrument.Control(*connection, {0, 2, 0, 0, 193, 0, 0, 0, 0, 0}, {0, 1, 0, 1, 0, 0, 4, 0}, 8).status,
        TransferStatus::Ok);
    EXPECT_EQ(instrument.Control(*connection, {0, 2, 0, 0, 192, 0, 0, 0, 0, 0}, {}, 0).note,
        "measurement request with a count of 0");
    EXPECT_EQ(Refusal([&] { instrument.Fault("drop", 0); }), "the count of a fault must be at least 1");
    EXPECT_EQ(Refusal([&] { instrument.Fault("flood", 1); }),
        "unknown fault 'flood'; expected control-timeout, bulk-timeout, short-read, low-power, drop, "
        "erase-eeprom, break-log-main or break-log-mirror");
    EXPECT_THROW(instrument.SetStrip("builtin:grey8", -5.0), std::invalid_argument);
    instrument.Disconnect(*connection);
    EXPECT_EQ(instrument.BulkRead(*connection, 256, 10).status, TransferStatus::NoDevice);
}

TEST(SimModel, EepromFileOfTheWrongSizeIsRefused)
{
    const TemporaryDirectory directory;
    const std::string file = WriteText(directory, "small.bin", "1234");
    try {
        Eeprom::LoadFile(file);
        ADD_FAILURE() << "accepted";
    } catch (const std::runtime_error& error) {
        EXPECT_EQ(std::string(error.what()), "EEPROM file " + file + " holds 4 bytes, not 8192");
    }
    EXPECT_FALSE(Eeprom::LoadFile(directory / "none.bin"));
}

TEST(SimModel, CommandLineRefusesMisuseWithUsage)
{
    const std::pair<std::vector<std::string>, std::string> cases[] = {{{"launch"}, "unknown command 'launch'"},
        {{}, "no command given"}, {{"place"}, "command 'place' takes 1 argument(s)"},
        {{"press", "--count", "3"}, "option --count doesn't apply to 'press'"},
        {{"start", "--noise", "loud"}, "--noise takes on or off, not 'loud'"},
        {{"start", "--time-scale", "-1"}, "the time scale must be a number from 0 to 1000, not '-1'"},
        {{"stop", "--serial", "0"}, "the serial number must be a whole number from 1 to 4294967295, not '0'"},
        {{"stop", "--serial"}, "option --serial needs a value"}, {{"stop", "--fast"}, "unknown option --fast"}};
    for (const auto& [args, message] : cases) {
        std::ostringstream out;
        std::ostringstream err;
        EXPECT_EQ(CommandLine::Run(args, out, err), 2) << message;
        EXPECT_EQ(err.str().substr(0, err.str().find('\n')), "orbel-sim: " + message);
    }
}

TEST(SimModel, CommandsReachingARunningInstrumentAreCheckedThere)
{
    SimHarness sim;
    EXPECT_EQ(sim.Sim({"fault", "drop", "--count", "0"}).err,
        "orbel-sim: the count must be a whole number from 1 to 1000000, not '0'\n");
    EXPECT_EQ(sim.Sim({"strip", "builtin:grey8", "--speed", "fast"}).err,
        "orbel-sim: the speed must be a number of mm/s, not 'fast'\n");
    EXPECT_EQ(sim.Sim({"place", "sample:tcs15"}).exitCode, 1);
    sim.Ok({"place", "light:daylight"});
    EXPECT_EQ(JsonField(sim.Status(), "target"), "\"light:daylight\"");
    const TemporaryDirectory directory;
    const std::string relative = std::filesystem::relative(
        WriteText(directory, "r.txt", std::string(36 * 4, ' ').replace(0, 3, "0.5")), std::filesystem::current_path())
                                     .string();
    EXPECT_EQ(sim.Sim({"place", "reflectance:" + relative}).err,
        "orbel-sim: " + std::filesystem::absolute(relative).string() + " holds 1 values, not 36 (380 to 730 nm)\n");
}

} // namespace
} // namespace OrbelSimTest
