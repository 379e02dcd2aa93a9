#include "tools/CgatsFormatter.h"

#include "tools/ReportColumns.h"

namespace OrbelCli {

CgatsFormatter::CgatsFormatter(std::string created) : created(std::move(created)) { }

// A value with blanks or quotes is quoted, the quotes inside doubled. A line break would end
// the set in the middle, so it becomes a blank.
std::string CgatsFormatter::Field(const std::string& value)
{
    if (!value.empty() && value.find_first_of(" \t\"\r\n") == std::string::npos) {
        return value;
    }
    std::string quoted = "\"";
    for (char c : value) {
        if (c == '"') {
            quoted += "\"\"";
        } else {
            quoted += c == '\r' || c == '\n' ? ' ' : c;
        }
    }
    return quoted + "\"";
}

void CgatsFormatter::Write(std::ostream& out, const MeasurementReport& report) const
{
    const ReportColumns columns(report);
    out << "CGATS.17\n";
    out << "ORIGINATOR\t\"orbel\"\n";
    out << "DESCRIPTOR\t\"" << report.mode << "\"\n";
    out << "CREATED\t\"" << created << "\"\n";
    out << "MEASUREMENT_SOURCE\t\"Illumination=" << report.illuminant << " ObserverAngle=" << report.observer;
    if (!report.measurementCondition.empty()) {
        out << " MeasurementCondition=" << report.measurementCondition;
    }
    out << "\"\n";
    if (!report.filter.empty()) {
        out << "FILTER\t" << Field(report.filter) << '\n';
    }
    for (const auto& [name, value] : report.notes) {
        out << "# " << name << ": " << value << '\n';
    }
    out << "NUMBER_OF_FIELDS\t" << columns.Names().size() << '\n';
    out << "BEGIN_DATA_FORMAT\n";
    for (std::size_t i = 0; i < columns.Names().size(); ++i) {
        out << (i ? "\t" : "") << columns.Names()[i];
    }
    out << "\nEND_DATA_FORMAT\n";
    out << "NUMBER_OF_SETS\t" << report.samples.size() << '\n';
    out << "BEGIN_DATA\n";
    for (const Sample& sample : report.samples) {
        const std::vector<std::string> values = columns.Values(sample);
        for (std::size_t i = 0; i < values.size(); ++i) {
            out << (i ? "\t" : "") << Field(values[i]);
        }
        out << '\n';
    }
    out << "END_DATA\n";
}

}
