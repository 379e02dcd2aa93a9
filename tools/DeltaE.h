#pragma once
// The colour difference of a measured sample from a standard, both in CIELab, by the formula the
// user names.

#include <optional>
#include <string>
#include <vector>

#include "tools/Arguments.h"
#include "tools/Sample.h"

namespace OrbelCli {

class DeltaE {
public:
    // --delta-e and --reference; a formula without a reference, a reference that isn't three
    // numbers or an unknown formula fail with CliError.
    static std::vector<OptionSpec> Options();
    // Empty when neither option is given.
    static std::optional<DeltaE> FromArguments(const Arguments& arguments);

    const std::string& Formula() const { return formula; }
    double Of(const Triple& sample) const;

private:
    DeltaE(std::string formula, const Triple& standard);

    std::string formula;
    Triple standard;
};

}
