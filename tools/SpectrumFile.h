#pragma once
// A spectrum in a text file: 36 values, 380 to 730 nm, separated by blanks, commas or line ends
// (the form that orbel-sim reads as well).

#include <string>

#include "tools/Sample.h"

namespace OrbelCli {

class SpectrumFile {
public:
    // Throws a CliError (invalid argument) naming the file and what is wrong.
    static Spectrum Read(const std::string& path);
    static Spectrum Parse(const std::string& text, const std::string& origin);
    static std::string Text(const Spectrum& spectrum);
    static void Write(const std::string& path, const Spectrum& spectrum);
};

}
