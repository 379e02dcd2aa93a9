#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "cmetry/HvMeasureConditions.h"
#include "utilities/String.h"

namespace CMetry {

class LagrangeCoefficients;
class SpectralDistribution;

// The weights that turn the data points of a spectrum into tristimulus values with one dot product
// per axis. They hold what integration at 1 nm from 360 nm to 780 nm gives, with the spectrum
// interpolated between its data points by Lagrange polynomials and the wavelengths outside the
// measured range folded into its first and last point.
class Weightfactors {
public:
    static constexpr uint16_t calculationMinimum = 360;
    static constexpr uint16_t calculationMaximum = 780;
    static constexpr uint16_t calculationCount = calculationMaximum - calculationMinimum + 1;
    static constexpr uint16_t numberOfAxes = 3;

    // A failure on the way leaves an object without weights that keeps the failure's text.
    explicit Weightfactors(const HvMeasureConditions& conditions);

    bool HasWeights() const { return !weights.empty(); }
    // The weights of axis 0, 1 or 2 (x, y, z), one for each data point. Another axis fails with
    // ExceptionNullpointer "Invalid Axis"; an object without weights fails with
    // ExceptionCalculationProblem and the text of the failure that left it without.
    std::span<const float> GetWeights(uint16_t axis) const;
    // X, Y, Z of the perfect diffuser; 0 for an axis above 2 and without weights.
    float GetWhitePoint(uint16_t axis) const;
    // Y of the perfect diffuser as the weights sum it, each step rounded through double as the Y
    // of a spectrum is; it lies up to 1e-4 off the 100 of the white point. 0 without weights.
    double GetPerfectDiffuserY() const { return perfectDiffuserY; }
    float GetK() const { return k; }
    bool IsEmission() const { return emission; }
    uint16_t GetNumberOfDataPoints() const { return dataCount; }
    // The relative spectral power at 1 nm from 360 nm to 780 nm; empty for emission.
    std::span<const float> GetIlluminant() const { return illuminant; }

    // Fails with ExceptionCalculationProblem and the words of the first check that the grid of
    // the data points doesn't pass.
    static void CheckDataGrid(uint16_t count, uint16_t minimum, uint16_t maximum);

private:
    void Build(const HvMeasureConditions& conditions);
    void TakeObserver(Observer observer);
    void TakeIlluminant(const HvMeasureConditions& conditions);
    float SumOfIlluminantTimesYBar() const;
    std::vector<float> Weighted(uint16_t axis) const;
    std::vector<float> GridWeights(const std::vector<float>& weighted, const LagrangeCoefficients& lagrange) const;
    void FoldOntoDataPoints(const std::vector<float>& gridWeights, uint16_t axis);
    void TakeWhitePoint();
    void Clear(const Utilities::String& failureText);

    std::vector<float> illuminant;
    std::vector<float> observer;
    float k;
    std::vector<float> weights;
    uint16_t dataCount;
    uint16_t dataMinimum;
    uint16_t dataMaximum;
    uint16_t dataStep;
    std::array<float, numberOfAxes> whitePoint;
    double perfectDiffuserY;
    bool emission;
    Utilities::String failure;
};

}
