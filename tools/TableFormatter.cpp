#include "tools/TableFormatter.h"

#include <algorithm>

#include "tools/DecimalText.h"
#include "tools/TextTable.h"

namespace OrbelCli {

namespace {

void AddTriple(std::vector<std::string>& cells, const std::optional<Triple>& triple, int decimals)
{
    for (int channel = 0; channel < 3; ++channel) {
        cells.push_back(triple ? DecimalText::Format((*triple)[channel], decimals) : "-");
    }
}

}

TableFormatter::TableFormatter(int spectrumStep) : spectrumStep(spectrumStep) { }

void TableFormatter::Write(std::ostream& out, const MeasurementReport& report) const
{
    out << report.mode << ", illuminant " << report.illuminant << ", observer " << report.observer << ", "
        << report.samples.size() << (report.samples.size() == 1 ? " sample\n" : " samples\n");
    if (!report.samples.empty()) {
        WriteColourTable(out, report);
        if (spectrumStep > 0) {
            WriteSpectrumTable(out, report);
        }
    }
    WriteNotes(out, report);
}

void TableFormatter::WriteColourTable(std::ostream& out, const MeasurementReport& report)
{
    const auto any = [&](auto part) {
        return std::any_of(
            report.samples.begin(), report.samples.end(), [&](const Sample& s) { return bool(s.*part); });
    };
    const bool lab = any(&Sample::lab);
    const bool xyz = any(&Sample::xyz);
    const bool densities = any(&Sample::densities);
    const bool chosen = any(&Sample::chosen);
    std::vector<std::string> header{"sample"};
    if (lab) {
        header.insert(header.end(), {"L*", "a*", "b*"});
    }
    if (xyz) {
        header.insert(header.end(), {"X", "Y", "Z"});
    }
    if (densities) {
        header.insert(header.end(), {"D cyan", "D magenta", "D yellow", "D black", "auto filter"});
    }
    if (chosen) {
        header.insert(header.end(), {report.colourSpace + " 1", report.colourSpace + " 2", report.colourSpace + " 3"});
    }
    TextTable table(header);
    for (const Sample& sample : report.samples) {
        std::vector<std::string> cells{sample.id};
        if (lab) {
            AddTriple(cells, sample.lab, 2);
        }
        if (xyz) {
            AddTriple(cells, sample.xyz, 2);
        }
        if (densities) {
            for (int filter = 0; filter < 4; ++filter) {
                cells.push_back(sample.densities ? DecimalText::Format(sample.densities->values[filter], 3) : "-");
            }
            cells.push_back(sample.densities ? sample.densities->autoFilter : "-");
        }
        if (chosen) {
            AddTriple(cells, sample.chosen, 3);
        }
        table.AddRow(cells);
    }
    out << '\n';
    table.Write(out);
}

void TableFormatter::WriteSpectrumTable(std::ostream& out, const MeasurementReport& report) const
{
    out << '\n';
    if (report.samples.size() > MaxSpectrumColumns) {
        out << "  (" << report.samples.size()
            << " spectra: --format csv, json or cgats lists them, --plot draws them)\n";
        return;
    }
    std::vector<std::string> header{"nm"};
    for (const Sample& sample : report.samples) {
        header.push_back(sample.id);
    }
    TextTable table(header);
    for (int point = 0; point < SpectrumPoints; point += std::max(1, spectrumStep / WavelengthStep)) {
        std::vector<std::string> cells{std::to_string(FirstWavelength + point * WavelengthStep)};
        for (const Sample& sample : report.samples) {
            cells.push_back(DecimalText::Format(sample.spectrum[point], 4));
        }
        table.AddRow(cells);
    }
    table.Write(out);
}

void TableFormatter::WriteNotes(std::ostream& out, const MeasurementReport& report)
{
    std::size_t width = 0;
    for (const auto& note : report.notes) {
        width = std::max(width, note.first.size());
    }
    if (!report.notes.empty()) {
        out << '\n';
    }
    for (const auto& [name, value] : report.notes) {
        out << "  " << name << ':' << std::string(width - name.size() + 1, ' ') << value << '\n';
    }
}

}
