#include "tools/TextTable.h"

#include <algorithm>

namespace OrbelCli {

TextTable::TextTable(std::vector<std::string> header) : header(std::move(header)) { }

void TextTable::AddRow(std::vector<std::string> cells)
{
    cells.resize(header.size());
    rows.push_back(std::move(cells));
}

std::vector<std::size_t> TextTable::Widths() const
{
    std::vector<std::size_t> widths;
    for (const std::string& title : header) {
        widths.push_back(title.size());
    }
    for (const auto& row : rows) {
        for (std::size_t column = 0; column < row.size(); ++column) {
            widths[column] = std::max(widths[column], row[column].size());
        }
    }
    return widths;
}

bool TextTable::LooksNumeric(const std::string& cell)
{
    return !cell.empty() && cell.find_first_not_of("0123456789.-+e") == std::string::npos;
}

void TextTable::Write(std::ostream& out, const std::string& indent) const
{
    const std::vector<std::size_t> widths = Widths();
    // A title stands over its column as the column's first cell stands.
    const auto titleRight = [&](std::size_t column) { return !rows.empty() && LooksNumeric(rows.front()[column]); };
    const auto writeRow = [&](const std::vector<std::string>& cells, bool isTitle) {
        std::string line = indent;
        for (std::size_t column = 0; column < cells.size(); ++column) {
            const std::string padding(widths[column] - cells[column].size(), ' ');
            const bool right = isTitle ? titleRight(column) : LooksNumeric(cells[column]);
            line += right ? padding + cells[column] : cells[column] + padding;
            if (column + 1 < cells.size()) {
                line += "  ";
            }
        }
        line.erase(line.find_last_not_of(' ') + 1);
        out << line << '\n';
    };
    writeRow(header, true);
    std::vector<std::string> rule;
    for (std::size_t width : widths) {
        rule.emplace_back(width, '-');
    }
    writeRow(rule, true);
    for (const auto& row : rows) {
        writeRow(row, false);
    }
}

}
