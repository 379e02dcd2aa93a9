#include "tools/CsvFormatter.h"

#include "tools/ReportColumns.h"

namespace OrbelCli {

std::string CsvFormatter::Quoted(const std::string& cell)
{
    if (cell.find_first_of(",\"\n") == std::string::npos) {
        return cell;
    }
    std::string quoted = "\"";
    for (char c : cell) {
        quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    }
    return quoted + "\"";
}

void CsvFormatter::Write(std::ostream& out, const MeasurementReport& report) const
{
    const ReportColumns columns(report);
    const auto writeLine = [&out](const std::vector<std::string>& cells) {
        for (std::size_t i = 0; i < cells.size(); ++i) {
            out << (i ? "," : "") << Quoted(cells[i]);
        }
        out << '\n';
    };
    writeLine(columns.Names());
    for (const Sample& sample : report.samples) {
        writeLine(columns.Values(sample));
    }
}

}
