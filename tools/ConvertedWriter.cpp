#include "tools/ConvertedWriter.h"

#include "cmetry/ConditionKey.h"
#include "tools/CsvFormatter.h"
#include "tools/DecimalText.h"
#include "tools/JsonFormatter.h"
#include "tools/ReportColumns.h"

namespace OrbelCli {

namespace {

constexpr int decimals = 4;
// Duv is read to 0.0001 and so written to one digit more.
constexpr int lightDecimals = 5;
constexpr std::size_t specialIndices = std::tuple_size_v<decltype(CMetry::ColorRendering::Result::special)>;

// A CGATS text: in quotes, a quote in it doubled.
std::string CgatsQuoted(const std::string& text)
{
    std::string quoted = "\"";
    for (char c : text) {
        quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    }
    return quoted + "\"";
}

}

ConvertedWriter::ConvertedWriter(std::ostream& out, std::string format, Columns columns)
    : out(out), format(std::move(format)), columns(std::move(columns))
{
}

void ConvertedWriter::Begin(const CMetry::HvMeasureConditions& conditions)
{
    const std::vector<std::string> fields = Fields();
    if (format == "cgats") {
        out << "CGATS.17\nORIGINATOR \"orbel convert\"\nILLUMINATION_NAME \""
            << conditions.GetCondition(CMetry::ConditionKey::illumination).ToStdString() << "\"\nOBSERVER \""
            << conditions.GetCondition(CMetry::ConditionKey::observer).ToStdString() << "\"\n";
        out << "NUMBER_OF_FIELDS " << fields.size() << "\nBEGIN_DATA_FORMAT\n";
        Line(fields, ' ');
        out << "END_DATA_FORMAT\nBEGIN_DATA\n";
    } else if (format == "csv") {
        Line(fields, ',');
    } else {
        out << "[";
    }
}

void ConvertedWriter::Write(const Block& block)
{
    for (std::size_t i = 0; i < block.names.size(); ++i) {
        if (format == "json") {
            WriteJson(block, i);
        } else {
            WriteRow(block, i);
        }
        ++written;
    }
}

void ConvertedWriter::WriteJson(const Block& block, std::size_t i)
{
    out << (written ? ",\n" : "\n") << " {\"id\": " << JsonFormatter::Quoted(block.names[i]) << ", \"xyz\": ["
        << Numbers(&block.xyz[3 * i], 3, ", ") << "], \"lab\": [" << Numbers(&block.lab[3 * i], 3, ", ") << "]";
    out << (columns.colourSpace ? ", \"colour\": [" + Numbers(&block.chosen[3 * i], 3, ", ") + "]" : "");
    out << (columns.density ? ", \"density\": " + Numbers(&block.density[i], 1, "") : "");
    out << (columns.deltaE ? ", \"deltaE\": " + Numbers(&block.deltaE[i], 1, "") : "");
    out << (columns.light ? JsonLight(block.light[i]) : "");
    out << "}";
}

void ConvertedWriter::WriteRow(const Block& block, std::size_t i)
{
    const std::string separator = format == "csv" ? "," : " ";
    out << (format == "csv" ? CsvFormatter::Quoted(block.names[i]) : CgatsQuoted(block.names[i])) << separator
        << Numbers(&block.xyz[3 * i], 3, separator) << separator << Numbers(&block.lab[3 * i], 3, separator)
        << (columns.colourSpace ? separator + Numbers(&block.chosen[3 * i], 3, separator) : "")
        << (columns.density ? separator + Numbers(&block.density[i], 1, "") : "")
        << (columns.deltaE ? separator + Numbers(&block.deltaE[i], 1, "") : "");
    if (columns.light) {
        for (const std::string& cell : LightCells(block.light[i])) {
            out << separator << cell;
        }
    }
    out << '\n';
}

// CCT, Duv, Ra and R1 to R14; where the light has none, an empty CSV cell or an empty CGATS text.
std::vector<std::string> ConvertedWriter::LightCells(const std::optional<CMetry::ColorRendering::Result>& light) const
{
    if (!light) {
        return std::vector<std::string>(3 + specialIndices, format == "csv" ? "" : "\"\"");
    }
    std::vector<std::string> cells{DecimalText::Format(light->temperature, 1),
        DecimalText::Format(light->duv, lightDecimals), DecimalText::Format(light->ra, 1)};
    for (double special : light->special) {
        cells.push_back(DecimalText::Format(special, 1));
    }
    return cells;
}

std::string ConvertedWriter::JsonLight(const std::optional<CMetry::ColorRendering::Result>& light) const
{
    if (!light) {
        return ", \"cct\": null, \"duv\": null, \"ra\": null, \"r\": null";
    }
    const std::vector<std::string> cells = LightCells(light);
    std::string special;
    for (std::size_t index = 3; index < cells.size(); ++index) {
        special += (index == 3 ? "" : ", ") + cells[index];
    }
    return ", \"cct\": " + cells[0] + ", \"duv\": " + cells[1] + ", \"ra\": " + cells[2] + ", \"r\": [" + special + "]";
}

void ConvertedWriter::End()
{
    out << (format == "cgats" ? "END_DATA\n" : format == "json" ? (written ? "\n]\n" : "]\n") : "");
}

std::vector<std::string> ConvertedWriter::Fields() const
{
    std::vector<std::string> fields{"SAMPLE_NAME", "XYZ_X", "XYZ_Y", "XYZ_Z", "LAB_L", "LAB_A", "LAB_B"};
    if (columns.colourSpace) {
        const std::vector<std::string> chosen = ReportColumns::ChannelFields(*columns.colourSpace);
        fields.insert(fields.end(), chosen.begin(), chosen.end());
    }
    if (columns.density) {
        fields.emplace_back("DENSITY");
    }
    if (columns.deltaE) {
        fields.emplace_back("LAB_DE");
    }
    if (columns.light) {
        fields.insert(fields.end(), {"CCT", "DUV", "RA"});
        for (std::size_t index = 1; index <= specialIndices; ++index) {
            // Appended piece by piece: GCC 12 at -O3 sees a false overlap (-Wrestrict) in "R" + number.
            fields.push_back(std::string("R").append(std::to_string(index)));
        }
    }
    return fields;
}

void ConvertedWriter::Line(const std::vector<std::string>& cells, char separator)
{
    for (std::size_t i = 0; i < cells.size(); ++i) {
        out << (i ? std::string(1, separator) : "") << cells[i];
    }
    out << '\n';
}

std::string ConvertedWriter::Numbers(const float* values, std::size_t count, const std::string& separator)
{
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        text += (i ? separator : "") + DecimalText::Format(values[i], decimals);
    }
    return text;
}

}
