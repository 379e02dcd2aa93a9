#include "tools/JsonFormatter.h"

#include <cmath>
#include <cstdio>

#include "tools/DecimalText.h"

namespace OrbelCli {

std::string JsonFormatter::Quoted(const std::string& text)
{
    std::string quoted = "\"";
    for (char c : text) {
        const auto code = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            quoted += '\\';
            quoted += c;
        } else if (code < 0x20) {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\u%04x", code);
            quoted += escaped;
        } else {
            quoted += c;
        }
    }
    return quoted + "\"";
}

std::string JsonFormatter::Number(float value)
{
    return std::isfinite(value) ? DecimalText::Shortest(value) : "null";
}

template<typename Values>
std::string JsonFormatter::Array(const Values& values)
{
    std::string text = "[";
    for (std::size_t i = 0; i < values.size(); ++i) {
        text += (i ? ", " : "") + Number(values[i]);
    }
    return text + "]";
}

std::string JsonFormatter::SampleObject(const Sample& sample)
{
    std::string text = "    {\"id\": " + Quoted(sample.id) + ",\n     \"spectrum\": " + Array(sample.spectrum);
    if (sample.xyz) {
        text += ",\n     \"xyz\": " + Array(*sample.xyz);
    }
    if (sample.lab) {
        text += ",\n     \"lab\": " + Array(*sample.lab);
    }
    if (sample.densities) {
        const auto& d = sample.densities->values;
        text += ",\n     \"densities\": {\"cyan\": " + Number(d[0]) + ", \"magenta\": " + Number(d[1]) +
            ", \"yellow\": " + Number(d[2]) + ", \"black\": " + Number(d[3]) +
            ", \"auto\": " + Quoted(sample.densities->autoFilter) + "}";
    }
    if (sample.chosen) {
        text += ",\n     \"colour\": " + Array(*sample.chosen);
    }
    return text + "}";
}

void JsonFormatter::Write(std::ostream& out, const MeasurementReport& report) const
{
    out << "{\n  \"mode\": " << Quoted(report.mode) << ",\n  \"illuminant\": " << Quoted(report.illuminant)
        << ",\n  \"observer\": " << Quoted(report.observer) << ",\n  \"colourSpace\": " << Quoted(report.colourSpace);
    if (!report.filter.empty()) {
        out << ",\n  \"filter\": " << Quoted(report.filter) << ",\n  \"measurementCondition\": "
            << (report.measurementCondition.empty() ? "null" : Quoted(report.measurementCondition));
    }
    out << ",\n  \"wavelengths\": {\"first\": " << FirstWavelength << ", \"step\": " << WavelengthStep
        << ", \"count\": " << SpectrumPoints << "},\n  \"notes\": {";
    for (std::size_t i = 0; i < report.notes.size(); ++i) {
        out << (i ? ", " : "") << Quoted(report.notes[i].first) << ": " << Quoted(report.notes[i].second);
    }
    out << "},\n  \"samples\": [";
    for (std::size_t i = 0; i < report.samples.size(); ++i) {
        out << (i ? ",\n" : "\n") << SampleObject(report.samples[i]);
    }
    out << (report.samples.empty() ? "]\n}\n" : "\n  ]\n}\n");
}

}
