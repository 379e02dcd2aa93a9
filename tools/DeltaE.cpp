#include "tools/DeltaE.h"

#include <cmath>
#include <sstream>

#include "cmetry/Ciede2000.h"
#include "orbel.h"
#include "tools/CliError.h"
#include "tools/DecimalText.h"

namespace OrbelCli {

namespace {

constexpr double degrees = 180.0 / M_PI;

struct Lch {
    double l;
    double c;
    double h;
};

Lch ToLch(const Triple& lab)
{
    double hue = std::atan2(lab[2], lab[1]) * degrees;
    return {lab[0], std::hypot(lab[1], lab[2]), hue < 0.0 ? hue + 360.0 : hue};
}

// The hue difference from what lightness and chroma leave of the whole distance.
double HueDifference(const Triple& standard, const Triple& sample)
{
    const double da = sample[1] - standard[1];
    const double db = sample[2] - standard[2];
    const double dc = ToLch(sample).c - ToLch(standard).c;
    return std::sqrt(std::max(0.0, da * da + db * db - dc * dc));
}

// CIE 1976: the Euclidean distance in CIELab.
double Cie76(const Triple& standard, const Triple& sample)
{
    return std::sqrt(std::pow(sample[0] - standard[0], 2.0) + std::pow(sample[1] - standard[1], 2.0) +
        std::pow(sample[2] - standard[2], 2.0));
}

// CIE 116-1995 (CIE94), graphic arts: kL = kC = kH = 1.
double Cie94(const Triple& standard, const Triple& sample)
{
    const Lch reference = ToLch(standard);
    const double dl = sample[0] - standard[0];
    const double dc = (ToLch(sample).c - reference.c) / (1.0 + 0.045 * reference.c);
    const double dh = HueDifference(standard, sample) / (1.0 + 0.015 * reference.c);
    return std::sqrt(dl * dl + dc * dc + dh * dh);
}

// CMC l:c (Clarke, McDonald and Rigg 1984, BS 6923), with l = 2 and c = 1 for acceptability.
double Cmc(const Triple& standard, const Triple& sample)
{
    const Lch reference = ToLch(standard);
    const double sl = reference.l < 16.0 ? 0.511 : 0.040975 * reference.l / (1.0 + 0.01765 * reference.l);
    const double sc = 0.0638 * reference.c / (1.0 + 0.0131 * reference.c) + 0.638;
    const double f = std::sqrt(std::pow(reference.c, 4.0) / (std::pow(reference.c, 4.0) + 1900.0));
    const bool blueToPurple = reference.h >= 164.0 && reference.h <= 345.0;
    const double t = blueToPurple ? 0.56 + std::fabs(0.2 * std::cos((reference.h + 168.0) / degrees))
                                  : 0.36 + std::fabs(0.4 * std::cos((reference.h + 35.0) / degrees));
    const double sh = sc * (f * t + 1.0 - f);
    const double dl = (sample[0] - standard[0]) / (2.0 * sl);
    const double dc = (ToLch(sample).c - reference.c) / sc;
    const double dh = HueDifference(standard, sample) / sh;
    return std::sqrt(dl * dl + dc * dc + dh * dh);
}

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
    const std::string formula = arguments.Choice("--delta-e", "CIEDE2000", {"CIEDE2000", "CIE94", "CMC", "CIE76"});
    return DeltaE(formula, ParseLab(*reference));
}

DeltaE::DeltaE(std::string formula, const Triple& standard) : formula(std::move(formula)), standard(standard) { }

double DeltaE::Of(const Triple& sample) const
{
    if (formula == "CIE94") {
        return Cie94(standard, sample);
    }
    if (formula == "CMC") {
        return Cmc(standard, sample);
    }
    if (formula == "CIE76") {
        return Cie76(standard, sample);
    }
    return CMetry::Ciede2000::Difference(
        {standard[0], standard[1], standard[2]}, {sample[0], sample[1], sample[2]}, {1.0, 1.0, 1.0});
}

}
