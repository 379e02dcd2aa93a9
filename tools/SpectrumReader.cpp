#include "tools/SpectrumReader.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "orbel.h"
#include "tools/CliError.h"

namespace OrbelCli {

namespace {

constexpr int firstWavelength = 380;
constexpr int wavelengthStep = 10;

std::optional<float> Number(const std::string& text)
{
    float value = 0;
    const char* begin = text.data() + (!text.empty() && text.front() == '+');
    const auto [end, error] = std::from_chars(begin, text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || begin == end) {
        return std::nullopt;
    }
    return value;
}

// The wavelength of a spectral column: SPEC_380, nm380 or nm_380 (any case) answer 380.
std::optional<int> Wavelength(const std::string& name)
{
    std::string upper;
    for (char c : name) {
        upper += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    }
    for (const std::string prefix : {"SPEC_", "NM_", "NM"}) {
        if (upper.starts_with(prefix) && upper.size() > prefix.size()) {
            int value = 0;
            const char* end = upper.data() + upper.size();
            const auto [stop, error] = std::from_chars(upper.data() + prefix.size(), end, value);
            return error == std::errc() && stop == end ? std::optional<int>(value) : std::nullopt;
        }
    }
    return std::nullopt;
}

// The columns that name a sample, the most telling first.
constexpr const char* nameColumns[] = {"SAMPLE_NAME", "name", "SAMPLE_ID", "id"};

std::size_t NameRank(const std::string& name)
{
    return std::find(std::begin(nameColumns), std::end(nameColumns), name) - std::begin(nameColumns);
}

std::string GridText(const std::vector<int>& wavelengths)
{
    if (wavelengths.empty()) {
        return "no spectral columns (SPEC_380 … SPEC_730 or nm380 … nm730)";
    }
    const int step = wavelengths.size() > 1 ? wavelengths[1] - wavelengths[0] : 0;
    return "spectra on " + std::to_string(wavelengths.front()) + "–" + std::to_string(wavelengths.back()) + " nm in " +
        std::to_string(step) + " nm steps (" + std::to_string(wavelengths.size()) +
        " values); only 380–730 nm in 10 nm steps is converted";
}

// Words of a line split at the separator (blanks when it is ' '), quoted words kept whole. The
// words' storage is reused from line to line: a file of a million spectra is mostly this.
void Split(const std::string& line, char separator, std::vector<std::string>& words)
{
    std::size_t count = 0;
    std::size_t i = 0;
    const bool blanks = separator == ' ';
    const auto isSeparator = [&](char c) { return blanks ? c == ' ' || c == '\t' : c == separator; };
    while (i <= line.size()) {
        while (blanks && i < line.size() && isSeparator(line[i])) {
            ++i;
        }
        if (blanks && i == line.size()) {
            break;
        }
        if (count == words.size()) {
            words.emplace_back();
        }
        std::string& word = words[count++];
        word.clear();
        if (i < line.size() && line[i] == '"') {
            for (++i; i < line.size() && !(line[i] == '"' && (i + 1 == line.size() || line[i + 1] != '"')); ++i) {
                i += line[i] == '"';
                word += line[i];
            }
            // Past the closing quote; a line may end inside the quotes.
            i = std::min(i + 1, line.size());
        }
        const std::size_t start = i;
        while (i < line.size() && !isSeparator(line[i])) {
            ++i;
        }
        word.append(line, start, i - start);
        ++i;
    }
    words.resize(count);
}

std::vector<std::string> Split(const std::string& line, char separator)
{
    std::vector<std::string> words;
    Split(line, separator, words);
    return words;
}

}

SpectrumReader::SpectrumReader(std::istream& in, std::string origin) : in(in), origin(std::move(origin)) { }

bool SpectrumReader::Next(Record& record)
{
    if (!shape) {
        in >> std::ws;
        const int first = in.peek();
        if (first == std::char_traits<char>::eof()) {
            Fail("holds no spectra");
        }
        shape = first == '{' || first == '[' ? 'j' : 'c';
        if (shape == 'c' && ReadLine()) {
            shape = line.find(',') != std::string::npos && line.find("BEGIN_DATA") == std::string::npos ? 's' : 'c';
            if (shape == 's') {
                TakeColumns(Split(line, ','));
            } else {
                pending = true;
            }
        }
    }
    const bool found = shape == 'j' ? NextJson(record) : shape == 's' ? NextCsv(record) : NextCgats(record);
    count += found;
    if (!found && count == 0) {
        Fail("holds no spectra");
    }
    return found;
}

bool SpectrumReader::ReadLine()
{
    if (pending) {
        pending = false;
        return true;
    }
    if (!std::getline(in, line)) {
        return false;
    }
    ++lineNumber;
    if (!line.empty() && line.back() == '\r') {
        line.pop_back();
    }
    return true;
}

bool SpectrumReader::NextCgats(Record& record)
{
    while (ReadLine()) {
        Split(line, ' ', words);
        if (words.empty() || line.front() == '#') {
            continue;
        }
        const std::string& first = words.front();
        if (first == "BEGIN_DATA_FORMAT") {
            inFormat = true;
            formatNames.clear();
        } else if (first == "END_DATA_FORMAT") {
            inFormat = false;
            TakeColumns(formatNames);
        } else if (inFormat) {
            formatNames.insert(formatNames.end(), words.begin(), words.end());
        } else if (first == "BEGIN_DATA") {
            inData = true;
        } else if (first == "END_DATA") {
            inData = false;
        } else if (inData) {
            Fill(words, record);
            return true;
        }
    }
    if (inFormat || inData) {
        Fail("ends inside a table");
    }
    return false;
}

bool SpectrumReader::NextCsv(Record& record)
{
    while (ReadLine()) {
        if (line.find_first_not_of(" \t") != std::string::npos) {
            Split(line, ',', words);
            Fill(words, record);
            return true;
        }
    }
    return false;
}

void SpectrumReader::TakeColumns(const std::vector<std::string>& names)
{
    std::vector<int> wavelengths;
    spectrumColumns.clear();
    std::size_t bestRank = std::size(nameColumns);
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (const auto wavelength = Wavelength(names[i])) {
            wavelengths.push_back(*wavelength);
            spectrumColumns.push_back(i);
        } else if (NameRank(names[i]) < bestRank) {
            bestRank = NameRank(names[i]);
            nameColumn = i;
        }
    }
    hasName = bestRank < std::size(nameColumns);
    bool onGrid = wavelengths.size() == SpectrumPoints;
    for (std::size_t i = 0; onGrid && i < wavelengths.size(); ++i) {
        onGrid = wavelengths[i] == firstWavelength + wavelengthStep * static_cast<int>(i);
    }
    if (!onGrid) {
        Fail(GridText(wavelengths));
    }
}

void SpectrumReader::Fill(const std::vector<std::string>& cells, Record& record) const
{
    if (spectrumColumns.empty()) {
        Fail("has data before its format");
    }
    if (cells.size() <= spectrumColumns.back() || (hasName && cells.size() <= nameColumn)) {
        Fail("has a row with " + std::to_string(cells.size()) + " fields, too few for its format");
    }
    for (std::size_t i = 0; i < SpectrumPoints; ++i) {
        const auto value = Number(cells[spectrumColumns[i]]);
        if (!value) {
            Fail("'" + cells[spectrumColumns[i]] + "' is not a number");
        }
        record.spectrum[i] = *value;
    }
    record.name = hasName ? cells[nameColumn] : std::to_string(count + 1);
}

bool SpectrumReader::NextJson(Record& record)
{
    // The innermost object that holds a "spectrum" array is one spectrum; its "id" or "name" names it.
    struct Level {
        std::string name;
        std::vector<float> values;
        bool hasSpectrum = false;
    };
    std::vector<Level> levels;
    std::string key;
    std::string text;
    bool expectKey = false;
    for (char c; in.get(c);) {
        lineNumber += c == '\n';
        if (c == '"') {
            text.clear();
            for (char d; in.get(d) && d != '"';) {
                text += d == '\\' && in.get(d) ? d : d;
            }
            if (expectKey) {
                key = text;
            } else if (!levels.empty() && (key == "id" || key == "name")) {
                levels.back().name = text;
            }
        } else if (c == '{') {
            levels.emplace_back();
            expectKey = true;
        } else if (c == ',') {
            expectKey = !levels.empty();
        } else if (c == ':') {
            expectKey = false;
        } else if (c == '[' && !levels.empty() && key == "spectrum") {
            std::string numbers;
            std::getline(in, numbers, ']');
            for (const std::string& word : Split(numbers, ',')) {
                const std::string trimmed = Split(word, ' ').empty() ? "" : Split(word, ' ').front();
                const auto value = Number(trimmed);
                if (!value) {
                    Fail("'" + trimmed + "' is not a number");
                }
                levels.back().values.push_back(*value);
            }
            levels.back().hasSpectrum = true;
            key.clear();
        } else if (c == '}' && !levels.empty()) {
            Level level = std::move(levels.back());
            levels.pop_back();
            if (level.hasSpectrum) {
                if (level.values.size() != SpectrumPoints) {
                    Fail("has a spectrum of " + std::to_string(level.values.size()) +
                        " values; only 380–730 nm in 10 nm steps (36 values) is converted");
                }
                std::copy(level.values.begin(), level.values.end(), record.spectrum.begin());
                record.name = level.name.empty() ? std::to_string(count + 1) : level.name;
                return true;
            }
        }
    }
    return false;
}

void SpectrumReader::Fail(const std::string& what) const
{
    throw CliError(OB_InvalidArgument, origin + (lineNumber ? ":" + std::to_string(lineNumber) : "") + ": " + what);
}

}
