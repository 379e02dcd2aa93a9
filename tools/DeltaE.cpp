#include "tools/DeltaE.h"

#include <algorithm>
#include <sstream>

#include "cmetry/ColorDifference.h"
#include "orbel.h"
#include "tools/CliError.h"
#include "tools/DecimalText.h"

namespace OrbelCli {

namespace {

// The names of the standards first, then the module's own; CMC at 2:1, the acceptability ratio.
constexpr DeltaE::Formula formulas[] = {
    {"CIEDE2000", "CIEDE2000", {1.0f, 1.0f, 1.0f}, true},
    {"CIE94", "94", {1.0f, 1.0f, 1.0f}, true},
    {"CMC", "CMC", {2.0f, 1.0f, 1.0f}, true},
    {"CIE76", "CIELab", {1.0f, 1.0f, 1.0f}, true},
    {"CIELab", "CIELab", {1.0f, 1.0f, 1.0f}, true},
    {"94", "94", {1.0f, 1.0f, 1.0f}, true},
    {"CIELuv", "CIELuv", {1.0f, 1.0f, 1.0f}, false},
    {"LABmg", "LABmg", {1.0f, 1.0f, 1.0f}, false},
    {"FMCII", "FMCII", {1.0f, 1.0f, 1.0f}, false},
};

Triple ParseLab(const std::string& text)
{
    std::istringstream fields(text);
    Triple lab{};
    std::string field;
    std::size_t count = 0;
    while (std::getline(fields, field, ',')) {
        const std::optional<double> value = DecimalText::Parse(field);
        if (!value || count == lab.size()) {
            count = lab.size() + 1;
            break;
        }
        lab[count++] = static_cast<float>(*value);
    }
    if (count != lab.size()) {
        throw CliError(OB_InvalidArgument, "--reference takes the CIELab of the standard, as L,a,b: " + text);
    }
    return lab;
}

// The conditions' colour space is CIELab unless set otherwise.
CMetry::HvColorVector LabVector(const Triple& lab)
{
    return CMetry::HvColorVector(lab[0], lab[1], lab[2], CMetry::HvMeasureConditions());
}

}

const DeltaE::Formula* DeltaE::Find(const std::string& name)
{
    const auto found =
        std::find_if(std::begin(formulas), std::end(formulas), [&](const Formula& f) { return f.name == name; });
    return found == std::end(formulas) ? nullptr : found;
}

std::vector<std::string> DeltaE::Names(bool fromLabOnly)
{
    std::vector<std::string> names;
    for (const Formula& formula : formulas) {
        if (formula.fromLab || !fromLabOnly) {
            names.emplace_back(formula.name);
        }
    }
    return names;
}

std::vector<OptionSpec> DeltaE::Options()
{
    return {
        {"--reference", true, "L,a,b", "the CIELab of a standard to compare the sample with"},
        {"--delta-e", true, "FORMULA", "CIEDE2000 (default), CIE94, CMC (2:1) or CIE76, with --reference"},
    };
}

std::optional<DeltaE> DeltaE::FromArguments(const Arguments& arguments)
{
    const auto reference = arguments.Get("--reference");
    if (!reference) {
        if (arguments.Has("--delta-e")) {
            throw CliError(OB_InvalidArgument, "--delta-e needs the standard: --reference L,a,b");
        }
        return std::nullopt;
    }
    const std::string formula = arguments.Choice("--delta-e", "CIEDE2000", Names(true));
    return DeltaE(formula, ParseLab(*reference));
}

DeltaE::DeltaE(std::string name, const Triple& standard) : name(std::move(name)), standard(standard) { }

double DeltaE::Of(const Triple& sample) const
{
    const Formula& formula = *Find(name);
    const auto& [p1, p2, p3] = formula.parameters;
    return CMetry::ColorDifference::GetLabDeltaE(
        LabVector(standard), LabVector(sample), formula.moduleName, p1, p2, p3);
}

}
