#include "sim/FactoryCalibration.h"

#include <cmath>

#include "sim/Sensor.h"

namespace OrbelSim {

namespace {

std::vector<std::uint32_t> Floats(const std::vector<float>& values)
{
    std::vector<std::uint32_t> words;
    for (float value : values) {
        words.push_back(EepromBuilder::FloatBits(value));
    }
    return words;
}

std::vector<std::uint32_t> Floats(const Spectrum36& values)
{
    return Floats(std::vector<float>(values.begin(), values.end()));
}

std::vector<std::uint32_t> Float(float value)
{
    return {EepromBuilder::FloatBits(value)};
}

std::vector<std::uint32_t> Words(const RawPixels& pixels)
{
    return {pixels.begin(), pixels.end()};
}

} // namespace

EepromFiles FactoryCalibration::CalibrationFiles(const Optics& optics, std::uint32_t serial)
{
    const float pi = static_cast<float>(std::acos(-1.0));
    EepromFiles files;
    files[1000] = Floats(Optics::Linearisation(1));
    files[1001] = Floats(Optics::Linearisation(0));
    files[1002] = optics.Matrix().first;
    files[1003] = optics.Matrix().count;
    files[1004] = Floats(optics.Matrix().coefficients);
    files[1100] = Floats(optics.TileRecord());
    files[1101] = Floats(optics.EmissionFactors());
    files[1102] = Floats(std::vector<float>(Optics::outputs, pi));
    files[1204] = {targetLevel};
    files[1205] = {darkLimit};
    files[1207] = {saturationLevel};
    files[1208] = {saturationLevel};
    files[1211] = {serial};
    files[1212] = {20240315};
    files[1213] = Float(static_cast<float>(Optics::gainRatio));
    files[1221] = Float(shortestIntegrationTime);
    files[1222] = Float(longestIntegrationTime);
    files[3001] = {3};
    files[3002] = {0};
    files[3007] = {17};
    files[3008] = {23};
    files[3010] = {0};
    files[3011] = {2};
    files[3012] = {optics.UvCut() ? whiteCheckUvCut : whiteCheckNoFilter};
    files[3013] = {0};
    files[3014] = Float(1.0f);
    files[4000] = {0x00010000};
    return files;
}

EepromFiles FactoryCalibration::LogFiles(const Optics& optics)
{
    constexpr std::uint32_t factoryMeasurements = 212;
    const double time = Optics::tileIntegrationTime;
    Sensor sensor(optics, false, 0);
    std::vector<double> tile(Optics::pixels);
    for (int p = 0; p < Optics::pixels; ++p) {
        tile[static_cast<std::size_t>(p)] = optics.LampRadiance()[p] * optics.TileReflectance()[p];
    }
    EepromFiles files;
    files[10001] = Float(static_cast<float>(time));
    files[10002] = {factoryMeasurements};
    files[10003] = {4};
    files[10004] = Float(static_cast<float>(factoryMeasurements * (4 * time + 0.15028)));
    files[10005] = {57};
    files[10010] = Words(sensor.Read(std::vector<double>(Optics::pixels, 0.0), 1, time));
    files[10011] = Words(sensor.Read(tile, 1, time));
    files[10012] = {1};
    files[10013] = Float(static_cast<float>(time));
    files[10020] = {1718000000};
    files[10021] = {factoryMeasurements};
    return files;
}

std::vector<std::uint8_t> FactoryCalibration::Image(const Optics& optics, std::uint32_t serial)
{
    return EepromBuilder::Build(LogFiles(optics), CalibrationFiles(optics, serial));
}

} // namespace OrbelSim
