#include "cmetry/Weightfactors.h"
#include "cmetry/CieTables.h"
#include "cmetry/HvColorVector.h"
#include "cmetry/HvMeasureConditions.h"
#include "cmetry/HvSpectrum.h"
#include "cmetry/PaperWhite.h"
#include "cmetry/Tristimulus.h"
#include "cmetry/WeightfactorCache.h"
#include "utilities/ExceptionCalculationProblem.h"
#include "utilities/ExceptionNullpointer.h"

#include "tests/cmetry/ColourSamples.h"
#include "tests/utilities/FailureText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <string>
#include <thread>
#include <vector>

using namespace CMetry;
using namespace CMetryTest;
using Utilities::ExceptionCalculationProblem;

namespace {

HvMeasureConditions ConditionsWith(const char* illumination, Observer observer = Observer::TwoDegree)
{
    HvMeasureConditions conditions;
    conditions.SetCondition("Colorimetric.Illumination", illumination);
    conditions.SetObserver(observer);
    return conditions;
}

std::array<float, 3> XYZ(const HvSpectrum& spectrum, const HvMeasureConditions& conditions)
{
    HvColorVector out;
    EXPECT_TRUE(GetXYZ(spectrum, conditions, out));
    return {out[0], out[1], out[2]};
}

double Clamped(const CieTables::Table& table, int wavelength)
{
    const int index =
        std::clamp((wavelength - table.minimum) / table.step, 0, static_cast<int>(table.values.size()) - 1);
    return table.values[static_cast<std::size_t>(index)];
}

double MatchingFunction(int observer, int axis, int wavelength)
{
    const CieTables::Table& table = CieTables::Observer[observer][axis];
    return wavelength > table.maximum ? 0.0 : Clamped(table, wavelength);
}

// What the weights stand for, computed the long way in double precision: samples on a grid of the
// given step from 360 nm on, interpolated at 1 nm up to 780 nm from the textbook Lagrange formula,
// quadratic in the first and the last interval and cubic in every other.
std::vector<double> OneNanometre(const std::function<double(int)>& sampleAt, int step)
{
    const int intervals = 420 / step;
    std::vector<double> result(421);
    for (int t = 0; t <= 420; ++t) {
        const int interval = std::min(t / step, intervals - 1);
        const bool atAnEnd = interval == 0 || interval == intervals - 1;
        const int firstNode = interval == 0 ? 0 : (interval == intervals - 1 ? intervals - 2 : interval - 1);
        const int nodeCount = atAnEnd ? 3 : 4;
        double sum = 0.0;
        for (int j = 0; j < nodeCount; ++j) {
            const double xj = (firstNode + j) * step;
            double basis = 1.0;
            for (int m = 0; m < nodeCount; ++m) {
                const double xm = (firstNode + m) * step;
                if (m != j) {
                    basis *= (t - xm) / (xj - xm);
                }
            }
            sum += basis * sampleAt(360 + static_cast<int>(xj));
        }
        result[static_cast<std::size_t>(t)] = sum;
    }
    return result;
}

std::vector<double> IlluminantAt1nm(const CieTables::Table& table)
{
    return OneNanometre([&](int wavelength) { return Clamped(table, wavelength); }, table.step);
}

std::vector<double> SamplesAt1nm(const float* values)
{
    return OneNanometre([&](int wavelength) { return values[std::clamp((wavelength - 380) / 10, 0, 35)]; }, 10);
}

// X, Y, Z by summing at 1 nm over 360 to 780 nm; an empty illuminant means emission.
std::array<double, 3> Integrated(const std::vector<double>& illuminant, int observer, const float* values)
{
    const std::vector<double> reflectance = SamplesAt1nm(values);
    std::array<double, 3> sums{};
    double norm = 0.0;
    for (int t = 0; t <= 420; ++t) {
        const double power = illuminant.empty() ? 1.0 : illuminant[static_cast<std::size_t>(t)];
        norm += power * MatchingFunction(observer, 1, 360 + t);
        for (int axis = 0; axis < 3; ++axis) {
            sums[axis] += power * MatchingFunction(observer, axis, 360 + t) * reflectance[static_cast<std::size_t>(t)];
        }
    }
    const double k = illuminant.empty() ? static_cast<double>(0.683f) : 100.0 / norm;
    return {k * sums[0], k * sums[1], k * sums[2]};
}

void ExpectNear(const std::array<double, 3>& expected, const std::array<float, 3>& actual, double tolerance,
    const std::string& what)
{
    for (int axis = 0; axis < 3; ++axis) {
        EXPECT_NEAR(expected[axis], actual[axis], tolerance) << what << " axis " << axis;
    }
}

float SumOf(std::span<const float> values)
{
    float sum = 0.0f;
    for (float value : values) {
        sum += value;
    }
    return sum;
}

}

TEST(Weightfactors, WhitePointsOfTheStandardIlluminants)
{
    const struct {
        const char* illumination;
        Observer observer;
        std::array<double, 3> white;
    } cases[] = {
        {"D65", Observer::TwoDegree, {95.05, 100.00, 108.88}},
        {"D50", Observer::TwoDegree, {96.42, 100.00, 82.52}},
        {"A", Observer::TwoDegree, {109.85, 100.00, 35.59}},
        {"D65", Observer::TenDegree, {94.81, 100.00, 107.30}},
    };
    for (const auto& c : cases) {
        const HvMeasureConditions conditions = ConditionsWith(c.illumination, c.observer);
        const Weightfactors weights(conditions);
        const std::array<float, 3> perfectDiffuser = XYZ(Flat(1.0f), conditions);
        for (uint16_t axis = 0; axis < 3; ++axis) {
            EXPECT_NEAR(c.white[axis], weights.GetWhitePoint(axis), 0.005) << c.illumination << " axis " << axis;
            EXPECT_NEAR(weights.GetWhitePoint(axis), perfectDiffuser[axis], 2e-4) << c.illumination;
        }
        EXPECT_EQ(100.0f, weights.GetWhitePoint(1));
        EXPECT_EQ(SumOf(weights.GetWeights(0)), weights.GetWhitePoint(0));
        EXPECT_EQ(SumOf(weights.GetWeights(2)), weights.GetWhitePoint(2));
        EXPECT_EQ(0.0f, weights.GetWhitePoint(3));
    }
}

TEST(Weightfactors, NormalisationAndWeightsUnderD65)
{
    const Weightfactors weights{HvMeasureConditions()};
    ASSERT_TRUE(weights.HasWeights());
    EXPECT_FALSE(weights.IsEmission());
    EXPECT_NEAR(0.0094634, weights.GetK(), 5e-8);
    const struct {
        int index;
        std::array<double, 3> weights;
    } points[] = {
        {0, {0.0079, 0.0002, 0.0371}},
        {17, {4.2504, 9.7519, 0.0856}},
        {35, {0.0175, 0.0063, 0.0}},
    };
    for (const auto& point : points) {
        for (uint16_t axis = 0; axis < 3; ++axis) {
            EXPECT_NEAR(point.weights[axis], weights.GetWeights(axis)[point.index], 5e-5)
                << 380 + 10 * point.index << " nm axis " << axis;
        }
    }
    EXPECT_EQ(0.0f, weights.GetWeights(2)[35]);
    EXPECT_EQ("Invalid Axis", FailureText<Utilities::ExceptionNullpointer>([&] { weights.GetWeights(3); }));
}

TEST(Weightfactors, YWeightsSumTo100ForEveryIlluminant)
{
    std::vector<IlluminationTYPE> illuminations;
    for (int type = 0; type <= 6; ++type) {
        illuminations.emplace_back(static_cast<Illumination>(type));
    }
    for (Illumination type : {Illumination::F2, Illumination::F7, Illumination::F11, Illumination::S0}) {
        illuminations.emplace_back(type);
    }
    for (uint8_t fValue = 1; fValue <= 12; ++fValue) {
        illuminations.push_back(IlluminationTYPE::Fluorescent(fValue));
    }
    for (int16_t temperature : {4000, 5000, 6504, 10000, 25000}) {
        illuminations.push_back(IlluminationTYPE::Daylight(temperature));
    }
    for (Observer observer : {Observer::TwoDegree, Observer::TenDegree}) {
        for (const IlluminationTYPE& illumination : illuminations) {
            HvMeasureConditions conditions;
            conditions.SetIllumination(illumination);
            conditions.SetObserver(observer);
            const Weightfactors weights(conditions);
            ASSERT_TRUE(weights.HasWeights()) << ToString(illumination).CString();
            EXPECT_NEAR(100.0, SumOf(weights.GetWeights(1)), 2e-4)
                << ToString(illumination).CString() << " observer " << static_cast<int>(observer);
        }
    }
}

TEST(Weightfactors, FailedConstructionLeavesNoWeightsButItsReason)
{
    const struct {
        HvMeasureConditions conditions;
        const char* reason;
    } cases[] = {
        {ConditionsWith("Undefined"), "Unsupported Illumination type"},
        {ConditionsWith("F13"), "Unsupported Illumination type"},
        {ConditionsWith("F0"), "Unsupported Illumination type"},
        {ConditionsWith("Dxx, Temperature:0"), "Unsupported Illumination type"},
        {ConditionsWith("Userdefined"), "Failed to dereference nullpointer."},
        {ConditionsWith("D65", Observer::Undefined), "Unsupported Observer type"},
    };
    for (const auto& c : cases) {
        const Weightfactors weights(c.conditions);
        EXPECT_FALSE(weights.HasWeights()) << c.reason;
        EXPECT_EQ(0.0f, weights.GetWhitePoint(0));
        EXPECT_EQ(0.0f, weights.GetWhitePoint(1));
        EXPECT_TRUE(weights.GetIlluminant().empty());
        EXPECT_EQ(c.reason, FailureText<ExceptionCalculationProblem>([&] { weights.GetWeights(0); }));
        EXPECT_EQ("Invalid Axis", FailureText<Utilities::ExceptionNullpointer>([&] { weights.GetWeights(3); }));

        HvColorVector out(1.0f, 2.0f, 3.0f, HvMeasureConditions());
        const HvColorVector before = out;
        EXPECT_EQ(c.reason, FailureText<ExceptionCalculationProblem>([&] { GetXYZ(Flat(0.5f), c.conditions, out); }));
        EXPECT_EQ(before, out);
    }
}

TEST(Weightfactors, DataGridChecksNameTheirFault)
{
    const std::string bandwidth = "Measure conditions: Check bandwidth of measure data";
    const std::string step = "Measure conditions: measure data bandwith conflicts Step size is not a integer.";
    const std::string grid = "Measure conditions: measure data bandwith conflicts with internal calculation bandwith.";
    const struct {
        uint16_t count, minimum, maximum;
        std::string failure;
    } cases[] = {{36, 380, 730, "no failure"}, {43, 360, 780, "no failure"}, {4, 360, 780, "no failure"},
        {3, 380, 730, "Measure conditions: Too few measure data"}, {36, 730, 380, bandwidth}, {36, 380, 380, bandwidth},
        {36, 10, 360, bandwidth}, {36, 780, 1130, bandwidth}, {5, 380, 480, step}, {100, 380, 400, step},
        {36, 380, 800, grid}, {36, 385, 735, grid}};
    for (const auto& c : cases) {
        EXPECT_EQ(c.failure, FailureText<ExceptionCalculationProblem>([&] {
            Weightfactors::CheckDataGrid(c.count, c.minimum, c.maximum);
        })) << c.count
            << " points " << c.minimum << " to " << c.maximum;
    }
}

TEST(Tristimulus, TestColourSamplesMatchIntegrationAt1nm)
{
    const struct {
        const char* illumination;
        const CieTables::Table& table;
    } illuminants[] = {
        {"D65", CieTables::Illuminant[4]},
        {"A", CieTables::Illuminant[0]},
        {"C", CieTables::Illuminant[2]},
        {"D50", CieTables::Illuminant[6]},
        {"F11", CieTables::Fluorescent[10]},
        {"F3", CieTables::Fluorescent[2]},
    };
    const struct {
        const char* name;
        const Reflectance& values;
    } samples[] = {{"TCS01", tcs01}, {"TCS03", tcs03}, {"TCS09", tcs09}, {"TCS12", tcs12}};
    for (const auto& illuminant : illuminants) {
        const std::vector<double> power = IlluminantAt1nm(illuminant.table);
        for (int observer = 0; observer < 2; ++observer) {
            const HvMeasureConditions conditions =
                ConditionsWith(illuminant.illumination, static_cast<Observer>(observer));
            for (const auto& sample : samples) {
                ExpectNear(Integrated(power, observer, sample.values.data()),
                    XYZ(SpectrumOf(sample.values), conditions), 1e-3,
                    std::string(sample.name) + " under " + illuminant.illumination);
            }
        }
    }
}

TEST(Tristimulus, UserDefinedIlluminantIsInterpolatedFromItsDataPoints)
{
    Reflectance lamp;
    for (int index = 0; index < 36; ++index) {
        lamp[static_cast<std::size_t>(index)] =
            20.0f + 3.0f * static_cast<float>(index) + (index % 5 == 0 ? 15.0f : 0.0f);
    }
    HvMeasureConditions conditions;
    conditions.SetUserDefinedIllumination(SpectrumOf(lamp));
    const std::vector<double> power = SamplesAt1nm(lamp.data());
    ExpectNear(Integrated(power, 0, tcs09.data()), XYZ(SpectrumOf(tcs09), conditions), 1e-3, "TCS09");
    ExpectNear(Integrated(power, 0, tcs12.data()), XYZ(SpectrumOf(tcs12), conditions), 1e-3, "TCS12");
}

TEST(Tristimulus, EmissionOfTheSpectrumOverridesTheIllumination)
{
    HvMeasureConditions emission = ConditionsWith("Emission");
    emission.SetCondition("Physical.Filter", "UVCut");
    const HvSpectrum display = SpectrumOf(tcs03, emission);
    HvMeasureConditions d50 = ConditionsWith("D50");
    d50.SetCondition("ColorSpaceDescription.Type", "CIEXYZ");
    d50.SetCondition("Colorimetric.WhiteBase", "Paper");

    HvColorVector out;
    ASSERT_TRUE(GetXYZ(display, d50, out));
    ExpectNear(Integrated({}, 0, tcs03.data()), {out[0], out[1], out[2]}, 1e-3, "emission");
    EXPECT_EQ(0.0f, out[3]);
    EXPECT_EQ(Illumination::Emission, out.GetConditions().GetIllumination().GetType());
    EXPECT_EQ(WhiteBase::Paper, out.GetConditions().GetWhiteBase());
    EXPECT_EQ("CIEXYZ", std::string(out.GetConditions().GetCondition("ColorSpaceDescription.Type").CString()));
    EXPECT_EQ(PhysicalFilter::UVCut, out.GetConditions().GetPhysicalFilter());
    // The matching functions alone, scaled by 0.683, with Y of the white at 100.
    const auto weights = WeightfactorCache::GetWeightfactors();
    EXPECT_TRUE(weights->IsEmission());
    EXPECT_EQ(0.683f, weights->GetK());
    EXPECT_TRUE(weights->GetIlluminant().empty());
    EXPECT_EQ(100.0f, weights->GetWhitePoint(1));
    EXPECT_EQ(SumOf(weights->GetWeights(0)), weights->GetWhitePoint(0));
}

TEST(Tristimulus, ResultTakesTheConditionsAndTheFilterOfTheSpectrum)
{
    HvMeasureConditions polarized;
    polarized.SetCondition("Physical.Filter", "Polarizer");
    polarized.SetCondition("Colorimetric.Illumination", "A");
    HvMeasureConditions conditions = ConditionsWith("D50");
    conditions.SetCondition("ColorSpaceDescription.Type", "CIELCh");
    HvColorVector out;
    out[3] = 7.0f;
    ASSERT_TRUE(GetXYZ(SpectrumOf(tcs01, polarized), conditions, out));
    HvMeasureConditions expected = conditions;
    expected.CopyPhysicalFilter(polarized);
    EXPECT_EQ(expected, out.GetConditions());
    EXPECT_EQ(0.0f, out[3]);
    // Under D50 of the conditions, not A of the spectrum.
    ExpectNear(Integrated(IlluminantAt1nm(CieTables::Illuminant[6]), 0, tcs01.data()), {out[0], out[1], out[2]}, 1e-3,
        "TCS01 under D50");
}

TEST(Tristimulus, PaperWhiteBaseDividesByThePaperWhite)
{
    const HvSpectrum paper = SpectrumOf(tcs01);
    SetPaperWhite(paper);
    HvMeasureConditions conditions = ConditionsWith("D50");
    conditions.SetCondition("Colorimetric.WhiteBase", "Paper");
    const Weightfactors weights(conditions);
    const std::array<float, 3> ofPaper = XYZ(paper, conditions);
    for (uint16_t axis = 0; axis < 3; ++axis) {
        EXPECT_NEAR(weights.GetWhitePoint(axis), ofPaper[axis], 2e-4);
    }

    Reflectance relative;
    for (std::size_t index = 0; index < 36; ++index) {
        relative[index] = static_cast<float>(static_cast<double>(tcs03[index]) / tcs01[index]);
    }
    EXPECT_EQ(XYZ(SpectrumOf(relative), ConditionsWith("D50")), XYZ(SpectrumOf(tcs03), conditions));
    conditions.SetCondition("Colorimetric.WhiteBase", "Automatic");
    EXPECT_EQ(XYZ(SpectrumOf(tcs03), ConditionsWith("D50")), XYZ(SpectrumOf(tcs03), conditions));
}

TEST(WeightfactorCache, OnlyIlluminantAndObserverRebuildTheWeights)
{
    const auto first = WeightfactorCache::Update(HvMeasureConditions());
    HvMeasureConditions other;
    other.SetCondition("ColorSpaceDescription.Type", "CIEXYZ");
    other.SetCondition("Colorimetric.WhiteBase", "Absolute");
    other.SetCondition("Colorimetric.DensityStandard", "ANSIA");
    other.SetCondition("Physical.Filter", "UVCut");
    EXPECT_EQ(&*first, &*WeightfactorCache::Update(other));
    HvColorVector out;
    ASSERT_TRUE(GetXYZ(Flat(0.3f), other, out));
    EXPECT_EQ(&*first, &*WeightfactorCache::GetWeightfactors());

    other.SetObserver(Observer::TenDegree);
    const auto tenDegree = WeightfactorCache::Update(other);
    EXPECT_NE(&*first, &*tenDegree);
    EXPECT_EQ(Observer::TenDegree, WeightfactorCache::GetObserver());
    EXPECT_NEAR(94.81, WeightfactorCache::GetWhitePoint(0), 0.005);

    const auto d50 = WeightfactorCache::Update(ConditionsWith("D50"));
    EXPECT_EQ(IlluminationTYPE(Illumination::D50), WeightfactorCache::GetIllumination());
    EXPECT_NEAR(82.52, WeightfactorCache::GetWhitePoint(2), 0.005);
    EXPECT_EQ(d50->GetWeights(1)[17], WeightfactorCache::GetWeights(1)[17]);
    // The cache holds one set; the sets handed out stay as they were.
    EXPECT_NE(&*first, &*WeightfactorCache::Update(HvMeasureConditions()));
    EXPECT_NEAR(94.81, tenDegree->GetWhitePoint(0), 0.005);

    HvMeasureConditions f3 = ConditionsWith("F3");
    const auto f3Weights = WeightfactorCache::Update(f3);
    EXPECT_NE(&*f3Weights, &*WeightfactorCache::Update(ConditionsWith("F4")));
    EXPECT_NE(&*f3Weights, &*WeightfactorCache::Update(f3));
}

// A thread answers from the set it took last only while no other thread has cached another.
TEST(WeightfactorCache, ASetCachedByAnotherThreadIsSeenByThisOne)
{
    const auto d65 = WeightfactorCache::Update(HvMeasureConditions());
    std::thread([] { WeightfactorCache::Update(ConditionsWith("D50")); }).join();
    EXPECT_EQ(IlluminationTYPE(Illumination::D50), WeightfactorCache::GetIllumination());
    EXPECT_NE(&*d65, &*WeightfactorCache::Update(HvMeasureConditions()));
    EXPECT_EQ(IlluminationTYPE(Illumination::D65), WeightfactorCache::GetIllumination());
}

TEST(WeightfactorCache, UserDefinedIlluminantsCountByIdentity)
{
    HvMeasureConditions conditions;
    conditions.SetUserDefinedIllumination(Flat(80.0f));
    const auto weights = WeightfactorCache::Update(conditions);
    const HvMeasureConditions copy = conditions;
    EXPECT_EQ(&*weights, &*WeightfactorCache::Update(copy));

    HvMeasureConditions sameValues;
    sameValues.SetUserDefinedIllumination(Flat(80.0f));
    EXPECT_NE(&*weights, &*WeightfactorCache::Update(sameValues));
    EXPECT_NE(&*weights, &*WeightfactorCache::Update(conditions));
}

TEST(WeightfactorCache, ThreadsWithDifferentIlluminantsGetTheirOwnResults)
{
    const HvMeasureConditions d65;
    const HvMeasureConditions a = ConditionsWith("A");
    const HvSpectrum sample = SpectrumOf(tcs09);
    const std::array<float, 3> underD65 = XYZ(sample, d65);
    const std::array<float, 3> underA = XYZ(sample, a);
    std::vector<int> mismatches(4, 0);
    std::vector<std::thread> threads;
    for (std::size_t thread = 0; thread < mismatches.size(); ++thread) {
        threads.emplace_back([&, thread] {
            for (int round = 0; round < 200; ++round) {
                const bool useA = (round + static_cast<int>(thread)) % 3 == 0;
                HvColorVector out;
                GetXYZ(sample, useA ? a : d65, out);
                const std::array<float, 3> expected = useA ? underA : underD65;
                if (out[0] != expected[0] || out[1] != expected[1] || out[2] != expected[2]) {
                    ++mismatches[thread];
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(std::vector<int>(4, 0), mismatches);
}
