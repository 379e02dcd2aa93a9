#include "cmetry/Density.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <string>

#include "cmetry/DensityCorrection.h"
#include "cmetry/PaperWhite.h"
#include "cmetry/UserFilters.h"
#include "tests/cmetry/ColourSamples.h"
#include "utilities/ExceptionOutOfBound.h"

using namespace CMetryTest;
using CMetry::DensityFilterMode;
using CMetry::DensityStandard;
using CMetry::DensityValues;
using CMetry::HvDensities;
using CMetry::HvMeasureConditions;
using CMetry::HvSpectrum;
using Utilities::SmartPointer;
using Utilities::String;
using Utilities::Vector;

namespace {

HvMeasureConditions Conditions(const char* whiteBase, const char* mode = "Auto", const char* standard = "DIN")
{
    HvMeasureConditions conditions;
    conditions.SetCondition("Colorimetric.WhiteBase", whiteBase);
    conditions.SetCondition("Colorimetric.DensityFilterMode", mode);
    conditions.SetCondition("Colorimetric.DensityStandard", standard);
    return conditions;
}

SmartPointer<Vector<float>> Four(float black, float cyan, float magenta, float yellow)
{
    SmartPointer<Vector<float>> values(new Vector<float>(4));
    (*values)[0] = black;
    (*values)[1] = cyan;
    (*values)[2] = magenta;
    (*values)[3] = yellow;
    return values;
}

class DensityTest : public testing::Test {
protected:
    void TearDown() override { CMetry::DensityCorrection::Reset(); }
};

}

TEST_F(DensityTest, FlatSpectraGiveEqualDensitiesUnderEveryStandard)
{
    for (DensityStandard standard : {DensityStandard::DIN, DensityStandard::DINNB, DensityStandard::ANSIA,
             DensityStandard::ANSIT, DensityStandard::SPI}) {
        HvDensities white;
        ASSERT_TRUE(CMetry::GetRawDensities(Flat(1.0f), standard, false, white));
        HvDensities grey;
        ASSERT_TRUE(CMetry::GetCorrectedDensities(Flat(0.1f), standard, false, grey));
        for (int channel = 0; channel < 4; ++channel) {
            const auto mode = static_cast<DensityFilterMode>(channel);
            EXPECT_NEAR(0.0f, white.GetValue(mode), 1e-4) << static_cast<int>(standard) << " " << channel;
            EXPECT_NEAR(1.0f, grey.GetValue(mode), 1e-4) << static_cast<int>(standard) << " " << channel;
        }
        EXPECT_EQ(standard, grey.GetStandard());
        EXPECT_EQ(standard, grey.GetFilters()->GetStandard());
        EXPECT_EQ(0.0f, grey.GetValue(DensityFilterMode::Max));
    }
    EXPECT_FLOAT_EQ(1.0f, CMetry::GetDensity(Flat(0.1f), Conditions("Absolute", "Cyan", "ANSIT")));
}

TEST_F(DensityTest, EachStandardReadsItsOwnBand)
{
    HvSpectrum sample = Flat(0.5f);
    sample[24] = 0.02f; // 620 nm
    float density = 0.0f;
    DensityFilterMode channel = DensityFilterMode::Cyan;
    ASSERT_TRUE(CMetry::GetDensityValue(sample, DensityStandard::DINNB, false, density, channel, false));
    EXPECT_FLOAT_EQ(static_cast<float>(-std::log10(0.02)), density);
    ASSERT_TRUE(CMetry::GetDensityValue(sample, DensityStandard::DIN, false, density, channel, false));
    EXPECT_NEAR(-std::log10(0.5 - 20.0 / 74.0 * 0.48), density, 1e-5);
    channel = DensityFilterMode::Magenta;
    ASSERT_TRUE(CMetry::GetDensityValue(sample, DensityStandard::DIN, false, density, channel, false));
    EXPECT_NEAR(-std::log10(0.5), density, 1e-5);
    channel = DensityFilterMode::Cyan;
    ASSERT_TRUE(CMetry::GetDensityValue(sample, DensityStandard::SPI, false, density, channel, false));
    EXPECT_NEAR(-std::log10(0.5 - 0.468679 * 0.48), density, 1e-5);
}

TEST_F(DensityTest, AutomaticSelectionPrefersBlackForNeutralColours)
{
    EXPECT_EQ(DensityFilterMode::Cyan, CMetry::SelectFilter(DensityValues{1.0f, 1.4f, 0.2f, 0.1f}));
    EXPECT_EQ(DensityFilterMode::Black, CMetry::SelectFilter(DensityValues{0.9f, 1.0f, 0.9f, 0.8f}));
    EXPECT_EQ(DensityFilterMode::Black, CMetry::SelectFilter(DensityValues{0.005f, 0.009f, 0.001f, 0.0f}));
    EXPECT_EQ(DensityFilterMode::Magenta, CMetry::SelectFilter(DensityValues{0.5f, 0.3f, 1.2f, 0.3f}));
    EXPECT_EQ(DensityFilterMode::Black, CMetry::SelectFilter(DensityValues{1.5f, 1.4f, 0.2f, 0.1f}));
    const auto sorted = CMetry::SortColorChannels(DensityValues{0.0f, 0.3f, 0.7f, 0.3f});
    EXPECT_EQ(DensityFilterMode::Magenta, sorted[0]);
    EXPECT_EQ(DensityFilterMode::Cyan, sorted[1]);
    EXPECT_EQ(DensityFilterMode::Yellow, sorted[2]);
    const HvSpectrum cyan = Cyan();
    EXPECT_EQ(String("Cyan"), CMetry::GetDensityFilter(cyan, Conditions("Absolute")));
    EXPECT_EQ(String("Cyan"), CMetry::GetDensityFilter(cyan, Conditions("Absolute", "Max")));
    EXPECT_EQ(
        CMetry::GetDensity(cyan, Conditions("Absolute", "Cyan")), CMetry::GetDensity(cyan, Conditions("Absolute")));
    EXPECT_EQ(
        CMetry::GetDensity(cyan, Conditions("Absolute")), CMetry::GetDensity(cyan, Conditions("Absolute", "Max")));
    EXPECT_EQ(String("Black"), CMetry::GetDensityFilter(Flat(0.3f), Conditions("Absolute")));
    EXPECT_EQ(String("Yellow"), CMetry::GetDensityFilter(cyan, Conditions("Absolute", "Yellow")));
}

TEST_F(DensityTest, BlackSpectrumHasNoDensityInAFixedChannel)
{
    EXPECT_EQ("Calculation of Density failed",
        CMetryFailure([] { CMetry::GetDensity(Flat(0.0f), Conditions("Absolute", "Cyan")); }));
    EXPECT_FLOAT_EQ(11.99f, CMetry::GetDensity(Flat(0.0f), Conditions("Absolute")));
    EXPECT_EQ(String("Black"), CMetry::GetDensityFilter(Flat(0.0f), Conditions("Absolute")));
    float density = 0.0f;
    DensityFilterMode channel = DensityFilterMode::Cyan;
    EXPECT_FALSE(CMetry::GetDensityValue(Flat(0.5f), DensityStandard::Undefined, false, density, channel, false));
    EXPECT_EQ(9.99f, density);
    EXPECT_EQ(DensityFilterMode::Undefined, channel);
    channel = DensityFilterMode::Max;
    EXPECT_THROW(CMetry::GetDensityValue(Flat(0.5f), DensityStandard::DIN, false, density, channel, false),
        Utilities::ExceptionOutOfBound);
}

TEST_F(DensityTest, PaperRelativeDensitiesSubtractThePaper)
{
    HvSpectrum paper = Flat(0.9f);
    paper[5] = 0.8f;
    CMetry::SetPaperWhite(paper);
    for (const char* whiteBase : {"Paper", "Automatic"}) {
        for (const char* mode : {"Black", "Cyan", "Magenta", "Yellow"}) {
            EXPECT_NEAR(0.0f, CMetry::GetDensity(paper, Conditions(whiteBase, mode)), 1e-6) << whiteBase << mode;
        }
    }
    const HvSpectrum cyan = Cyan();
    float absolute = 0.0f;
    float relative = 0.0f;
    DensityFilterMode channel = DensityFilterMode::Cyan;
    ASSERT_TRUE(CMetry::GetDensityValue(cyan, DensityStandard::DIN, false, absolute, channel, false));
    ASSERT_TRUE(CMetry::GetDensityValue(cyan, DensityStandard::DIN, true, relative, channel, false));
    EXPECT_NEAR(absolute + std::log10(0.9), relative, 1e-5);

    CMetry::SetPaperWhite(Flat(0.0f));
    EXPECT_EQ("Calculation of Density failed", CMetryFailure([] { CMetry::GetDensity(Cyan(), Conditions("Paper")); }));
    EXPECT_EQ(String("Undefined"), CMetry::GetDensityFilter(cyan, Conditions("Paper")));
}

TEST_F(DensityTest, CorrectionFactorsAlwaysAndOffsetsOnlyForAbsoluteDensities)
{
    CMetry::SetPaperWhite(Flat(1.0f));
    HvMeasureConditions select = Conditions("Absolute", "Auto", "DIN");
    select.SetCondition("Physical.Filter", "UVCut");
    CMetry::SetDensityCorrection(select, Four(1.0f, 2.0f, 1.0f, 1.0f), Four(0.0f, 0.5f, 0.0f, 0.0f));

    HvSpectrum filtered = Cyan();
    filtered.Conditions().SetCondition("Physical.Filter", "UVCut");
    const float plain = CMetry::GetDensity(Cyan(), Conditions("Absolute", "Cyan"));
    EXPECT_NEAR(plain * 2.0f + 0.5f, CMetry::GetDensity(filtered, Conditions("Absolute", "Cyan")), 1e-5);
    EXPECT_NEAR(plain * 2.0f, CMetry::GetDensity(filtered, Conditions("Paper", "Cyan")), 1e-5);
    EXPECT_NEAR(plain,
        CMetry::GetDensity(filtered, Conditions("Absolute", "Cyan", "ANSIA")) -
            CMetry::GetDensity(Cyan(), Conditions("Absolute", "Cyan", "ANSIA")) + plain,
        1e-6);

    SmartPointer<Vector<float>> factors;
    SmartPointer<Vector<float>> offsets;
    CMetry::GetDensityCorrection(select, factors, offsets);
    EXPECT_EQ(2.0f, (*factors)[1]);
    EXPECT_EQ(0.5f, (*offsets)[1]);

    HvMeasureConditions everything = Conditions("Absolute");
    everything.SetCondition("Physical.Filter", "Undefined");
    everything.SetCondition("Colorimetric.DensityStandard", "Undefined");
    CMetry::SetDensityCorrection(everything, SmartPointer<Vector<float>>(), Four(0.1f, 0.1f, 0.1f, 0.1f));
    CMetry::GetDensityCorrection(Conditions("Absolute", "Auto", "SPI"), factors, offsets);
    EXPECT_EQ(1.0f, (*factors)[1]);
    EXPECT_EQ(0.1f, (*offsets)[3]);

    SmartPointer<Vector<float>> tooShort(new Vector<float>(3));
    EXPECT_THROW(
        CMetry::SetDensityCorrection(select, tooShort, SmartPointer<Vector<float>>()), Utilities::ExceptionOutOfBound);
    CMetry::GetDensityCorrection(select, factors, offsets);
    EXPECT_EQ(0.1f, (*offsets)[1]);
}

TEST_F(DensityTest, UserFiltersReachTheSetWhenTheStandardChanges)
{
    Vector<HvSpectrum> filters(4);
    for (unsigned long channel = 0; channel < 4; ++channel) {
        filters[channel] = Flat(0.0f);
        filters[channel][static_cast<uint16_t>(10 + channel)] = 1.0f;
    }
    CMetry::SetUserFilters(filters);
    EXPECT_EQ(1.0f, CMetry::GetUserFilters()[3][13]);
    HvSpectrum sample = Flat(1.0f);
    sample[10] = 0.01f;
    sample[11] = 0.1f;
    HvDensities densities;
    ASSERT_TRUE(CMetry::GetRawDensities(sample, DensityStandard::DIN, false, densities));
    ASSERT_TRUE(CMetry::GetRawDensities(sample, DensityStandard::User, false, densities));
    EXPECT_NEAR(4.0f, densities.GetValue(DensityFilterMode::Black), 1e-5);
    EXPECT_NEAR(1.0f, densities.GetValue(DensityFilterMode::Cyan), 1e-5);
    EXPECT_NEAR(0.0f, densities.GetValue(DensityFilterMode::Magenta), 1e-6);

    filters[1] = Flat(0.0f);
    filters[1][10] = 1.0f;
    CMetry::SetUserFilters(filters);
    ASSERT_TRUE(CMetry::GetRawDensities(sample, DensityStandard::User, false, densities));
    EXPECT_NEAR(1.0f, densities.GetValue(DensityFilterMode::Cyan), 1e-5);
    ASSERT_TRUE(CMetry::GetRawDensities(sample, DensityStandard::SPI, false, densities));
    ASSERT_TRUE(CMetry::GetRawDensities(sample, DensityStandard::User, false, densities));
    EXPECT_NEAR(2.0f, densities.GetValue(DensityFilterMode::Cyan), 1e-5);

    Vector<HvSpectrum> three(3);
    EXPECT_THROW(CMetry::SetUserFilters(three), Utilities::ExceptionOutOfBound);
    EXPECT_EQ(1.0f, CMetry::GetUserFilters()[1][10]);
}

TEST_F(DensityTest, SpectralAndPeakDensities)
{
    HvSpectrum sample = Flat(0.5f);
    sample[0] = 0.0f; // 380 nm, outside the peak search
    sample[4] = 0.1f; // 420 nm
    sample[29] = 0.1f; // 670 nm, as low and nearer the middle
    sample[30] = 0.1f; // 680 nm, as low but farther
    std::array<float, 36> spectral;
    ASSERT_TRUE(CMetry::GetSpectralDensities(sample, false, spectral.data()));
    EXPECT_EQ(9.99f, spectral[0]);
    EXPECT_FLOAT_EQ(1.0f, spectral[4]);
    EXPECT_NEAR(-std::log10(0.5), spectral[20], 1e-6);
    float density = 0.0f;
    uint16_t wavelength = 0;
    ASSERT_TRUE(CMetry::GetPeakDensity(sample, false, density, wavelength));
    EXPECT_FLOAT_EQ(1.0f, density);
    EXPECT_EQ(670, wavelength);
    sample[2] = 0.05f; // 400 nm, below the search range
    sample[3] = 0.08f; // 410 nm, its first point
    ASSERT_TRUE(CMetry::GetPeakDensity(sample, false, density, wavelength));
    EXPECT_EQ(410, wavelength);

    CMetry::SetPaperWhite(Flat(0.5f));
    ASSERT_TRUE(CMetry::GetSpectralDensities(sample, true, spectral.data()));
    EXPECT_NEAR(0.0f, spectral[20], 1e-6);
    ASSERT_TRUE(CMetry::GetPeakDensity(sample, true, density, wavelength));
    EXPECT_NEAR(-std::log10(0.16), density, 1e-5);
}
