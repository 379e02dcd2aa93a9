#include "tools/ScanCommand.h"

#include <optional>

#include "tools/Instrument.h"
#include "tools/MeasurementReader.h"
#include "tools/PersonHand.h"
#include "tools/ReportOutput.h"
#include "tools/SpectrumFile.h"
#include "tools/platform/StripStartWatch.h"

namespace OrbelCli {

namespace {

// The module refuses more: ten packets of this many readings fill one transfer of the instrument.
constexpr long largestCount = 25;

}

std::string ScanCommand::Summary() const
{
    return "Scans a strip: the instrument measures while it is drawn across the patches. Without --recognition\n"
           "every reading is a sample; with it, the strip is split into its patches, one sample each. --count N\n"
           "(1 to 25) makes the instrument take its readings N at a time. The scan begins with a calibration on\n"
           "the white tile: a scanning calibration lasts only as long as the program that made it.";
}

std::string ScanCommand::Examples() const
{
    return "  orbel scan --recognition                       # one sample per patch\n"
           "  orbel scan --count 20 --format csv > raw.csv   # 20 readings at a time, as they come\n"
           "  orbel scan --recognition --format cgats --plot strip.svg > strip.cgats\n";
}

std::vector<OptionSpec> ScanCommand::Options() const
{
    return MeasurementReader::Options({
        {"--recognition", false, "", "split the scan into the strip's patches"},
        {"--count", true, "N", "the readings the instrument takes at a time, 1 to 25"},
    });
}

int ScanCommand::Run(const Arguments& arguments, std::ostream& out, std::ostream& messages)
{
    const bool counted = arguments.Has("--count");
    const long count = arguments.Whole("--count", 0, 1, largestCount);
    const MeasurementReader reader(MeasurementReader::FromArguments(arguments));
    ReportOutput::Validate(arguments);
    PersonHand person;
    const KeyPrompt prompt = ReportOutput::Prompt(arguments, messages, person);
    const auto substrate = arguments.Get("--substrate");
    const Spectrum paper = substrate ? SpectrumFile::Read(*substrate) : Spectrum{};

    // Set up before the module has threads of its own; gone before the results, so that "draw now"
    // comes first.
    std::optional<StripStartWatch> drawNow(std::in_place, messages);
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
    drawNow.reset();
    ReportOutput::Emit(reader.Read({}, true), arguments, out, messages);
    return 0;
}

}
