#include <gtest/gtest.h>

#include "cmetry/CMetryCalculator.h"
#include "manager/pavilo/TristPhotoMeterScanning_V1_Impl.h"
#include "tests/cmetry/ColourSamples.h"
#include "tests/manager/pavilo/FakeScanning.h"

namespace {

using CMetryTest::Flat;
using HviManager::PaviloDriver::TristPhotoMeterScanning_V1_Impl;
using ScanningTest::FakeScanning;

TEST(TristPhotoMeterScanningTest, GivesTheVectorsOfTheSpectraUnderTheScanningConditions)
{
    FakeScanning* fake = new FakeScanning;
    Utilities::SmartPointer<HviManager::SpecPhotoMeterScanning_V1> scanning(fake);
    fake->patches.Add(Flat(0.2f));
    fake->patches.Add(Flat(0.8f));
    fake->raw.Add(Flat(0.5f));
    TristPhotoMeterScanning_V1_Impl tristimulus(scanning);

    CMetry::HvMeasureConditions conditions;
    conditions.SetCondition("ColorSpaceDescription.Type", "CIEXYZ");
    tristimulus.SetConditions(conditions);
    EXPECT_EQ(tristimulus.GetConditions(), fake->conditions);

    tristimulus.Measure(12);
    EXPECT_EQ(fake->lastCount, 12);
    const Utilities::List<CMetry::HvColorVector> patches = tristimulus.GetRecognizedColorVectors();
    ASSERT_EQ(patches.Size(), 2u);
    auto first = patches.Begin();
    EXPECT_EQ(first.Current(), CMetry::CMetryCalculator::GetVector(Flat(0.2f), conditions));
    const float darkY = first.Current()[1];
    ++first;
    EXPECT_LT(darkY, first.Current()[1]);
    EXPECT_EQ(tristimulus.GetColorVectors().Size(), 1u);
}

}
