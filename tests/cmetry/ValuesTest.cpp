#include "cmetry/CMetryCalculator.h"
#include "cmetry/Density.h"
#include "cmetry/HvColorVector.h"
#include "cmetry/HvLCh.h"
#include "cmetry/HvLab.h"
#include "cmetry/HvLuv.h"
#include "cmetry/HvMeasureConditions.h"
#include "cmetry/HvSample.h"
#include "cmetry/HvSpectrum.h"
#include "cmetry/HvXYZ.h"
#include "cmetry/PaperWhite.h"
#include "cmetry/Tristimulus.h"
#include "cmetry/WeightfactorCache.h"
#include "utilities/ExceptionNullpointer.h"
#include "utilities/ExceptionOutOfBound.h"
#include "utilities/Vector.h"

#include "tests/cmetry/ColourSamples.h"
#include "tests/utilities/FailureText.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <iterator>
#include <limits>
#include <string>
#include <utility>

using namespace CMetry;
using CMetryTest::CMetryFailure;
using CMetryTest::Cyan;
using CMetryTest::Flat;

namespace {

HvSpectrum Ramp(float first, float increment)
{
    float values[36];
    for (int index = 0; index < 36; ++index) {
        values[index] = first + increment * static_cast<float>(index);
    }
    return HvSpectrum(values);
}

std::string Text(const Diagnostics::String& text)
{
    return text.CString();
}

std::array<float, 4> ChannelsOf(const HvColorVector& vector)
{
    return {vector[0], vector[1], vector[2], vector[3]};
}

int FirstFailedCheckBeforeAnyPaperWhite()
{
    HvMeasureConditions paper;
    paper.SetCondition("Colorimetric.WhiteBase", "Paper");
    HvMeasureConditions emission;
    emission.SetCondition("Colorimetric.Illumination", "Emission");
    HvSpectrum spectrum = Flat(0.5f);
    const HvColorVector untouched(1.0f, 2.0f, 3.0f, HvMeasureConditions());
    HvColorVector out = untouched;
    HvDensities densities;
    const std::function<bool()> checks[] = {
        [] {
            return WeightfactorCache::GetWeightfactors().IsNull() && WeightfactorCache::GetWhitePoint(0) == 0.0f &&
                WeightfactorCache::GetIllumination() == IlluminationTYPE(Illumination::D65) &&
                WeightfactorCache::GetObserver() == Observer::TwoDegree &&
                FailureText<Utilities::ExceptionNullpointer>([] { WeightfactorCache::GetWeights(0); }) ==
                "Failed to access to nullpointer.";
        },
        [&] {
            return !HasPaperWhite(HvMeasureConditions()) && !DivideByPaperWhite(spectrum) && spectrum == Flat(0.5f);
        },
        [] { return Text(GetPaperWhiteValueString()) == "Paper white: not present"; },
        [] {
            return FailureText<Utilities::ExceptionNullpointer>([] { GetPaperWhite(); }) ==
                "Failed to dereference nullpointer.";
        },
        [&] {
            return !GetXYZ(Flat(0.5f), paper, out) && out == untouched &&
                WeightfactorCache::GetWeightfactors().IsNull();
        },
        [&] { return CMetryFailure([&] { CMetryCalculator::GetVector(Flat(0.5f), paper); }) == "CMetryCalculator"; },
        [] { return CMetryFailure([] { GetDensity(Cyan(), HvMeasureConditions()); }) == "Missing WhiteReference"; },
        [&] { return CMetryFailure([&] { GetDensity(Cyan(), paper); }) == "Missing WhiteReference"; },
        [&] { return !GetRawDensities(Cyan(), DensityStandard::DIN, true, densities); },
        // Emission has no white to refer to, so the white base doesn't matter.
        [&] { return GetXYZ(CMetryTest::SpectrumOf(CMetryTest::tcs01, emission), paper, out); },
    };
    for (std::size_t check = 0; check < std::size(checks); ++check) {
        if (!checks[check]()) {
            return static_cast<int>(check) + 1;
        }
    }
    return 0;
}

}

TEST(Spectrum, NewSpectrumIsValidAndDarkAndOnlyPositiveValuesAreASignal)
{
    const HvSpectrum spectrum;
    EXPECT_TRUE(spectrum.IsValid());
    EXPECT_EQ(Flat(0.0f), spectrum);
    EXPECT_FALSE(spectrum.HasSignal());
    HvSpectrum faint;
    faint[20] = 0.001f;
    EXPECT_TRUE(faint.HasSignal());
    EXPECT_FALSE(Flat(-0.5f).HasSignal());
}

TEST(Spectrum, ConstructionFromVectorsAndArrays)
{
    HvMeasureConditions conditions;
    conditions.SetCondition("Colorimetric.Illumination", "A");
    const HvSpectrum ramp = Ramp(0.1f, 0.01f);
    const HvSpectrum fromVector(ramp.ToVector(), conditions);
    EXPECT_EQ(conditions, fromVector.Conditions());
    const HvSpectrum fromArray(ramp.GetValues(), conditions);
    EXPECT_EQ(fromVector, fromArray);
    EXPECT_NE(ramp, fromArray);

    // A longer Vector gives its first 36 values; a shorter one fails.
    Utilities::Vector<float> longer(40);
    for (unsigned long index = 0; index < 40; ++index) {
        longer[index] = static_cast<float>(index);
    }
    EXPECT_EQ(35.0f, HvSpectrum(longer)[35]);
    EXPECT_EQ("vector index >= vector size",
        FailureText<Utilities::ExceptionOutOfBound>([] { HvSpectrum(Utilities::Vector<float>(35)); }));
}

TEST(Spectrum, CopiesKeepTheValidFlagAndEqualityNeedsIt)
{
    HvSpectrum invalid = Ramp(0.2f, 0.01f);
    invalid.SetValid(false);
    const HvSpectrum copy(invalid);
    EXPECT_FALSE(copy.IsValid());
    EXPECT_EQ(invalid, copy);
    EXPECT_NE(Ramp(0.2f, 0.01f), invalid);

    HvSpectrum assigned;
    assigned = invalid;
    EXPECT_EQ(invalid, assigned);

    HvSpectrum other = Ramp(0.2f, 0.01f);
    other.Conditions().SetCondition("Colorimetric.Observer", "TenDegree");
    EXPECT_NE(Ramp(0.2f, 0.01f), other);
    EXPECT_EQ(Observer::TenDegree, other.GetConditions().GetObserver());
    other.SetConditions(HvMeasureConditions());
    EXPECT_EQ(Ramp(0.2f, 0.01f), other);
    other[35] = std::nextafter(other[35], 1.0f);
    EXPECT_NE(Ramp(0.2f, 0.01f), other);
}

TEST(Spectrum, WavelengthsAndIndicesOfTheGrid)
{
    const HvSpectrum spectrum;
    const std::pair<uint16_t, uint16_t> wavelengths[] = {{0, 380}, {1, 390}, {35, 730}, {36, 0}, {65535, 0}};
    for (const auto& [index, wavelength] : wavelengths) {
        EXPECT_EQ(wavelength, spectrum.GetWavelength(index)) << index;
    }
    const std::pair<uint16_t, uint16_t> indices[] = {
        {380, 0}, {385, 0}, {390, 1}, {725, 34}, {739, 35}, {740, 0}, {200, 0}, {800, 0}};
    for (const auto& [wavelength, index] : indices) {
        EXPECT_EQ(index, spectrum.GetIndex(wavelength)) << wavelength;
    }
    for (uint16_t index = 0; index < 36; ++index) {
        EXPECT_EQ(index, spectrum.GetIndex(spectrum.GetWavelength(index)));
    }
}

TEST(ColorVector, ChannelArithmeticCoversAllFourChannels)
{
    HvMeasureConditions conditions;
    const HvColorVector threeChannels(1.0f, 2.0f, 3.0f, conditions);
    EXPECT_EQ(0.0f, threeChannels[3]);
    EXPECT_EQ(HvColorVector(), HvColorVector(0.0f, 0.0f, 0.0f, HvMeasureConditions()));

    HvColorVector vector(3.0f, 4.0f, 0.0f, conditions);
    vector[3] = 12.0f;
    EXPECT_DOUBLE_EQ(13.0, vector.GetLength());

    HvColorVector other(1.0f, 1.5f, -2.0f, conditions);
    other[3] = 2.0f;
    HvColorVector difference = vector;
    difference.Subtract(other);
    EXPECT_EQ((std::array<float, 4>{2.0f, 2.5f, 2.0f, 10.0f}), ChannelsOf(difference));

    HvColorVector product = vector;
    product.Multiply(other);
    EXPECT_EQ((std::array<float, 4>{3.0f, 6.0f, -0.0f, 24.0f}), ChannelsOf(product));

    // The difference is rounded once, from double precision.
    HvColorVector small(1.0f, 0.0f, 0.0f, conditions);
    small.Subtract(HvColorVector(1e-8f, 0.0f, 0.0f, conditions));
    EXPECT_EQ(static_cast<float>(1.0 - static_cast<double>(1e-8f)), small[0]);
}

TEST(ColorVector, EqualityAndConditions)
{
    HvMeasureConditions xyz;
    xyz.SetCondition("ColorSpaceDescription.Type", "CIEXYZ");
    HvColorVector vector(1.0f, 2.0f, 3.0f, xyz);
    EXPECT_EQ(HvColorVector(1.0f, 2.0f, 3.0f, xyz), vector);
    EXPECT_NE(HvColorVector(1.0f, 2.0f, 3.0f, HvMeasureConditions()), vector);
    HvColorVector fourth = vector;
    fourth[3] = 1.0f;
    EXPECT_NE(vector, fourth);

    HvMeasureConditions polarized;
    polarized.SetCondition("Physical.Filter", "Polarizer");
    HvMeasureConditions lab;
    vector.SetConditions(lab, polarized);
    EXPECT_EQ("CIELab", std::string(vector.GetConditions().GetCondition("ColorSpaceDescription.Type").CString()));
    EXPECT_EQ(PhysicalFilter::Polarizer, vector.GetConditions().GetPhysicalFilter());
    vector.SetConditions(lab);
    EXPECT_EQ(PhysicalFilter::No, vector.GetConditions().GetPhysicalFilter());
}

TEST(ColorVector, SubclassesNameThemselvesInDiagnostics)
{
    const HvMeasureConditions conditions;
    EXPECT_EQ("HvXYZ: Values: 1, 2.5, 3, ...", Text(HvXYZ(1.0f, 2.5f, 3.0f, conditions).GetValueString()));
    EXPECT_EQ("HvLuv: Values: 50, 0.25, 0.5, ...", Text(HvLuv(50.0f, 0.25f, 0.5f, conditions).GetValueString()));
    EXPECT_EQ("HvColorVector: Values: 50, 0, 0, ...", Text(HvLab(50.0f, 0.0f, 0.0f, conditions).GetValueString()));
    const HvColorVector asVector = HvLCh(50.0f, 10.0f, 360.0f, conditions);
    EXPECT_EQ(360.0f, asVector[2]);
}

TEST(Sample, SpectraAreCopiedInOrder)
{
    HvSample sample;
    EXPECT_EQ(0u, sample.GetElementCount());
    HvSpectrum out = Flat(9.0f);
    EXPECT_FALSE(sample.GetSpectrum(HvMeasureConditions(), out));
    EXPECT_EQ(Flat(9.0f), out);

    HvSpectrum first = Flat(0.1f);
    sample.Add(first);
    sample.Add(Flat(0.2f));
    first[0] = 5.0f;
    HvMeasureConditions other;
    other.SetCondition("Colorimetric.Illumination", "A");
    ASSERT_TRUE(sample.GetSpectrum(other, out));
    EXPECT_EQ(Flat(0.1f), out);

    HvSample more;
    more.Add(Flat(0.3f));
    sample.Append(more);
    sample.Append(HvSample());
    EXPECT_EQ(3u, sample.GetElementCount());
    sample.Append(sample);
    ASSERT_EQ(6u, sample.GetElementCount());
    const float expected[] = {0.1f, 0.2f, 0.3f, 0.1f, 0.2f, 0.3f};
    int index = 0;
    for (auto spectrum = static_cast<const HvSample&>(sample).Begin(); spectrum.IsValid(); ++spectrum) {
        EXPECT_EQ(expected[index++], spectrum->GetValues()[0]);
    }
    EXPECT_EQ("MeasureValueList: Count of elements: 6", Text(sample.GetValueString()));
}

TEST(Sample, SamplesCompareByTheirFirstSpectra)
{
    HvSample a;
    HvSample b;
    EXPECT_EQ(a, b);
    a.Add(Flat(0.5f));
    EXPECT_NE(a, b);
    b.Add(Flat(0.5f));
    b.Add(Flat(0.7f));
    EXPECT_EQ(a, b);
    HvSample copy(b);
    EXPECT_EQ(2u, copy.GetElementCount());
    copy = a;
    EXPECT_EQ(1u, copy.GetElementCount());
}

// The paper white and the cache of weights live for the whole process and are never cleared, so
// what holds before either is first used is tested in a process of its own. The exit code is the
// number of the first check that failed.
TEST(PaperWhiteDeathTest, NothingNeedingAPaperWhiteIsComputedBeforeOneIsSet)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(std::exit(FirstFailedCheckBeforeAnyPaperWhite()), testing::ExitedWithCode(0), "");
}

TEST(PaperWhite, SpectraAreDividedByThePaperWhite)
{
    HvSpectrum paper = Ramp(0.5f, 0.01f);
    paper[10] = 0.0f;
    SetPaperWhite(paper);
    EXPECT_TRUE(HasPaperWhite(HvMeasureConditions()));
    EXPECT_EQ("Paper white: MeasureValueList: Count of elements: 1", Text(GetPaperWhiteValueString()));
    HvSpectrum first;
    ASSERT_TRUE(GetPaperWhite().GetSpectrum(HvMeasureConditions(), first));
    EXPECT_EQ(paper, first);

    HvSpectrum divided = paper;
    ASSERT_TRUE(DivideByPaperWhite(divided));
    for (uint16_t index = 0; index < 36; ++index) {
        if (index == 10) {
            EXPECT_TRUE(std::isnan(divided[index]));
        } else {
            EXPECT_EQ(1.0f, divided[index]) << index;
        }
    }

    float values[36];
    for (float& value : values) {
        value = 0.25f;
    }
    ASSERT_TRUE(DivideByPaperWhite(HvMeasureConditions(), values));
    EXPECT_EQ(std::numeric_limits<float>::infinity(), values[10]);
    EXPECT_EQ(static_cast<float>(0.25 / static_cast<double>(paper[20])), values[20]);

    SetPaperWhite(HvSpectrum());
    EXPECT_FALSE(HasPaperWhite(HvMeasureConditions()));
    SetPaperWhite(Flat(-1.0f));
    EXPECT_FALSE(HasPaperWhite(HvMeasureConditions()));
    SetPaperWhite(Flat(0.8f));
    EXPECT_TRUE(HasPaperWhite(HvMeasureConditions()));
    HvSpectrum half = Flat(0.4f);
    ASSERT_TRUE(DivideByPaperWhite(half));
    EXPECT_EQ(0.5f, half[0]);
}
