#include "tests/tools/CgatsReader.h"

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <stdexcept>

namespace OrbelCliTest {

// Words separated by blanks or tabs; a quoted word keeps its blanks and loses its quotes.
std::vector<std::string> CgatsReader::Words(const std::string& line)
{
    std::vector<std::string> words;
    std::size_t i = 0;
    while ((i = line.find_first_not_of(" \t\r", i)) != std::string::npos) {
        if (line[i] == '"') {
            std::string word;
            for (++i; i < line.size(); ++i) {
                if (line[i] == '"' && i + 1 < line.size() && line[i + 1] == '"') {
                    word += '"';
                    ++i;
                } else if (line[i] == '"') {
                    break;
                } else {
                    word += line[i];
                }
            }
            words.push_back(word);
            ++i;
        } else {
            const std::size_t end = line.find_first_of(" \t\r", i);
            words.push_back(line.substr(i, end - i));
            i = end;
        }
    }
    return words;
}

CgatsData CgatsReader::Read(const std::string& text)
{
    CgatsData data;
    std::istringstream lines(text);
    std::string line;
    std::getline(lines, data.signature);
    enum class Section { Header, Format, Data, Done } section = Section::Header;
    while (std::getline(lines, line)) {
        const std::vector<std::string> words = Words(line);
        if (words.empty() || words.front().front() == '#') {
            continue;
        }
        if (words.front() == "BEGIN_DATA_FORMAT" || words.front() == "BEGIN_DATA") {
            section = words.front() == "BEGIN_DATA" ? Section::Data : Section::Format;
        } else if (words.front() == "END_DATA_FORMAT") {
            section = Section::Header;
        } else if (words.front() == "END_DATA") {
            section = Section::Done;
        } else if (section == Section::Format) {
            data.fields.insert(data.fields.end(), words.begin(), words.end());
        } else if (section == Section::Data) {
            if (words.size() != data.fields.size()) {
                throw std::runtime_error("a set of " + std::to_string(words.size()) + " values");
            }
            data.sets.push_back(words);
        } else if (section == Section::Header && words.size() >= 2) {
            data.keywords[words[0]] = words[1];
        }
    }
    if (section != Section::Done) {
        throw std::runtime_error("no END_DATA");
    }
    if (std::to_string(data.fields.size()) != data.keywords["NUMBER_OF_FIELDS"] ||
        std::to_string(data.sets.size()) != data.keywords["NUMBER_OF_SETS"]) {
        throw std::runtime_error("the counts of the header disagree with the data");
    }
    return data;
}

}
