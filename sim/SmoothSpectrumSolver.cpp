#include "sim/SmoothSpectrumSolver.h"

#include <cmath>
#include <stdexcept>
#include <utility>

namespace OrbelSim {

namespace {

// Keeps the system regular without pulling the solution visibly toward zero.
constexpr double ridge = 1e-9;

} // namespace

SmoothSpectrumSolver::SmoothSpectrumSolver(const std::vector<std::vector<double>>& rows, int firstPixel, int lastPixel)
    : firstPixel(firstPixel), unknowns(lastPixel - firstPixel + 1), size(unknowns + static_cast<int>(rows.size())),
      pixelCount(rows.front().size()), lu(static_cast<std::size_t>(size) * size, 0.0)
{
    auto at = [this](int r, int c) -> double& { return lu[static_cast<std::size_t>(r) * size + c]; };
    for (int j = 1; j + 1 < unknowns; ++j) {
        const int idx[3] = {j - 1, j, j + 1};
        const double w[3] = {1.0, -2.0, 1.0};
        for (int a = 0; a < 3; ++a) {
            for (int b = 0; b < 3; ++b) {
                at(idx[a], idx[b]) += w[a] * w[b];
            }
        }
    }
    for (int j = 0; j < unknowns; ++j) {
        at(j, j) += ridge;
    }
    for (std::size_t k = 0; k < rows.size(); ++k) {
        const int r = unknowns + static_cast<int>(k);
        for (int j = 0; j < unknowns; ++j) {
            at(r, j) = rows[k][static_cast<std::size_t>(firstPixel + j)];
            at(j, r) = at(r, j);
        }
    }
    Factorise();
}

void SmoothSpectrumSolver::Factorise()
{
    pivots.resize(static_cast<std::size_t>(size));
    auto at = [this](int r, int c) -> double& { return lu[static_cast<std::size_t>(r) * size + c]; };
    for (int col = 0; col < size; ++col) {
        int pivot = col;
        for (int r = col + 1; r < size; ++r) {
            if (std::fabs(at(r, col)) > std::fabs(at(pivot, col))) {
                pivot = r;
            }
        }
        if (at(pivot, col) == 0.0) {
            throw std::runtime_error("the spectral constraints are singular");
        }
        pivots[static_cast<std::size_t>(col)] = pivot;
        if (pivot != col) {
            for (int c = 0; c < size; ++c) {
                std::swap(at(col, c), at(pivot, c));
            }
        }
        for (int r = col + 1; r < size; ++r) {
            const double factor = at(r, col) / at(col, col);
            at(r, col) = factor;
            for (int c = col + 1; c < size; ++c) {
                at(r, c) -= factor * at(col, c);
            }
        }
    }
}

std::vector<double> SmoothSpectrumSolver::Solve(const Spectrum36& values) const
{
    auto at = [this](int r, int c) { return lu[static_cast<std::size_t>(r) * size + c]; };
    std::vector<double> x(static_cast<std::size_t>(size), 0.0);
    for (std::size_t k = 0; k < values.size(); ++k) {
        x[static_cast<std::size_t>(unknowns) + k] = values[k];
    }
    for (int col = 0; col < size; ++col) {
        std::swap(x[static_cast<std::size_t>(col)], x[static_cast<std::size_t>(pivots[static_cast<std::size_t>(col)])]);
    }
    for (int r = 0; r < size; ++r) {
        for (int c = 0; c < r; ++c) {
            x[static_cast<std::size_t>(r)] -= at(r, c) * x[static_cast<std::size_t>(c)];
        }
    }
    for (int r = size - 1; r >= 0; --r) {
        for (int c = r + 1; c < size; ++c) {
            x[static_cast<std::size_t>(r)] -= at(r, c) * x[static_cast<std::size_t>(c)];
        }
        x[static_cast<std::size_t>(r)] /= at(r, r);
    }
    std::vector<double> pixels(pixelCount, 0.0);
    for (int j = 0; j < unknowns; ++j) {
        pixels[static_cast<std::size_t>(firstPixel + j)] = x[static_cast<std::size_t>(j)];
    }
    return pixels;
}

} // namespace OrbelSim
