#include "cmetry/Ciede2000.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "cmetry/CMetryCalculator.h"
#include "cmetry/ExceptionCMetry.h"

using CMetry::Ciede2000;

namespace {

constexpr Ciede2000::Factors reference{1.0, 1.0, 1.0};

struct Pair {
    int number;
    Ciede2000::Lab standard;
    Ciede2000::Lab sample;
    double published;
};

// The table as Sharma, Wu and Dalal (2005) publish it, comment lines and header skipped.
std::vector<Pair> SharmaPairs()
{
    std::ifstream file(ORBEL_TEST_DATA "/cmetry/data/ciede2000-sharma2005.csv");
    std::vector<Pair> pairs;
    std::string line;
    while (std::getline(file, line)) {
        if (line.empty() || line[0] == '#' || line.rfind("pair", 0) == 0) {
            continue;
        }
        std::replace(line.begin(), line.end(), ',', ' ');
        std::istringstream fields(line);
        Pair pair{};
        fields >> pair.number >> pair.standard.l >> pair.standard.a >> pair.standard.b >> pair.sample.l >>
            pair.sample.a >> pair.sample.b >> pair.published;
        pairs.push_back(pair);
    }
    return pairs;
}

TEST(Ciede2000, GivesThePublishedDifferenceOfEverySharmaPairToFourDecimalsBothWays)
{
    const std::vector<Pair> pairs = SharmaPairs();
    ASSERT_EQ(pairs.size(), 34u);
    for (const Pair& pair : pairs) {
        SCOPED_TRACE(pair.number);
        EXPECT_NEAR(Ciede2000::Difference(pair.standard, pair.sample, reference), pair.published, 0.5e-4);
        EXPECT_NEAR(Ciede2000::Difference(pair.sample, pair.standard, reference), pair.published, 0.5e-4);
    }
}

TEST(Ciede2000, ParametricFactorsDivideTheirTermAndSpectraTakeTheFormulaByName)
{
    const Ciede2000::Lab grey{50.0, 0.0, 0.0};
    const Ciede2000::Lab lighter{60.0, 0.0, 0.0};
    EXPECT_NEAR(Ciede2000::Difference(grey, lighter, {2.0, 1.0, 1.0}),
        Ciede2000::Difference(grey, lighter, reference) / 2.0, 1e-12);

    CMetry::HvMeasureConditions conditions;
    conditions.SetCondition("ColorSpaceDescription.DeltaEFormula", "CIEDE2000");
    conditions.SetCondition("ColorSpaceDescription.Type", "CIELab");
    conditions.SetCondition("Colorimetric.WhiteBase", "Absolute");
    CMetry::HvSpectrum white;
    CMetry::HvSpectrum red;
    for (uint16_t index = 0; index < 36; ++index) {
        white[index] = 0.9f;
        red[index] = index < 22 ? 0.05f : 0.7f;
    }
    const CMetry::HvColorVector whiteLab = CMetry::CMetryCalculator::GetVector(white, conditions);
    const CMetry::HvColorVector redLab = CMetry::CMetryCalculator::GetVector(red, conditions);
    const double expected = Ciede2000::Difference(
        {whiteLab[0], whiteLab[1], whiteLab[2]}, {redLab[0], redLab[1], redLab[2]}, {1.0, 1.0, 1.0});
    EXPECT_NEAR(CMetry::CMetryCalculator::GetDeltaE(white, red, conditions, 1.0f, 1.0f, 1.0f), expected, 1e-4);
    EXPECT_NEAR(CMetry::CMetryCalculator::GetDeltaE(whiteLab, redLab, 1.0f, 1.0f, 1.0f), expected, 1e-3);
    EXPECT_THROW(
        CMetry::CMetryCalculator::GetDeltaE(white, red, conditions, 1.0f, 0.0f, 1.0f), CMetry::ExceptionCMetry);
}

}
