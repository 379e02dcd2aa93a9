#pragma once
// The smoothest pixel-level spectrum whose fold by given constraint rows gives given values
// exactly: minimise the sum of squared second differences over the live pixels, subject to
// row_k . x = value_k for every k. Solved once by an LU factorisation of the KKT system; each
// target then costs a back-substitution.

#include <vector>

#include "sim/SpectralTables.h"

namespace OrbelSim {

class SmoothSpectrumSolver {
public:
    // rows: one row of Optics::pixels weights for each of the 36 outputs; pixels outside [first, last] stay 0.
    SmoothSpectrumSolver(const std::vector<std::vector<double>>& rows, int firstPixel, int lastPixel);

    std::vector<double> Solve(const Spectrum36& values) const;

private:
    void Factorise();

    int firstPixel;
    int unknowns;
    int size;
    std::size_t pixelCount;
    std::vector<double> lu;
    std::vector<int> pivots;
};

} // namespace OrbelSim
