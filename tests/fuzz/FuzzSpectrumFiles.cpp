// The spectrum files that the program reads: CGATS, CSV and JSON through the reader of many
// spectra, and the plain file of 36 values.
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

#include "tools/CliError.h"
#include "tools/SpectrumFile.h"
#include "tools/SpectrumReader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    std::istringstream in(text);
    OrbelCli::SpectrumReader reader(in, "fuzz");
    OrbelCli::SpectrumReader::Record record;
    try {
        while (reader.Next(record)) {
        }
    } catch (const OrbelCli::CliError&) {
        // A file that isn't right is refused with a message; only crashes count.
    }
    try {
        OrbelCli::SpectrumFile::Parse(text, "fuzz");
    } catch (const OrbelCli::CliError&) {
        // As above.
    }
    return 0;
}
