#include "cmetry/CorrelatedColorTemperature.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using CMetry::CorrelatedColorTemperature;
using CMetry::EmissionWeights;

namespace {

// The point at a distance duv from the locus at a temperature, along the normal that points up.
EmissionWeights::Uv OffTheLocus(double temperature, double duv)
{
    const EmissionWeights::Uv below = CorrelatedColorTemperature::LocusAt(temperature * (1.0 - 1e-6));
    const EmissionWeights::Uv above = CorrelatedColorTemperature::LocusAt(temperature * (1.0 + 1e-6));
    const EmissionWeights::Uv at = CorrelatedColorTemperature::LocusAt(temperature);
    const double length = std::hypot(above.u - below.u, above.v - below.v);
    double normalU = -(above.v - below.v) / length;
    double normalV = (above.u - below.u) / length;
    if (normalV < 0.0) {
        normalU = -normalU;
        normalV = -normalV;
    }
    return {at.u + duv * normalU, at.v + duv * normalV};
}

TEST(CorrelatedColorTemperature, FindsTemperatureAndDuvOfPointsOnAndOffTheLocusOverTheWholeRange)
{
    for (double temperature = 1000.0; temperature <= 100000.0 * 1.0001; temperature *= 1.25) {
        for (double duv : {-0.03, -0.01, -0.002, 0.0, 0.001, 0.002, 0.005, 0.03}) {
            SCOPED_TRACE(testing::Message() << temperature << " K, Duv " << duv);
            const auto result = CorrelatedColorTemperature::OfUv(OffTheLocus(temperature, duv));
            ASSERT_TRUE(result);
            EXPECT_NEAR(result->temperature, temperature, 1.0);
            EXPECT_NEAR(result->duv, duv, 1e-4);
        }
    }
}

TEST(CorrelatedColorTemperature, BlackBodySpectraGiveTheirTemperatureOnTheLocus)
{
    for (double temperature : {1000.0, 1500.0, 2856.0, 4000.0, 6500.0, 10000.0, 25000.0, 50000.0, 100000.0}) {
        SCOPED_TRACE(temperature);
        // As the instrument delivers it: in float, scaled to a peak of 1.
        const EmissionWeights::Values radiance = CorrelatedColorTemperature::BlackBody(temperature);
        const double peak = *std::max_element(radiance.begin(), radiance.end());
        EmissionWeights::Values measured;
        for (std::size_t index = 0; index < measured.size(); ++index) {
            measured[index] = static_cast<float>(radiance[index] / peak);
        }
        const auto result = CorrelatedColorTemperature::Of(measured);
        ASSERT_TRUE(result);
        EXPECT_NEAR(result->temperature, temperature, 1.0);
        EXPECT_NEAR(result->duv, 0.0, 1e-4);
    }
}

EmissionWeights::Uv FromXy(double x, double y)
{
    const double denominator = -2.0 * x + 12.0 * y + 3.0;
    return {4.0 * x / denominator, 6.0 * y / denominator};
}

TEST(CorrelatedColorTemperature, PublishedChromaticitiesOfCieIlluminantsGiveTheirPublishedValues)
{
    const auto a = CorrelatedColorTemperature::OfUv(FromXy(0.44757, 0.40745));
    ASSERT_TRUE(a);
    EXPECT_NEAR(a->temperature, 2856.0, 1.0);
    EXPECT_NEAR(a->duv, 0.0, 0.5e-4);
    const auto d65 = CorrelatedColorTemperature::OfUv(FromXy(0.31271, 0.32902));
    ASSERT_TRUE(d65);
    EXPECT_NEAR(d65->temperature, 6504.0, 1.0);
    EXPECT_NEAR(d65->duv, 0.0032, 0.5e-4);
}

TEST(CorrelatedColorTemperature, LightsBeyondTheRangeOrWithoutChromaticityHaveNone)
{
    EXPECT_FALSE(CorrelatedColorTemperature::OfUv(CorrelatedColorTemperature::LocusAt(900.0)));
    EXPECT_FALSE(CorrelatedColorTemperature::OfUv({0.1, 0.2}));
    EXPECT_FALSE(CorrelatedColorTemperature::Of(EmissionWeights::Values{}));
}

}
