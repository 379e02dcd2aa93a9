#pragma once
// A scanning interface with fixed spectra, which counts what it is asked.

#include "cmetry/HvSample.h"
#include "manager/SpecPhotoMeterScanning_V1.h"

namespace ScanningTest {

class FakeScanning : public HviManager::SpecPhotoMeterScanning_V1 {
public:
    void Measure(int32_t count) override
    {
        ++measures;
        lastCount = count;
    }
    CMetry::HvSample GetRecognizedSamples() override
    {
        ++recognitions;
        return patches;
    }
    CMetry::HvSample GetSamples() override { return raw; }
    void Calibrate() override { ++calibrations; }
    CMetry::HvMeasureConditions GetConditions() override { return GetMeasureConditions(); }
    void SetConditions(const CMetry::HvMeasureConditions& value) override { SetMeasureConditions(value); }
    Diagnostics::String GetValueString() override { return Diagnostics::String(); }
    CMetry::HvMeasureConditions GetMeasureConditions() override { return conditions; }
    void SetMeasureConditions(const CMetry::HvMeasureConditions& value) override { conditions = value; }

    CMetry::HvSample patches;
    CMetry::HvSample raw;
    CMetry::HvMeasureConditions conditions;
    int measures = 0;
    int recognitions = 0;
    int calibrations = 0;
    int32_t lastCount = 0;
};

}
