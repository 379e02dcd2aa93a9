#include "tools/ScanCommand.h"

#include "tools/Instrument.h"
#include "tools/MeasurementReader.h"
#include "tools/PersonHand.h"
#include "tools/ReportOutput.h"
#include "tools/SpectrumFile.h"

namespace OrbelCli {

std::string ScanCommand::Summary() const
{
    return "Scans a strip: the instrument measures while it is drawn across the patches. Without --recognition\n"
           "every reading is a sample; with it, the strip is split into its patches, one sample each. --count\n"
           "tells the instrument how many readings to take. The scan begins with a calibration on the white tile: a\n"
           "scanning calibration lasts only as long as the program that made it.";
}

std::string ScanCommand::Examples() const
{
    return "  orbel scan --recognition                       # one sample per patch\n"
           "  orbel scan --count 40 --format csv > raw.csv   # 40 readings as they come\n"
           "  orbel scan --recognition --format cgats --plot strip.svg > strip.cgats\n";
}

std::vector<OptionSpec> ScanCommand::Options() const
{
    return MeasurementReader::Options({
        {"--recognition", false, "", "split the scan into the strip's patches"},
        {"--count", true, "N", "the number of readings the instrument takes"},
    });
}

int ScanCommand::Run(const Arguments& arguments, std::ostream& out, std::ostream& messages)
{
    const bool counted = arguments.Has("--count");
    const long count = arguments.Whole("--count", 0, 1, 100000);
    const MeasurementReader reader(MeasurementReader::FromArguments(arguments));
    ReportOutput::Validate(arguments);
    PersonHand person;
    const KeyPrompt prompt = ReportOutput::Prompt(arguments, messages, person);
    const auto substrate = arguments.Get("--substrate");
    const Spectrum paper = substrate ? SpectrumFile::Read(*substrate) : Spectrum{};

    Instrument::RequireConnection();
    Instrument::SetOption("MeasurementMode", "ScanningReflectance");
    Instrument::SetOption("Recognition", arguments.Has("--recognition") ? "yes" : "no");
    reader.ApplyOptions();
    if (substrate) {
        Instrument::SetSubstrate(paper);
    }
    prompt.Await("Place the instrument on its white tile and press the measurement key.");
    Instrument::Calibrate();
    prompt.Await("Set the instrument on the paper before the first patch, press the measurement key, and draw it "
                 "across the strip at an even pace.");
    if (counted) {
        Instrument::TriggerCountedScan(static_cast<int32_t>(count));
    } else {
        Instrument::Trigger();
    }
    ReportOutput::Emit(reader.Read({}, true), arguments, out, messages);
    return 0;
}

}
