#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "driver/ConfigurationData.h"
#include "driver/DriverCalculation.h"
#include "driver/SensorData.h"
#include "driver/SpectrumData.h"
#include "driver/WhiteTileWindow.h"
#include "tests/driver/VectorLists.h"
#include "utilities/Vector.h"

using DeviceDriver::ConfigurationData;
using DeviceDriver::DriverCalculation;
using DeviceDriver::SensorData;
using DeviceDriver::SpectrumData;
using DeviceDriver::WhiteTileWindow;
using Utilities::Vector;
using namespace DeviceDriverTest;

namespace {

// A made-up instrument whose calculation can be followed by hand. Output k of the 36 takes
// pixel 1 + 3k with weight 0.25 and pixel 2 + 3k with weight 0.75. The measurements below give
// pixel 1 + 3k an offset S over the dark and pixel 2 + 3k the offset 3 S, so that after the
// linearisation 10 + 2 x (gain 1) output k is 0.25 * 2 S + 0.75 * 6 S = 5 S, and after
// 5 + 3 x (gain 0) it is 7.5 S.
constexpr unsigned long pixelCount = 128;
constexpr unsigned long outputCount = 36;
constexpr long darkCounts = 1000;
constexpr float tileReflectance = 0.9f;
constexpr float emissionFactor = 2.0f;
constexpr float ambientFactor = 4.0f;
constexpr float gainRatio = 8.0f;
constexpr float shortTime = 0.0204f;
constexpr uint32_t plainCheckKind = 129;
constexpr uint32_t uvCutCheckKind = 130;

// The lamp on the tile, in offsets over the dark of pixel 1 + 3k: 4000 at 550 nm and most
// wavelengths, `blue` at 380 and 390 nm, `red` from 600 to 650 nm.
constexpr long lampLevel = 4000;
constexpr long plainBlue = 600;
constexpr long plainRed = 6000;

ConfigurationData Calibration(uint32_t checkKind = plainCheckKind)
{
    ConfigurationData calibration("CalibrationData");
    calibration.SetFloatVector(1000, VectorOf<float>({10.0f, 2.0f}));
    calibration.SetFloatVector(1001, VectorOf<float>({5.0f, 3.0f}));
    Vector<long> first(outputCount);
    Vector<float> coefficients(2 * outputCount);
    for (unsigned long k = 0; k < outputCount; ++k) {
        first[k] = static_cast<long>(1 + 3 * k);
        coefficients[2 * k] = 0.25f;
        coefficients[2 * k + 1] = 0.75f;
    }
    calibration.SetU32Vector(1002, first);
    calibration.SetU32Vector(1003, Filled<long>(outputCount, 2));
    calibration.SetFloatVector(1004, coefficients);
    calibration.SetFloatVector(1100, Filled(outputCount, tileReflectance));
    calibration.SetFloatVector(1101, Filled(outputCount, emissionFactor));
    calibration.SetFloatVector(1102, Filled(outputCount, ambientFactor));
    calibration.SetU32(1204, 40000);
    calibration.SetU32(1205, 3000);
    calibration.SetU32(1207, 60000);
    calibration.SetU32(1208, 50000);
    calibration.SetFloat(1213, gainRatio);
    calibration.SetFloat(1221, 0.0068f);
    calibration.SetFloat(1222, 4.0f);
    calibration.SetU32(3012, checkKind);
    return calibration;
}

using Offsets = std::vector<long>;

Vector<long> RawRow(const Offsets& offsets)
{
    Vector<long> row = Filled(pixelCount, darkCounts);
    for (unsigned long k = 0; k < outputCount; ++k) {
        row[1 + 3 * k] = darkCounts + offsets[k];
        row[2 + 3 * k] = darkCounts + 3 * offsets[k];
    }
    return row;
}

SensorData Sensor(const std::vector<Vector<long>>& rows, uint32_t gain = 1, float time = shortTime)
{
    Vector<Vector<long>> raw(rows.size());
    for (unsigned long i = 0; i < rows.size(); ++i) {
        raw[i] = rows[i];
    }
    SensorData sensor;
    sensor.SetGain(gain);
    sensor.SetIntegrationTime(time);
    sensor.SetRaw(raw);
    return sensor;
}

SensorData Measurement(const Offsets& offsets, uint32_t gain = 1, float time = shortTime)
{
    return Sensor({RawRow(offsets), RawRow(offsets)}, gain, time);
}

// Two repeats that average to the dark level: 999 and 1001 on every pixel.
SensorData DarkMeasurement(uint32_t gain = 1, float time = shortTime)
{
    return Sensor({Filled(pixelCount, darkCounts - 1), Filled(pixelCount, darkCounts + 1)}, gain, time);
}

Offsets Lamp(long blue = plainBlue, long red = plainRed)
{
    Offsets lamp(outputCount, lampLevel);
    lamp[0] = blue;
    lamp[1] = blue;
    for (unsigned long k = 22; k <= 27; ++k) {
        lamp[k] = red;
    }
    return lamp;
}

Offsets Scaled(const Offsets& offsets, long numerator, long denominator)
{
    Offsets scaled(offsets);
    for (long& value : scaled) {
        value = value * numerator / denominator;
    }
    return scaled;
}

// A sample of reflectance 0.0225 (k + 1): its offsets are the lamp's times (k + 1) / 40 of
// the tile's 0.9.
Offsets RisingSample()
{
    Offsets sample = Lamp();
    for (unsigned long k = 0; k < outputCount; ++k) {
        sample[k] = sample[k] * static_cast<long>(k + 1) / 40;
    }
    return sample;
}

float RisingReflectance(unsigned long k)
{
    return 0.0225f * static_cast<float>(k + 1);
}

Offsets Counting(long step)
{
    Offsets offsets(outputCount);
    for (unsigned long k = 0; k < outputCount; ++k) {
        offsets[k] = step * static_cast<long>(k + 1);
    }
    return offsets;
}

DriverCalculation Calibrated()
{
    DriverCalculation calculation(Calibration());
    SensorData dark = DarkMeasurement();
    calculation.CalculateDark(dark);
    SensorData white = Measurement(Lamp());
    uint16_t filter = 0;
    calculation.CalculateWhite(white, filter, true, 1.0f);
    return calculation;
}

SpectrumData Sample(DriverCalculation& calculation, const Offsets& offsets, const char* mode = "Remission",
    uint32_t gain = 1, float time = shortTime)
{
    SensorData sensor = Measurement(offsets, gain, time);
    SpectrumData result;
    calculation.CalculateSample(sensor, result, mode);
    return result;
}

SpectrumData OneRowSpectrum()
{
    SpectrumData spectrum;
    spectrum.Resize(1);
    spectrum.Store(Filled(outputCount, 1.0f));
    return spectrum;
}

// A sensor whose live pixels stay at 1000 but for `count` pixels at `level`.
SensorData WithPeaks(long level, unsigned long count, uint32_t gain = 1, unsigned long firstPixel = 1)
{
    Vector<long> row = Filled(pixelCount, darkCounts);
    for (unsigned long pixel = firstPixel; pixel < firstPixel + count; ++pixel) {
        row[pixel] = level;
    }
    return Sensor({row}, gain);
}

}

TEST(DriverCalculationTest, RemissionChainGivesTheSampleReflectance)
{
    DriverCalculation calculation(Calibration());
    SensorData dark = DarkMeasurement();
    calculation.CalculateDark(dark);
    EXPECT_EQ(calculation.Dark().DarkLevel(), darkCounts);

    SensorData white = Measurement(Lamp());
    uint16_t filter = 0;
    EXPECT_FALSE(calculation.CalculateWhite(white, filter, true, 1.0f)) << "the tile peaks at 19000, not 40000";
    EXPECT_EQ(filter, WhiteTileWindow::plainFilter);
    ASSERT_EQ(calculation.White().RowCount(), 1u);
    const Vector<float> correction = calculation.White().Load();
    const Offsets lamp = Lamp();
    for (unsigned long k = 0; k < outputCount; ++k) {
        EXPECT_NEAR(correction[k], tileReflectance / (5.0f * static_cast<float>(lamp[k])), 1e-9f) << k;
    }

    const SpectrumData sample = Sample(calculation, RisingSample());
    ASSERT_EQ(sample.Load().Size(), outputCount);
    for (unsigned long k = 0; k < outputCount; ++k) {
        EXPECT_NEAR(sample.Load()[k], RisingReflectance(k), 1e-6f) << k;
    }

    SensorData whiteAtLevel = Measurement(Lamp());
    EXPECT_TRUE(calculation.CalculateWhite(whiteAtLevel, filter, true, 19000.0f / 40000.0f))
        << "the tile's peak 1000 + 3 * 6000 is the target times the factor";
}

TEST(DriverCalculationTest, EmissionAndAmbientLightUseTheirFactorsInPlaceOfTheWhite)
{
    DriverCalculation calculation(Calibration());
    SensorData dark = DarkMeasurement(0, 0.5f);
    calculation.CalculateDark(dark);

    // Gain 0: output k is 7.5 * 100 (k + 1), times 2.0 / 0.5 s / 8.0.
    const SpectrumData emission = Sample(calculation, Counting(100), "Emission", 0, 0.5f);
    for (unsigned long k = 0; k < outputCount; ++k) {
        EXPECT_NEAR(emission.Load()[k], 375.0f * static_cast<float>(k + 1), 1e-3f) << k;
    }
    const SpectrumData ambient = Sample(calculation, Counting(100), "AmbientLight", 0, 0.5f);
    for (unsigned long k = 0; k < outputCount; ++k) {
        EXPECT_NEAR(ambient.Load()[k], 1500.0f * static_cast<float>(k + 1), 1e-2f) << k;
    }

    SensorData darkGain1 = DarkMeasurement(1, 0.5f);
    calculation.CalculateDark(darkGain1);
    // Gain 1: output k is 5 * 100 (k + 1), times 2.0 / 0.5 s, and no gain ratio.
    const SpectrumData gain1 = Sample(calculation, Counting(100), "Emission", 1, 0.5f);
    EXPECT_NEAR(gain1.Load()[0], 2000.0f, 1e-3f);
}

TEST(DriverCalculationTest, TransmissionDividesByTheReference)
{
    DriverCalculation calculation(Calibration());
    SensorData dark = DarkMeasurement();
    calculation.CalculateDark(dark);
    EXPECT_EQ(OutOfBoundText([&] { Sample(calculation, Lamp(), "Transmission"); }),
        "Sample calculation: Reference data not valid");

    SensorData reference = Measurement(Lamp());
    EXPECT_FALSE(calculation.CalculateReference(reference));
    EXPECT_FLOAT_EQ(calculation.Reference().Load()[17], 5.0f * lampLevel);
    SensorData referenceAtLevel = Sensor({RawRow(Offsets(outputCount, 13000))});
    EXPECT_TRUE(calculation.CalculateReference(referenceAtLevel)) << "peak 1000 + 3 * 13000 is the target";

    const SpectrumData sample = Sample(calculation, Counting(130), "Transmission");
    for (unsigned long k = 0; k < outputCount; ++k) {
        EXPECT_NEAR(sample.Load()[k], 0.01f * static_cast<float>(k + 1), 1e-6f) << k;
    }
}

TEST(DriverCalculationTest, SampleGuardEmptiesTheResultAndPrefixesTheText)
{
    DriverCalculation calculation(Calibration());
    SpectrumData result = OneRowSpectrum();
    SensorData sensor = Measurement(RisingSample());
    EXPECT_EQ(OutOfBoundText([&] { calculation.CalculateSample(sensor, result, "Remission"); }),
        "Sample calculation: Dark data not valid");
    EXPECT_EQ(result.RowCount(), 0u);

    SensorData dark = DarkMeasurement();
    calculation.CalculateDark(dark);
    EXPECT_EQ(OutOfBoundText([&] { Sample(calculation, RisingSample()); }), "Sample calculation: White data not valid");

    result = OneRowSpectrum();
    sensor = Measurement(RisingSample());
    EXPECT_EQ(OutOfBoundText([&] { calculation.CalculateSample(sensor, result, "Reflection"); }),
        "Sample calculation: Unknown measure mode");
    EXPECT_EQ(result.RowCount(), 0u);

    EXPECT_EQ(OutOfBoundText([&] { Sample(calculation, RisingSample(), "Remission", 1, 0.05f); }),
        "Sample calculation: Unable to subtract (different integration time)");
    EXPECT_EQ(OutOfBoundText([&] { Sample(calculation, RisingSample(), "Remission", 0); }),
        "Sample calculation: Unable to subtract (different gain)");

    SensorData noRaw;
    EXPECT_EQ(OutOfBoundText([&] { calculation.CalculateSample(noRaw, result, "Emission"); }),
        "Sample calculation: Invalid raw data for mean value");

    calculation = Calibrated();
    SensorData darkAtNewTime = DarkMeasurement(1, 0.05f);
    calculation.CalculateDark(darkAtNewTime);
    EXPECT_EQ(OutOfBoundText([&] { Sample(calculation, RisingSample(), "Remission", 1, 0.05f); }),
        "Sample calculation: Unable to multiply (different integration time)");
}

TEST(DriverCalculationTest, MissingRecordIsNamedBehindThePrefix)
{
    ConfigurationData linearisationAndDarkLimit("CalibrationData");
    linearisationAndDarkLimit.SetFloatVector(1000, VectorOf<float>({10.0f, 2.0f}));
    linearisationAndDarkLimit.SetU32(1205, 3000);
    DriverCalculation calculation(linearisationAndDarkLimit);
    EXPECT_EQ(calculation.Name().ToStdString(), "Unknown");
    SensorData dark = DarkMeasurement();
    calculation.CalculateDark(dark);
    EXPECT_EQ(OutOfBoundText([&] { Sample(calculation, Lamp(), "Emission"); }),
        "Sample calculation: Requested data is not available (ID 1002)");
}

TEST(DriverCalculationTest, WhiteGuardEmptiesTheWhite)
{
    DriverCalculation withoutDark(Calibration());
    SensorData white = Measurement(Lamp());
    uint16_t filter = 7;
    EXPECT_EQ(OutOfBoundText([&] { withoutDark.CalculateWhite(white, filter, true, 1.0f); }),
        "White calculation: Sample calculation: Dark data not valid");
    EXPECT_EQ(filter, 7);

    DriverCalculation calculation = Calibrated();
    ASSERT_TRUE(calculation.White().IsValid());
    SensorData inconsistent = Sensor({RawRow(Lamp()), RawRow(Scaled(Lamp(), 6, 5))});
    EXPECT_EQ(OutOfBoundText([&] { calculation.CalculateWhite(inconsistent, filter, true, 1.0f); }),
        "White calculation: Data is not consistent");
    EXPECT_EQ(calculation.White().RowCount(), 0u);

    calculation = Calibrated();
    SensorData black = Measurement(Offsets(outputCount, 50));
    EXPECT_EQ(OutOfBoundText([&] { calculation.CalculateWhite(black, filter, true, 1.0f); }),
        "White calculation: White check failed");
    EXPECT_EQ(filter, WhiteTileWindow::noFilter);
    EXPECT_EQ(calculation.White().RowCount(), 0u);
    EXPECT_EQ(OutOfBoundText([&] { Sample(calculation, RisingSample()); }), "Sample calculation: White data not valid");

    SensorData darkAsWhite = DarkMeasurement();
    EXPECT_EQ(OutOfBoundText([&] { calculation.CalculateWhite(darkAsWhite, filter, true, 1.0f); }),
        "White calculation: Devision by zero");
}

TEST(DriverCalculationTest, DarkGuardEmptiesTheDarkAndLetsGain0GoHigher)
{
    DriverCalculation calculation(Calibration());
    SensorData bright = Sensor({Filled<long>(pixelCount, 20000)});
    EXPECT_EQ(OutOfBoundText([&] { calculation.CalculateDark(bright); }), "Dark calculation: Data is not valid");
    EXPECT_EQ(calculation.Dark().RowCount(), 0u);
    EXPECT_EQ(
        OutOfBoundText([&] { Sample(calculation, Lamp(), "Emission"); }), "Sample calculation: Dark data not valid");

    SensorData brightAtGain0 = Sensor({Filled<long>(pixelCount, 20000)}, 0);
    calculation.CalculateDark(brightAtGain0);
    EXPECT_EQ(calculation.Dark().DarkLevel(), 20000);

    SensorData noRaw;
    EXPECT_EQ(
        OutOfBoundText([&] { calculation.CalculateDark(noRaw); }), "Dark calculation: Invalid raw data for mean value");
    EXPECT_FALSE(calculation.Dark().IsValid());

    SensorData reference = Measurement(Lamp());
    EXPECT_EQ(OutOfBoundText([&] { calculation.CalculateReference(reference); }),
        "Reference calculation: Dark data not valid");
    EXPECT_EQ(calculation.Reference().RowCount(), 0u);
}

TEST(DriverCalculationTest, WhiteRowsServeTheSamplesInOrder)
{
    DriverCalculation calculation(Calibration());
    SensorData dark = DarkMeasurement();
    calculation.CalculateDark(dark);
    // The second repeat is 4 % brighter: consistent, and its correction 4 % smaller.
    SensorData white = Sensor({RawRow(Lamp()), RawRow(Scaled(Lamp(), 104, 100))});
    uint16_t filter = 0;
    calculation.CalculateWhite(white, filter, false, 0.5f);
    ASSERT_EQ(calculation.White().RowCount(), 2u);
    EXPECT_EQ(calculation.White().CurrentRow(), 0u);

    const float first = Sample(calculation, RisingSample()).Load()[17];
    const float second = Sample(calculation, RisingSample()).Load()[17];
    const float third = Sample(calculation, RisingSample()).Load()[17];
    EXPECT_NEAR(first, RisingReflectance(17), 1e-6f);
    EXPECT_NEAR(second, RisingReflectance(17) / 1.04f, 1e-6f);
    EXPECT_FLOAT_EQ(third, second) << "the last row serves every later sample";

    calculation.ResetWhite();
    EXPECT_FLOAT_EQ(Sample(calculation, RisingSample()).Load()[17], first);
}

TEST(DriverCalculationTest, LevelIsRightWithinFivePercentOfTheTarget)
{
    const DriverCalculation calculation(Calibration());
    EXPECT_TRUE(calculation.LevelIsRight(WithPeaks(38000, 1), 1.0f)) << "the float 0.05 lies above 0.05";
    EXPECT_FALSE(calculation.LevelIsRight(WithPeaks(37999, 1), 1.0f));
    EXPECT_TRUE(calculation.LevelIsRight(WithPeaks(42000, 1), 1.0f));
    EXPECT_FALSE(calculation.LevelIsRight(WithPeaks(42001, 1), 1.0f));
    EXPECT_TRUE(calculation.LevelIsRight(WithPeaks(19000, 1), 0.5f));
    EXPECT_FALSE(calculation.LevelIsRight(WithPeaks(18999, 1), 0.5f));
    EXPECT_FALSE(calculation.LevelIsRight(WithPeaks(40000, 1, 1, 0), 1.0f)) << "pixel 0 is masked";
}

TEST(DriverCalculationTest, SaturationCountsMoreThanTenPixelsAboveTheLevelOfTheGain)
{
    const DriverCalculation calculation(Calibration());
    EXPECT_TRUE(calculation.IsSaturated(WithPeaks(60001, 11)));
    EXPECT_FALSE(calculation.IsSaturated(WithPeaks(60000, 20)));
    EXPECT_FALSE(calculation.IsSaturated(WithPeaks(55000, 11, 1)));
    EXPECT_TRUE(calculation.IsSaturated(WithPeaks(55000, 11, 0)));
}

TEST(DriverCalculationTest, ConsistencyComparesTheMeanOfEachRepeatWithTheFirst)
{
    const DriverCalculation calculation(Calibration());
    EXPECT_TRUE(calculation.CheckConsistency(Sensor({Vector<long>(0)}))) << "one row needs no calculation";
    EXPECT_TRUE(calculation.CheckConsistency(SensorData()));
    EXPECT_TRUE(calculation.CheckConsistency(
        Sensor({Filled<long>(pixelCount, 1000), Filled<long>(pixelCount, 1000), Filled<long>(pixelCount, 1050)})));
    EXPECT_FALSE(calculation.CheckConsistency(
        Sensor({Filled<long>(pixelCount, 1000), Filled<long>(pixelCount, 1000), Filled<long>(pixelCount, 1051)})));
    EXPECT_FALSE(calculation.CheckConsistency(Sensor({Filled<long>(pixelCount, 1000), Filled<long>(pixelCount, 949)})));
    EXPECT_EQ(OutOfBoundText([&] {
        calculation.CheckConsistency(Sensor({Vector<long>(0), Vector<long>(0)}));
    }),
        "Devision by zero");
    EXPECT_EQ(OutOfBoundText([&] {
        calculation.CheckConsistency(Sensor({Filled<long>(pixelCount, 0), Filled<long>(pixelCount, 5)}));
    }),
        "Devision by zero");
}

TEST(DriverCalculationTest, WhiteTileWindowBoundsAreInclusive)
{
    const WhiteTileWindow plain = WhiteTileWindow::ForCheckKind(plainCheckKind);
    EXPECT_EQ(plain.Filter(), WhiteTileWindow::plainFilter);
    EXPECT_TRUE(plain.Contains(0.22f, 1.6f));
    EXPECT_TRUE(plain.Contains(0.11f, 1.35f));
    EXPECT_FALSE(plain.Contains(std::nextafter(0.22f, 1.0f), 1.5f));
    EXPECT_FALSE(plain.Contains(std::nextafter(0.11f, 0.0f), 1.5f));
    EXPECT_FALSE(plain.Contains(0.15f, std::nextafter(1.6f, 2.0f)));
    EXPECT_FALSE(plain.Contains(0.15f, std::nextafter(1.35f, 0.0f)));

    const WhiteTileWindow uvCut = WhiteTileWindow::ForCheckKind(uvCutCheckKind);
    EXPECT_EQ(uvCut.Filter(), WhiteTileWindow::uvCutFilter);
    EXPECT_TRUE(uvCut.Contains(0.0f, 1.2f));
    EXPECT_TRUE(uvCut.Contains(0.05f, 1.76f));
    EXPECT_FALSE(uvCut.Contains(std::nextafter(0.05f, 1.0f), 1.5f));
    EXPECT_FALSE(uvCut.Contains(0.02f, std::nextafter(1.76f, 2.0f)));
    EXPECT_FALSE(uvCut.Contains(0.02f, std::nextafter(1.2f, 0.0f)));
    EXPECT_FALSE(uvCut.Contains(0.15f, 1.5f)) << "a UV-cut instrument knows no plain window";
}

// The tile's ends a and b are the blue and red offsets over the 4000 at 550 nm: 880 is 0.22.
TEST(DriverCalculationTest, CheckWhiteFindsTheFilterJustInsideItsWindow)
{
    constexpr uint16_t none = WhiteTileWindow::noFilter;
    constexpr uint16_t plain = WhiteTileWindow::plainFilter;
    constexpr uint16_t uvCut = WhiteTileWindow::uvCutFilter;
    const struct {
        uint32_t checkKind;
        long blue;
        long red;
        uint16_t filter;
    } tiles[] = {{plainCheckKind, 879, 6399, plain}, {plainCheckKind, 441, 5401, plain},
        {plainCheckKind, 881, 6000, none}, {plainCheckKind, 439, 6000, none}, {plainCheckKind, 600, 6401, none},
        {plainCheckKind, 600, 5399, none}, {plainCheckKind, 100, 6000, none}, {uvCutCheckKind, 199, 7039, uvCut},
        {uvCutCheckKind, 0, 4801, uvCut}, {uvCutCheckKind, 201, 6000, none}, {uvCutCheckKind, 100, 7041, none},
        {uvCutCheckKind, 100, 4799, none}, {uvCutCheckKind, plainBlue, plainRed, none}};
    for (const auto& tile : tiles) {
        DriverCalculation calculation(Calibration(tile.checkKind));
        SensorData dark = DarkMeasurement();
        calculation.CalculateDark(dark);
        uint16_t filter = 99;
        EXPECT_EQ(calculation.CheckWhite(Measurement(Lamp(tile.blue, tile.red)), filter), tile.filter != none)
            << tile.checkKind << ": " << tile.blue << ", " << tile.red;
        EXPECT_EQ(filter, tile.filter) << tile.checkKind << ": " << tile.blue << ", " << tile.red;
    }
}

TEST(DriverCalculationTest, CheckWhiteLeavesSensorAndWhiteAsTheyWere)
{
    DriverCalculation calculation = Calibrated();
    const Vector<float> correction = calculation.White().Load();
    const SensorData tile = Measurement(Lamp());
    uint16_t filter = 0;
    EXPECT_TRUE(calculation.CheckWhite(tile, filter));
    EXPECT_EQ(tile.Raw().Size(), 2u);
    EXPECT_TRUE(calculation.White().Load() == correction);

    SensorData darkAtOtherTime = DarkMeasurement(1, 0.05f);
    calculation.CalculateDark(darkAtOtherTime);
    EXPECT_EQ(OutOfBoundText([&] { calculation.CheckWhite(tile, filter); }),
        "Sample calculation: Unable to subtract (different integration time)");
    EXPECT_TRUE(calculation.White().Load() == correction);
}

TEST(DriverCalculationTest, NewIntegrationTimeStrictRaisesBeyondTheLimitsLenientClamps)
{
    DriverCalculation calculation(Calibration());
    // Without linearisation the new time is the present one times target over peak.
    calculation.SetFloatVector(1000, VectorOf<float>({1.0f}));
    const SensorData half = WithPeaks(20000, 1);
    EXPECT_FLOAT_EQ(calculation.NewIntegrationTime(half, 0.01f, 1.0f, true), 0.02f);
    EXPECT_FLOAT_EQ(calculation.NewIntegrationTime(half, 0.01f, 0.5f, true), 0.01f);

    EXPECT_FLOAT_EQ(calculation.NewIntegrationTime(half, 2.0f, 1.0f, true), 4.0f);
    EXPECT_EQ(OutOfBoundText([&] { calculation.NewIntegrationTime(half, 2.0001f, 1.0f, true); }),
        "New integration time: Too little light");
    EXPECT_FLOAT_EQ(calculation.NewIntegrationTime(half, 2.0001f, 1.0f, false), 4.0f);
    EXPECT_FLOAT_EQ(calculation.NewIntegrationTime(half, 1.1f, 2.0f, true), 4.0f)
        << "4.4 s over the factor 2 is within the limit";

    EXPECT_FLOAT_EQ(calculation.NewIntegrationTime(half, 0.0034f, 1.0f, true), 0.0068f);
    EXPECT_EQ(OutOfBoundText([&] { calculation.NewIntegrationTime(half, 0.0033f, 1.0f, true); }),
        "New integration time: Too much light");
    EXPECT_FLOAT_EQ(calculation.NewIntegrationTime(half, 0.0033f, 1.0f, false), 0.0068f);
    EXPECT_FLOAT_EQ(calculation.NewIntegrationTime(half, 0.0066f, 0.5f, true), 0.0068f)
        << "6.6 ms over the factor 0.5 is within the limit";

    const SensorData negative = Sensor({Filled<long>(pixelCount, -100)});
    EXPECT_EQ(OutOfBoundText([&] { calculation.NewIntegrationTime(negative, 0.02f, 1.0f, true); }),
        "New integration time: No light");
    EXPECT_FLOAT_EQ(calculation.NewIntegrationTime(negative, 0.02f, 1.0f, false), 0.0068f);

    const SensorData zero = Sensor({Filled<long>(pixelCount, 0)});
    EXPECT_EQ(OutOfBoundText([&] { calculation.NewIntegrationTime(zero, 0.02f, 1.0f, false); }),
        "New integration time: Division by zero");

    // Gain 0 evaluates 5 + 3 x: (5 + 3 * 40000) / (5 + 3 * 20000).
    const double expected = 0.01 * 120005.0 / 60005.0;
    EXPECT_FLOAT_EQ(
        calculation.NewIntegrationTime(WithPeaks(20000, 1, 0), 0.01f, 1.0f, true), static_cast<float>(expected));
    EXPECT_FLOAT_EQ(calculation.MinIntegrationTime(), 0.0068f);
}
