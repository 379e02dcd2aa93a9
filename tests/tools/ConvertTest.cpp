// orbel convert: spectra read from files in the shapes other programs write them, and refused
// with a message that says what is wrong.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <unistd.h>

#include <gtest/gtest.h>

#include "cmetry/ColorRendering.h"
#include "cmetry/CorrelatedColorTemperature.h"
#include "orbel.h"
#include "tests/tools/JsonReader.h"
#include "tools/Application.h"
#include "tools/CliError.h"
#include "tools/DeltaE.h"
#include "tools/SpectrumReader.h"

namespace {

std::string Names(const std::string& prefix, int first, int last, const std::string& separator)
{
    std::string text;
    for (int nm = first; nm <= last; nm += 10) {
        text += (nm == first ? "" : separator) + prefix + std::to_string(nm);
    }
    return text;
}

std::string Values(const std::string& value, int count, const std::string& separator)
{
    std::string text;
    for (int i = 0; i < count; ++i) {
        text += (i ? separator : "") + value;
    }
    return text;
}

const std::string spec = Names("SPEC_", 380, 730, " ");

// Two tables, as a profiling program writes them: keywords, comments, quoted texts, both name fields.
const std::string twoTables = "CGATS.17\r\nORIGINATOR \"Prüf lab, \"\"line 2\"\"\"\r\n# measured 2026-11-02\r\n"
                              "KEYWORD \"SPECTRAL_BANDS\"\r\nSPECTRAL_BANDS \"36\"\r\nNUMBER_OF_FIELDS 38\r\n"
                              "BEGIN_DATA_FORMAT\r\nSAMPLE_ID SAMPLE_NAME\r\n" +
    spec + "\r\nEND_DATA_FORMAT\r\nNUMBER_OF_SETS 2\r\nBEGIN_DATA\r\n1 \"paper white\" " + Values("0.9", 36, " ") +
    "\r\n\r\n2 \"C 100 %\" " + Values("0.25", 36, "  ") + "\r\nEND_DATA\r\n\r\nBEGIN_DATA_FORMAT\r\n" +
    Names("nm", 380, 730, "\t") + "\r\nEND_DATA_FORMAT\r\nBEGIN_DATA\r\n" + Values("5e-1", 36, "\t") +
    "\r\nEND_DATA\r\n";

std::string TemporaryPath(const std::string& suffix)
{
    return (std::filesystem::temp_directory_path() / ("orbel-convert-test-" + std::to_string(::getpid()) + suffix))
        .string();
}

std::tuple<int, std::string, std::string> Orbel(const std::vector<std::string>& words)
{
    std::ostringstream out;
    std::ostringstream messages;
    const int status = OrbelCli::Application().Run(words, out, messages);
    return std::tuple(status, out.str(), messages.str());
}

std::string JsonSpectrum(const std::vector<double>& values)
{
    std::string text = "{\"spectrum\": [";
    for (std::size_t i = 0; i < values.size(); ++i) {
        text += (i ? ", " : "") + std::to_string(values[i]);
    }
    return text + "]}";
}

struct ReadCase {
    const char* shape;
    std::string text;
    std::vector<std::string> names;
    std::vector<float> firstValues;
};

const ReadCase readCases[] = {
    {"CGATS with two tables", twoTables, {"paper white", "C 100 %", "3"}, {0.9f, 0.25f, 0.5f}},
    {"CGATS of bare spectra",
        "BEGIN_DATA_FORMAT\n" + Names("nm_", 380, 730, " ") + "\nEND_DATA_FORMAT\nBEGIN_DATA\n" +
            Values("+0.125", 36, " ") + "\nEND_DATA\n",
        {"1"}, {0.125f}},
    {"CSV with a header row",
        "SAMPLE_ID,name," + Names("nm", 380, 730, ",") + "\nA1,\"cyan, 40 %\"," + Values("0.3", 36, ",") +
            "\n\nA2,white," + Values("1", 36, ",") + "\n",
        {"cyan, 40 %", "white"}, {0.3f, 1.0f}},
    {"JSON as orbel measure writes it",
        "{\"mode\": \"Reflectance\", \"wavelengths\": {\"first\": 380, \"step\": 10, \"count\": 36},\n"
        " \"samples\": [\n  {\"id\": \"a\\\"b\", \"spectrum\": [" +
            Values("0.75", 36, ", ") +
            "],\n   \"densities\": {\"cyan\": 0.1, \"auto\": \"cyan\"}},\n  {\"spectrum\": [" + Values("0.5", 36, ",") +
            "]}\n ]\n}\n",
        {"a\"b", "2"}, {0.75f, 0.5f}},
};

TEST(SpectrumReaderTest, ReadsTheShapesOtherProgramsWrite)
{
    for (const ReadCase& c : readCases) {
        std::istringstream in(c.text);
        OrbelCli::SpectrumReader reader(in, "file");
        OrbelCli::SpectrumReader::Record record;
        std::vector<std::string> names;
        std::vector<float> firstValues;
        while (reader.Next(record)) {
            names.push_back(record.name);
            firstValues.push_back(record.spectrum.front());
            EXPECT_EQ(record.spectrum.back(), record.spectrum.front()) << c.shape;
        }
        EXPECT_EQ(names, c.names) << c.shape;
        EXPECT_EQ(firstValues, c.firstValues) << c.shape;
    }
}

TEST(SpectrumReaderTest, RefusesWhatItCannotTakeAndSaysWhy)
{
    const std::pair<std::string, std::string> cases[] = {
        {"BEGIN_DATA_FORMAT\n" + Names("SPEC_", 400, 700, " ") + "\nEND_DATA_FORMAT\nBEGIN_DATA\n",
            "file:3: spectra on 400–700 nm in 10 nm steps (31 values); only 380–730 nm in 10 nm steps is converted"},
        {"name," + Names("nm", 380, 730, ",") + ",nm740\n",
            "file:1: spectra on 380–740 nm in 10 nm steps (37 values); only 380–730 nm"},
        {"BEGIN_DATA_FORMAT\nSAMPLE_ID RGB_R\nEND_DATA_FORMAT\nBEGIN_DATA\n", "file:3: no spectral columns"},
        {"BEGIN_DATA_FORMAT\n" + spec + "\nEND_DATA_FORMAT\nBEGIN_DATA\n" + Values("0.5", 35, " ") + " x\n",
            "file:5: 'x' is not a number"},
        {"BEGIN_DATA_FORMAT\n" + spec + "\nEND_DATA_FORMAT\nBEGIN_DATA\n0.5 0.5\n", "file:5: has a row with 2 fields"},
        {"BEGIN_DATA_FORMAT\n" + spec + "\nEND_DATA_FORMAT\nBEGIN_DATA\n", "file:4: ends inside a table"},
        {"[{\"id\": \"a\", \"spectrum\": [" + Values("1", 31, ",") + "]}]", "file: has a spectrum of 31 values"},
        {" \n", "file: holds no spectra"},
        {"CGATS.17\nORIGINATOR \"nobody\"\n", "file:2: holds no spectra"},
    };
    for (const auto& [text, message] : cases) {
        std::istringstream in(text);
        OrbelCli::SpectrumReader reader(in, "file");
        OrbelCli::SpectrumReader::Record record;
        try {
            while (reader.Next(record)) {
            }
            ADD_FAILURE() << "accepted: " << text;
        } catch (const OrbelCli::CliError& error) {
            EXPECT_EQ(error.ExitStatus(), OB_InvalidArgument);
            EXPECT_EQ(std::string(error.what()).substr(0, message.size()), message);
        }
    }
}

TEST(ConvertCommandTest, WritesColourValuesAndDeltaEOrRefusesTheFile)
{
    const std::string path = TemporaryPath(".cgats");
    std::ofstream(path) << twoTables;
    // A flat spectrum of reflectance r has Y = 100 r under every illuminant. CIE94 is the module's "94".
    const auto [status, out, messages] = Orbel({"convert", "--input", path, "--reference", path, "--delta-e", "CIE94"});
    EXPECT_EQ(status, 0) << messages;
    EXPECT_EQ(out.substr(0, out.find('\n')), "SAMPLE_NAME,XYZ_X,XYZ_Y,XYZ_Z,LAB_L,LAB_A,LAB_B,LAB_DE");
    EXPECT_NE(out.find("\npaper white,85.5422,90.0000,97.9946,95.9968,"), std::string::npos) << out;
    EXPECT_NE(out.find(",0.0000\nC 100 %,23.7617,25.0000,27.2207,57.0754,0.0000,0.0000,38.9213\n"), std::string::npos)
        << out;

    std::ofstream(path) << "BEGIN_DATA_FORMAT\n" << Names("SPEC_", 400, 700, " ") << "\nEND_DATA_FORMAT\n";
    const auto [badStatus, badOut, badMessages] = Orbel({"convert", "--input", path, "--format", "cgats"});
    EXPECT_EQ(badStatus, OB_InvalidArgument);
    EXPECT_NE(badMessages.find(path + ":3: spectra on 400–700 nm"), std::string::npos) << badMessages;
    std::filesystem::remove(path);
    EXPECT_EQ(std::get<0>(Orbel({"convert", "--input", path})), OB_InvalidArgument);
    for (const char* option : {"--delta-e", "--colour-space"}) {
        const auto [refused, nothing, why] = Orbel({"convert", "--input", "-", option, "2001"});
        EXPECT_EQ(refused, OrbelCli::CliError::UsageStatus) << option;
        EXPECT_NE(why.find(std::string(option) + " doesn't know '2001'"), std::string::npos) << why;
        EXPECT_EQ(nothing, "");
    }
}

// measure compares CIELab values, convert spectra: the same formula name must give the same ΔE.
TEST(ConvertCommandTest, GivesTheDifferenceThatMeasureGivesUnderEachFormula)
{
    const std::string path = TemporaryPath(".cgats");
    std::ofstream(path) << twoTables;
    for (const std::string& formula : OrbelCli::DeltaE::Names(true)) {
        const auto [status, out, messages] =
            Orbel({"convert", "--input", path, "--reference", path, "--delta-e", formula, "--format", "json"});
        ASSERT_EQ(status, 0) << messages;
        const auto json = OrbelCliTest::JsonReader::Parse(out);
        std::string standard;
        for (std::size_t channel = 0; channel < 3; ++channel) {
            // Appended piece by piece: GCC 12 at -O3 sees a false overlap (-Wrestrict) in "," + number.
            standard.append(channel ? "," : "").append(std::to_string(json[0]["lab"][channel].Number()));
        }
        const OrbelCli::Arguments arguments(
            "measure", {"--reference", standard, "--delta-e", formula}, OrbelCli::DeltaE::Options());
        const auto& lab = json[1]["lab"];
        const OrbelCli::Triple sample{static_cast<float>(lab[0].Number()), static_cast<float>(lab[1].Number()),
            static_cast<float>(lab[2].Number())};
        EXPECT_NEAR(OrbelCli::DeltaE::FromArguments(arguments)->Of(sample), json[1]["deltaE"].Number(), 2e-3)
            << formula;
    }
    std::filesystem::remove(path);
}

TEST(ConvertCommandTest, WritesLightsWithTheirColourTemperatureAndRenderingAndAColourSpaceOfChoice)
{
    const std::string path = TemporaryPath(".json");
    CMetry::EmissionWeights::Values lamp = CMetry::CorrelatedColorTemperature::BlackBody(2856.0);
    const double peak = *std::max_element(lamp.begin(), lamp.end());
    std::transform(lamp.begin(), lamp.end(), lamp.begin(), [peak](double value) { return value / peak; });
    std::ofstream(path) << "[" << JsonSpectrum({lamp.begin(), lamp.end()}) << ",\n"
                        << JsonSpectrum(std::vector<double>(36, 0.0)) << "]";
    const auto [status, out, messages] =
        Orbel({"convert", "--input", path, "--light", "--colour-space", "CIExyY", "--format", "json"});
    ASSERT_EQ(status, 0) << messages;
    const auto json = OrbelCliTest::JsonReader::Parse(out);
    const auto expected = CMetry::ColorRendering::Of(lamp);
    EXPECT_NEAR(json[0]["cct"].Number(), expected->temperature, 0.05);
    EXPECT_NEAR(json[0]["duv"].Number(), expected->duv, 5e-6);
    EXPECT_NEAR(json[0]["r"][8].Number(), expected->special[8], 0.05);
    EXPECT_NEAR(json[0]["colour"][2].Number(), json[0]["xyz"][1].Number(), 1e-3);
    EXPECT_TRUE(std::holds_alternative<std::nullptr_t>(json[1]["cct"].value));
    EXPECT_TRUE(std::holds_alternative<std::nullptr_t>(json[1]["r"].value));

    const auto [csvStatus, csv, csvMessages] =
        Orbel({"convert", "--input", path, "--light", "--colour-space", "CIELCh"});
    ASSERT_EQ(csvStatus, 0) << csvMessages;
    EXPECT_EQ(csv.substr(0, csv.find('\n')),
        "SAMPLE_NAME,XYZ_X,XYZ_Y,XYZ_Z,LAB_L,LAB_A,LAB_B,CIELCH_1,CIELCH_2,CIELCH_3,"
        "CCT,DUV,RA,R1,R2,R3,R4,R5,R6,R7,R8,R9,R10,R11,R12,R13,R14");
    // A black has no colour temperature: its seventeen cells stay empty.
    EXPECT_EQ(csv.substr(csv.size() - 19), "0" + std::string(17, ',') + "\n") << csv;
    std::filesystem::remove(path);
}

}
