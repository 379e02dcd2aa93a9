#include "sim/Target.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace OrbelSim {

namespace {

const char* const targetHelp =
    "expected tile, black, sample:<name>, reflectance:<file>, emission:<file>, display:<name> or light:<name>";

std::string AfterPrefix(const std::string& spec, const std::string& prefix)
{
    return spec.compare(0, prefix.size(), prefix) == 0 ? spec.substr(prefix.size()) : std::string();
}

bool HasPrefix(const std::string& spec, const std::string& prefix)
{
    return spec.compare(0, prefix.size(), prefix) == 0;
}

std::string Names(const std::vector<NamedSpectrum>& table)
{
    std::string names;
    for (const NamedSpectrum& entry : table) {
        names += (names.empty() ? "" : ", ") + entry.name;
    }
    return names;
}

} // namespace

std::vector<double> TargetCatalog::ParseNumbers(const std::string& text, const std::string& where)
{
    std::string spaced = text;
    for (char& c : spaced) {
        if (c == ',') {
            c = ' ';
        }
    }
    std::istringstream in(spaced);
    std::vector<double> values;
    std::string word;
    while (in >> word) {
        std::size_t used = 0;
        double value = 0.0;
        try {
            value = std::stod(word, &used);
        } catch (const std::exception&) {
            used = 0;
        }
        if (used != word.size()) {
            throw std::invalid_argument(where + ": '" + word + "' is not a number");
        }
        values.push_back(value);
    }
    return values;
}

Spectrum36 TargetCatalog::ReadSpectrumFile(const std::string& path)
{
    std::ifstream in(path);
    if (!in) {
        throw std::invalid_argument("unable to read " + path);
    }
    std::stringstream text;
    text << in.rdbuf();
    const std::vector<double> values = ParseNumbers(text.str(), path);
    if (values.size() != 36) {
        throw std::invalid_argument(
            path + " holds " + std::to_string(values.size()) + " values, not 36 (380 to 730 nm)");
    }
    Spectrum36 spectrum{};
    std::copy(values.begin(), values.end(), spectrum.begin());
    return spectrum;
}

Target TargetCatalog::Named(
    const std::vector<NamedSpectrum>& table, const std::string& kind, const std::string& name, TargetKind targetKind)
{
    for (const NamedSpectrum& entry : table) {
        if (entry.name == name) {
            return {kind + ":" + name, targetKind, entry.values};
        }
    }
    throw std::invalid_argument("unknown " + kind + " '" + name + "'; known: " + Names(table));
}

Target TargetCatalog::Sample(const std::string& name)
{
    for (int level = 10; level <= 90; level += 10) {
        if (name == "grey" + std::to_string(level)) {
            Target grey{"sample:" + name, TargetKind::Reflectance, {}};
            grey.values.fill(level / 100.0);
            return grey;
        }
    }
    try {
        return Named(SpectralTables::TestColourSamples(), "sample", name, TargetKind::Reflectance);
    } catch (const std::invalid_argument&) {
        throw std::invalid_argument("unknown sample '" + name + "'; known: tcs01 ... tcs14, grey10 ... grey90");
    }
}

Target TargetCatalog::Parse(const std::string& spec, const Spectrum36& tile)
{
    if (spec == "tile") {
        return {"tile", TargetKind::Reflectance, tile};
    }
    if (spec == "black") {
        return {"black", TargetKind::Reflectance, {}};
    }
    if (HasPrefix(spec, "sample:")) {
        return Sample(AfterPrefix(spec, "sample:"));
    }
    if (HasPrefix(spec, "reflectance:")) {
        return {spec, TargetKind::Reflectance, ReadSpectrumFile(AfterPrefix(spec, "reflectance:"))};
    }
    if (HasPrefix(spec, "emission:")) {
        return {spec, TargetKind::Emission, ReadSpectrumFile(AfterPrefix(spec, "emission:"))};
    }
    if (HasPrefix(spec, "display:")) {
        return Named(SpectralTables::Displays(), "display", AfterPrefix(spec, "display:"), TargetKind::Emission);
    }
    if (HasPrefix(spec, "light:")) {
        return Named(SpectralTables::Lights(), "light", AfterPrefix(spec, "light:"), TargetKind::Emission);
    }
    throw std::invalid_argument("unknown target '" + spec + "'; " + targetHelp);
}

} // namespace OrbelSim
