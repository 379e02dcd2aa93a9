#include "tools/SpectrumFile.h"

#include <cmath>
#include <fstream>
#include <sstream>
#include <string_view>

#include "orbel.h"
#include "tools/CliError.h"
#include "tools/DecimalText.h"

namespace OrbelCli {

namespace {

// Some editors begin a text file with the byte-order mark of UTF-8.
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

}

Spectrum SpectrumFile::Read(const std::string& path)
{
    std::ifstream file(path);
    if (!file) {
        throw CliError(OB_InvalidArgument, "can't read the spectrum file " + path);
    }
    std::stringstream text;
    text << file.rdbuf();
    return Parse(text.str(), path);
}

Spectrum SpectrumFile::Parse(const std::string& text, const std::string& origin)
{
    Spectrum spectrum{};
    std::size_t count = 0;
    std::size_t position = text.starts_with(byteOrderMark) ? byteOrderMark.size() : 0;
    while ((position = text.find_first_not_of(" \t\r\n,", position)) != std::string::npos) {
        const std::size_t end = text.find_first_of(" \t\r\n,", position);
        const std::string word = text.substr(position, end - position);
        const auto value = DecimalText::Parse(word);
        if (!value || !std::isfinite(*value)) {
            throw CliError(OB_InvalidArgument, origin + ": '" + word + "' is not a number");
        }
        if (count < spectrum.size()) {
            spectrum[count] = static_cast<float>(*value);
        }
        ++count;
        position = end;
    }
    if (count != spectrum.size()) {
        throw CliError(OB_InvalidArgument,
            origin + ": a spectrum has 36 values (380 to 730 nm), this one " + std::to_string(count));
    }
    return spectrum;
}

std::string SpectrumFile::Text(const Spectrum& spectrum)
{
    std::string text;
    for (std::size_t i = 0; i < spectrum.size(); ++i) {
        // Appended piece by piece: GCC 12 at -O3 sees a false overlap (-Wrestrict) in " " + value.
        if (i) {
            text += ' ';
        }
        text += DecimalText::Shortest(spectrum[i]);
    }
    return text + "\n";
}

void SpectrumFile::Write(const std::string& path, const Spectrum& spectrum)
{
    std::ofstream file(path);
    file << Text(spectrum);
    file.close();
    if (!file) {
        throw CliError(OB_InvalidArgument, "can't write the spectrum file " + path);
    }
}

}
