#pragma once
// Spectra read one at a time from a CGATS file (SPEC_380 or nm380 columns, any number of tables),
// a CSV file with a header row of the same names, or JSON objects that hold a "spectrum" array.
// Only 380 to 730 nm in 10 nm steps is taken; another grid is refused with the grid named.

#include <istream>
#include <string>
#include <vector>

#include "tools/Spectrum.h"

namespace OrbelCli {

class SpectrumReader {
public:
    struct Record {
        std::string name;
        Spectrum spectrum{};
    };

    SpectrumReader(std::istream& in, std::string origin);
    // False at the end. Throws a CliError (invalid argument) naming the origin and the line.
    bool Next(Record& record);

private:
    bool NextCgats(Record& record);
    bool NextCsv(Record& record);
    bool NextJson(Record& record);
    bool ReadLine();
    void TakeColumns(const std::vector<std::string>& names);
    void Fill(const std::vector<std::string>& cells, Record& record) const;
    [[noreturn]] void Fail(const std::string& what) const;

    std::istream& in;
    std::string origin;
    std::string line;
    std::size_t lineNumber = 0;
    char shape = 0;
    // The first line, read to tell CSV from CGATS, is read again.
    bool pending = false;
    bool inFormat = false;
    bool inData = false;
    std::vector<std::string> words;
    std::vector<std::string> formatNames;
    std::size_t nameColumn = 0;
    bool hasName = false;
    std::vector<std::size_t> spectrumColumns;
    std::size_t count = 0;
};

}
