#include "cmetry/DensityFilterSet.h"

#include <array>
#include <mutex>
#include <span>

#include "cmetry/UserFilters.h"

namespace CMetry {

using Utilities::SmartPointer;

namespace {

constexpr uint16_t firstWavelength = 380;
constexpr uint16_t wavelengthStep = 10;

// Weights from a wavelength on, in steps of 10 nm; all others are 0.
struct FilterTable {
    uint16_t startWavelength;
    std::span<const float> weights;
};

// The colour filters of a standard: cyan, magenta, yellow.
using ColorFilterTables = std::array<FilterTable, 3>;

// Sums to 100 over the data points, for every standard but "User"; the black density adds 2.0 to
// make up for it.
constexpr float visual[] = {
    0.0005454f,
    0.00196655f,
    0.00778611f,
    0.02652581f,
    0.06118588f,
    0.1165526f,
    0.2102807f,
    0.3616066f,
    0.6215321f,
    1.039379f,
    1.792176f,
    3.079981f,
    4.771312f,
    6.322516f,
    7.600388f,
    8.568938f,
    9.222837f,
    9.457845f,
    9.228659f,
    8.541516f,
    7.547362f,
    6.357182f,
    5.072025f,
    3.705134f,
    2.562605f,
    1.636772f,
    0.9722966f,
    0.5302566f,
    0.2921934f,
    0.1458808f,
    0.07534604f,
    0.03978899f,
    0.01949865f,
    0.01001628f,
};

constexpr float din[] = {
    3.0f / 74.0f,
    8.0f / 74.0f,
    16.0f / 74.0f,
    20.0f / 74.0f,
    16.0f / 74.0f,
    8.0f / 74.0f,
    3.0f / 74.0f,
};

constexpr float narrowBand[] = {1.0f};

constexpr float ansiACyan[] = {
    0.00126881f,
    0.1491708f,
    0.3429214f,
    0.2547906f,
    0.1378544f,
    0.06618383f,
    0.02722796f,
    0.012208f,
    0.00500665f,
    0.00204724f,
    0.00082987f,
    0.00031892f,
    0.00012345f,
    4.801e-05f,
};
constexpr float ansiAMagenta[] = {
    0.00014374f,
    0.02120959f,
    0.19325f,
    0.3194215f,
    0.2571343f,
    0.1408649f,
    0.05302396f,
    0.01296851f,
    0.00186223f,
    0.00012138f,
};
constexpr float ansiAYellow[] = {
    0.01310135f,
    0.2158448f,
    0.3275338f,
    0.2675951f,
    0.1365816f,
    0.03602872f,
    0.00319345f,
    0.00012119f,
};

constexpr float ansiTCyan[] = {
    0.00019168f,
    0.00143761f,
    0.09584052f,
    0.3194684f,
    0.2715482f,
    0.1757076f,
    0.0798671f,
    0.03194684f,
    0.01597342f,
    0.00479203f,
    0.00159734f,
    0.00095841f,
    0.0004792f,
    0.00015973f,
    3.195e-05f,
};
constexpr float ansiTMagenta[] = {
    0.00190006f,
    0.00950029f,
    0.05700171f,
    0.1292039f,
    0.1748052f,
    0.1900057f,
    0.167205f,
    0.1254038f,
    0.07980239f,
    0.04180125f,
    0.01710051f,
    0.00475014f,
    0.00133004f,
    0.00017101f,
};
constexpr float ansiTYellow[] = {
    0.00042192f,
    0.00210959f,
    0.00843834f,
    0.02390864f,
    0.05625563f,
    0.08438344f,
    0.115324f,
    0.1322007f,
    0.1406391f,
    0.1364199f,
    0.1195432f,
    0.09141539f,
    0.05625563f,
    0.02531503f,
    0.00703195f,
    0.00028128f,
    5.626e-05f,
};

constexpr float spiCyan[] = {
    0.00076974f,
    0.00378494f,
    0.05486815f,
    0.468679f,
    0.4248397f,
    0.04224447f,
    0.00414065f,
    0.00067339f,
};
constexpr float spiMagenta[] = {
    0.00036493f,
    0.00292893f,
    0.03309005f,
    0.3956348f,
    0.4914789f,
    0.06993199f,
    0.00531376f,
    0.00125661f,
};
constexpr float spiYellow[] = {
    0.0001496f,
    0.0008944f,
    0.003028f,
    0.1230578f,
    0.4815675f,
    0.3657375f,
    0.02073189f,
    0.00403653f,
    0.00079683f,
};

constexpr FilterTable visualTable = {400, visual};

// Indexed by the DensityStandard number, "DIN" to "SPI".
constexpr std::array<ColorFilterTables, 5> colorTables = {{
    {{{590, din}, {500, din}, {400, din}}},
    {{{620, narrowBand}, {530, narrowBand}, {430, narrowBand}}},
    {{{600, ansiACyan}, {500, ansiAMagenta}, {420, ansiAYellow}}},
    {{{570, ansiTCyan}, {480, ansiTMagenta}, {380, ansiTYellow}}},
    {{{590, spiCyan}, {500, spiMagenta}, {390, spiYellow}}},
}};

void Fill(Filter& filter, const FilterTable& table)
{
    const uint16_t first = static_cast<uint16_t>((table.startWavelength - firstWavelength) / wavelengthStep);
    for (std::size_t offset = 0; offset < table.weights.size(); ++offset) {
        filter[static_cast<uint16_t>(first + offset)] = table.weights[offset];
    }
}

struct CurrentSet {
    std::mutex mutex;
    SmartPointer<const DensityFilterSet> set{new DensityFilterSet};
};

CurrentSet& Current()
{
    static CurrentSet current;
    return current;
}

}

DensityFilterSet::DensityFilterSet() : standard(DensityStandard::Undefined), filters(numberOfChannels) { }

DensityFilterSet::DensityFilterSet(DensityStandard standardToLoad) : standard(standardToLoad), filters(numberOfChannels)
{
    if (standard == DensityStandard::User) {
        LoadUserFilters();
    } else {
        LoadTables(standard);
    }
}

void DensityFilterSet::LoadTables(DensityStandard standardToLoad)
{
    const auto index = static_cast<std::size_t>(standardToLoad);
    if (index >= colorTables.size()) {
        return;
    }
    Fill(filters[0], visualTable);
    for (uint16_t channel = 1; channel < numberOfChannels; ++channel) {
        Fill(filters[channel], colorTables[index][channel - 1]);
    }
}

void DensityFilterSet::LoadUserFilters()
{
    const UserFilters::Table table = UserFilters::GetTable();
    for (uint16_t channel = 0; channel < numberOfChannels; ++channel) {
        for (uint16_t index = 0; index < Filter::numberOfValues; ++index) {
            filters[channel][index] = table[channel][index];
        }
    }
}

SmartPointer<const DensityFilterSet> DensityFilterSet::ForStandard(DensityStandard standard)
{
    CurrentSet& current = Current();
    std::lock_guard<std::mutex> lock(current.mutex);
    if (current.set->GetStandard() != standard) {
        current.set = SmartPointer<const DensityFilterSet>(new DensityFilterSet(standard));
    }
    return current.set;
}

}
