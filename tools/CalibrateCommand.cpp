#include "tools/CalibrateCommand.h"

#include "tools/Instrument.h"
#include "tools/PersonHand.h"
#include "tools/ReportOutput.h"

namespace OrbelCli {

std::string CalibrateCommand::Summary() const
{
    return "Calibrates the instrument on its white tile. The reflectance calibration is kept in the instrument,\n"
           "so it serves later runs too; emission and ambient light take a dark reading before each measurement.";
}

std::string CalibrateCommand::Examples() const
{
    return "  orbel calibrate                   # place on the tile, press the key when asked\n"
           "  orbel calibrate --mode scan       # the calibration of strip scanning\n"
           "  orbel calibrate --no-wait         # from a script: the instrument already lies on the tile\n";
}

std::vector<OptionSpec> CalibrateCommand::Options() const
{
    std::vector<OptionSpec> options{{"--mode", true, "MODE", "reflectance (default), scan, emission or ambient"}};
    const auto prompt = ReportOutput::PromptOptions();
    options.insert(options.end(), prompt.begin(), prompt.end());
    return options;
}

std::string CalibrateCommand::ModeName(const std::string& word)
{
    if (word == "scan") {
        return "ScanningReflectance";
    }
    if (word == "emission") {
        return "SingleEmission";
    }
    if (word == "ambient") {
        return "SingleAmbientLight";
    }
    return "SingleReflectance";
}

int CalibrateCommand::Run(const Arguments& arguments, std::ostream& out, std::ostream& messages)
{
    const std::string mode = arguments.Choice("--mode", "reflectance", {"reflectance", "scan", "emission", "ambient"});
    PersonHand person;
    const KeyPrompt prompt = ReportOutput::Prompt(arguments, messages, person);
    Instrument::RequireConnection();
    Instrument::SetOption("MeasurementMode", ModeName(mode));
    prompt.Await("Place the instrument on its white tile and press the measurement key.");
    Instrument::Calibrate();
    out << "Calibrated for " << ModeName(mode) << " (instrument " << Instrument::Info("SerialNumber") << ").\n";
    return 0;
}

}
