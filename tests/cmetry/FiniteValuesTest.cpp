#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "cmetry/CMetryCalculator.h"
#include "cmetry/HvMeasureConditions.h"
#include "utilities/String.h"

using CMetry::HvMeasureConditions;
using CMetry::HvSpectrum;
using CMetry::IlluminationTYPE;

namespace {

struct Named {
    std::string name;
    HvSpectrum spectrum;
};

HvSpectrum Flat(float value)
{
    HvSpectrum spectrum;
    for (uint16_t index = 0; index < 36; ++index) {
        spectrum[index] = value;
    }
    return spectrum;
}

// Black, black after the dark reading is taken off with a little noise, a spike in each band,
// and the perfect white.
std::vector<Named> Spectra()
{
    std::vector<Named> spectra = {{"black", Flat(0.0f)}, {"noisy black", Flat(-0.0005f)}, {"white", Flat(1.0f)}};
    for (uint16_t band = 0; band < 36; ++band) {
        HvSpectrum spike;
        spike[band] = 1.0f;
        spectra.push_back({"spike " + std::to_string(380 + 10 * band) + " nm", spike});
    }
    return spectra;
}

std::vector<IlluminationTYPE> Illuminations()
{
    using CMetry::Illumination;
    std::vector<IlluminationTYPE> illuminations;
    for (Illumination type : {Illumination::A, Illumination::B, Illumination::C, Illumination::D50, Illumination::D55,
             Illumination::D65, Illumination::D75, Illumination::Emission}) {
        illuminations.emplace_back(type);
    }
    for (uint8_t f = 1; f <= 12; ++f) {
        illuminations.push_back(IlluminationTYPE::Fluorescent(f));
    }
    return illuminations;
}

// No colour space may answer NaN or infinity, whatever the spectrum, illuminant or observer.
TEST(FiniteValues, EveryColourSpaceIsFiniteForBlackNoisyBlackSpikesAndWhiteUnderEveryCondition)
{
    const std::vector<Named> spectra = Spectra();
    const Utilities::Vector<Utilities::String> spaces =
        HvMeasureConditions::GetValidValues("ColorSpaceDescription.Type");
    for (const IlluminationTYPE& illumination : Illuminations()) {
        for (CMetry::Observer observer : {CMetry::Observer::TwoDegree, CMetry::Observer::TenDegree}) {
            HvMeasureConditions conditions;
            conditions.SetCondition("Colorimetric.WhiteBase", "Absolute");
            conditions.SetIllumination(illumination);
            conditions.SetObserver(observer);
            for (std::size_t space = 0; space < spaces.Size(); ++space) {
                if (spaces[space] == Utilities::String("CMYK")) {
                    continue; // no way from a spectrum
                }
                conditions.SetCondition("ColorSpaceDescription.Type", spaces[space]);
                for (const Named& named : spectra) {
                    SCOPED_TRACE(testing::Message()
                        << CMetry::ToString(illumination).CString() << ", observer " << static_cast<int>(observer)
                        << ", " << spaces[space].CString() << ", " << named.name);
                    const CMetry::HvColorVector vector =
                        CMetry::CMetryCalculator::GetVector(named.spectrum, conditions);
                    for (uint16_t channel = 0; channel < 4; ++channel) {
                        ASSERT_TRUE(std::isfinite(vector[channel])) << "channel " << channel;
                    }
                }
            }
        }
    }
}

// The perfect white is exactly neutral: no chroma, and the hue of a neutral.
TEST(FiniteValues, PerfectWhiteIsNeutralUnderEveryIlluminantAndObserver)
{
    for (const IlluminationTYPE& illumination : Illuminations()) {
        if (illumination.GetType() == CMetry::Illumination::Emission) {
            continue;
        }
        for (CMetry::Observer observer : {CMetry::Observer::TwoDegree, CMetry::Observer::TenDegree}) {
            SCOPED_TRACE(testing::Message()
                << CMetry::ToString(illumination).CString() << ", observer " << static_cast<int>(observer));
            HvMeasureConditions conditions;
            conditions.SetCondition("Colorimetric.WhiteBase", "Absolute");
            conditions.SetCondition("ColorSpaceDescription.Type", "CIELCh");
            conditions.SetIllumination(illumination);
            conditions.SetObserver(observer);
            const CMetry::HvColorVector lch = CMetry::CMetryCalculator::GetVector(Flat(1.0f), conditions);
            EXPECT_EQ(lch[1], 0.0f);
            EXPECT_EQ(lch[2], 360.0f);
        }
    }
}

}
