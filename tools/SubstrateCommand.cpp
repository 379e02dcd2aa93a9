#include "tools/SubstrateCommand.h"

#include "tools/CliError.h"
#include "tools/Instrument.h"
#include "tools/MeasurementReader.h"
#include "tools/PersonHand.h"
#include "tools/ReportOutput.h"
#include "tools/SpectrumFile.h"

namespace OrbelCli {

std::string SubstrateCommand::Summary() const
{
    return "Measures the white of the unprinted paper and writes it to a file (36 values, 380 to 730 nm), which\n"
           "measure and scan take with --substrate; or loads such a file, checks it and shows what it holds.";
}

std::string SubstrateCommand::Examples() const
{
    return "  orbel substrate --output paper.txt             # place on blank paper when asked\n"
           "  orbel substrate --load paper.txt --format json\n"
           "  orbel measure --substrate paper.txt\n";
}

std::vector<OptionSpec> SubstrateCommand::Options() const
{
    return ReportOutput::WithOutputOptions({
        {"--output", true, "FILE", "where to write the measured paper white"},
        {"--load", true, "FILE", "load a paper white instead of measuring one"},
    });
}

int SubstrateCommand::Run(const Arguments& arguments, std::ostream& out, std::ostream& messages)
{
    const auto load = arguments.Get("--load");
    if (load && arguments.Has("--output")) {
        throw CliError::Usage("give either --output or --load, not both");
    }
    ReportOutput::Validate(arguments);
    PersonHand person;
    const KeyPrompt prompt = ReportOutput::Prompt(arguments, messages, person);
    const MeasurementReader reader({});
    MeasurementReport report;
    if (load) {
        const Spectrum paper = SpectrumFile::Read(*load);
        Instrument::SetSubstrate(paper);
        report.mode = "Substrate";
        report.illuminant = Instrument::Option("Colorimetric.Illumination");
        report.observer = Instrument::Option("Colorimetric.Observer");
        report.colourSpace = "CIELab";
        report.samples.push_back({"paper", paper, std::nullopt, std::nullopt, std::nullopt, std::nullopt});
        report.notes.emplace_back("loaded from", *load);
    } else {
        Instrument::RequireConnection();
        Instrument::SetOption("MeasurementMode", "SingleReflectance");
        prompt.Await("Place the instrument on blank paper and press the measurement key.");
        Instrument::Trigger();
        report = reader.Read({"paper"}, false);
        if (const auto path = arguments.Get("--output")) {
            SpectrumFile::Write(*path, report.samples.front().spectrum);
            report.notes.emplace_back("written to", *path);
        }
    }
    ReportOutput::Emit(report, arguments, out, messages);
    return 0;
}

}
