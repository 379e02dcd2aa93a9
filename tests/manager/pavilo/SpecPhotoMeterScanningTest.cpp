#include <algorithm>
#include <cstdint>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "cmetry/CMetryCalculator.h"
#include "cmetry/HvSample.h"
#include "driver/ConfigurationData.h"
#include "driver/RemissionScanHandle.h"
#include "manager/pavilo/SpecPhotoMeterScanning_V1_Impl.h"
#include "sim/SpectralTables.h"
#include "tests/manager/pavilo/PaviloHandleFixture.h"
#include "utilities/Exception.h"

namespace {

using CMetry::HvColorVector;
using CMetry::HvMeasureConditions;
using CMetry::HvSample;
using CMetry::HvSpectrum;
using DeviceDriver::RemissionScanHandle;
using HviManager::PaviloDriver::SpecPhotoMeterScanning_V1_Impl;
using Utilities::SmartPointer;

HvMeasureConditions LabConditions()
{
    HvMeasureConditions conditions;
    conditions.SetCondition("Colorimetric.Illumination", "D50");
    conditions.SetCondition("Colorimetric.Observer", "TwoDegree");
    conditions.SetCondition("Colorimetric.WhiteBase", "Absolute");
    conditions.SetCondition("ColorSpaceDescription.Type", "CIELab");
    conditions.SetCondition("ColorSpaceDescription.DeltaEFormula", "CIELab");
    return conditions;
}

float DifferenceToTruth(const HvSpectrum& measured, const OrbelSim::Spectrum36& truth)
{
    float values[36];
    for (int index = 0; index < 36; ++index) {
        values[index] = static_cast<float>(truth[index]);
    }
    const HvMeasureConditions conditions = LabConditions();
    HvColorVector difference = CMetry::CMetryCalculator::GetVector(HvSpectrum(values, conditions), conditions);
    difference.Subtract(CMetry::CMetryCalculator::GetVector(HvSpectrum(measured.GetValues(), conditions), conditions));
    return static_cast<float>(difference.GetLength());
}

const OrbelSim::NamedStrip& BuiltinStrip(const std::string& name)
{
    for (const OrbelSim::NamedStrip& strip : OrbelSim::SpectralTables::Strips()) {
        if (strip.name == name) {
            return strip;
        }
    }
    throw std::invalid_argument(name);
}

class SpecPhotoMeterScanningTest : public HviManagerTest::PaviloHandleFixture {
protected:
    SpecPhotoMeterScanningTest() : handle(new RemissionScanHandle), scanning(handle)
    {
        sim.Run({"stop"});
        sim.Command({"start", "--noise", "on", "--time-scale", "0"});
        handle->Connect(Utilities::String(sim.Path().c_str()));
        EXPECT_TRUE(handle->Open());
        sim.Command({"place", "tile"});
        scanning.Calibrate();
    }

    ~SpecPhotoMeterScanningTest() override { handle->Close(); }

    void Draw(const std::string& strip, int speed) { sim.Command({"strip", strip, "--speed", std::to_string(speed)}); }

    // How many patches of the strip came back, and the worst difference of any to its truth;
    // -1 patches when the recognition failed.
    std::pair<int, float> ScanWithRecognition(const OrbelSim::NamedStrip& strip, int speed)
    {
        return ScanWithRecognition(strip, "builtin:" + strip.name, speed);
    }

    std::pair<int, float> ScanWithRecognition(const OrbelSim::NamedStrip& strip, const std::string& drawn, int speed)
    {
        Draw(drawn, speed);
        scanning.Measure(-1);
        HvSample sample;
        try {
            sample = scanning.GetRecognizedSamples();
        } catch (const Utilities::Exception&) {
            return {-1, 0.0f};
        }
        float worst = 0.0f;
        int index = 1;
        for (auto patch = sample.Begin(); patch.IsValid(); ++patch, ++index) {
            if (static_cast<size_t>(index + 1) < strip.patches.size()) {
                worst = std::max(worst, DifferenceToTruth(patch.Current(), strip.patches[index].reflectance));
            }
        }
        return {static_cast<int>(sample.GetElementCount()), worst};
    }

    // The patches of a built-in strip, all of the given width, between its margins.
    std::string Widened(const OrbelSim::NamedStrip& strip, double width) const
    {
        const std::string file = sim.Directory() + "/" + strip.name + "-widened.txt";
        std::ofstream out(file);
        for (size_t patch = 0; patch < strip.patches.size(); ++patch) {
            out << (patch == 0 || patch + 1 == strip.patches.size() ? strip.patches[patch].widthMm : width);
            for (const double value : strip.patches[patch].reflectance) {
                out << " " << value;
            }
            out << "\n";
        }
        return file;
    }

    // A strip of plain paper only.
    std::string BlankStrip() const
    {
        const std::string file = sim.Directory() + "/blank.txt";
        std::ofstream out(file);
        for (int patch = 0; patch < 2; ++patch) {
            out << 40.0;
            for (int value = 0; value < 36; ++value) {
                out << " 0.88";
            }
            out << "\n";
        }
        return file;
    }

    std::uint32_t Item(std::uint16_t id)
    {
        DeviceDriver::ConfigurationData items("PhysicalConditions");
        EXPECT_TRUE(handle->GetConditions(items, false));
        std::uint32_t value = 0;
        items.GetU32(id, value);
        return value;
    }

    SmartPointer<RemissionScanHandle> handle;
    SpecPhotoMeterScanning_V1_Impl scanning;
};

TEST_F(SpecPhotoMeterScanningTest, FindsEveryPatchOfTheBuiltInStripsAtAnEvenHand)
{
    for (const std::string name : {"colour24", "grey8"}) {
        const OrbelSim::NamedStrip& strip = BuiltinStrip(name);
        const int expected = static_cast<int>(strip.patches.size()) - 2;
        for (int speed = 50; speed <= 100; speed += 10) {
            const auto [patches, worst] = ScanWithRecognition(strip, speed);
            EXPECT_EQ(patches, expected) << name << " at " << speed << " mm/s";
            EXPECT_LT(worst, 0.5f) << name << " at " << speed << " mm/s";
        }
    }
}

TEST_F(SpecPhotoMeterScanningTest, AStripDrawnTooFastFailsInsteadOfGivingWrongColours)
{
    for (int speed : {150, 250}) {
        Draw("builtin:colour24", speed);
        scanning.Measure(-1);
        EXPECT_EQ(FailureText([&] { scanning.GetRecognizedSamples(); }), "Recognition impossible") << speed;
        EXPECT_GT(scanning.GetSamples().GetElementCount(), 24u);
    }

    // Wide grey fields drawn this fast keep only three or four readings clear of the blur, and
    // the edges around a field can then meet in one.
    const OrbelSim::NamedStrip& greys = BuiltinStrip("grey8");
    const int expected = static_cast<int>(greys.patches.size()) - 2;
    for (const double width : {14.0, 16.0}) {
        for (int speed = 220; speed <= 290; speed += 10) {
            const auto [patches, worst] = ScanWithRecognition(greys, Widened(greys, width), speed);
            EXPECT_TRUE(patches == -1 || (patches == expected && worst < 0.5f))
                << width << " mm at " << speed << " mm/s: " << patches << " patches, off by up to " << worst;
        }
    }
}

TEST_F(SpecPhotoMeterScanningTest, ABlankStripKeepsItsRawSpectra)
{
    Draw(BlankStrip(), 80);
    scanning.Measure(-1);
    const std::uint64_t scans = Counter("scans");
    EXPECT_EQ(FailureText([&] { scanning.GetRecognizedSamples(); }), "Recognition impossible");
    const HvSample raw = scanning.GetSamples();
    EXPECT_GT(raw.GetElementCount(), 10u);
    EXPECT_EQ(raw, scanning.GetSamples());
    EXPECT_EQ(Counter("scans"), scans);
    EXPECT_TRUE(handle->Lock()) << "every failure gives up the lock of the scan";
    handle->Unlock();
}

TEST_F(SpecPhotoMeterScanningTest, TheClientsCountGoesThroughItem9189)
{
    for (const auto& [count, perPosition] : {std::pair{-1, 10u}, std::pair{12, 12u}}) {
        Draw("builtin:grey8", 80);
        scanning.Measure(count);
        EXPECT_EQ(Item(2010), 10u);
        EXPECT_EQ(Item(2008), 1u);
        EXPECT_EQ(static_cast<std::int32_t>(Item(9189)), count);
        EXPECT_EQ(scanning.GetSamples().GetElementCount() % perPosition, 0u) << count;
    }
}

// A scan handle whose fetch of the scan and question of a state fail with a fault of the host.
class FaultyScanHandle : public RemissionScanHandle {
public:
    bool GetScan(DeviceDriver::SpectrumDataFifo*&) override { throw std::runtime_error("fault in the fetch"); }
    bool GetState(uint16_t, long&) override { throw std::runtime_error("fault in the question"); }
};

using SpecPhotoMeterScanningWithoutScanTest = HviManagerTest::PaviloHandleFixture;

TEST_F(SpecPhotoMeterScanningWithoutScanTest, AFaultInsideAnOperationLeavesTheLockToTheNextCaller)
{
    sim.Command({"place", "tile"});
    const SmartPointer<FaultyScanHandle> handle = OpenHandle<FaultyScanHandle>();
    SpecPhotoMeterScanning_V1_Impl scanning(handle);
    const std::pair<const char*, std::function<void()>> operations[] = {
        {"Calibrate", [&] { scanning.Calibrate(); }},
        {"GetSamples", [&] { scanning.GetSamples(); }},
        {"GetRecognizedSamples", [&] { scanning.GetRecognizedSamples(); }},
    };
    for (const auto& [name, operation] : operations) {
        DrawStripOf(20);
        if (std::string(name) != "Calibrate") {
            scanning.Measure(-1);
        }
        EXPECT_THROW(operation(), std::runtime_error) << name;
        EXPECT_TRUE(LockIsFreeForOtherThreads(handle)) << name;
    }
    handle->Close();
}

TEST_F(SpecPhotoMeterScanningWithoutScanTest, FailsWithoutTouchingAnything)
{
    SpecPhotoMeterScanning_V1_Impl scanning{SmartPointer<RemissionScanHandle>()};
    EXPECT_EQ(FailureText([&] { scanning.Measure(-1); }), "Unable to access Pavilo");
    EXPECT_EQ(FailureText([&] { scanning.Calibrate(); }), "Unable to access Pavilo");
    EXPECT_EQ(scanning.GetMeasureConditions().GetCondition("Colorimetric.Illumination"), "D50");

    SmartPointer<RemissionScanHandle> unconnected(new RemissionScanHandle);
    SpecPhotoMeterScanning_V1_Impl withoutScan(unconnected);
    EXPECT_EQ(FailureText([&] { withoutScan.GetSamples(); }), "Invalid data");
    EXPECT_EQ(FailureText([&] { withoutScan.GetRecognizedSamples(); }), "Handle not open!");
}

}
