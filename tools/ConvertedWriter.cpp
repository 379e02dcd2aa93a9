#include "tools/ConvertedWriter.h"

#include "cmetry/ConditionKey.h"
#include "tools/CsvFormatter.h"
#include "tools/DecimalText.h"
#include "tools/JsonFormatter.h"

namespace OrbelCli {

namespace {

constexpr int decimals = 4;

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

ConvertedWriter::ConvertedWriter(std::ostream& out, std::string format, bool withDensity, bool withDeltaE)
    : out(out), format(std::move(format)), withDensity(withDensity), withDeltaE(withDeltaE)
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
            out << (written ? ",\n" : "\n") << " {\"id\": " << JsonFormatter::Quoted(block.names[i]) << ", \"xyz\": ["
                << Numbers(&block.xyz[3 * i], 3, ", ") << "], \"lab\": [" << Numbers(&block.lab[3 * i], 3, ", ") << "]";
            out << (withDensity ? ", \"density\": " + Numbers(&block.density[i], 1, "") : "");
            out << (withDeltaE ? ", \"deltaE\": " + Numbers(&block.deltaE[i], 1, "") : "") << "}";
        } else {
            const std::string separator = format == "csv" ? "," : " ";
            out << (format == "csv" ? CsvFormatter::Quoted(block.names[i]) : CgatsQuoted(block.names[i])) << separator
                << Numbers(&block.xyz[3 * i], 3, separator) << separator << Numbers(&block.lab[3 * i], 3, separator)
                << (withDensity ? separator + Numbers(&block.density[i], 1, "") : "")
                << (withDeltaE ? separator + Numbers(&block.deltaE[i], 1, "") : "") << '\n';
        }
        ++written;
    }
}

void ConvertedWriter::End()
{
    out << (format == "cgats" ? "END_DATA\n" : format == "json" ? (written ? "\n]\n" : "]\n") : "");
}

std::vector<std::string> ConvertedWriter::Fields() const
{
    std::vector<std::string> fields{"SAMPLE_NAME", "XYZ_X", "XYZ_Y", "XYZ_Z", "LAB_L", "LAB_A", "LAB_B"};
    if (withDensity) {
        fields.emplace_back("DENSITY");
    }
    if (withDeltaE) {
        fields.emplace_back("LAB_DE");
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
