#include <gtest/gtest.h>

#include "cmetry/Density.h"
#include "manager/pavilo/DensityScanning_V1_Impl.h"
#include "tests/cmetry/ColourSamples.h"
#include "tests/manager/pavilo/FakeScanning.h"

namespace {

using CMetryTest::Flat;
using HviManager::PaviloDriver::DensityScanning_V1_Impl;
using ScanningTest::FakeScanning;

class DensityScanningTest : public ::testing::Test {
protected:
    DensityScanningTest()
        : fake(new FakeScanning), densities(Utilities::SmartPointer<DeviceDriver::RemissionHandle>(),
                                      Utilities::SmartPointer<HviManager::SpecPhotoMeterScanning_V1>(fake))
    {
        fake->patches.Add(Flat(0.1f));
        fake->patches.Add(Flat(0.5f));
        fake->raw.Add(Flat(0.3f));
        CMetry::HvMeasureConditions absolute = densities.GetMeasureConditions();
        absolute.SetCondition("Colorimetric.WhiteBase", "Absolute");
        densities.SetMeasureConditions(absolute);
    }

    FakeScanning* fake;
    DensityScanning_V1_Impl densities;
};

TEST_F(DensityScanningTest, RecognisesOncePerScanAndReadsThePatchesUnderTheLatestConditions)
{
    densities.Measure(7);
    EXPECT_EQ(fake->lastCount, 7);
    const Utilities::List<float> first = densities.GetRecognizedDensities();
    ASSERT_EQ(first.Size(), 2u);
    EXPECT_FLOAT_EQ(first.Begin().Current(), CMetry::GetDensity(Flat(0.1f), densities.GetMeasureConditions()));
    EXPECT_EQ(densities.GetDensities().Size(), 1u);

    fake->patches.Add(Flat(0.9f));
    CMetry::HvMeasureConditions conditions = densities.GetMeasureConditions();
    conditions.SetCondition("Colorimetric.Illumination", "D65");
    densities.SetMeasureConditions(conditions);
    EXPECT_EQ(fake->conditions, conditions);
    EXPECT_EQ(densities.GetRecognizedDensities().Size(), 2u);
    EXPECT_EQ(fake->recognitions, 1);

    densities.Measure(-1);
    EXPECT_EQ(densities.GetRecognizedDensities().Size(), 3u);
    EXPECT_EQ(fake->recognitions, 2);
}

TEST_F(DensityScanningTest, TakesTheConditionsOfTheCalibration)
{
    EXPECT_EQ(densities.GetMeasureConditions().GetCondition("Colorimetric.Illumination"), "D50");
    EXPECT_EQ(fake->conditions, densities.GetMeasureConditions());
    fake->conditions.SetCondition("Physical.Filter", "UVCut");
    densities.Calibrate();
    EXPECT_EQ(fake->calibrations, 1);
    EXPECT_EQ(densities.GetMeasureConditions(), fake->conditions);
    EXPECT_EQ(densities.GetValueString(), "Pavilo DensityScanning");
}

}
