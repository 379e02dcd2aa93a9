#include "sim/Strip.h"

#include <cmath>
#include <fstream>
#include <limits>
#include <stdexcept>

namespace OrbelSim {

namespace {

constexpr int smearSteps = 5;

// Area of the part of a disc of radius r that lies left of the line x = u (centre at 0).
double DiscAreaLeftOf(double u, double r)
{
    if (u <= -r) {
        return 0.0;
    }
    if (u >= r) {
        return std::acos(-1.0) * r * r;
    }
    return r * r * std::acos(-u / r) + u * std::sqrt(r * r - u * u);
}

} // namespace

Strip::Strip(std::string description, std::vector<Patch> patches)
    : description(std::move(description)), patches(std::move(patches))
{
}

Strip Strip::Parse(const std::string& spec)
{
    const std::string prefix = "builtin:";
    if (spec.compare(0, prefix.size(), prefix) == 0) {
        return Builtin(spec.substr(prefix.size()));
    }
    return FromFile(spec);
}

Strip Strip::Builtin(const std::string& name)
{
    std::string known;
    for (const NamedStrip& strip : SpectralTables::Strips()) {
        if (strip.name == name) {
            std::vector<Patch> patches;
            for (const StripPatch& patch : strip.patches) {
                patches.push_back({patch.widthMm, {patch.name, TargetKind::Reflectance, patch.reflectance}});
            }
            return Strip("builtin:" + name, std::move(patches));
        }
        known += (known.empty() ? "" : ", ") + strip.name;
    }
    throw std::invalid_argument("unknown built-in strip '" + name + "'; known: " + known);
}

Strip Strip::FromFile(const std::string& path)
{
    std::ifstream in(path);
    if (!in) {
        throw std::invalid_argument("unable to read strip file " + path);
    }
    std::vector<Patch> patches;
    std::string line;
    int lineNumber = 0;
    while (std::getline(in, line)) {
        ++lineNumber;
        const std::string where = path + " line " + std::to_string(lineNumber);
        const std::size_t start = line.find_first_not_of(" \t\r");
        if (start == std::string::npos || line[start] == '#') {
            continue;
        }
        const std::vector<double> values = TargetCatalog::ParseNumbers(line, where);
        if (values.size() != 37) {
            throw std::invalid_argument(
                where + ": expected a width and 36 values, found " + std::to_string(values.size()) + " numbers");
        }
        if (!(values[0] > 0.0)) {
            throw std::invalid_argument(where + ": the width must be above 0 mm");
        }
        Patch patch{values[0], {"patch " + std::to_string(patches.size() + 1), TargetKind::Reflectance, {}}};
        std::copy(values.begin() + 1, values.end(), patch.target.values.begin());
        patches.push_back(patch);
    }
    if (patches.empty()) {
        throw std::invalid_argument("strip file " + path + " holds no patches");
    }
    return Strip(path, std::move(patches));
}

Strip Strip::Uniform(const Target& target)
{
    return Strip("uniform " + target.description, {{uniformLength / 2, target}, {uniformLength / 2, target}});
}

double Strip::Travel() const
{
    double travel = 0.0;
    for (std::size_t i = 0; i + 1 < patches.size(); ++i) {
        travel += (patches[i].widthMm + patches[i + 1].widthMm) / 2.0;
    }
    return travel;
}

std::vector<double> Strip::SharesAt(double centre) const
{
    const double r = apertureDiameter / 2.0;
    const double disc = std::acos(-1.0) * r * r;
    std::vector<double> shares(patches.size(), 0.0);
    double left = 0.0;
    for (std::size_t i = 0; i < patches.size(); ++i) {
        const double right = left + patches[i].widthMm;
        const double from = i == 0 ? -std::numeric_limits<double>::infinity() : left;
        const double to = i + 1 == patches.size() ? std::numeric_limits<double>::infinity() : right;
        shares[i] = (DiscAreaLeftOf(to - centre, r) - DiscAreaLeftOf(from - centre, r)) / disc;
        left = right;
    }
    return shares;
}

std::vector<double> Strip::Shares(double travelled, double smear) const
{
    const double start = patches.front().widthMm / 2.0;
    std::vector<double> shares(patches.size(), 0.0);
    for (int step = 0; step < smearSteps; ++step) {
        const double centre = start + travelled + smear * (step + 0.5) / smearSteps;
        const std::vector<double> at = SharesAt(centre);
        for (std::size_t i = 0; i < shares.size(); ++i) {
            shares[i] += at[i] / smearSteps;
        }
    }
    return shares;
}

} // namespace OrbelSim
