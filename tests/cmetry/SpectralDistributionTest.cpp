#include "cmetry/SpectralDistribution.h"
#include "cmetry/CieTables.h"
#include "cmetry/HvSpectrum.h"
#include "cmetry/IlluminationTYPE.h"
#include "cmetry/LagrangeCoefficients.h"
#include "utilities/ExceptionCalculationProblem.h"

#include "tests/utilities/FailureText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>
#include <vector>

using namespace CMetry;
using Utilities::ExceptionCalculationProblem;

namespace {

std::string IlluminantFailure(const IlluminationTYPE& illumination)
{
    return FailureText<ExceptionCalculationProblem>(
        [&] { SpectralDistribution::GetIlluminantDistribution(illumination); });
}

void ExpectSameTable(const CieTables::Table& table, const SpectralDistribution& distribution)
{
    EXPECT_EQ(table.minimum, distribution.GetMinimum());
    EXPECT_EQ(table.maximum, distribution.GetMaximum());
    EXPECT_EQ(table.step, distribution.GetStep());
    ASSERT_EQ(table.values.size(), distribution.GetValues().size());
    for (std::size_t index = 0; index < table.values.size(); ++index) {
        EXPECT_EQ(table.values[index], distribution.GetValues()[index]);
    }
}

// The largest difference between the rule and a table at the wavelengths of the table.
double LargestDifference(const SpectralDistribution& rule, const CieTables::Table& table)
{
    double largest = 0.0;
    for (int wavelength = table.minimum; wavelength <= table.maximum; wavelength += 5) {
        const double tabulated = table.values[static_cast<std::size_t>((wavelength - table.minimum) / table.step)];
        largest = std::max(largest, std::fabs(rule.ValueAt(static_cast<uint16_t>(wavelength)) - tabulated));
    }
    return largest;
}

SpectralDistribution Sampled(int minimum, int maximum, int step, const std::function<double(double)>& function)
{
    std::vector<float> values;
    for (int wavelength = minimum; wavelength <= maximum; wavelength += step) {
        values.push_back(static_cast<float>(function(wavelength)));
    }
    return SpectralDistribution(
        static_cast<uint16_t>(minimum), static_cast<uint16_t>(maximum), static_cast<uint16_t>(step), values);
}

}

TEST(LagrangeCoefficients, RowsInterpolatePolynomialsOfTheirDegree)
{
    for (uint16_t step : {1, 5, 10}) {
        const LagrangeCoefficients lagrange(step);
        const auto quadratic = [&](double u) { return 0.5 * u * u - 3.0 * u + 7.0; };
        const auto cubic = [&](double u) { return 0.01 * u * u * u - 0.5 * u * u + 2.0 * u + 1.0; };
        for (uint16_t i = 0; i < step; ++i) {
            double first = 0.0;
            double last = 0.0;
            double middle = 0.0;
            for (uint16_t node = 0; node < 3; ++node) {
                first += lagrange.GetL3a(node)[i] * quadratic(node * step);
                last += lagrange.GetL3b(node)[i] * quadratic(node * step);
            }
            for (uint16_t node = 0; node < 4; ++node) {
                middle += lagrange.GetL4(node)[i] * cubic(node * step);
            }
            EXPECT_NEAR(quadratic(i), first, 1e-5) << step << " " << i;
            EXPECT_NEAR(quadratic(i + step), last, 1e-5) << step << " " << i;
            EXPECT_NEAR(cubic(i + step), middle, 1e-5) << step << " " << i;
        }
    }
    const LagrangeCoefficients ten(10);
    EXPECT_EQ(1.0f, ten.GetL3a(0)[0]);
    EXPECT_EQ(0.0f, ten.GetL3a(1)[0]);
    EXPECT_EQ(1.0f, ten.GetL4(1)[0]);
    EXPECT_EQ(1.0f, ten.GetL3b(1)[0]);
    // (15 - 10)(15 - 20)(15 - 30) / ((0 - 10)(0 - 20)(0 - 30))
    EXPECT_EQ(-0.0625f, ten.GetL4(0)[5]);
}

TEST(SpectralDistribution, IlluminationsTakeTheirBuiltInTables)
{
    for (int type = 0; type <= 6; ++type) {
        ExpectSameTable(CieTables::Illuminant[type],
            SpectralDistribution::GetIlluminantDistribution(IlluminationTYPE(static_cast<Illumination>(type))));
    }
    ExpectSameTable(
        CieTables::Fluorescent[1], SpectralDistribution::GetIlluminantDistribution(ParseIllumination("F2")));
    ExpectSameTable(
        CieTables::Fluorescent[6], SpectralDistribution::GetIlluminantDistribution(ParseIllumination("F7")));
    ExpectSameTable(
        CieTables::Fluorescent[10], SpectralDistribution::GetIlluminantDistribution(ParseIllumination("F11")));
    for (uint8_t fValue = 1; fValue <= 12; ++fValue) {
        ExpectSameTable(CieTables::Fluorescent[fValue - 1],
            SpectralDistribution::GetIlluminantDistribution(IlluminationTYPE::Fluorescent(fValue)));
    }
    for (int component = 0; component < 3; ++component) {
        ExpectSameTable(CieTables::Daylight[component],
            SpectralDistribution::GetIlluminantDistribution(
                IlluminationTYPE(static_cast<Illumination>(14 + component))));
    }
}

TEST(SpectralDistribution, IlluminationsWithoutATableFail)
{
    for (Illumination type : {Illumination::Dxx, Illumination::Userdefined, Illumination::Emission,
             Illumination::Undefined, static_cast<Illumination>(17)}) {
        EXPECT_EQ("Unsupported Illumination type", IlluminantFailure(IlluminationTYPE(type)));
    }
    EXPECT_EQ("Unsupported Illumination type", IlluminantFailure(IlluminationTYPE::Fluorescent(0)));
    EXPECT_EQ("Unsupported Illumination type", IlluminantFailure(IlluminationTYPE::Fluorescent(13)));
    EXPECT_EQ("Unsupported Observer type", FailureText<ExceptionCalculationProblem>([] {
        SpectralDistribution::GetObserverDistribution(Observer::Undefined, 0);
    }));
    EXPECT_EQ("Unsupported Illumination type",
        FailureText<ExceptionCalculationProblem>([] { SpectralDistribution::GetDaylightDistribution(0); }));
    EXPECT_EQ("Unsupported Illumination type",
        FailureText<ExceptionCalculationProblem>([] { SpectralDistribution::GetDaylightDistribution(-5000); }));
    EXPECT_EQ("Unsupported Illumination type",
        FailureText<ExceptionCalculationProblem>([] { SpectralDistribution().InterpolatedTo1nm(360, 780); }));
}

TEST(SpectralDistribution, ObserversTakeTheirTablesAndEndTheirZBarWhereItIsZero)
{
    for (int observer = 0; observer < 2; ++observer) {
        for (uint16_t axis = 0; axis < 3; ++axis) {
            ExpectSameTable(CieTables::Observer[observer][axis],
                SpectralDistribution::GetObserverDistribution(static_cast<Observer>(observer), axis));
        }
    }
    const SpectralDistribution twoDegreeZ = SpectralDistribution::GetObserverDistribution(Observer::TwoDegree, 2);
    EXPECT_EQ(650, twoDegreeZ.GetMaximum());
    EXPECT_EQ(0.0f, twoDegreeZ.ValueAt(700));
}

TEST(SpectralDistribution, DaylightRuleReproducesTheTabulatedDaylight)
{
    const struct {
        int16_t temperature;
        int table;
    } cases[] = {{5000, 6}, {5500, 5}, {7500, 3}};
    for (const auto& c : cases) {
        const SpectralDistribution rule = SpectralDistribution::GetDaylightDistribution(c.temperature);
        EXPECT_FLOAT_EQ(100.0f, rule.ValueAt(560)) << c.temperature;
        EXPECT_LE(LargestDifference(rule, CieTables::Illuminant[c.table]), 0.005) << c.temperature;
    }
    // D65 belongs to 6500 K on the old temperature scale, which the rule converts.
    EXPECT_LE(LargestDifference(SpectralDistribution::GetDaylightDistribution(6500), CieTables::Illuminant[4]), 0.005);
    EXPECT_GT(LargestDifference(SpectralDistribution::GetDaylightDistribution(6504), CieTables::Illuminant[4]), 0.05);
    // Both branches of the chromaticity: below and above 7000 K the curves differ.
    const SpectralDistribution warm = SpectralDistribution::GetDaylightDistribution(4000);
    const SpectralDistribution cold = SpectralDistribution::GetDaylightDistribution(20000);
    EXPECT_LT(warm.ValueAt(400), 50.0f);
    EXPECT_GT(cold.ValueAt(400), 150.0f);
}

TEST(SpectralDistribution, InterpolationTo1nmKeepsTheTableAndExtendsItsEnds)
{
    const SpectralDistribution d65 =
        SpectralDistribution::GetIlluminantDistribution(IlluminationTYPE(Illumination::D65));
    const SpectralDistribution d65At1nm = d65.InterpolatedTo1nm(360, 780);
    EXPECT_EQ(360, d65At1nm.GetMinimum());
    ASSERT_EQ(421u, d65At1nm.GetValues().size());
    for (uint16_t wavelength = 360; wavelength <= 780; ++wavelength) {
        EXPECT_EQ(d65.ValueAt(wavelength), d65At1nm.ValueAt(wavelength)) << wavelength;
    }

    const SpectralDistribution d50 =
        SpectralDistribution::GetIlluminantDistribution(IlluminationTYPE(Illumination::D50));
    const SpectralDistribution d50At1nm = d50.InterpolatedTo1nm(360, 780);
    for (uint16_t wavelength = 360; wavelength <= 780; wavelength += 5) {
        EXPECT_FLOAT_EQ(d50.ValueAt(wavelength), d50At1nm.ValueAt(wavelength)) << wavelength;
    }

    // A table that begins late repeats its first value on its own grid down to 360 nm, so that the
    // polynomials are flat where all their nodes are; the interval up to the first entry of the
    // table bends towards its second entry.
    const SpectralDistribution f2 = SpectralDistribution::GetIlluminantDistribution(ParseIllumination("F2"));
    const SpectralDistribution f2At1nm = f2.InterpolatedTo1nm(360, 780);
    for (uint16_t wavelength = 360; wavelength <= 375; ++wavelength) {
        EXPECT_FLOAT_EQ(f2.ValueAt(380), f2At1nm.ValueAt(wavelength)) << wavelength;
    }
    EXPECT_NE(f2.ValueAt(380), f2At1nm.ValueAt(378));
    EXPECT_FLOAT_EQ(f2.ValueAt(380), f2At1nm.ValueAt(380));
    EXPECT_EQ(f2.ValueAt(780), f2At1nm.ValueAt(780));

    // A table that ends early repeats its last value.
    const SpectralDistribution b = SpectralDistribution::GetIlluminantDistribution(IlluminationTYPE(Illumination::B));
    const SpectralDistribution bAt1nm = b.InterpolatedTo1nm(360, 780);
    for (uint16_t wavelength = 775; wavelength <= 780; ++wavelength) {
        EXPECT_FLOAT_EQ(b.ValueAt(770), bAt1nm.ValueAt(wavelength)) << wavelength;
    }
}

TEST(SpectralDistribution, InterpolationIsExactForPolynomialsOfItsDegree)
{
    const auto cubic = [](double w) {
        const double u = (w - 560.0) / 100.0;
        return 50.0 + 20.0 * u - 8.0 * u * u + 3.0 * u * u * u;
    };
    const SpectralDistribution cubicAt1nm = Sampled(360, 780, 10, cubic).InterpolatedTo1nm(360, 780);
    for (uint16_t wavelength = 370; wavelength < 770; ++wavelength) {
        EXPECT_NEAR(cubic(wavelength), cubicAt1nm.ValueAt(wavelength), 1e-4) << wavelength;
    }
    const auto quadratic = [](double w) { return 10.0 + 0.2 * (w - 360.0) - 0.0004 * (w - 360.0) * (w - 360.0); };
    const SpectralDistribution quadraticAt1nm = Sampled(360, 780, 5, quadratic).InterpolatedTo1nm(360, 780);
    for (uint16_t wavelength = 360; wavelength <= 780; ++wavelength) {
        EXPECT_NEAR(quadratic(wavelength), quadraticAt1nm.ValueAt(wavelength), 1e-4) << wavelength;
    }
}
