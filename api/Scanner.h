#pragma once

#include <cstdint>

#include "api/AbstractMeasurementDevice.h"
#include "cmetry/HvSample.h"
#include "cmetry/HvSpectrum.h"
#include "utilities/ListIterator.h"
#include "utilities/SmartPointer.h"
#include "utilities/Vector.h"

// The strip measurement: one sample per raw scan position, or, with recognition, one per
// patch that the recognition found. The recognition flag survives a Reset.
template<class T>
class Scanner : public AbstractMeasurementDevice<T> {
public:
    // The count that leaves the instrument's own default.
    static constexpr int32_t defaultCount = -1;

    explicit Scanner(const Utilities::SmartPointer<T>& interface)
        : AbstractMeasurementDevice<T>(interface), recognition(false)
    {
    }

    void SetRecognition(bool value) { recognition = value; }
    bool GetRecognition() const { return recognition; }

    // A trigger with the count of the scan for the instrument in place of its default.
    void TriggerCountedScan(int32_t count)
    {
        this->Interface()->Measure(count);
        this->TakeSamplesOfMeasurement();
    }

protected:
    void DoCalibrate() override { this->Interface()->Calibrate(); }

    void DoMeasure() override { this->Interface()->Measure(defaultCount); }

    void ReadSamples(Utilities::Vector<CMetry::HvSpectrum>& result) override
    {
        const CMetry::HvSample scan =
            recognition ? this->Interface()->GetRecognizedSamples() : this->Interface()->GetSamples();
        Utilities::Vector<CMetry::HvSpectrum> spectra(scan.GetElementCount());
        unsigned long position = 0;
        for (Utilities::ListIterator<const CMetry::HvSpectrum> each = scan.Begin(); each.IsValid(); ++each) {
            spectra[position++] = each.Current();
        }
        result = spectra;
    }

private:
    bool recognition;
};
