#pragma once
// What lies under the aperture, as the `place` command names it:
//   tile                 the instrument's own white tile (its record 1100); the state after start
//   black                a black trap, reflectance 0
//   sample:<name>        tcs01 ... tcs14 (the CIE test colour samples), grey10 ... grey90
//   reflectance:<file>   36 reflectance factors, 380..730 nm
//   emission:<file>      36 radiances in mW/(sr m^2 nm)
//   display:<name>       white, red, green, blue
//   light:<name>         a, daylight, fluorescent
// A file holds 36 values separated by blanks, commas or line ends.

#include <string>

#include "sim/SpectralTables.h"

namespace OrbelSim {

enum class TargetKind { Reflectance, Emission };

struct Target {
    std::string description;
    TargetKind kind = TargetKind::Reflectance;
    Spectrum36 values{};
};

class TargetCatalog {
public:
    // Raises std::invalid_argument with a text for a person.
    static Target Parse(const std::string& spec, const Spectrum36& tile);
    static Target Sample(const std::string& name);
    // The values of a text: blanks, commas and line ends separate them.
    static std::vector<double> ParseNumbers(const std::string& text, const std::string& where);
    static Spectrum36 ReadSpectrumFile(const std::string& path);

private:
    static Target Named(const std::vector<NamedSpectrum>& table, const std::string& kind, const std::string& name,
        TargetKind targetKind);
};

} // namespace OrbelSim
