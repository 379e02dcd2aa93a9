#include "tools/MeasurementReader.h"

#include "tools/Instrument.h"
#include "tools/ReportOutput.h"

namespace OrbelCli {

namespace {

const char* const ColourSpaceKey = "ColorSpaceDescription.Type";

// The instrument numbers its filter, 1 none and 2 the UV-cut filter; ISO 13655 names the
// measurement conditions they make M0 and M2. Other numbers are written as they come.
struct FilterCondition {
    const char* number;
    const char* name;
    const char* condition;
};
constexpr FilterCondition filterConditions[] = {{"1", "No", "M0"}, {"2", "UVCut", "M2"}};

void TakeFilter(MeasurementReport& report, const std::string& number)
{
    report.filter = number;
    for (const FilterCondition& known : filterConditions) {
        if (number == known.number) {
            report.filter = known.name;
            report.measurementCondition = known.condition;
        }
    }
}

}

std::vector<OptionSpec> MeasurementReader::Options(std::vector<OptionSpec> own)
{
    own.insert(own.end(),
        {
            {"--substrate", true, "FILE", "the paper white for densities (see orbel substrate)"},
            {"--illuminant", true, "NAME", "A, C, D50, D55, D65 (default), D75, F2, F7, F11, Emission ..."},
            {"--observer", true, "NAME", "TwoDegree (default) or TenDegree"},
            {"--colour-space", true, "NAME",
                "also report CIELCh, CIELuv, CIExyY, HunterLab, RGB ... (CIELab and CIEXYZ always)"},
            {"--white-base", true, "NAME", "Absolute, Paper or Automatic (default)"},
            {"--density-standard", true, "NAME", "DIN (default), DINNB, ANSIA, ANSIT, SPI"},
        });
    return ReportOutput::WithOutputOptions(std::move(own));
}

ColourOptions MeasurementReader::FromArguments(const Arguments& arguments)
{
    return {arguments.Get("--illuminant"), arguments.Get("--observer"), arguments.Get("--colour-space"),
        arguments.Get("--white-base"), arguments.Get("--density-standard")};
}

MeasurementReader::MeasurementReader(ColourOptions options) : options(std::move(options)) { }

void MeasurementReader::ApplyOptions() const
{
    const std::pair<const char*, const std::optional<std::string>*> settings[] = {
        {"Colorimetric.Illumination", &options.illuminant},
        {"Colorimetric.Observer", &options.observer},
        {"Colorimetric.WhiteBase", &options.whiteBase},
        {"Colorimetric.DensityStandard", &options.densityStandard},
        {ColourSpaceKey, &options.colourSpace},
    };
    for (const auto& [key, value] : settings) {
        if (*value) {
            Instrument::SetOption(key, **value);
        }
    }
}

Triple MeasurementReader::ReadIn(const std::string& colourSpace, int32_t index) const
{
    Instrument::SetOption(ColourSpaceKey, colourSpace);
    return Instrument::ReadTriStimulus(index);
}

std::string MeasurementReader::FinalColourSpace() const
{
    return options.colourSpace.value_or("CIELab");
}

Sample MeasurementReader::ReadSample(int32_t index, const std::string& id, bool reflectance) const
{
    Sample sample;
    sample.id = id;
    sample.spectrum = Instrument::ReadSpectrum(index);
    sample.xyz = ReadIn("CIEXYZ", index);
    if (reflectance) {
        sample.lab = ReadIn("CIELab", index);
        sample.densities = Instrument::ReadDensities(index);
    }
    const std::string chosen = FinalColourSpace();
    if (chosen != "CIELab" && chosen != "CIEXYZ") {
        sample.chosen = ReadIn(chosen, index);
    }
    return sample;
}

MeasurementReport MeasurementReader::Read(const std::vector<std::string>& names, bool reflectance) const
{
    MeasurementReport report;
    report.mode = Instrument::Info("MeasurementMode");
    report.illuminant = Instrument::Option("Colorimetric.Illumination");
    report.observer = Instrument::Option("Colorimetric.Observer");
    report.colourSpace = FinalColourSpace();
    if (reflectance) {
        TakeFilter(report, Instrument::Info("PhysicalFilter"));
    }
    const int32_t count = Instrument::SampleCount();
    for (int32_t index = 0; index < count; ++index) {
        const std::string id =
            static_cast<std::size_t>(index) < names.size() ? names[index] : std::to_string(index + 1);
        report.samples.push_back(ReadSample(index, id, reflectance));
    }
    Instrument::SetOption(ColourSpaceKey, FinalColourSpace());
    if (reflectance && !report.samples.empty() && !report.samples.front().densities) {
        report.notes.emplace_back("densities", "need a paper white: --substrate FILE or --white-base Absolute");
    }
    return report;
}

}
