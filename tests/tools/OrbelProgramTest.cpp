// The orbel program as a person or a script runs it, against a virtual instrument.

#include <cstdlib>
#include <filesystem>

#include <gtest/gtest.h>

#include "orbel.h"
#include "tests/support/SimInstrument.h"
#include "tests/support/TemporaryLockDirectory.h"
#include "tests/tools/CgatsReader.h"
#include "tests/tools/JsonReader.h"

using OrbelCliTest::CgatsReader;
using OrbelCliTest::JsonReader;
using OrbelTest::ProgramResult;
using OrbelTest::ProgramRunner;
using OrbelTest::SimInstrument;

namespace {

class OrbelProgramTest : public ::testing::Test {
protected:
    ProgramResult Orbel(const std::vector<std::string>& args) const
    {
        return ProgramRunner::Run(ORBEL_CLI_BINARY, args, "ORBEL_SIM_DIR", sim.Directory());
    }

    void Calibrated() const
    {
        const ProgramResult calibrated = Orbel({"calibrate", "--no-wait"});
        ASSERT_EQ(calibrated.exitCode, 0) << calibrated.err;
    }

    TemporaryLockDirectory locks;
    SimInstrument sim;
};

}

TEST_F(OrbelProgramTest, JsonOfMeasureHoldsWhatTheExportedFunctionsGive)
{
    Calibrated();
    sim.Command({"place", "sample:tcs05"});
    const ProgramResult measured = Orbel({"measure", "--format", "json", "--no-wait", "--white-base", "Absolute"});
    ASSERT_EQ(measured.exitCode, 0) << measured.err;
    const auto json = JsonReader::Parse(measured.out);
    ASSERT_EQ(json["samples"].Size(), 1u);
    const auto& sample = json["samples"][0];

    // The same measurement in this process, once the program has let go of the instrument.
    ::setenv("ORBEL_SIM_DIR", sim.Directory().c_str(), 1);
    ASSERT_EQ(OB_IsConnected(), OB_NoError);
    ASSERT_EQ(OB_SetOption("Colorimetric.WhiteBase", "Absolute"), OB_NoError);
    ASSERT_EQ(OB_TriggerMeasurement(), OB_NoError);
    float spectrum[36];
    ASSERT_EQ(OB_GetSpectrum(spectrum, 0), OB_NoError);
    for (std::size_t i = 0; i < 36; ++i) {
        EXPECT_NEAR(sample["spectrum"][i].Number(), spectrum[i], 1e-4) << i;
    }
    float values[3];
    ASSERT_EQ(OB_SetOption("ColorSpaceDescription.Type", "CIEXYZ"), OB_NoError);
    ASSERT_EQ(OB_GetTriStimulus(values, 0), OB_NoError);
    EXPECT_NEAR(sample["xyz"][1].Number(), values[1], 1e-2);
    ASSERT_EQ(OB_SetOption("ColorSpaceDescription.Type", "CIELab"), OB_NoError);
    ASSERT_EQ(OB_GetTriStimulus(values, 0), OB_NoError);
    EXPECT_NEAR(sample["lab"][0].Number(), values[0], 1e-2);
    EXPECT_NEAR(sample["lab"][2].Number(), values[2], 1e-2);
    float densities[4];
    ASSERT_EQ(OB_GetDensities(densities, nullptr, 0), OB_NoError);
    EXPECT_NEAR(sample["densities"]["black"].Number(), densities[3], 1e-3);
    ::unsetenv("ORBEL_SIM_DIR");
}

TEST_F(OrbelProgramTest, CgatsOfMeasureAndScanReadsBack)
{
    Calibrated();
    sim.Command({"place", "sample:grey50"});
    const ProgramResult measured = Orbel({"measure", "--format", "cgats", "--no-wait", "--id", "grey 50"});
    ASSERT_EQ(measured.exitCode, 0) << measured.err;
    const auto cgats = CgatsReader::Read(measured.out);
    ASSERT_EQ(cgats.sets.size(), 1u);
    EXPECT_EQ(cgats.Text(0, "SAMPLE_ID"), "grey 50");
    EXPECT_NEAR(cgats.Number(0, "SPEC_550"), 0.5, 0.02);
    EXPECT_NEAR(cgats.Number(0, "LAB_L"), 76.0, 2.0);
    // The virtual instrument has no UV-cut filter unless started with one.
    EXPECT_EQ(cgats.keywords.at("FILTER"), "No");
    EXPECT_NE(cgats.keywords.at("MEASUREMENT_SOURCE").find("MeasurementCondition=M0"), std::string::npos);

    sim.Command({"place", "tile"});
    sim.Command({"strip", "builtin:colour24"});
    const std::string plot = (std::filesystem::path(sim.Directory()) / "strip.svg").string();
    const ProgramResult scanned = Orbel({"scan", "--recognition", "--format", "cgats", "--no-wait", "--plot", plot});
    ASSERT_EQ(scanned.exitCode, 0) << scanned.err;
    EXPECT_EQ(CgatsReader::Read(scanned.out).sets.size(), 24u);
    EXPECT_NE(scanned.err.find("draw now\n"), std::string::npos) << scanned.err;
    EXPECT_TRUE(std::filesystem::exists(plot));
}

TEST_F(OrbelProgramTest, DevicesListsTheVirtualInstrumentAsOneThatOpens)
{
    const ProgramResult listed = Orbel({"info", "--devices", "--format", "csv"});
    ASSERT_EQ(listed.exitCode, 0) << listed.err;
    // Appended piece by piece: GCC 12 at -O3 sees a false overlap (-Wrestrict) in "\n" + path.
    EXPECT_NE(listed.out.find(std::string("\n").append(sim.Path()).append(",yes\n")), std::string::npos) << listed.out;
}

TEST(OrbelProgramWithoutInstrumentTest, MissingInstrumentExitsTwoAndNamesTheVirtualOne)
{
    TemporaryLockDirectory locks;
    const auto empty = std::filesystem::temp_directory_path() / ("orbel-cli-empty-" + std::to_string(::getpid()));
    std::filesystem::create_directories(empty);
    const std::vector<std::string> commands[] = {{"info"}, {"measure", "--no-wait"}, {"info", "--devices"}};
    for (const auto& command : commands) {
        const ProgramResult result = ProgramRunner::Run(ORBEL_CLI_BINARY, command, "ORBEL_SIM_DIR", empty.string());
        EXPECT_EQ(result.exitCode, OB_DeviceNotConnected) << command.back() << ": " << result.err;
        EXPECT_NE(result.err.find("No instrument is connected."), std::string::npos) << result.err;
        EXPECT_NE(result.err.find("orbel-sim start"), std::string::npos) << result.err;
        EXPECT_TRUE(result.out.empty());
    }
    std::filesystem::remove_all(empty);
}
