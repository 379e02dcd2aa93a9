#include "tools/ReportColumns.h"

#include <algorithm>
#include <cctype>

#include "tools/DecimalText.h"

namespace OrbelCli {

namespace {

// Densities follow the filter that measures them: cyan ink is read through the red filter.
const char* const DensityFields[] = {"D_RED", "D_GREEN", "D_BLUE", "D_VIS"};

std::string FieldPrefix(const std::string& colourSpace)
{
    std::string prefix;
    for (char c : colourSpace) {
        if (std::isalnum(static_cast<unsigned char>(c))) {
            prefix += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        }
    }
    return prefix;
}

template<typename Part>
bool EverySampleHas(const MeasurementReport& report, Part part)
{
    return !report.samples.empty() &&
        std::all_of(report.samples.begin(), report.samples.end(), [&](const Sample& s) { return bool(s.*part); });
}

void AddTriple(std::vector<std::string>& values, const Triple& triple, int decimals)
{
    for (float value : triple) {
        values.push_back(DecimalText::Format(value, decimals));
    }
}

}

ReportColumns::ReportColumns(const MeasurementReport& report)
    : hasXyz(EverySampleHas(report, &Sample::xyz)), hasLab(EverySampleHas(report, &Sample::lab)),
      hasDensities(EverySampleHas(report, &Sample::densities)), hasChosen(EverySampleHas(report, &Sample::chosen))
{
    names.push_back("SAMPLE_ID");
    for (int point = 0; point < SpectrumPoints; ++point) {
        names.push_back("SPEC_" + std::to_string(FirstWavelength + point * WavelengthStep));
    }
    if (hasXyz) {
        names.insert(names.end(), {"XYZ_X", "XYZ_Y", "XYZ_Z"});
    }
    if (hasLab) {
        names.insert(names.end(), {"LAB_L", "LAB_A", "LAB_B"});
    }
    if (hasDensities) {
        names.insert(names.end(), std::begin(DensityFields), std::end(DensityFields));
    }
    if (hasChosen) {
        const std::vector<std::string> chosen = ChannelFields(report.colourSpace);
        names.insert(names.end(), chosen.begin(), chosen.end());
    }
}

std::vector<std::string> ReportColumns::ChannelFields(const std::string& colourSpace)
{
    const std::string prefix = FieldPrefix(colourSpace);
    return {prefix + "_1", prefix + "_2", prefix + "_3"};
}

std::vector<std::string> ReportColumns::Values(const Sample& sample) const
{
    std::vector<std::string> values{sample.id};
    for (float value : sample.spectrum) {
        values.push_back(DecimalText::Format(value, 5));
    }
    if (hasXyz) {
        AddTriple(values, *sample.xyz, 4);
    }
    if (hasLab) {
        AddTriple(values, *sample.lab, 3);
    }
    if (hasDensities) {
        for (float value : sample.densities->values) {
            values.push_back(DecimalText::Format(value, 3));
        }
    }
    if (hasChosen) {
        AddTriple(values, *sample.chosen, 4);
    }
    return values;
}

}
