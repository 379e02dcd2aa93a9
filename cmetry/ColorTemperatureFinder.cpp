#include "cmetry/ColorTemperatureFinder.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "cmetry/BlackBody.h"
#include "cmetry/ColorSpaceConversion.h"
#include "cmetry/ColorSpaceKeyword.h"
#include "cmetry/ExceptionCMetry.h"
#include "cmetry/HvColorVector.h"
#include "cmetry/TranslatedMessage.h"
#include "cmetry/Tristimulus.h"

namespace CMetry {

namespace {

constexpr float goldenSection = 0.61803f;

[[noreturn]] void ThrowSearchFailed()
{
    throw ExceptionCMetry(TranslatedMessage("Calculation of ColorTemperature failed"));
}

// Correlated colour temperature, the nearest point of the Planckian locus in the CIE 1960 UCS:
// CIE 15:2004.
// Only compared, never shown: the square of the squared distance in the uv plane.
float Distance(const HvColorVector& uv, const HvColorVector& target)
{
    const float du = uv[0] - target[0];
    const float dv = uv[1] - target[1];
    return static_cast<float>(std::pow(std::pow(du, 2.0) + std::pow(dv, 2.0), 2.0));
}

// The index of the smallest distance; of equals the later one, as the search has always decided.
int NearestIndex(const float (&distance)[3])
{
    if (distance[0] < distance[1]) {
        return distance[0] < distance[2] ? 0 : 2;
    }
    return distance[1] < distance[2] ? 1 : 2;
}

// Trial temperatures with their distances to the target, and whether every chromaticity so far
// could be computed.
class Search {
public:
    Search(const HvSpectrum& spectrum, const HvColorVector& target)
        : blackBody(spectrum.Conditions()), target(target), ok(true)
    {
    }

    float DistanceAt(float temperature)
    {
        HvColorVector uv;
        ok = ConvertTouvY1960(blackBody.GetXYZ(temperature), uv) && ok;
        return Distance(uv, target);
    }

    bool IsOk() const { return ok; }

private:
    BlackBody blackBody;
    const HvColorVector& target;
    bool ok;
};

// Moves the middle point onto the nearest end when an end is nearest, so that the bracket starts
// with the end and the middle in one place.
void Bracket(float (&temperature)[3], float (&distance)[3])
{
    const int nearest = NearestIndex(distance);
    if (nearest == 0) {
        temperature[2] = temperature[1];
        temperature[1] = temperature[0];
        distance[2] = distance[1];
        distance[1] = distance[0];
    } else if (nearest == 2) {
        temperature[0] = temperature[1];
        temperature[1] = temperature[2];
        distance[0] = distance[1];
        distance[1] = distance[2];
    }
}

// A trial between the middle and one end: a winner becomes the middle, a loser the new end.
void Trial(Search& search, float (&temperature)[3], float (&distance)[3], int end)
{
    const float delta = 1.0f / temperature[end] - 1.0f / temperature[1];
    const float trial = 1.0f / (1.0f / temperature[end] - goldenSection * delta);
    const float trialDistance = search.DistanceAt(trial);
    const int replaced = trialDistance <= distance[1] ? 1 : end;
    temperature[replaced] = trial;
    distance[replaced] = trialDistance;
}

}

ColorTemperatureFinder::ColorTemperatureFinder()
    : lowestTemperature(200.0f), highestTemperature(1000000.0f), tolerance(0.5f)
{
}

ColorTemperatureFinder::ColorTemperatureFinder(const float (&limits)[3])
    : lowestTemperature(limits[0]), highestTemperature(limits[1]), tolerance(limits[2])
{
}

float ColorTemperatureFinder::GetColorTemperature(const HvSpectrum& spectrum) const
{
    HvColorVector xyz;
    HvColorVector target;
    const bool hasTarget = GetXYZ(spectrum, WithColorSpace(spectrum.Conditions(), ColorSpaceKeyword::cieXYZ), xyz) &&
        ConvertTouvY1960(xyz, target);
    Search search(spectrum, target);
    float temperature[3] = {
        lowestTemperature, 2.0f / (1.0f / lowestTemperature + 1.0f / highestTemperature), highestTemperature};
    float distance[3];
    for (int index = 0; index < 3; ++index) {
        distance[index] = search.DistanceAt(temperature[index]);
    }
    if (!hasTarget || !search.IsOk()) {
        ThrowSearchFailed();
    }
    Bracket(temperature, distance);
    // Near the hot end the float reciprocals can stop moving before the bracket is that narrow; a
    // pass that changes nothing ends the search where it stands.
    bool narrowing = true;
    while (narrowing && (temperature[1] - temperature[0] > tolerance || temperature[2] - temperature[1] > tolerance)) {
        const float before[3] = {temperature[0], temperature[1], temperature[2]};
        Trial(search, temperature, distance, 2);
        Trial(search, temperature, distance, 0);
        narrowing = !std::equal(std::begin(before), std::end(before), std::begin(temperature));
    }
    if (temperature[1] < lowestTemperature || temperature[1] > highestTemperature) {
        ThrowSearchFailed();
    }
    return std::floor(temperature[NearestIndex(distance)] + 0.5f);
}

}
