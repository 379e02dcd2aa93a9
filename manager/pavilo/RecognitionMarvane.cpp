#include "manager/pavilo/RecognitionMarvane.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "cmetry/SpectrumBatch.h"
#include "utilities/ExceptionCalculationProblem.h"
#include "utilities/ExceptionOutOfBound.h"

namespace HviManager::PaviloDriver {

using DeviceDriver::SpectrumData;
using Utilities::ExceptionCalculationProblem;
using Utilities::ExceptionOutOfBound;
using Utilities::Vector;

namespace {

// Differences up to this are noise of the instrument, never an edge.
constexpr float noChange = 3.0f;

bool IsUnchanged(const RecognitionElement& element, float limit)
{
    return element.ForwardDifference() <= limit && element.BackwardDifference() <= limit;
}

const RecognitionElement& ElementAt(const std::vector<RecognitionElement>& elements, int64_t index)
{
    if (index < 0 || static_cast<uint64_t>(index) >= elements.size()) {
        throw ExceptionOutOfBound("vector index >= vector size");
    }
    return elements[static_cast<size_t>(index)];
}

using Lab = std::array<float, 3>;

// The length of the difference, channel by channel in double and stored as float first, as a
// difference of two colour vectors has it.
float PlainDifference(const Lab& first, const Lab& second)
{
    double sumOfSquares = 0.0;
    for (std::size_t channel = 0; channel < first.size(); ++channel) {
        const auto difference = static_cast<float>(static_cast<double>(first[channel]) - second[channel]);
        sumOfSquares += static_cast<double>(difference) * difference;
    }
    return static_cast<float>(std::sqrt(sumOfSquares));
}

// Whether elements lo to hi - 1 all lie within the noise of the first of them.
bool IsOneColour(const std::vector<RecognitionElement>& elements, int64_t lo, int64_t hi)
{
    for (int64_t index = lo + 1; index < hi; ++index) {
        if (PlainDifference(ElementAt(elements, lo).Lab(), ElementAt(elements, index).Lab()) > noChange) {
            return false;
        }
    }
    return true;
}

// A quiet measurement that the bridge joined to an edge is a field of its own when nothing changes
// on either side of it: the blurred borders of a narrow field, drawn fast, met around it, and the
// one edge they make would drop the field without a trace.
void CheckNoFieldInsideEdges(const std::vector<RecognitionElement>& elements)
{
    for (const RecognitionElement& element : elements) {
        if (element.IsEdge() && element.DifferenceSum() <= noChange) {
            throw ExceptionCalculationProblem("Field is too small");
        }
    }
}

// A span that straddles an edge the threshold missed, or that is a single measurement between
// two edges, would give a patch of a colour that isn't on the strip.
void CheckUniform(const std::vector<RecognitionElement>& elements, int64_t lo, int64_t hi)
{
    if (hi - lo < 2 || !IsOneColour(elements, lo, hi)) {
        throw ExceptionCalculationProblem("Field is not uniform");
    }
}

// The mean of elements lo to hi - 1, each sum rounded to float as it grows.
SpectrumData MeanOf(const std::vector<RecognitionElement>& elements, int64_t lo, int64_t hi)
{
    const RecognitionElement& first = ElementAt(elements, lo);
    const unsigned long length = first.Load().Size();
    std::vector<float> sums(length, 0.0f);
    for (int64_t index = lo; index < hi; ++index) {
        const Vector<float>& row = ElementAt(elements, index).Load();
        for (unsigned long value = 0; value < length; ++value) {
            sums[value] = static_cast<float>(static_cast<double>(sums[value]) + row[value]);
        }
    }
    Vector<float> mean(length);
    const auto count = static_cast<float>(hi - lo);
    for (unsigned long value = 0; value < length; ++value) {
        mean[value] = sums[value] / count;
    }
    SpectrumData patch;
    patch.SetGain(first.Gain());
    patch.SetIntegrationTime(first.IntegrationTime());
    patch.Resize(1);
    patch.Store(mean);
    return patch;
}

}

RecognitionMarvane::RecognitionMarvane() : threshold(noChange)
{
    conditions.SetCondition("Colorimetric.Illumination", "D50");
    conditions.SetCondition("Colorimetric.Observer", "TwoDegree");
    conditions.SetCondition("Colorimetric.WhiteBase", "Absolute");
    conditions.SetCondition("ColorSpaceDescription.Type", "CIELab");
    conditions.SetCondition("ColorSpaceDescription.DeltaEFormula", "CIELab");
    conditions.SetCondition("ColorSpaceDescription.AbsoluteOrDeltaVector", "AbsoluteVector");
}

Diagnostics::String RecognitionMarvane::GetDescription() const
{
    return "Recognition by Ilse Marvane";
}

// A single edge bounds no field; the caller can't tell that from a strip without fields.
bool RecognitionMarvane::Recognize(const Vector<SpectrumData>& scan, Vector<SpectrumData>& patches)
{
    try {
        LocateEdges(ElementsWithDifferences(scan));
        CheckNoFieldInsideEdges(elements);
        const Vector<SpectrumData> found = AverageFields(elements, edges);
        if (found.Size() == 0) {
            return false;
        }
        patches = found;
        return true;
    } catch (...) {
        // A strip that can't be split, whatever stopped it, is answered as "Recognition impossible";
        // the raw scan stays readable.
        return false;
    }
}

bool RecognitionMarvane::Recognize(DeviceDriver::SpectrumDataFifo& scan, Vector<SpectrumData>& patches)
{
    std::vector<SpectrumData> popped;
    SpectrumData spectrum;
    while (!(scan.IsEmpty() && scan.IsFinished())) {
        if (!scan.Pop(spectrum)) {
            return false;
        }
        popped.push_back(spectrum);
    }
    Vector<SpectrumData> series(popped.size());
    for (size_t index = 0; index < popped.size(); ++index) {
        series[index] = popped[index];
    }
    return Recognize(series, patches);
}

void RecognitionMarvane::LocateEdges(const std::vector<RecognitionElement>& series)
{
    TrimEnds(series);
    SetThreshold();
    Classify();
    Bridge();
    FindEdgeCentres();
}

std::vector<RecognitionElement> RecognitionMarvane::ElementsWithDifferences(const Vector<SpectrumData>& scan) const
{
    const unsigned long count = scan.Size();
    constexpr std::size_t width = CMetry::SpectrumBatch::valuesPerSpectrum;
    std::vector<float> spectra(count * width);
    for (unsigned long index = 0; index < count; ++index) {
        const Vector<float>& row = scan[index].Load();
        if (row.Size() < width) {
            throw ExceptionOutOfBound("vector index >= vector size");
        }
        std::copy(&row[0], &row[0] + width, &spectra[index * width]);
    }
    std::vector<float> flatLabs(count * CMetry::SpectrumBatch::valuesPerResult);
    CMetry::SpectrumBatch(conditions).GetLab(spectra, flatLabs);
    std::vector<Lab> labs(count);
    for (unsigned long index = 0; index < count; ++index) {
        std::copy_n(&flatLabs[index * labs[index].size()], labs[index].size(), labs[index].begin());
    }
    std::vector<RecognitionElement> series;
    series.reserve(count);
    for (unsigned long index = 0; index < count; ++index) {
        RecognitionElement element(scan[index]);
        element.SetLab(labs[index]);
        if (index > 0) {
            element.SetBackwardDifference(PlainDifference(labs[index - 1], labs[index]));
        }
        if (index + 1 < count) {
            element.SetForwardDifference(PlainDifference(labs[index], labs[index + 1]));
        }
        series.push_back(std::move(element));
    }
    return series;
}

void RecognitionMarvane::TrimEnds(const std::vector<RecognitionElement>& series)
{
    size_t begin = 0;
    while (begin < series.size() && IsUnchanged(series[begin], noChange)) {
        ++begin;
    }
    if (begin == series.size()) {
        throw ExceptionCalculationProblem("No patches found");
    }
    size_t end = series.size();
    while (end > begin && IsUnchanged(series[end - 1], noChange)) {
        --end;
    }
    // A hand so slow that fields fade into each other below the noise would otherwise lose
    // whole fields with the margins.
    const auto length = static_cast<int64_t>(series.size());
    if (!IsOneColour(series, 0, static_cast<int64_t>(begin)) ||
        !IsOneColour(series, static_cast<int64_t>(end), length)) {
        throw ExceptionCalculationProblem("Margin is not uniform");
    }
    elements.assign(
        series.begin() + static_cast<std::ptrdiff_t>(begin), series.begin() + static_cast<std::ptrdiff_t>(end));
}

// Half the mean difference of an element, and never below the noise.
void RecognitionMarvane::SetThreshold()
{
    float sum = 0.0f;
    for (const RecognitionElement& element : elements) {
        sum = sum + element.ForwardDifference() + element.BackwardDifference();
    }
    if (elements.empty()) {
        throw ExceptionCalculationProblem("Division by zero");
    }
    const float quarterOfSum = sum / 2.0f * 0.5f;
    threshold = quarterOfSum / static_cast<float>(elements.size());
    if (threshold < noChange) {
        threshold = noChange;
    }
}

void RecognitionMarvane::Classify()
{
    for (RecognitionElement& element : elements) {
        element.SetEdge(!IsUnchanged(element, threshold));
    }
}

// A single quiet measurement inside an edge doesn't split it.
void RecognitionMarvane::Bridge()
{
    for (size_t index = 0; index + 2 < elements.size(); ++index) {
        if (elements[index].IsEdge() && elements[index + 2].IsEdge() && !elements[index + 1].IsEdge()) {
            elements[index + 1].SetEdge(true);
        }
    }
}

// An edge lies at the centre of gravity of its differences.
void RecognitionMarvane::FindEdgeCentres()
{
    edges.clear();
    size_t start = 0;
    float sumW = 0.0f;
    float sumD = 0.0f;
    bool open = false;
    const auto close = [&](size_t index) {
        if (sumD != 0.0f) {
            const float centre = sumW / sumD;
            if (static_cast<float>(start) <= centre && static_cast<float>(index) >= centre) {
                edges.push_back(centre);
            }
        }
    };
    for (size_t index = 0; index < elements.size(); ++index) {
        const RecognitionElement& element = elements[index];
        if (element.IsEdge()) {
            if (!open) {
                start = index;
                open = true;
            }
            const float difference = element.DifferenceSum();
            sumW += difference * static_cast<float>(index);
            sumD += difference;
            if (index + 1 == elements.size()) {
                close(index);
            }
            continue;
        }
        if (open) {
            close(index);
            open = false;
        }
        sumW = 0.0f;
        sumD = 0.0f;
    }
}

Vector<SpectrumData> RecognitionMarvane::AverageFields(
    const std::vector<RecognitionElement>& elements, const std::vector<float>& edges)
{
    if (edges.empty()) {
        throw ExceptionOutOfBound("vector index >= vector size");
    }
    Vector<SpectrumData> patches(edges.size() - 1);
    for (size_t k = 0; k + 1 < edges.size(); ++k) {
        const auto third = static_cast<float>((edges[k + 1] - edges[k] + 1.0) / 3.0);
        const auto lo = static_cast<int64_t>(third + edges[k] + 0.5);
        const auto hi = static_cast<int64_t>(edges[k + 1] - third + 1.5);
        if (hi == lo) {
            throw ExceptionCalculationProblem("Field is too small");
        }
        CheckUniform(elements, lo, hi);
        patches[k] = MeanOf(elements, lo, hi);
    }
    return patches;
}

}
