#include "cmetry/GammaTables.h"

#include <cmath>

namespace CMetry {

namespace {

constexpr float gamma = 0.45f;
constexpr float halfStep = 0.5f;

}

GammaTables::GammaTables()
{
    table[0] = 0.0f;
    float level = 0.0f;
    for (uint16_t index = 1; index < size; ++index) {
        level += halfStep;
        table[index] = static_cast<float>(std::pow(level / 255.0, 1.0 / static_cast<double>(gamma)));
    }
}

const GammaTables& GammaTables::Instance()
{
    static const GammaTables tables;
    return tables;
}

float GammaTables::Code(float linear)
{
    return static_cast<float>(Instance().Index(linear) / 2);
}

// A bisection that never reaches the last entry; a value below the first entry gives -1.
int GammaTables::Index(float linear) const
{
    int low = 0;
    int high = size - 1;
    int middle = size / 2;
    while (middle != low) {
        if (linear < table[middle]) {
            high = middle;
        } else {
            low = middle;
        }
        middle = low + (high - low) / 2;
    }
    return linear < table[low] ? low - 1 : low;
}

}
