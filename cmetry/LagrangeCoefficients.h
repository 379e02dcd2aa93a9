#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace CMetry {

// The Lagrange basis polynomials of equally spaced nodes at 0, s, 2s (and 3s), evaluated at the
// s points of one interval. L3a covers the interval from the first node to the second of three,
// L3b the one from the second to the third, L4 the middle interval of four. Each coefficient is
// a quotient of integers, divided as floats.
class LagrangeCoefficients {
public:
    explicit LagrangeCoefficients(uint16_t step);

    uint16_t GetStep() const { return step; }
    // The row of one node: its coefficient at each of the s points of the interval.
    std::span<const float> GetL3a(uint16_t node) const { return Row(l3a, node); }
    std::span<const float> GetL3b(uint16_t node) const { return Row(l3b, node); }
    std::span<const float> GetL4(uint16_t node) const { return Row(l4, node); }

private:
    std::span<const float> Row(const std::vector<float>& rows, uint16_t node) const;
    std::vector<float> Rows(int nodeCount, int offset) const;
    float Coefficient(int nodeCount, int node, int position) const;

    uint16_t step;
    std::vector<float> l3a;
    std::vector<float> l3b;
    std::vector<float> l4;
};

}
