#pragma once

#include "api/AbstractMeasurementDevice.h"
#include "cmetry/HvSpectrum.h"
#include "utilities/SmartPointer.h"
#include "utilities/Vector.h"

// The single reflectance measurement: one spectrum per trigger.
template<class T>
class ReflectanceMeasurementDevice : public AbstractMeasurementDevice<T> {
public:
    explicit ReflectanceMeasurementDevice(const Utilities::SmartPointer<T>& interface)
        : AbstractMeasurementDevice<T>(interface)
    {
    }

protected:
    void DoCalibrate() override { this->Interface()->Calibrate(); }

    void DoMeasure() override { this->Interface()->Measure(); }

    void ReadSamples(Utilities::Vector<CMetry::HvSpectrum>& result) override
    {
        Utilities::Vector<CMetry::HvSpectrum> one(1);
        one[0] = this->Interface()->GetSample();
        result = one;
    }
};
