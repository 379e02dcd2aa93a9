#pragma once
// The colour difference of a measured sample from a standard by the formula the user names, and
// the one list of those names for every command: the module computes each of them.

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "tools/Arguments.h"
#include "tools/Sample.h"

namespace OrbelCli {

class DeltaE {
public:
    struct Formula {
        const char* name;
        // Its keyword of "ColorSpaceDescription.DeltaEFormula" and the parameters p1 to p3.
        const char* moduleName;
        std::array<float, 3> parameters;
        // Computable from two CIELab values alone; the others need both spectra.
        bool fromLab;
    };

    // Null for a name the list doesn't have.
    static const Formula* Find(const std::string& name);
    // The names of the list, those computable from CIELab alone or all.
    static std::vector<std::string> Names(bool fromLabOnly);

    // --delta-e and --reference; a formula without a reference, a reference that isn't three
    // numbers or an unknown formula fail with CliError.
    static std::vector<OptionSpec> Options();
    // Empty when neither option is given.
    static std::optional<DeltaE> FromArguments(const Arguments& arguments);

    const std::string& Name() const { return name; }
    double Of(const Triple& sample) const;

private:
    DeltaE(std::string name, const Triple& standard);

    std::string name;
    Triple standard;
};

}
