#pragma once
// Turns what lies under the aperture into raw sensor readings.
//
// Each target's 36 values are what this instrument reports for it. Its pixel-level spectrum is the
// smoothest one whose fold by the factory matrix, weighted as the driver's calculation weights it,
// gives back exactly those values: for reflectance, lamp and sensor over the tile's own fold and
// record 1100; for radiance, the sensor over the emission factors of record 1101. So a driver that
// follows the records recovers the 36 values to rounding when noise is off.

#include <vector>

#include "sim/Optics.h"
#include "sim/Sensor.h"
#include "sim/SmoothSpectrumSolver.h"
#include "sim/Target.h"

namespace OrbelSim {

// Per pixel: reflectance (lit by the lamp) and radiance of its own.
struct Scene {
    std::vector<double> reflectance;
    std::vector<double> emission;
};

class MeasurementEngine {
public:
    MeasurementEngine(bool uvCut, bool noise, std::uint32_t seed);

    const Optics& GetOptics() const { return optics; }
    Scene SceneOf(const Target& target) const;
    static Scene Mix(const std::vector<Scene>& scenes, const std::vector<double>& shares);
    RawPixels Read(const Scene& scene, bool lampOn, int gain, double integrationTime);

private:
    static std::vector<std::vector<double>> ReflectanceRows(const Optics& optics);
    static std::vector<std::vector<double>> EmissionRows(const Optics& optics);

    Optics optics;
    SmoothSpectrumSolver reflectanceSolver;
    SmoothSpectrumSolver emissionSolver;
    Sensor sensor;
};

} // namespace OrbelSim
