#include <gtest/gtest.h>

#include <bit>
#include <random>
#include <vector>

#include "cmetry/CMetryCalculator.h"
#include "cmetry/ColorDifference.h"
#include "cmetry/Density.h"
#include "cmetry/PaperWhite.h"
#include "cmetry/SpectrumBatch.h"
#include "tests/cmetry/ColourSamples.h"
#include "utilities/ExceptionOutOfBound.h"

using CMetry::HvMeasureConditions;
using CMetry::HvSpectrum;
using CMetry::SpectrumBatch;
using CMetryTest::Reflectance;

namespace {

constexpr std::size_t width = SpectrumBatch::valuesPerSpectrum;

// The CIE samples, then random spectra from black to a little above white: 43 in all, so that the
// batch's blocks of spectra end with a remainder.
std::vector<float> Spectra()
{
    std::vector<float> spectra;
    for (const Reflectance& sample :
        {CMetryTest::tcs01, CMetryTest::tcs03, CMetryTest::tcs05, CMetryTest::tcs09, CMetryTest::tcs12}) {
        spectra.insert(spectra.end(), sample.begin(), sample.end());
    }
    std::mt19937 generator(23);
    std::uniform_real_distribution<float> reflectance(0.0f, 1.05f);
    for (std::size_t value = 0; value < 38 * width; ++value) {
        spectra.push_back(reflectance(generator));
    }
    return spectra;
}

// Equal to the bit, so that a NaN equals a NaN and 0 differs from -0.
void ExpectSameBits(const std::vector<float>& expected, const std::vector<float>& actual, const std::string& what)
{
    ASSERT_EQ(expected.size(), actual.size());
    for (std::size_t index = 0; index < expected.size(); ++index) {
        ASSERT_EQ(std::bit_cast<uint32_t>(expected[index]), std::bit_cast<uint32_t>(actual[index]))
            << what << " at " << index << ": " << expected[index] << " against " << actual[index];
    }
}

std::vector<float> OneByOne(const std::vector<float>& spectra, const HvMeasureConditions& conditions)
{
    std::vector<float> vectors;
    for (std::size_t index = 0; index < spectra.size() / width; ++index) {
        const CMetry::HvColorVector vector =
            CMetry::CMetryCalculator::GetVector(HvSpectrum(&spectra[index * width], conditions), conditions);
        vectors.insert(vectors.end(), {vector[0], vector[1], vector[2]});
    }
    return vectors;
}

constexpr const char* illuminations[] = {
    "A", "B", "C", "D75", "D65", "D55", "D50", "F2", "F3", "F7", "F11", "Dxx, Temperature:6000", "Emission"};

class SpectrumBatchTest : public testing::TestWithParam<const char*> {
protected:
    void SetUp() override { CMetry::SetPaperWhite(HvSpectrum(CMetryTest::tcs09.data())); }
};

// Every illuminant and observer, white base absolute and paper-relative, in one colour space each.
TEST_P(SpectrumBatchTest, GivesTheBitsOfEachSpectrumAlone)
{
    const std::vector<float> spectra = Spectra();
    for (const char* illumination : illuminations) {
        for (const char* observer : {"TwoDegree", "TenDegree"}) {
            for (const char* whiteBase : {"Absolute", "Paper"}) {
                HvMeasureConditions conditions;
                conditions.SetCondition("ColorSpaceDescription.Type", GetParam());
                conditions.SetCondition("Colorimetric.Illumination", illumination);
                conditions.SetCondition("Colorimetric.Observer", observer);
                conditions.SetCondition("Colorimetric.WhiteBase", whiteBase);
                std::vector<float> batch(spectra.size() / width * SpectrumBatch::valuesPerResult);
                SpectrumBatch(conditions).GetVectors(spectra, batch);
                ExpectSameBits(
                    OneByOne(spectra, conditions), batch, std::string(illumination) + " " + observer + " " + whiteBase);
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(ColorSpaces, SpectrumBatchTest,
    testing::Values("CIEXYZ", "CIELab", "CIELCh", "CIELuv", "HunterLab", "CIExyY", "LABmg"));

TEST(SpectrumBatch, DensitiesAndDifferencesAreThoseOfEachSpectrumAlone)
{
    const std::vector<float> spectra = Spectra();
    HvMeasureConditions conditions;
    conditions.SetCondition("Colorimetric.WhiteBase", "Absolute");
    const SpectrumBatch batch(conditions);
    const std::size_t count = spectra.size() / width;
    std::vector<float> densities(count);
    std::vector<float> differences(count);
    batch.GetDensities(spectra, densities);
    batch.GetDeltaE(CMetryTest::tcs05.data(), spectra, differences);
    std::vector<float> expectedDensities;
    std::vector<float> expectedDifferences;
    for (std::size_t index = 0; index < count; ++index) {
        const HvSpectrum spectrum(&spectra[index * width], conditions);
        expectedDensities.push_back(CMetry::GetDensity(spectrum, conditions));
        expectedDifferences.push_back(CMetry::ColorDifference::GetDeltaE(
            HvSpectrum(CMetryTest::tcs05.data(), conditions), spectrum, conditions, 1.0f, 1.0f, 1.0f));
    }
    ExpectSameBits(expectedDensities, densities, "density");
    ExpectSameBits(expectedDifferences, differences, "delta E");
}

TEST(SpectrumBatchFailure, CountsThatDontFitAreRefusedAndNothingIsWritten)
{
    const SpectrumBatch batch{HvMeasureConditions()};
    std::vector<float> spectra(2 * width + 1, 0.5f);
    std::vector<float> results(6, -1.0f);
    EXPECT_THROW(batch.GetXYZ(spectra, results), Utilities::ExceptionOutOfBound);
    spectra.resize(2 * width);
    results.resize(3);
    EXPECT_THROW(batch.GetLab(spectra, results), Utilities::ExceptionOutOfBound);
    EXPECT_EQ(std::vector<float>(3, -1.0f), results);
}

}
