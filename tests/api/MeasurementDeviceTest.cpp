#include <gtest/gtest.h>

#include <cstdint>

#include "api/EmissionMeasurementDevice.h"
#include "api/ReflectanceMeasurementDevice.h"
#include "api/Scanner.h"
#include "cmetry/HvMeasureConditions.h"
#include "cmetry/HvSample.h"
#include "cmetry/HvSpectrum.h"
#include "utilities/Exception.h"
#include "utilities/ExceptionOutOfBound.h"
#include "utilities/SmartPointer.h"

using CMetry::HvMeasureConditions;
using CMetry::HvSample;
using CMetry::HvSpectrum;
using Utilities::SmartPointer;
using Utilities::String;

namespace {

// Stands for any of the three instrument interfaces: a spectrum of one level per measurement,
// and failures on request.
struct FakeInterface {
    float level = 0.5f;
    bool failCalibrate = false;
    bool failMeasure = false;
    bool failFetch = false;
    int32_t lastCount = 0;
    int conditionsReceived = 0;
    HvMeasureConditions received;

    static HvSpectrum SpectrumOf(float value)
    {
        float values[36];
        for (float& each : values) {
            each = value;
        }
        return HvSpectrum(values);
    }

    static void FailIf(bool fail, const char* text)
    {
        if (fail) {
            throw Utilities::ExceptionOutOfBound(text);
        }
    }

    void Calibrate() { FailIf(failCalibrate, "White data not valid"); }
    void Measure() { FailIf(failMeasure, "Measurement Error: lamp"); }
    void Measure(int32_t count)
    {
        lastCount = count;
        Measure();
    }
    HvSpectrum GetSample()
    {
        FailIf(failFetch, "Read data failed");
        return SpectrumOf(level);
    }
    HvSample SampleOf(int count)
    {
        FailIf(failFetch, "Read data failed");
        HvSample sample;
        for (int i = 0; i < count; ++i) {
            sample.Add(SpectrumOf(level + 0.1f * static_cast<float>(i)));
        }
        return sample;
    }
    HvSample GetSamples() { return SampleOf(3); }
    HvSample GetRecognizedSamples() { return SampleOf(2); }
    void SetMeasureConditions(const HvMeasureConditions& conditions)
    {
        received = conditions;
        ++conditionsReceived;
    }
};

float FirstValue(const MeasurementDeviceInterface& device, unsigned long index = 0)
{
    return device.GetSamples()[index][0];
}

}

TEST(MeasurementDeviceTest, SamplesAreReplacedOnlyOnFullSuccessAndCalibrationEmptiesThem)
{
    FakeInterface* fake = new FakeInterface();
    ReflectanceMeasurementDevice<FakeInterface> device{SmartPointer<FakeInterface>(fake)};
    EXPECT_FALSE(device.HasSamples());

    device.TriggerMeasurement();
    ASSERT_EQ(device.GetSamples().Size(), 1u);
    EXPECT_FLOAT_EQ(FirstValue(device), 0.5f);

    fake->level = 0.7f;
    fake->failFetch = true;
    EXPECT_THROW(device.TriggerMeasurement(), Utilities::Exception);
    fake->failFetch = false;
    fake->failMeasure = true;
    EXPECT_THROW(device.TriggerMeasurement(), Utilities::Exception);
    EXPECT_FLOAT_EQ(FirstValue(device), 0.5f);

    fake->failMeasure = false;
    fake->failCalibrate = true;
    EXPECT_THROW(device.Calibrate(), Utilities::Exception);
    EXPECT_FALSE(device.HasSamples());

    fake->failCalibrate = false;
    device.TriggerMeasurement();
    EXPECT_FLOAT_EQ(FirstValue(device), 0.7f);
    device.Calibrate();
    EXPECT_FALSE(device.HasSamples());
}

TEST(MeasurementDeviceTest, OptionsReachTheInterfaceWholeAndRefusedOnesChangeNothing)
{
    FakeInterface* fake = new FakeInterface();
    EmissionMeasurementDevice<FakeInterface> device{SmartPointer<FakeInterface>(fake)};

    device.SetOption("Colorimetric.Illumination", "D50");
    device.SetOption("ColorSpaceDescription.Type", "CIEXYZ");
    EXPECT_EQ(fake->conditionsReceived, 2);
    EXPECT_EQ(fake->received.GetCondition(String("Colorimetric.Illumination")), String("D50"));
    EXPECT_EQ(fake->received.GetCondition(String("ColorSpaceDescription.Type")), String("CIEXYZ"));

    EXPECT_THROW(device.SetOption("Colorimetric.Illumination", "d50"), Utilities::Exception);
    EXPECT_THROW(device.SetOption("NoSuchKey", "1"), Utilities::Exception);
    EXPECT_EQ(fake->conditionsReceived, 2);
    EXPECT_EQ(device.GetConditions().GetCondition(String("Colorimetric.Illumination")), String("D50"));

    device.TriggerMeasurement();
    device.Reset();
    EXPECT_FALSE(device.HasSamples());
    EXPECT_EQ(fake->conditionsReceived, 3);
    EXPECT_TRUE(fake->received == HvMeasureConditions());
    EXPECT_EQ(device.GetConditions().GetCondition(String("Colorimetric.Illumination")), String("D65"));
}

TEST(MeasurementDeviceTest, ScannerGivesRawOrRecognisedSamplesAndPassesTheCount)
{
    FakeInterface* fake = new FakeInterface();
    Scanner<FakeInterface> scanner{SmartPointer<FakeInterface>(fake)};

    scanner.TriggerMeasurement();
    EXPECT_EQ(fake->lastCount, -1);
    ASSERT_EQ(scanner.GetSamples().Size(), 3u);
    EXPECT_FLOAT_EQ(FirstValue(scanner, 2), 0.7f);

    scanner.SetRecognition(true);
    scanner.TriggerCountedScan(40);
    EXPECT_EQ(fake->lastCount, 40);
    EXPECT_EQ(scanner.GetSamples().Size(), 2u);

    fake->failFetch = true;
    EXPECT_THROW(scanner.TriggerCountedScan(7), Utilities::Exception);
    EXPECT_EQ(scanner.GetSamples().Size(), 2u);

    scanner.Reset();
    EXPECT_TRUE(scanner.GetRecognition());
    EXPECT_FALSE(scanner.HasSamples());
}

TEST(MeasurementDeviceTest, NullInterfaceFailsAtItsUseAndKeepsTheRestReadable)
{
    ReflectanceMeasurementDevice<FakeInterface> device{SmartPointer<FakeInterface>()};
    try {
        device.TriggerMeasurement();
        FAIL() << "a null interface measured";
    } catch (const Utilities::Exception& failure) {
        EXPECT_EQ(*failure.Text(), String("Failed to access to nullpointer."));
    }
    EXPECT_THROW(device.Calibrate(), Utilities::Exception);
    EXPECT_FALSE(device.HasSamples());

    EXPECT_THROW(device.SetOption("Colorimetric.Observer", "TenDegree"), Utilities::Exception);
    EXPECT_EQ(device.GetConditions().GetCondition(String("Colorimetric.Observer")), String("TenDegree"));
}
