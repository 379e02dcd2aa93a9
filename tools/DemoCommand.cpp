#include "tools/DemoCommand.h"

#include <algorithm>
#include <filesystem>

#include "tools/DecimalText.h"
#include "tools/InfoCommand.h"
#include "tools/Instrument.h"
#include "tools/MeasurementReader.h"
#include "tools/PersonHand.h"
#include "tools/ReportOutput.h"
#include "tools/SimHand.h"
#include "tools/TableFormatter.h"

namespace OrbelCli {

namespace {

struct DemoSample {
    const char* name;
    const char* target;
};

const DemoSample Samples[] = {
    {"red", "sample:tcs09"},
    {"green", "sample:tcs11"},
    {"blue", "sample:tcs12"},
};

const char* const PaperTarget = "sample:grey90";
const char* const StripSpec = "builtin:colour24";
constexpr int StripPatches = 24;
// The report shows the spectra every 50 nm; the picture shows them whole.
constexpr int SpectrumRowStep = 50;
constexpr std::size_t NameWidth = 24;

}

std::string DemoCommand::Summary() const
{
    return "A tour of the instrument: device information, calibration on the tile, three samples with spectrum,\n"
           "CIELab and densities, a strip of 24 patches scanned with recognition, a display measured in emission\n"
           "with luminance and colour temperature, and ambient light. It draws the spectra of the samples into an\n"
           "SVG picture. With --sim the program itself places the virtual instrument and presses its key;\n"
           "`make demo` runs it that way.";
}

std::string DemoCommand::Examples() const
{
    return "  make demo                                     # builds, plugs in a virtual instrument, runs the tour\n"
           "  orbel demo --sim build/sim/orbel-sim          # with a virtual instrument already started\n"
           "  orbel demo                                    # with a real instrument: follow the prompts\n";
}

std::vector<OptionSpec> DemoCommand::Options() const
{
    std::vector<OptionSpec> options{
        {"--sim", true, "PROGRAM", "drive the virtual instrument with this orbel-sim program"},
        {"--plot", true, "FILE.svg", "where to draw the spectra (default demo-spectra.svg)"},
    };
    const auto prompt = ReportOutput::PromptOptions();
    options.insert(options.end(), prompt.begin(), prompt.end());
    return options;
}

void DemoCommand::Heading(std::ostream& out, int step, const std::string& title)
{
    out << '\n' << step << ". " << title << '\n';
}

void DemoCommand::Line(std::ostream& out, const std::string& name, const std::string& value)
{
    out << "  " << name << std::string(std::max<std::size_t>(NameWidth, name.size() + 1) - name.size(), ' ') << value
        << '\n';
}

void DemoCommand::ShowDevice(const Tour& tour)
{
    Heading(tour.out, 1, "The instrument");
    for (const auto& [key, value] : InfoCommand::Collect()) {
        Line(tour.out, key, value);
    }
}

void DemoCommand::CalibrateOnTile(const Tour& tour, const std::string& mode)
{
    Instrument::SetOption("MeasurementMode", mode);
    tour.hand.Place("tile");
    tour.prompt.Await("Place the instrument on its white tile and press the measurement key.");
    Instrument::Calibrate();
}

void DemoCommand::MeasurePaperWhite(const Tour& tour)
{
    tour.hand.Place(PaperTarget);
    tour.prompt.Await("Place the instrument on blank paper and press the measurement key.");
    Instrument::Trigger();
    Instrument::SetSubstrate(Instrument::ReadSpectrum(0));
    tour.out << "  The paper white is measured: densities are taken against it.\n";
}

MeasurementReport DemoCommand::MeasureSamples(const Tour& tour)
{
    const MeasurementReader reader({});
    MeasurementReport all;
    for (const DemoSample& sample : Samples) {
        tour.hand.Place(sample.target);
        tour.prompt.Await(
            std::string("Place the instrument on the ") + sample.name + " sample and press the measurement key.");
        Instrument::Trigger();
        MeasurementReport one = reader.Read({sample.name}, true);
        all.mode = one.mode;
        all.illuminant = one.illuminant;
        all.observer = one.observer;
        all.colourSpace = one.colourSpace;
        all.samples.push_back(one.samples.front());
    }
    TableFormatter(SpectrumRowStep).Write(tour.out, all);
    return all;
}

void DemoCommand::ScanStrip(const Tour& tour)
{
    CalibrateOnTile(tour, "ScanningReflectance");
    Instrument::SetOption("Recognition", "yes");
    tour.hand.PrepareStrip(StripSpec);
    tour.prompt.Await("Set the instrument before the first patch of the strip, press the measurement key and draw it "
                      "across the strip.");
    Instrument::Trigger();
    const MeasurementReport report = MeasurementReader({}).Read({}, true);
    TableFormatter(0).Write(tour.out, report);
    tour.out << "  " << report.samples.size() << " of " << StripPatches << " patches recognised.\n";
}

void DemoCommand::MeasureLight(
    const Tour& tour, const std::string& mode, const std::string& target, const std::string& instruction)
{
    CalibrateOnTile(tour, mode);
    const MeasurementReader reader(ColourOptions{"Emission", std::nullopt, std::nullopt, std::nullopt, std::nullopt});
    reader.ApplyOptions();
    tour.hand.Place(target);
    tour.prompt.Await(instruction);
    Instrument::Trigger();
    MeasurementReport report = reader.Read({target.substr(target.find(':') + 1)}, false);
    ReportOutput::AddLightNotes(report);
    for (const auto& [name, value] : report.notes) {
        Line(tour.out, name, value);
    }
    const Triple& xyz = *report.samples.front().xyz;
    Line(tour.out, "XYZ",
        DecimalText::Format(xyz[0], 2) + "  " + DecimalText::Format(xyz[1], 2) + "  " + DecimalText::Format(xyz[2], 2));
}

void DemoCommand::Unplug(const Tour& tour)
{
    if (tour.hand.IsPerson()) {
        tour.out << "  The tour is over: you may unplug the instrument.\n";
        return;
    }
    tour.hand.Unplug();
    tour.out << (Instrument::IsConnected() ? "  The module still finds the instrument.\n"
                                           : "  Unplugged: the module reports the instrument as not connected.\n");
}

int DemoCommand::Run(const Arguments& arguments, std::ostream& out, std::ostream&)
{
    const std::string plotPath = arguments.Value("--plot", "demo-spectra.svg");
    PersonHand person;
    std::unique_ptr<SimHand> sim;
    if (const auto program = arguments.Get("--sim")) {
        sim = std::make_unique<SimHand>(*program);
    }
    Hand& hand = sim ? static_cast<Hand&>(*sim) : static_cast<Hand&>(person);
    const KeyPrompt prompt = ReportOutput::Prompt(arguments, out, hand);
    const Tour tour{hand, prompt, out};

    out << "Orbel demo: a tour of the instrument" << (sim ? " (virtual instrument)" : "") << '\n';
    Instrument::RequireConnection();
    ShowDevice(tour);
    Heading(out, 2, "Calibration on the white tile");
    CalibrateOnTile(tour, "SingleReflectance");
    out << "  Calibrated.\n";
    Heading(out, 3, "Three samples: spectrum, CIELab and densities");
    MeasurePaperWhite(tour);
    const MeasurementReport samples = MeasureSamples(tour);
    Heading(out, 4, "A strip of 24 patches, scanned with recognition");
    ScanStrip(tour);
    Heading(out, 5, "A display, measured in emission");
    MeasureLight(tour, "SingleEmission", "display:white", "Hold the instrument against the display and press the key.");
    Heading(out, 6, "Ambient light");
    MeasureLight(tour, "SingleAmbientLight", "light:daylight", "Point the instrument at the light and press the key.");
    Heading(out, 7, "Unplugging");
    Unplug(tour);
    out << '\n';
    ReportOutput::Plot(samples, std::filesystem::absolute(plotPath).string(), out);
    return 0;
}

}
