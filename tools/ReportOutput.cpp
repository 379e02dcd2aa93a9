#include "tools/ReportOutput.h"

#include <algorithm>

#include "cmetry/ColorRendering.h"
#include "orbel.h"
#include "tools/CliError.h"
#include "tools/DecimalText.h"
#include "tools/ReportFormatter.h"
#include "tools/SvgPlot.h"

namespace OrbelCli {

std::vector<OptionSpec> ReportOutput::FormatOptions()
{
    return {
        {"--format", true, "FORMAT", "table (default), csv, json or cgats (CGATS.17)"},
        {"--plot", true, "FILE.svg", "draw the spectra into an SVG picture"},
    };
}

std::vector<OptionSpec> ReportOutput::WithOutputOptions(std::vector<OptionSpec> own)
{
    for (const auto& more : {FormatOptions(), PromptOptions()}) {
        own.insert(own.end(), more.begin(), more.end());
    }
    return own;
}

std::vector<OptionSpec> ReportOutput::PromptOptions()
{
    return {
        {"--no-wait", false, "", "don't prompt or wait for the measurement key (for scripts)"},
        {"--wait", true, "SECONDS", "how long to wait for the measurement key (default 30)"},
    };
}

void ReportOutput::Validate(const Arguments& arguments)
{
    arguments.Choice("--format", "table", {"table", "csv", "json", "cgats"});
}

void ReportOutput::Emit(
    const MeasurementReport& report, const Arguments& arguments, std::ostream& out, std::ostream& messages)
{
    Validate(arguments);
    ReportFormatter::Create(arguments.Value("--format", "table"))->Write(out, report);
    if (const auto path = arguments.Get("--plot")) {
        Plot(report, *path, messages);
    }
}

void ReportOutput::Plot(const MeasurementReport& report, const std::string& path, std::ostream& messages)
{
    const bool reflectance = report.mode.find("Reflectance") != std::string::npos;
    SvgPlot plot("Spectra: " + report.mode, reflectance ? "reflectance factor" : "spectral radiance");
    for (const Sample& sample : report.samples) {
        plot.Add(sample.id, sample.spectrum);
    }
    if (!plot.Save(path)) {
        throw CliError(OB_InvalidArgument, "can't write the plot " + path);
    }
    messages << "The spectra are drawn in " << path << '\n';
}

KeyPrompt ReportOutput::Prompt(const Arguments& arguments, std::ostream& messages, Hand& hand)
{
    const int seconds = static_cast<int>(arguments.Whole("--wait", DefaultWaitSeconds, 1, 3600));
    return KeyPrompt(messages, hand, !arguments.Has("--no-wait"), seconds);
}

void ReportOutput::AddLightNotes(MeasurementReport& report)
{
    if (report.samples.empty() || !report.samples.back().xyz) {
        return;
    }
    const Triple& xyz = *report.samples.back().xyz;
    // Ambient light falls on the instrument (illuminance); a display shines into it (luminance).
    if (report.mode == "SingleAmbientLight") {
        report.notes.emplace_back("illuminance Y", DecimalText::Format(xyz[1], 2) + " lx");
    } else {
        report.notes.emplace_back("luminance Y", DecimalText::Format(xyz[1], 2) + " cd/m2");
    }
    CMetry::EmissionWeights::Values light;
    std::copy(report.samples.back().spectrum.begin(), report.samples.back().spectrum.end(), light.begin());
    // A light without a chromaticity, or beyond 1000 K to 100000 K, has none of these.
    if (const auto rendering = CMetry::ColorRendering::Of(light)) {
        report.notes.emplace_back("colour temperature", DecimalText::Format(rendering->temperature, 0) + " K");
        report.notes.emplace_back("Duv", DecimalText::Format(rendering->duv, 4));
        report.notes.emplace_back("Ra", DecimalText::Format(rendering->ra, 1));
        report.notes.emplace_back("R9", DecimalText::Format(rendering->special[8], 1));
    }
}

}
