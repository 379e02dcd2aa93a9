#pragma once

#include <cstdint>

#include "driver/ConfigurationData.h"
#include "driver/DarkData.h"
#include "driver/ReferenceData.h"
#include "driver/SensorData.h"
#include "driver/SpectrumData.h"
#include "driver/WhiteData.h"
#include "utilities/String.h"
#include "utilities/Vector.h"

namespace Diagnostics {
class String;
}

namespace Utilities {
class ExceptionOutOfBound;
}

namespace DeviceDriver {

// Turns the raw pixels of a measurement into a spectrum with the instrument's calibration
// records: average the repeats, linearise, subtract the dark, fold the pixels into wavelengths,
// and scale by the correction of the measure mode. Beside the records it keeps what the last
// calibration left: the dark, the white correction and the transmission reference.
//
// Each calculation raises ExceptionOutOfBound with its own prefix in front of the text of
// whatever failed on the way, and empties what it was filling, so that a failed calibration is
// never used by a later sample.
class DriverCalculation : public ConfigurationData {
public:
    DriverCalculation();
    // Takes the records of the calibration; the name stays "Unknown".
    explicit DriverCalculation(const ConfigurationData& calibration);
    DriverCalculation(const DriverCalculation& other) = default;
    DriverCalculation& operator=(const DriverCalculation& other) = default;
    ~DriverCalculation() override;

    void CalculateDark(SensorData& sensor);
    // True if the white reached the target level times levelFactor. With takeMean false the
    // white keeps a row for each repeated measurement, used in order by later samples.
    bool CalculateWhite(SensorData& sensor, uint16_t& filter, bool takeMean, float levelFactor);
    // True if the reference reached the target level.
    bool CalculateReference(SensorData& sensor);
    // mode is "Remission", "Emission", "AmbientLight" or "Transmission". "Emission" and
    // "AmbientLight" replace the white by their own factors.
    void CalculateSample(SensorData& sensor, SpectrumData& result, const Utilities::String& mode);

    // The integration time that would bring the sensor, measured at presentTime, to the target
    // level times levelFactor. Strict, it refuses a time beyond the instrument's limits;
    // otherwise it clamps to them.
    float NewIntegrationTime(const SensorData& sensor, float presentTime, float levelFactor, bool strict) const;
    float MinIntegrationTime() const;

    bool IsSaturated(const SensorData& sensor) const;
    bool LevelIsRight(const SensorData& sensor, float levelFactor) const;
    // Whether the repeated measurements of a white agree within 5 %.
    bool CheckConsistency(const SensorData& sensor) const;
    // Whether a white tile lies under the instrument, and which filter (WhiteTileWindow) it is
    // seen through; 0 when none. The sensor and the white are left as they were.
    bool CheckWhite(const SensorData& sensor, uint16_t& filter);

    // The next sample uses the white's first row again.
    void ResetWhite() { white.FirstRow(); }
    // No white at all, so that samples fail as not calibrated.
    void DiscardWhite() { white = WhiteData(); }

    const DarkData& Dark() const { return dark; }
    const WhiteData& White() const { return white; }
    const ReferenceData& Reference() const { return reference; }

    Diagnostics::String GetValueString() const override;

private:
    [[noreturn]] static void RaiseEmptied(
        const char* prefix, const Utilities::ExceptionOutOfBound& failure, BasicData& filled);

    void DarkSteps(SensorData& sensor);
    bool WhiteSteps(SensorData& sensor, uint16_t& filter, bool takeMean, float levelFactor);
    bool ReferenceSteps(SensorData& sensor);
    void SampleSteps(SensorData& sensor, SpectrumData& result, const Utilities::String& mode);

    void Prepare(SensorData& sensor) const;
    void SubtractDarkFromEachRow(SensorData& sensor) const;
    void RequireDark() const;
    void FoldIntoWavelengths(SensorData& sensor) const;
    void TurnWhiteIntoCorrection();
    void ApplyModeCorrection(SensorData& sensor, const Utilities::String& mode);
    void ApplyRadianceFactors(SensorData& sensor, bool ambientLight);
    void MeasureTileEnds(const SensorData& sensor, float& blueEnd, float& redEnd);
    void NormaliseToTile(Utilities::Vector<float>& spectrum) const;
    int32_t TargetLevel(float levelFactor) const;
    Utilities::Vector<float> LinearValues(uint32_t gain, long first, long second) const;

    const Utilities::Vector<float>& Linearisation(uint32_t gain) const;
    uint32_t U32Record(uint16_t id) const;
    float FloatRecord(uint16_t id) const;
    const Utilities::Vector<float>& FloatVectorRecord(uint16_t id) const;
    const Utilities::Vector<long>& U32VectorRecord(uint16_t id) const;

    WhiteData white;
    ReferenceData reference;
    DarkData dark;
};

}
