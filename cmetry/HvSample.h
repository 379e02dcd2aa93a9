#pragma once

#include "cmetry/HvMeasureConditions.h"
#include "cmetry/HvSpectrum.h"
#include "diagnostics/String.h"
#include "utilities/List.h"
#include "utilities/ListIterator.h"

namespace CMetry {

// The spectra taken of one object, as copies in the order they were added.
class HvSample {
public:
    HvSample();
    HvSample(const HvSample& other);
    HvSample& operator=(const HvSample& other);
    ~HvSample();

    void Add(const HvSpectrum& spectrum);
    // Copies of all spectra of the other sample, in order.
    void Append(const HvSample& other);
    // The first spectrum, whatever the conditions; false for an empty sample.
    bool GetSpectrum(const HvMeasureConditions& conditions, HvSpectrum& spectrum) const;
    unsigned long GetElementCount() const { return spectra.Size(); }
    Utilities::ListIterator<HvSpectrum> Begin() { return spectra.Begin(); }
    Utilities::ListIterator<const HvSpectrum> Begin() const { return spectra.Begin(); }

    // Two samples compare by their first spectra.
    bool operator==(const HvSample& other) const;
    bool operator!=(const HvSample& other) const { return !(*this == other); }

    Diagnostics::String GetValueString() const;

private:
    Utilities::List<HvSpectrum> spectra;
};

}
