#pragma once

#include <array>
#include <cstdint>

#include "driver/DriverCalculation.h"
#include "driver/EmissionHandle.h"

namespace DeviceDriver {

// The light of a room, measured with one of four fixed settings ("Single Grid"), each with a dark
// of its own, or like an emission sample ("Single Continuous").
class AmbientLightHandle : public EmissionHandle {
public:
    struct Setting {
        float integrationTime;
        uint32_t gain;
        uint32_t count;
    };
    static constexpr std::size_t gridSize = 4;
    static const std::array<Setting, gridSize> grid;

    AmbientLightHandle();
    ~AmbientLightHandle() override;

    bool Open() override;
    bool Close() override;
    Utilities::String GetMode() override;
    // The dark of the handle's own settings, then one for each setting of the grid.
    Utilities::Vector<long>& MeasureDark(Utilities::Vector<long>& row) override;

    // The grid row whose effective time is nearest to the wanted one; gain 0 counts as the gain
    // ratio times as long, and a tie goes to the shorter row.
    std::size_t NearestSetting(float integrationTime, uint32_t gain) const;
    void SetGainRatio(float ratio) { gainRatio = ratio; }

protected:
    // "Dark", "Single Grid" or "Single Continuous".
    bool MeasureType(const Utilities::String& type) override;

private:
    struct SavedItems;

    void MeasureGridDarks();
    void MeasureGridSingle();
    void UseSetting(std::size_t index);
    float EffectiveTime(float integrationTime, uint32_t gain) const;

    std::array<Utilities::SmartPointer<DriverCalculation>, gridSize> gridCalculations;
    float gainRatio;
};

}
