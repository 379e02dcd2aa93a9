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
    // rows: one row of kPixels weights for each of the 36 outputs; pixels outside [first, last] stay 0.
    SmoothSpectrumSolver(const std::vector<std::vector<double>>& rows, int firstPixel, int lastPixel);

    std::vector<double> Solve(const Spectrum36& values) const;

private:
    void Factorise();

    int firstPixel_;
    int unknowns_;
    int size_;
    std::size_t pixels_;
    std::vector<double> lu_;
    std::vector<int> pivots_;
};

} // namespace OrbelSim
