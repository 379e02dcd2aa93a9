#pragma once
// The strip that a scan is drawn across: patches in a row, each a width and a target. The hand
// starts with the aperture's centre on the middle of the first patch and stops on the middle of
// the last; the round aperture (3.5 mm across) sees parts of neighbouring patches near an edge,
// and moves during each measurement, so edges blur over a few measurements: over about 4 mm of
// travel, the aperture and the 0.6 to 1.2 mm that one reading of a scan moves at 50 to 100 mm/s.
// The first and last patch reach on beyond the strip, as the table under it would.
//
// A strip file holds one patch a line: a width in millimetres and 36 reflectance values, separated
// by blanks or commas; empty lines and lines starting with '#' are skipped.

#include <string>
#include <vector>

#include "sim/Target.h"

namespace OrbelSim {

struct Patch {
    double widthMm = 0.0;
    Target target;
};

class Strip {
public:
    static constexpr double defaultSpeed = 80.0;
    // Not 4.5 mm: the recognition takes only a step above CIELab 3.0 between two readings for an
    // edge, and at 50 mm/s a 4.5 mm aperture spreads the edge between neighbours ΔE 15 apart into
    // steps of at most 2.7, so that a careful hand could never scan a strip of such neighbours.
    static constexpr double apertureDiameter = 3.5;
    static constexpr double uniformLength = 60.0;

    Strip(std::string description, std::vector<Patch> patches);

    // builtin:<name> or a file; raises std::invalid_argument with a text for a person.
    static Strip Parse(const std::string& spec);
    static Strip Builtin(const std::string& name);
    static Strip FromFile(const std::string& path);
    // A scan without a strip is drawn across what is placed.
    static Strip Uniform(const Target& target);

    const std::string& Description() const { return description; }
    const std::vector<Patch>& Patches() const { return patches; }
    // The distance from the middle of the first patch to the middle of the last.
    double Travel() const;
    // The share of each patch in the light that the aperture collects, averaged over the path that
    // its centre takes during one measurement: from `travelled` on over `smear` millimetres.
    std::vector<double> Shares(double travelled, double smear) const;

private:
    std::vector<double> SharesAt(double centre) const;

    std::string description;
    std::vector<Patch> patches;
};

} // namespace OrbelSim
