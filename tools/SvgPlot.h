#pragma once
// Draws spectra as an SVG picture: axes with wavelength (380 to 730 nm) and value, one line per
// sample, a legend.

#include <ostream>
#include <string>
#include <vector>

#include "tools/Sample.h"

namespace OrbelCli {

class SvgPlot {
public:
    SvgPlot(std::string title, std::string valueLabel);
    void Add(const std::string& name, const Spectrum& spectrum);
    void Write(std::ostream& out) const;
    // Writes the picture to a file; false if the file can't be written.
    bool Save(const std::string& path) const;

private:
    double Top() const;
    double X(double wavelength) const;
    double Y(double value, double top) const;
    void WriteAxes(std::ostream& out, double top) const;
    void WriteLegend(std::ostream& out) const;
    static std::string Escaped(const std::string& text);
    static std::string Colour(std::size_t index);

    std::string title;
    std::string valueLabel;
    std::vector<std::pair<std::string, Spectrum>> lines;
};

}
