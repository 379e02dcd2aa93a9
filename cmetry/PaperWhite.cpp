#include "cmetry/PaperWhite.h"

#include <algorithm>
#include <array>
#include <mutex>

#include "utilities/SmartPointer.h"

namespace CMetry {

using Utilities::SmartPointer;

namespace {

// The sample as it was set, and beside it the values of its spectrum, so that dividing never
// walks a list that other threads may walk at the same time.
struct PaperWhiteState {
    std::mutex mutex;
    SmartPointer<HvSample> sample;
    std::array<float, HvSpectrum::numberOfValues> values{};
    bool hasSignal = false;
};

PaperWhiteState& State()
{
    static PaperWhiteState state;
    return state;
}

// The values of the paper white, or false when there is none.
bool CopyPaperWhiteValues(std::array<float, HvSpectrum::numberOfValues>& values)
{
    PaperWhiteState& state = State();
    std::lock_guard<std::mutex> lock(state.mutex);
    if (state.sample.IsNull()) {
        return false;
    }
    values = state.values;
    return true;
}

}

void SetPaperWhite(const HvSpectrum& spectrum)
{
    SmartPointer<HvSample> sample(new HvSample);
    sample->Add(spectrum);
    PaperWhiteState& state = State();
    std::lock_guard<std::mutex> lock(state.mutex);
    state.sample = sample;
    std::copy(spectrum.GetValues(), spectrum.GetValues() + HvSpectrum::numberOfValues, state.values.begin());
    state.hasSignal = spectrum.HasSignal();
}

HvSample GetPaperWhite()
{
    PaperWhiteState& state = State();
    std::lock_guard<std::mutex> lock(state.mutex);
    return *state.sample;
}

bool HasPaperWhite(const HvMeasureConditions&)
{
    PaperWhiteState& state = State();
    std::lock_guard<std::mutex> lock(state.mutex);
    return !state.sample.IsNull() && state.hasSignal;
}

bool DivideByPaperWhite(HvSpectrum& spectrum)
{
    return DivideByPaperWhite(spectrum.Conditions(), &spectrum[0]);
}

bool DivideByPaperWhite(const HvMeasureConditions&, float* values)
{
    std::array<float, HvSpectrum::numberOfValues> paperWhite;
    if (!CopyPaperWhiteValues(paperWhite)) {
        return false;
    }
    for (uint16_t index = 0; index < HvSpectrum::numberOfValues; ++index) {
        values[index] = static_cast<float>(static_cast<double>(values[index]) / paperWhite[index]);
    }
    return true;
}

bool GetPaperWhiteValues(float* values)
{
    std::array<float, HvSpectrum::numberOfValues> paperWhite;
    if (!CopyPaperWhiteValues(paperWhite)) {
        return false;
    }
    std::copy(paperWhite.begin(), paperWhite.end(), values);
    return true;
}

Diagnostics::String GetPaperWhiteValueString()
{
    PaperWhiteState& state = State();
    std::lock_guard<std::mutex> lock(state.mutex);
    Diagnostics::String text("Paper white: ");
    if (state.sample.IsNull()) {
        text += "not present";
    } else {
        text += state.sample->GetValueString();
    }
    return text;
}

}
