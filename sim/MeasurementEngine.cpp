#include "sim/MeasurementEngine.h"

namespace OrbelSim {

MeasurementEngine::MeasurementEngine(bool uvCut, bool noise, std::uint32_t seed)
    : optics(uvCut), reflectanceSolver(ReflectanceRows(optics), Optics::firstLivePixel, Optics::lastLivePixel),
      emissionSolver(EmissionRows(optics), Optics::firstLivePixel, Optics::lastLivePixel), sensor(optics, noise, seed)
{
}

std::vector<std::vector<double>> MeasurementEngine::ReflectanceRows(const Optics& optics)
{
    std::vector<std::vector<double>> rows = optics.MatrixRows();
    for (int k = 0; k < Optics::outputs; ++k) {
        std::vector<double>& row = rows[static_cast<std::size_t>(k)];
        double tileFold = 0.0;
        for (int p = 0; p < Optics::pixels; ++p) {
            row[p] *= optics.Responsivity()[p] * optics.LampRadiance()[p];
            tileFold += row[p] * optics.TileReflectance()[p];
        }
        const double perUnitReflectance = tileFold / optics.TileRecord()[k];
        for (double& weight : row) {
            weight /= perUnitReflectance;
        }
    }
    return rows;
}

std::vector<std::vector<double>> MeasurementEngine::EmissionRows(const Optics& optics)
{
    std::vector<std::vector<double>> rows = optics.MatrixRows();
    for (std::vector<double>& row : rows) {
        double fold = 0.0;
        for (int p = 0; p < Optics::pixels; ++p) {
            row[p] *= optics.Responsivity()[p];
            fold += row[p];
        }
        for (double& weight : row) {
            weight /= fold;
        }
    }
    return rows;
}

Scene MeasurementEngine::SceneOf(const Target& target) const
{
    const std::vector<double> none(Optics::pixels, 0.0);
    if (target.kind == TargetKind::Emission) {
        return {none, emissionSolver.Solve(target.values)};
    }
    return {reflectanceSolver.Solve(target.values), none};
}

Scene MeasurementEngine::Mix(const std::vector<Scene>& scenes, const std::vector<double>& shares)
{
    Scene mixed{std::vector<double>(Optics::pixels, 0.0), std::vector<double>(Optics::pixels, 0.0)};
    for (std::size_t i = 0; i < scenes.size(); ++i) {
        for (std::size_t p = 0; p < mixed.reflectance.size(); ++p) {
            mixed.reflectance[p] += shares[i] * scenes[i].reflectance[p];
            mixed.emission[p] += shares[i] * scenes[i].emission[p];
        }
    }
    return mixed;
}

RawPixels MeasurementEngine::Read(const Scene& scene, bool lampOn, int gain, double integrationTime)
{
    std::vector<double> radiance = scene.emission;
    if (lampOn) {
        for (std::size_t p = 0; p < radiance.size(); ++p) {
            radiance[p] += optics.LampRadiance()[p] * scene.reflectance[p];
        }
    }
    return sensor.Read(radiance, gain, integrationTime);
}

} // namespace OrbelSim
