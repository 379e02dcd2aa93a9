#include <string>

#include <gtest/gtest.h>

#include "driver/RemissionScanHandle.h"
#include "tests/driver/HandleSimFixture.h"

namespace DeviceDriverTest {

using DeviceDriver::SpectrumData;
using DeviceDriver::SpectrumDataFifo;

namespace {

constexpr std::uint16_t gain = 2002;
constexpr std::uint16_t replacementCountFlag = 2008;
constexpr std::uint16_t integrationTime = 2009;
constexpr std::uint16_t count = 2010;
constexpr std::uint16_t adapt = 2011;

// Shows which row of its white the calculation will use next.
class InspectedScanHandle : public DeviceDriver::RemissionScanHandle {
public:
    const DeviceDriver::WhiteData& White() const { return calculation->White(); }
};

}

class RemissionScanHandleTest : public HandleSimFixture {
protected:
    // Calibrated on the tile with a white of `repeats` rows, at the time of the strips drawn.
    void Calibrated(InspectedScanHandle& handle, std::uint32_t repeats)
    {
        OpenOnSim(handle);
        SetItem(handle, gain, 1);
        SetItem(handle, adapt, 0);
        SetFloatItem(handle, integrationTime, 0.0068f);
        SetItem(handle, count, repeats);
        Place("tile");
        ASSERT_TRUE(handle.Calibrate()) << handle.GetLastError().ToStdString();
        SetItem(handle, replacementCountFlag, 1);
    }

    void SetFloatItem(InspectedScanHandle& handle, std::uint16_t id, float value)
    {
        DeviceDriver::ConfigurationData conditions;
        ASSERT_TRUE(handle.GetConditions(conditions, false));
        conditions.SetFloat(id, value);
        conditions.Mark(id, true);
        ASSERT_TRUE(handle.SetConditions(conditions, false));
    }

    SpectrumDataFifo& Spectra(InspectedScanHandle& handle)
    {
        SpectrumDataFifo* fifo = nullptr;
        EXPECT_TRUE(handle.GetScan(fifo));
        return *fifo;
    }
};

TEST_F(RemissionScanHandleTest, AStripOfOnePacketGivesCountSpectraAndAScanStartsAnew)
{
    InspectedScanHandle handle;
    Calibrated(handle, 10);
    EXPECT_EQ(U32Item(handle, count), 10u) << "the white's count of 4 is given back";
    EXPECT_EQ(handle.White().RowCount(), 10u) << "the white isn't averaged";

    for (int strip = 0; strip < 2; ++strip) {
        DrawStripOf(10);
        ASSERT_TRUE(handle.Measure("Scan")) << handle.GetLastError().ToStdString();
        SpectrumDataFifo& spectra = Spectra(handle);
        EXPECT_TRUE(spectra.IsFinished());
        ASSERT_EQ(spectra.Size(), 10u) << "strip " << strip << " holds only its own spectra";
    }
    SpectrumData spectrum;
    ASSERT_TRUE(Spectra(handle).Pop(spectrum));
    spectrum.FirstRow();
    EXPECT_NEAR(spectrum.Load()[20], 0.5, 0.01);
}

TEST_F(RemissionScanHandleTest, SpectraBeyondTheWhiteRowsUseItsLastRow)
{
    InspectedScanHandle handle;
    Calibrated(handle, 100);
    ASSERT_EQ(handle.White().RowCount(), 100u);
    SetItem(handle, count, 20);
    DrawStripOf(200);
    ASSERT_TRUE(handle.Measure("Scan")) << handle.GetLastError().ToStdString();
    EXPECT_EQ(Spectra(handle).Size(), 200u);
    EXPECT_EQ(handle.White().CurrentRow(), 99u);
}

TEST_F(RemissionScanHandleTest, ABrokenStripLeavesNoSpectraAndNoFinishedMark)
{
    InspectedScanHandle handle;
    Calibrated(handle, 10);
    DrawStripOf(10);
    ASSERT_TRUE(handle.Measure("Scan"));
    DrawStripOf(10);
    sim.Command({"fault", "bulk-timeout", "--count", "10"});
    EXPECT_FALSE(handle.Measure("Scan"));
    EXPECT_EQ(handle.GetLastError().ToStdString().rfind("Measurement Error: ", 0), 0u)
        << handle.GetLastError().ToStdString();
    EXPECT_EQ(Spectra(handle).Size(), 0u);
    EXPECT_FALSE(Spectra(handle).IsFinished());
    EXPECT_FALSE(handle.Measure("Single"));
    EXPECT_EQ(handle.GetLastError().ToStdString(), "Unknown measurement type");
}

TEST_F(RemissionScanHandleTest, AdaptingCalibrationKeepsTheTimeAtLeastTwelveMilliseconds)
{
    InspectedScanHandle handle;
    OpenOnSim(handle);
    SetItem(handle, gain, 1);
    SetItem(handle, adapt, 1);
    Place("tile");
    ASSERT_TRUE(handle.Calibrate()) << handle.GetLastError().ToStdString();
    EXPECT_GE(FloatItem(handle, integrationTime), 0.012f);
}

}
