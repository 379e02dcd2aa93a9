#pragma once

#include <array>

#include "diagnostics/String.h"
#include "driver/SpectrumData.h"

namespace HviManager::PaviloDriver {

// One measurement of a scan with its colour differences to both neighbours, and whether it lies
// on an edge between two fields.
class RecognitionElement : public DeviceDriver::SpectrumData {
public:
    RecognitionElement() = default;
    explicit RecognitionElement(const DeviceDriver::SpectrumData& measurement);

    Diagnostics::String GetDescription() const;

    bool IsEdge() const { return edge; }
    void SetEdge(bool value) { edge = value; }
    float ForwardDifference() const { return forwardDifference; }
    void SetForwardDifference(float value) { forwardDifference = value; }
    float BackwardDifference() const { return backwardDifference; }
    void SetBackwardDifference(float value) { backwardDifference = value; }
    float DifferenceSum() const { return forwardDifference + backwardDifference; }
    // The CIELab values the differences were taken from.
    const std::array<float, 3>& Lab() const { return lab; }
    void SetLab(const std::array<float, 3>& value) { lab = value; }

private:
    bool edge = true;
    float forwardDifference = 0.0f;
    float backwardDifference = 0.0f;
    std::array<float, 3> lab{};
};

}
