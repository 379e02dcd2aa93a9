#include "cmetry/LagrangeCoefficients.h"

namespace CMetry {

LagrangeCoefficients::LagrangeCoefficients(uint16_t step)
    : step(step), l3a(Rows(3, 0)), l3b(Rows(3, step)), l4(Rows(4, step))
{
}

std::span<const float> LagrangeCoefficients::Row(const std::vector<float>& rows, uint16_t node) const
{
    return std::span<const float>(rows).subspan(static_cast<std::size_t>(node) * step, step);
}

// Row after row, one for each node; within a row the points offset + i for i from 0 to s - 1.
std::vector<float> LagrangeCoefficients::Rows(int nodeCount, int offset) const
{
    std::vector<float> rows;
    rows.reserve(static_cast<std::size_t>(nodeCount) * step);
    for (int node = 0; node < nodeCount; ++node) {
        for (int i = 0; i < step; ++i) {
            rows.push_back(Coefficient(nodeCount, node, offset + i));
        }
    }
    return rows;
}

float LagrangeCoefficients::Coefficient(int nodeCount, int node, int position) const
{
    long numerator = 1;
    long denominator = 1;
    for (int other = 0; other < nodeCount; ++other) {
        if (other != node) {
            numerator *= position - other * step;
            denominator *= (node - other) * step;
        }
    }
    return static_cast<float>(numerator) / static_cast<float>(denominator);
}

}
