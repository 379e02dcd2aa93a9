#include <gtest/gtest.h>

#include "cmetry/HvMeasureConditions.h"
#include "driver/AmbientLightHandle.h"
#include "driver/EmissionHandle.h"
#include "manager/pavilo/SpecPhotoMeterEmission_V1_Impl.h"
#include "manager/pavilo/TristPhotoMeterEmission_V1_Impl.h"
#include "tests/manager/pavilo/PaviloHandleFixture.h"

namespace HviManagerTest {

using CMetry::HvMeasureConditions;
using DeviceDriver::AmbientLightHandle;
using DeviceDriver::EmissionHandle;
using HviManager::PaviloDriver::SpecPhotoMeterEmission_V1_Impl;
using HviManager::PaviloDriver::TristPhotoMeterEmission_V1_Impl;
using Utilities::SmartPointer;

class EmissionInterfacesTest : public PaviloHandleFixture {
protected:
    static HvMeasureConditions Tuned(const char* key, const char* value)
    {
        HvMeasureConditions conditions;
        conditions.SetCondition("CustomCondition", "Enable");
        conditions.SetCondition(key, value);
        return conditions;
    }

    int GainFlag() const { return Parameter("flags") & lowGainFlag; }
};

TEST_F(EmissionInterfacesTest, TuningConditionsReachTheInstrument)
{
    SpecPhotoMeterEmission_V1_Impl emission(OpenHandle<EmissionHandle>());
    emission.Calibrate();
    EXPECT_EQ(Parameter("count"), 2);
    EXPECT_EQ(GainFlag(), lowGainFlag);
    EXPECT_EQ(Parameter("flags") & (lampOffFlag | lampOnAfterFlag), lampOffFlag);

    HvMeasureConditions disabled;
    EXPECT_ANY_THROW(disabled.SetCondition("Orbel_Gain", "High"));
    emission.SetMeasureConditions(disabled);
    emission.Calibrate();
    EXPECT_EQ(GainFlag(), lowGainFlag);

    emission.SetMeasureConditions(Tuned("Orbel_Gain", "High"));
    emission.Calibrate();
    EXPECT_EQ(GainFlag(), 0);

    emission.SetMeasureConditions(Tuned("Orbel_Gain", "high"));
    emission.Calibrate();
    EXPECT_EQ(GainFlag(), lowGainFlag);

    emission.SetMeasureConditions(Tuned("Orbel_NumberOfSamples", "8"));
    emission.Calibrate();
    EXPECT_EQ(Parameter("count"), 8);
    emission.Measure();
    EXPECT_TRUE(emission.GetSample().IsValid());
}

TEST_F(EmissionInterfacesTest, TheIlluminationStaysEmission)
{
    SpecPhotoMeterEmission_V1_Impl emission{SmartPointer<EmissionHandle>()};
    EXPECT_EQ(emission.GetConditions().GetCondition("Colorimetric.Illumination"), "Emission");
    HvMeasureConditions d50;
    d50.SetCondition("Colorimetric.Illumination", "D50");
    emission.SetConditions(d50);
    EXPECT_EQ(emission.GetMeasureConditions().GetCondition("Colorimetric.Illumination"), "Emission");
    EXPECT_EQ(FailureText([&] { emission.Measure(); }), "Unable to access Pavilo");
}

TEST_F(EmissionInterfacesTest, AmbientLightMeasuresContinuouslyWithTheTunedCount)
{
    SmartPointer<AmbientLightHandle> ambient = OpenHandle<AmbientLightHandle>();
    TristPhotoMeterEmission_V1_Impl ambientLight(ambient);
    ambientLight.SetMeasureConditions(Tuned("Orbel_NumberOfSamples", "8"));
    ambientLight.Calibrate();
    ambientLight.Measure();
    // The grid would have measured 10 readings at the default time.
    EXPECT_EQ(Parameter("count"), 8);
    ambientLight.GetColorVector();
    EXPECT_TRUE(LockIsFreeForOtherThreads(ambient));
}

TEST_F(EmissionInterfacesTest, FailuresReleaseTheLockOnEveryPath)
{
    const auto handle = OpenHandle<EmissionHandle>();
    SpecPhotoMeterEmission_V1_Impl emission(handle);
    EXPECT_EQ(FailureText([&] { emission.Measure(); }), "Sample calculation: Dark data not valid");
    EXPECT_TRUE(LockIsFreeForOtherThreads(handle));

    emission.SetMeasureConditions(Tuned("Orbel_NumberOfSamples", "eight"));
    EXPECT_EQ(FailureText([&] { emission.Calibrate(); }), "eight is not a valid number.");
    EXPECT_TRUE(LockIsFreeForOtherThreads(handle));

    emission.SetMeasureConditions(HvMeasureConditions());
    emission.Calibrate();
    emission.Measure();
    EXPECT_TRUE(emission.GetSample().IsValid());
    EXPECT_TRUE(LockIsFreeForOtherThreads(handle));
}

TEST_F(EmissionInterfacesTest, TwoObjectsOnOneHandleMeasureOneAfterTheOther)
{
    const auto handle = OpenHandle<EmissionHandle>();
    SpecPhotoMeterEmission_V1_Impl first(handle);
    SpecPhotoMeterEmission_V1_Impl second(handle);
    first.Calibrate();
    first.Measure();
    EXPECT_TRUE(WaitsFor([&] { EXPECT_TRUE(first.GetSample().IsValid()); },
        [&] {
            second.Measure();
            EXPECT_TRUE(second.GetSample().IsValid());
        }));
}

}
