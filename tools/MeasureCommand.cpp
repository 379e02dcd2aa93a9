#include "tools/MeasureCommand.h"

#include "orbel.h"
#include "tools/CalibrateCommand.h"
#include "tools/CliError.h"
#include "tools/DecimalText.h"
#include "tools/DeltaE.h"
#include "tools/Instrument.h"
#include "tools/MeasurementReader.h"
#include "tools/PersonHand.h"
#include "tools/ReportOutput.h"
#include "tools/SpectrumFile.h"

namespace OrbelCli {

std::string MeasureCommand::Summary() const
{
    return "Measures one spot and shows its spectrum (380 to 730 nm), tristimulus values (CIEXYZ, CIELab) and,\n"
           "given a paper white, its densities; given a standard, its colour difference from it. Emission (a\n"
           "display) and ambient light are measured with the lamp off, after a dark reading on the tile, and\n"
           "report luminance or illuminance, correlated colour temperature, Duv, Ra and R9.";
}

std::string MeasureCommand::Examples() const
{
    return "  orbel measure                                  # reflectance, D65, 2 degree observer\n"
           "  orbel measure --illuminant D50 --observer TenDegree --colour-space CIELCh\n"
           "  orbel measure --substrate paper.txt --density-standard ANSIT\n"
           "  orbel measure --mode emission --format json   # a display\n"
           "  orbel measure --reference 52.1,-3.2,18.4 --delta-e CIE94\n"
           "  orbel measure --format cgats --plot spot.svg --no-wait > spot.cgats\n";
}

std::vector<OptionSpec> MeasureCommand::Options() const
{
    std::vector<OptionSpec> own = {
        {"--mode", true, "MODE", "reflectance (default), emission or ambient"},
        {"--id", true, "NAME", "the sample's name in the output (default 1)"},
    };
    const std::vector<OptionSpec> difference = DeltaE::Options();
    own.insert(own.end(), difference.begin(), difference.end());
    return MeasurementReader::Options(std::move(own));
}

int MeasureCommand::Run(const Arguments& arguments, std::ostream& out, std::ostream& messages)
{
    const std::string mode = arguments.Choice("--mode", "reflectance", {"reflectance", "emission", "ambient"});
    const bool reflectance = mode == "reflectance";
    const std::optional<DeltaE> deltaE = DeltaE::FromArguments(arguments);
    if (deltaE && !reflectance) {
        throw CliError(OB_InvalidArgument, "a colour difference needs --mode reflectance");
    }
    ColourOptions colour = MeasurementReader::FromArguments(arguments);
    if (!reflectance && !colour.illuminant) {
        colour.illuminant = "Emission";
    }
    const MeasurementReader reader(colour);
    ReportOutput::Validate(arguments);
    PersonHand person;
    const KeyPrompt prompt = ReportOutput::Prompt(arguments, messages, person);
    const auto substrate = arguments.Get("--substrate");
    const Spectrum paper = substrate ? SpectrumFile::Read(*substrate) : Spectrum{};

    Instrument::RequireConnection();
    Instrument::SetOption("MeasurementMode", CalibrateCommand::ModeName(mode));
    reader.ApplyOptions();
    if (substrate) {
        Instrument::SetSubstrate(paper);
    }
    if (!reflectance) {
        prompt.Await("Place the instrument on its white tile for the dark reading and press the measurement key.");
        Instrument::Calibrate();
    }
    prompt.Await(reflectance     ? "Place the instrument on the sample and press the measurement key."
            : mode == "emission" ? "Hold the instrument against the display and press the measurement key."
                                 : "Point the instrument at the light and press the measurement key.");
    Instrument::Trigger();
    MeasurementReport report = reader.Read({arguments.Value("--id", "1")}, reflectance);
    if (!reflectance) {
        ReportOutput::AddLightNotes(report);
    }
    if (deltaE && !report.samples.empty() && report.samples.back().lab) {
        report.notes.emplace_back(
            "delta E " + deltaE->Name(), DecimalText::Format(deltaE->Of(*report.samples.back().lab), 2));
    }
    ReportOutput::Emit(report, arguments, out, messages);
    return 0;
}

}
