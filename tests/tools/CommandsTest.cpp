// The subcommands over a double of the module: what they ask of it, what they print, and the exit
// status when the module fails.

#include <algorithm>
#include <filesystem>
#include <sstream>

#include <unistd.h>

#include <gtest/gtest.h>

#include "tests/tools/CgatsReader.h"
#include "tests/tools/FakeModule.h"
#include "tests/tools/JsonReader.h"
#include "tools/Application.h"
#include "tools/SpectrumFile.h"

using namespace OrbelCliTest;

namespace {

struct Outcome {
    int status;
    std::string out;
    std::string messages;
};

class CommandsTest : public ::testing::Test {
protected:
    void SetUp() override { FakeModule::Reset(); }
    void TearDown() override { std::filesystem::remove(file); }

    static Outcome Run(const std::vector<std::string>& words)
    {
        std::ostringstream out;
        std::ostringstream messages;
        const int status = OrbelCli::Application().Run(words, out, messages);
        return {status, out.str(), messages.str()};
    }

    static bool Called(const std::string& call)
    {
        return std::find(FakeModule::calls.begin(), FakeModule::calls.end(), call) != FakeModule::calls.end();
    }

    static std::ptrdiff_t Position(const std::string& call)
    {
        return std::find(FakeModule::calls.begin(), FakeModule::calls.end(), call) - FakeModule::calls.begin();
    }

    const std::string file = (std::filesystem::temp_directory_path() /
        ("orbel-cli-test-" + std::to_string(::getpid()) +
            ::testing::UnitTest::GetInstance()->current_test_info()->name()))
                                 .string();
};

}

TEST_F(CommandsTest, MeasureJsonHoldsWhatTheFunctionsGive)
{
    FakeModule::options["PhysicalFilter"] = "1";
    const Outcome outcome = Run({"measure", "--format", "json", "--no-wait"});
    ASSERT_EQ(outcome.status, 0) << outcome.messages;
    const auto json = JsonReader::Parse(outcome.out);
    const auto& sample = json["samples"][0];
    for (std::size_t i = 0; i < 36; ++i) {
        EXPECT_EQ(static_cast<float>(sample["spectrum"][i].Number()), FakeModule::samples[0][i]);
    }
    EXPECT_EQ(static_cast<float>(sample["xyz"][1].Number()), FakeModule::TriStimulus("CIEXYZ", 0)[1]);
    EXPECT_EQ(static_cast<float>(sample["lab"][2].Number()), FakeModule::TriStimulus("CIELab", 0)[2]);
    EXPECT_EQ(json["notes"]["densities"].Text(), "need a paper white: --substrate FILE or --white-base Absolute");
    EXPECT_LT(Position("SetOption MeasurementMode=SingleReflectance"), Position("Trigger"));
    EXPECT_EQ(FakeModule::options["ColorSpaceDescription.Type"], "CIELab");
    EXPECT_EQ(json["filter"].Text(), "No");
    EXPECT_EQ(json["measurementCondition"].Text(), "M0");
    EXPECT_TRUE(outcome.messages.empty());
}

TEST_F(CommandsTest, MeasureComparesWithAStandardAndRefusesWhatItCantCompare)
{
    const OrbelCli::Triple lab = FakeModule::TriStimulus("CIELab", 0);
    const std::string itself = std::to_string(lab[0]) + "," + std::to_string(lab[1]) + "," + std::to_string(lab[2]);
    for (const char* formula : {"CIEDE2000", "CIE94", "CMC", "CIE76"}) {
        const Outcome same = Run({"measure", "--reference", itself, "--delta-e", formula, "--no-wait"});
        ASSERT_EQ(same.status, 0) << same.messages;
        EXPECT_NE(same.out.find("delta E " + std::string(formula) + ":"), std::string::npos) << same.out;
        EXPECT_NE(same.out.find(" 0.00\n"), std::string::npos) << same.out;
    }
    const Outcome apart = Run({"measure", "--reference", "50,0,0", "--format", "json", "--no-wait"});
    ASSERT_EQ(apart.status, 0) << apart.messages;
    EXPECT_GT(std::stod(JsonReader::Parse(apart.out)["notes"]["delta E CIEDE2000"].Text()), 1.0);

    FakeModule::Reset();
    EXPECT_NE(
        Run({"measure", "--delta-e", "CIE94", "--no-wait"}).messages.find("--reference L,a,b"), std::string::npos);
    EXPECT_NE(Run({"measure", "--reference", "50,x,0", "--no-wait"}).messages.find("as L,a,b"), std::string::npos);
    EXPECT_NE(Run({"measure", "--reference", "50,0,0,1", "--no-wait"}).messages.find("as L,a,b"), std::string::npos);
    EXPECT_NE(Run({"measure", "--reference", "50,0,0", "--delta-e", "DIN99", "--no-wait"}).messages.find("CIEDE2000"),
        std::string::npos);
    EXPECT_NE(Run({"measure", "--mode", "emission", "--reference", "50,0,0", "--no-wait"}).messages.find("reflectance"),
        std::string::npos);
    EXPECT_FALSE(Called("Trigger"));
}

TEST_F(CommandsTest, MeasureTakesColourOptionsAndPaperWhiteIntoCgats)
{
    OrbelCli::SpectrumFile::Write(file, FakeModule::samples[0]);
    const Outcome outcome = Run({"measure", "--substrate", file, "--illuminant", "D50", "--colour-space", "CIELCh",
        "--format", "cgats", "--no-wait", "--id", "spot 1"});
    ASSERT_EQ(outcome.status, 0) << outcome.messages;
    EXPECT_TRUE(Called("SetOption Colorimetric.Illumination=D50"));
    EXPECT_LT(Position("SetSubstrate"), Position("Trigger"));
    const auto cgats = CgatsReader::Read(outcome.out);
    EXPECT_EQ(cgats.Text(0, "SAMPLE_ID"), "spot 1");
    EXPECT_DOUBLE_EQ(cgats.Number(0, "D_VIS"), 0.4);
    EXPECT_DOUBLE_EQ(cgats.Number(0, "CIELCH_1"), 7.0);
    EXPECT_EQ(FakeModule::options["ColorSpaceDescription.Type"], "CIELCh");
}

TEST_F(CommandsTest, FailuresExitWithTheResultCodeAndTheModulesText)
{
    FakeModule::connected = false;
    Outcome outcome = Run({"measure", "--no-wait"});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_TRUE(outcome.out.empty());
    EXPECT_EQ(outcome.messages.rfind("orbel: No instrument is connected.", 0), 0u) << outcome.messages;
    EXPECT_NE(outcome.messages.find("orbel-sim start"), std::string::npos);
    EXPECT_FALSE(Called("Trigger"));

    FakeModule::Reset();
    FakeModule::failingFunction = "Trigger";
    FakeModule::failingCode = 3;
    outcome = Run({"measure", "--no-wait", "--format", "json"});
    EXPECT_EQ(outcome.status, 3);
    EXPECT_TRUE(outcome.out.empty());
    EXPECT_EQ(outcome.messages,
        "orbel: device not calibrated Dark data not valid\n"
        "Calibrate first: orbel calibrate (orbel scan calibrates by itself).\n");

    EXPECT_EQ(Run({"measure", "--substrate", file, "--no-wait"}).messages,
        "orbel: can't read the spectrum file " + file + "\n");
}

TEST_F(CommandsTest, PromptWaitsForTheKeyWithACountdown)
{
    FakeModule::pollsBeforeKey = 3; // the first poll drops any press from before the prompt
    Outcome outcome = Run({"calibrate", "--wait", "5"});
    ASSERT_EQ(outcome.status, 0) << outcome.messages;
    EXPECT_NE(outcome.messages.find("> Place the instrument on its white tile and press the measurement key."),
        std::string::npos);
    EXPECT_NE(outcome.messages.find("5 s left"), std::string::npos);
    EXPECT_NE(outcome.messages.find("key pressed."), std::string::npos);
    EXPECT_EQ(outcome.out, "Calibrated for SingleReflectance (instrument 1000001).\n");

    FakeModule::Reset();
    FakeModule::pollsBeforeKey = 1000;
    outcome = Run({"measure", "--wait", "1"});
    EXPECT_EQ(outcome.status, 4);
    EXPECT_NE(outcome.messages.find("1 s left"), std::string::npos);
    EXPECT_NE(outcome.messages.find("orbel: The measurement key wasn't pressed within 1 s."), std::string::npos);
    EXPECT_FALSE(Called("Trigger"));
}

TEST_F(CommandsTest, ScanEmissionAndSubstrateAskTheModuleInOrder)
{
    ASSERT_EQ(Run({"scan", "--count", "12", "--recognition", "--no-wait"}).status, 0);
    EXPECT_TRUE(Called("SetOption MeasurementMode=ScanningReflectance"));
    EXPECT_LT(Position("SetOption Recognition=yes"), Position("TriggerCountedScan 12"));

    FakeModule::Reset();
    const Outcome emission = Run({"measure", "--mode", "emission", "--no-wait"});
    ASSERT_EQ(emission.status, 0) << emission.messages;
    EXPECT_LT(Position("SetOption Colorimetric.Illumination=Emission"), Position("Calibrate"));
    EXPECT_LT(Position("Calibrate"), Position("Trigger"));
    EXPECT_NE(emission.out.find("luminance Y:        13.33 cd/m2"), std::string::npos) << emission.out;
    for (const char* note : {"colour temperature:", "Duv:", "Ra:", "R9:"}) {
        EXPECT_NE(emission.out.find(note), std::string::npos) << note;
    }
    EXPECT_EQ(emission.out.find("D cyan"), std::string::npos);

    FakeModule::Reset();
    ASSERT_EQ(Run({"substrate", "--output", file, "--no-wait"}).status, 0);
    EXPECT_EQ(OrbelCli::SpectrumFile::Read(file), FakeModule::samples[0]);
    const Outcome loaded = Run({"substrate", "--load", file, "--format", "csv"});
    ASSERT_EQ(loaded.status, 0) << loaded.messages;
    EXPECT_TRUE(FakeModule::substrateSet);
    EXPECT_EQ(loaded.out.substr(loaded.out.find('\n') + 1, 14), "paper,0.10000,");
}

TEST_F(CommandsTest, DemoToursEveryModeAndDrawsTheSamples)
{
    const Outcome outcome = Run({"demo", "--sim", "true", "--plot", file});
    ASSERT_EQ(outcome.status, 0) << outcome.messages << outcome.out;
    for (const char* heading : {"\n1. The instrument\n", "\n2. Calibration on the white tile\n",
             "\n3. Three samples: spectrum, CIELab and densities\n",
             "\n4. A strip of 24 patches, scanned with recognition\n", "\n5. A display, measured in emission\n",
             "\n6. Ambient light\n", "\n7. Unplugging\n"}) {
        EXPECT_NE(outcome.out.find(heading), std::string::npos) << heading;
    }
    EXPECT_TRUE(Called("SetOption Recognition=yes"));
    EXPECT_TRUE(Called("SetOption MeasurementMode=SingleAmbientLight"));
    EXPECT_NE(outcome.out.find("The spectra are drawn in " + file), std::string::npos);
    EXPECT_TRUE(std::filesystem::exists(file));
}
