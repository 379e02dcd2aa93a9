#include "tools/SvgPlot.h"

#include <algorithm>
#include <cmath>
#include <fstream>

#include "tools/DecimalText.h"

namespace OrbelCli {

namespace {

constexpr double Width = 900;
constexpr double Height = 520;
constexpr double Left = 70;
constexpr double Right = 660;
constexpr double Upper = 50;
constexpr double Lower = 460;
constexpr int LastWavelength = FirstWavelength + (SpectrumPoints - 1) * WavelengthStep;
constexpr int ValueTicks = 5;

std::string N(double value)
{
    return DecimalText::Format(value, 1);
}

}

SvgPlot::SvgPlot(std::string title, std::string valueLabel) : title(std::move(title)), valueLabel(std::move(valueLabel))
{
}

void SvgPlot::Add(const std::string& name, const Spectrum& spectrum)
{
    lines.emplace_back(name, spectrum);
}

// The value axis ends at a round number above the highest value: reflectance mostly at 1.
double SvgPlot::Top() const
{
    float highest = 0.0f;
    for (const auto& line : lines) {
        for (float value : line.second) {
            if (std::isfinite(value)) {
                highest = std::max(highest, value);
            }
        }
    }
    if (highest <= 0.0f) {
        return 1.0;
    }
    const double magnitude = std::pow(10.0, std::floor(std::log10(highest)));
    for (double step : {1.0, 2.0, 2.5, 5.0, 10.0}) {
        if (step * magnitude >= highest) {
            return step * magnitude;
        }
    }
    return 10.0 * magnitude;
}

double SvgPlot::X(double wavelength) const
{
    return Left + (wavelength - FirstWavelength) / (LastWavelength - FirstWavelength) * (Right - Left);
}

double SvgPlot::Y(double value, double top) const
{
    return Lower - std::clamp(value / top, 0.0, 1.0) * (Lower - Upper);
}

std::string SvgPlot::Escaped(const std::string& text)
{
    std::string escaped;
    for (char c : text) {
        switch (c) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            escaped += c;
        }
    }
    return escaped;
}

std::string SvgPlot::Colour(std::size_t index)
{
    static const char* const palette[] = {"#1f77b4", "#d62728", "#2ca02c", "#ff7f0e", "#9467bd", "#8c564b", "#e377c2",
        "#7f7f7f", "#bcbd22", "#17becf", "#393b79", "#637939"};
    return palette[index % std::size(palette)];
}

void SvgPlot::WriteAxes(std::ostream& out, double top) const
{
    out << "  <g stroke=\"#cccccc\" stroke-width=\"1\">\n";
    for (int wavelength = 400; wavelength <= LastWavelength; wavelength += 50) {
        out << "    <line x1=\"" << N(X(wavelength)) << "\" y1=\"" << N(Upper) << "\" x2=\"" << N(X(wavelength))
            << "\" y2=\"" << N(Lower) << "\"/>\n";
    }
    for (int tick = 1; tick <= ValueTicks; ++tick) {
        const double y = Y(top * tick / ValueTicks, top);
        out << "    <line x1=\"" << N(Left) << "\" y1=\"" << N(y) << "\" x2=\"" << N(Right) << "\" y2=\"" << N(y)
            << "\"/>\n";
    }
    out << "  </g>\n";
    out << "  <g stroke=\"#000000\" stroke-width=\"1.5\">\n    <line x1=\"" << N(Left) << "\" y1=\"" << N(Lower)
        << "\" x2=\"" << N(Right) << "\" y2=\"" << N(Lower) << "\"/>\n    <line x1=\"" << N(Left) << "\" y1=\""
        << N(Upper) << "\" x2=\"" << N(Left) << "\" y2=\"" << N(Lower) << "\"/>\n  </g>\n";
    out << "  <g font-family=\"sans-serif\" font-size=\"12\" fill=\"#000000\">\n";
    for (int wavelength = FirstWavelength; wavelength <= LastWavelength; wavelength += 50) {
        out << "    <text x=\"" << N(X(wavelength)) << "\" y=\"" << N(Lower + 18) << "\" text-anchor=\"middle\">"
            << wavelength << "</text>\n";
    }
    for (int tick = 0; tick <= ValueTicks; ++tick) {
        const double value = top * tick / ValueTicks;
        out << "    <text x=\"" << N(Left - 8) << "\" y=\"" << N(Y(value, top) + 4) << "\" text-anchor=\"end\">"
            << DecimalText::Format(value, top < 5 ? 2 : 0) << "</text>\n";
    }
    out << "    <text x=\"" << N((Left + Right) / 2) << "\" y=\"" << N(Lower + 40)
        << "\" text-anchor=\"middle\">wavelength (nm)</text>\n";
    out << "    <text x=\"18\" y=\"" << N((Upper + Lower) / 2) << "\" text-anchor=\"middle\" transform=\"rotate(-90 18 "
        << N((Upper + Lower) / 2) << ")\">" << Escaped(valueLabel) << "</text>\n";
    out << "    <text x=\"" << N((Left + Right) / 2) << "\" y=\"30\" text-anchor=\"middle\" font-size=\"16\">"
        << Escaped(title) << "</text>\n  </g>\n";
}

void SvgPlot::WriteLegend(std::ostream& out) const
{
    const double rowHeight = std::min(18.0, (Lower - Upper) / std::max<std::size_t>(lines.size(), 1));
    out << "  <g font-family=\"sans-serif\" font-size=\"" << N(std::min(12.0, rowHeight - 2)) << "\">\n";
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const double y = Upper + rowHeight * (i + 0.5);
        out << "    <line x1=\"" << N(Right + 20) << "\" y1=\"" << N(y) << "\" x2=\"" << N(Right + 44) << "\" y2=\""
            << N(y) << "\" stroke=\"" << Colour(i) << "\" stroke-width=\"2\"/>\n";
        out << "    <text x=\"" << N(Right + 50) << "\" y=\"" << N(y + 4) << "\">" << Escaped(lines[i].first)
            << "</text>\n";
    }
    out << "  </g>\n";
}

void SvgPlot::Write(std::ostream& out) const
{
    const double top = Top();
    out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << N(Width) << "\" height=\"" << N(Height)
        << "\" viewBox=\"0 0 " << N(Width) << ' ' << N(Height) << "\">\n"
        << "  <rect x=\"0\" y=\"0\" width=\"" << N(Width) << "\" height=\"" << N(Height) << "\" fill=\"#ffffff\"/>\n";
    WriteAxes(out, top);
    out << "  <g fill=\"none\" stroke-width=\"2\">\n";
    for (std::size_t i = 0; i < lines.size(); ++i) {
        out << "    <polyline stroke=\"" << Colour(i) << "\" points=\"";
        for (int point = 0; point < SpectrumPoints; ++point) {
            const float value = lines[i].second[point];
            out << (point ? " " : "") << N(X(FirstWavelength + point * WavelengthStep)) << ','
                << N(Y(std::isfinite(value) ? value : 0.0, top));
        }
        out << "\"/>\n";
    }
    out << "  </g>\n";
    WriteLegend(out);
    out << "</svg>\n";
}

bool SvgPlot::Save(const std::string& path) const
{
    std::ofstream file(path);
    Write(file);
    file.close();
    return bool(file);
}

}
