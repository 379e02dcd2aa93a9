#include <gtest/gtest.h>

#include "cmetry/HvMeasureConditions.h"
#include "driver/RemissionHandle.h"
#include "manager/pavilo/DensityReflectance_V1_Impl.h"
#include "manager/pavilo/SpecPhotoMeterReflectance_V1_Impl.h"
#include "manager/pavilo/TristPhotoMeterReflectance_V1_Impl.h"
#include "tests/manager/pavilo/PaviloHandleFixture.h"

namespace HviManagerTest {

using CMetry::HvMeasureConditions;
using DeviceDriver::RemissionHandle;
using HviManager::SpecPhotoMeterReflectance_V1;
using HviManager::PaviloDriver::DensityReflectance_V1_Impl;
using HviManager::PaviloDriver::SpecPhotoMeterReflectance_V1_Impl;
using HviManager::PaviloDriver::TristPhotoMeterReflectance_V1_Impl;
using Utilities::SmartPointer;

class ReflectanceInterfacesTest : public PaviloHandleFixture { };

TEST_F(ReflectanceInterfacesTest, UvCutFilterIsReportedAfterConstructionAndEachCalibration)
{
    RestartWithUvCut();
    SpecPhotoMeterReflectance_V1_Impl reflectance(OpenHandle<RemissionHandle>());
    EXPECT_EQ(reflectance.GetMeasureConditions().GetCondition("Physical.Filter"), "UVCut");
    EXPECT_EQ(reflectance.GetConditions().GetCondition("Colorimetric.Illumination"), "D50");

    reflectance.SetMeasureConditions(HvMeasureConditions());
    EXPECT_EQ(reflectance.GetMeasureConditions().GetCondition("Colorimetric.Illumination"), "D65");
    EXPECT_NE(reflectance.GetMeasureConditions().GetCondition("Physical.Filter"), "UVCut");

    reflectance.Calibrate();
    EXPECT_EQ(reflectance.GetMeasureConditions().GetCondition("Physical.Filter"), "UVCut");
}

TEST_F(ReflectanceInterfacesTest, MeasuresOnTheStoredWhiteWithTheItemsOfAReflectanceMeasurement)
{
    SmartPointer<SpecPhotoMeterReflectance_V1> reflectance(
        new SpecPhotoMeterReflectance_V1_Impl(OpenHandle<RemissionHandle>()));
    EXPECT_NE(reflectance->GetMeasureConditions().GetCondition("Physical.Filter"), "UVCut");
    reflectance->Measure();
    EXPECT_EQ(Parameter("count"), 4);
    EXPECT_EQ(Parameter("flags") & (lampOffFlag | lowGainFlag | lampOnAfterFlag), lowGainFlag);
    const auto spectrum = reflectance->GetSample();
    EXPECT_TRUE(spectrum.IsValid());
    EXPECT_TRUE(spectrum.HasSignal());
    EXPECT_EQ(spectrum.Conditions().GetCondition("Colorimetric.Illumination"), "D50");

    TristPhotoMeterReflectance_V1_Impl tristimulus(reflectance);
    tristimulus.Measure();
    const auto vector = tristimulus.GetColorVector();
    EXPECT_GT(vector[0], 0.0f);
}

TEST_F(ReflectanceInterfacesTest, AFailedMeasurementReleasesTheLockAndSaysWhy)
{
    const auto handle = OpenHandle<RemissionHandle>();
    SpecPhotoMeterReflectance_V1_Impl reflectance(handle);
    sim.Command({"fault", "bulk-timeout", "--count", "10"});
    const std::string failure = FailureText([&] { reflectance.Measure(); });
    EXPECT_EQ(failure, handle->GetLastError().ToStdString());
    EXPECT_NE(failure, "no failure");
    EXPECT_TRUE(LockIsFreeForOtherThreads(handle));
}

TEST_F(ReflectanceInterfacesTest, ObjectsOnOneHandleWaitForTheMeasurementOfAnother)
{
    const auto handle = OpenHandle<RemissionHandle>();
    SpecPhotoMeterReflectance_V1_Impl first(handle);
    SpecPhotoMeterReflectance_V1_Impl second(handle);
    DensityReflectance_V1_Impl density(handle);

    first.Measure();
    EXPECT_TRUE(WaitsFor([&] { first.GetSample(); },
        [&] {
            second.Measure();
            EXPECT_TRUE(second.GetSample().IsValid());
        }));
    first.Measure();
    EXPECT_TRUE(WaitsFor([&] { first.GetSample(); }, [&] { density.Measure(); }));
    EXPECT_TRUE(LockIsFreeForOtherThreads(handle));
}

TEST_F(ReflectanceInterfacesTest, WithoutAHandleTheInterfacesSaySo)
{
    SpecPhotoMeterReflectance_V1_Impl reflectance{SmartPointer<RemissionHandle>()};
    EXPECT_EQ(FailureText([&] { reflectance.Measure(); }), "Unable to access Pavilo");
    EXPECT_EQ(FailureText([&] { reflectance.Calibrate(); }), "Unable to access Pavilo");
    EXPECT_EQ(FailureText([] { DensityReflectance_V1_Impl density{SmartPointer<RemissionHandle>()}; }),
        "Unable to write physical conditions to Pavilo");
}

TEST_F(ReflectanceInterfacesTest, DensityMeasuresTheSpotAndTheSubstrate)
{
    DensityReflectance_V1_Impl density(OpenHandle<RemissionHandle>());
    EXPECT_EQ(density.GetDensity(), 0.0f);
    EXPECT_EQ(density.GetValueString(), "DensityReflectance_V1");

    const auto& substrate = density.MeasureSubstrate();
    EXPECT_TRUE(substrate.HasSignal());
    EXPECT_EQ(substrate.Conditions().GetCondition("Colorimetric.Illumination"), "D65");

    HvMeasureConditions absolute;
    absolute.SetCondition("Colorimetric.WhiteBase", "Absolute");
    density.SetMeasureConditions(absolute);
    density.Measure();
    EXPECT_GE(density.GetDensity(), 0.0f);
    EXPECT_LT(density.GetDensity(), 9.0f);
}

}
