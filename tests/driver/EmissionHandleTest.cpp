#include <algorithm>
#include <string>

#include <gtest/gtest.h>

#include "driver/AmbientLightHandle.h"
#include "driver/EmissionHandle.h"
#include "driver/RawHandle.h"
#include "sim/SpectralTables.h"
#include "tests/driver/HandleSimFixture.h"

namespace DeviceDriverTest {

using DeviceDriver::AmbientLightHandle;
using DeviceDriver::EmissionHandle;
using DeviceDriver::SpectrumData;

namespace {

constexpr std::uint16_t adapt = 2011;
constexpr std::uint16_t lampOff = 2000;
constexpr std::uint16_t gain = 2002;

// Within the tolerance of the truth, times the scale, wherever the truth is above a twentieth of its
// peak.
void ExpectRadiance(const Utilities::Vector<float>& measured, const OrbelSim::NamedSpectrum& truth, double tolerance,
    double scale = 1.0)
{
    const double peak = *std::max_element(truth.values.begin(), truth.values.end());
    for (unsigned long k = 0; k < 36; ++k) {
        if (truth.values[k] > 0.05 * peak) {
            EXPECT_NEAR(measured[k] / (scale * truth.values[k]), 1.0, tolerance)
                << truth.name << " at " << 380 + 10 * k;
        }
    }
}

}

class EmissionHandleTest : public HandleSimFixture {
protected:
    // A dark on the tile with the lamp off, then the target; a new integration time asks for a
    // new dark.
    template<class Handle>
    SpectrumData Measured(Handle& handle, const char* type, const std::string& target)
    {
        for (int attempt = 0; attempt < 3; ++attempt) {
            Place("tile");
            EXPECT_TRUE(handle.Measure("Dark")) << Text(handle.GetLastError());
            Place(target);
            if (handle.Measure(type)) {
                SpectrumData result;
                EXPECT_TRUE(handle.GetResult(result)) << Text(handle.GetLastError());
                return result;
            }
            EXPECT_EQ("New integration time calculated. Please measure again dark.", Text(handle.GetLastError()));
        }
        ADD_FAILURE() << "no sample after three darks";
        return SpectrumData();
    }
};

TEST_F(EmissionHandleTest, EachDisplayIsMeasuredWithinOnePercent)
{
    EmissionHandle handle;
    OpenOnSim(handle);
    SetItem(handle, adapt, 1);
    SetItem(handle, gain, 1);
    SetItem(handle, lampOff, 1);
    for (const OrbelSim::NamedSpectrum& display : OrbelSim::SpectralTables::Displays()) {
        ExpectRadiance(FirstRow(Measured(handle, "Single", "display:" + display.name)), display, 0.01);
    }
}

TEST_F(EmissionHandleTest, AmbientLightByGridAndContinuouslyAgreesWithTheLight)
{
    AmbientLightHandle handle;
    OpenOnSim(handle);
    SetItem(handle, adapt, 1);
    SetItem(handle, gain, 1);
    SetItem(handle, lampOff, 1);
    // A light is given by its radiance; what falls on the instrument's diffuser is pi times as much.
    const double irradiancePerRadiance = 3.14159265358979;
    for (const OrbelSim::NamedSpectrum& light : OrbelSim::SpectralTables::Lights()) {
        ExpectRadiance(
            FirstRow(Measured(handle, "Single Grid", "light:" + light.name)), light, 0.02, irradiancePerRadiance);
        ExpectRadiance(
            FirstRow(Measured(handle, "Single Continuous", "light:" + light.name)), light, 0.02, irradiancePerRadiance);
    }
}

TEST_F(EmissionHandleTest, UnknownTypesAndCalibrationsAreRefusedWithTheirTexts)
{
    EmissionHandle emission;
    EXPECT_FALSE(emission.Calibrate());
    EXPECT_EQ("Handle not open!", Text(emission.GetLastError()));
    OpenOnSim(emission);
    EXPECT_FALSE(emission.Measure("White"));
    EXPECT_EQ("Unknown measurement type!", Text(emission.GetLastError()));
    EXPECT_FALSE(emission.Calibrate());
    EXPECT_EQ("Unable to perform calibration!", Text(emission.GetLastError()));

    DeviceDriver::RawHandle raw;
    OpenOnSim(raw);
    EXPECT_FALSE(raw.Measure("Dark"));
    EXPECT_EQ("Unknown measurement type", Text(raw.GetLastError()));
    EXPECT_FALSE(raw.Calibrate());
    EXPECT_EQ("No calibration in raw mode", Text(raw.GetLastError()));
    Place("tile");
    EXPECT_TRUE(raw.Measure("Single")) << Text(raw.GetLastError());
    SpectrumData pixels;
    ASSERT_TRUE(raw.GetResult(pixels));
    EXPECT_EQ(128u, FirstRow(pixels).Size());
}

TEST(AmbientLightGridTest, NearestSettingCountsGainZeroAsTheRatioTimesLonger)
{
    AmbientLightHandle handle;
    handle.SetGainRatio(10.0f);
    EXPECT_EQ(1u, handle.NearestSetting(0.3f, 1));
    EXPECT_EQ(3u, handle.NearestSetting(100.0f, 1));
    EXPECT_EQ(0u, handle.NearestSetting(0.001f, 1));
    EXPECT_EQ(2u, handle.NearestSetting(0.55f, 1));
    EXPECT_EQ(3u, handle.NearestSetting(1.0f, 0));
}

}
