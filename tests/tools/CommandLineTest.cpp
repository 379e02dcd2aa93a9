#include <sstream>

#include <gtest/gtest.h>

#include "tools/Application.h"
#include "tools/Arguments.h"
#include "tools/CliError.h"
#include "tools/DecimalText.h"
#include "tools/SpectrumFile.h"

using namespace OrbelCli;

namespace {

const std::vector<OptionSpec> Known{
    {"--format", true, "FORMAT", ""}, {"--no-wait", false, "", ""}, {"--count", true, "N", ""}};

std::string UsageMessage(const std::vector<std::string>& words)
{
    try {
        Arguments arguments("scan", words, Known);
        arguments.Whole("--count", 0, 1, 100);
        arguments.Choice("--format", "table", {"table", "csv"});
    } catch (const CliError& error) {
        EXPECT_EQ(error.ExitStatus(), CliError::UsageStatus);
        return error.what();
    }
    return "";
}

std::string SpectrumError(const std::string& text)
{
    try {
        SpectrumFile::Parse(text, "paper.txt");
    } catch (const CliError& error) {
        EXPECT_EQ(error.ExitStatus(), 10);
        return error.what();
    }
    return "";
}

}

TEST(ArgumentsTest, ReadsOptionsInBothFormsAndRefusesWhatItDoesNotKnow)
{
    const Arguments arguments("scan", {"--format=json", "--count", "12", "--no-wait", "extra"}, Known);
    EXPECT_EQ(arguments.Value("--format", "table"), "json");
    EXPECT_EQ(arguments.Whole("--count", 0, 1, 100), 12);
    EXPECT_TRUE(arguments.Has("--no-wait"));
    EXPECT_EQ(arguments.Positional(), std::vector<std::string>{"extra"});

    EXPECT_EQ(UsageMessage({"--colour"}), "'scan' has no option --colour (see orbel scan --help)");
    EXPECT_EQ(UsageMessage({"--count"}), "option --count needs a value: --count N");
    EXPECT_EQ(UsageMessage({"--no-wait=yes"}), "option --no-wait takes no value");
    EXPECT_EQ(UsageMessage({"--count", "0"}), "--count takes a whole number from 1 to 100, not '0'");
    EXPECT_EQ(UsageMessage({"--count", "12x"}), "--count takes a whole number from 1 to 100, not '12x'");
    EXPECT_EQ(UsageMessage({"--format", "xml"}), "--format takes one of table, csv, not 'xml'");
}

TEST(SpectrumFileTest, ReadsThirtySixValuesAndSaysWhatIsWrong)
{
    std::string text;
    for (int i = 0; i < 36; ++i) {
        text += DecimalText::Format(0.5 + i / 100.0, 2) + (i % 6 == 5 ? ",\n" : " ");
    }
    const Spectrum spectrum = SpectrumFile::Parse(text, "paper.txt");
    EXPECT_FLOAT_EQ(spectrum.front(), 0.5f);
    EXPECT_FLOAT_EQ(spectrum.back(), 0.85f);
    EXPECT_EQ(SpectrumFile::Parse(SpectrumFile::Text(spectrum), "again"), spectrum);

    EXPECT_EQ(SpectrumError("0.5 0.6"), "paper.txt: a spectrum has 36 values (380 to 730 nm), this one 2");
    EXPECT_EQ(SpectrumError(text + " 0.9"), "paper.txt: a spectrum has 36 values (380 to 730 nm), this one 37");
    EXPECT_EQ(SpectrumError("0,5 0.6"), "paper.txt: a spectrum has 36 values (380 to 730 nm), this one 3");
    EXPECT_EQ(SpectrumError("0.5 x"), "paper.txt: 'x' is not a number");
    for (const char* word : {"nan", "inf", "-inf", "1e999"}) {
        EXPECT_EQ(
            SpectrumError(std::string(word) + " " + text), std::string("paper.txt: '") + word + "' is not a number");
    }
    EXPECT_EQ(SpectrumFile::Parse("\xEF\xBB\xBF" + text, "marked.txt"), spectrum);
}

TEST(DecimalTextTest, NoNegativeZeroAndShortestRoundTrip)
{
    EXPECT_EQ(DecimalText::Format(-0.0001, 3), "0.000");
    EXPECT_EQ(DecimalText::Format(-1.25, 1), "-1.2");
    EXPECT_EQ(DecimalText::Shortest(0.1f), "0.1");
    EXPECT_FALSE(DecimalText::Parse("1,5"));
    EXPECT_EQ(*DecimalText::Parse("1.5"), 1.5);
}

TEST(ApplicationTest, HelpForEveryCommandAndUsageErrors)
{
    Application application;
    for (const char* command : {"info", "calibrate", "measure", "scan", "substrate", "demo"}) {
        std::ostringstream out;
        std::ostringstream messages;
        EXPECT_EQ(application.Run({command, command[0] == 's' ? "-h" : "--help"}, out, messages), 0) << command;
        EXPECT_EQ(out.str().rfind(std::string("usage: orbel ") + command, 0), 0u) << out.str();
        EXPECT_NE(out.str().find("\nexamples:\n  "), std::string::npos) << command;
    }
    std::ostringstream out;
    std::ostringstream messages;
    EXPECT_EQ(application.Run({"measure", "--format", "xml"}, out, messages), CliError::UsageStatus);
    EXPECT_EQ(messages.str(), "orbel: --format takes one of table, csv, json, cgats, not 'xml'\nSee orbel --help.\n");
    EXPECT_EQ(application.Run({"paint"}, out, messages), CliError::UsageStatus);
    EXPECT_EQ(application.Run({}, out, messages), CliError::UsageStatus);
    EXPECT_EQ(application.Run({"--help"}, out, messages), 0);
    EXPECT_EQ(application.Run({"-h"}, out, messages), 0);
}
