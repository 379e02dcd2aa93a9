#pragma once

#include "api/MeasurementDeviceInterface.h"
#include "cmetry/HvMeasureConditions.h"
#include "cmetry/HvSpectrum.h"
#include "utilities/SmartPointer.h"
#include "utilities/String.h"
#include "utilities/Vector.h"

// What every adapter of an instrument interface T shares: the samples of the last measurement
// and the conditions of the device. An adapter around a null interface fails at the first use
// of it; its samples and conditions can still be read.
template<class T>
class AbstractMeasurementDevice : public MeasurementDeviceInterface {
public:
    explicit AbstractMeasurementDevice(const Utilities::SmartPointer<T>& interface)
        : samples(0), interface(interface), conditions()
    {
    }

    void Calibrate() override
    {
        samples = Utilities::Vector<CMetry::HvSpectrum>(0);
        DoCalibrate();
    }

    void TriggerMeasurement() override
    {
        DoMeasure();
        TakeSamplesOfMeasurement();
    }

    const Utilities::Vector<CMetry::HvSpectrum>& GetSamples() const override { return samples; }

    bool HasSamples() const override { return samples.Size() > 0; }

    // A key or value that the conditions refuse changes nothing and doesn't reach the interface.
    void SetOption(const char* key, const char* value) override
    {
        conditions.SetCondition(Utilities::String(key), Utilities::String(value));
        interface->SetMeasureConditions(conditions);
    }

    void SetConditions(const CMetry::HvMeasureConditions& newConditions) override
    {
        conditions = newConditions;
        interface->SetMeasureConditions(conditions);
    }

    const CMetry::HvMeasureConditions& GetConditions() const override { return conditions; }

    void Reset() override
    {
        samples = Utilities::Vector<CMetry::HvSpectrum>(0);
        SetConditions(CMetry::HvMeasureConditions());
    }

protected:
    virtual void DoCalibrate() = 0;
    virtual void DoMeasure() = 0;
    // The samples of the measurement just made; fetching them ends the interface's operation.
    virtual void ReadSamples(Utilities::Vector<CMetry::HvSpectrum>& result) = 0;

    // Called right after a measurement: the old samples stay unless the fetch succeeds.
    void TakeSamplesOfMeasurement()
    {
        Utilities::Vector<CMetry::HvSpectrum> fresh(0);
        ReadSamples(fresh);
        samples = fresh;
    }

    const Utilities::SmartPointer<T>& Interface() const { return interface; }

private:
    Utilities::Vector<CMetry::HvSpectrum> samples;
    Utilities::SmartPointer<T> interface;
    CMetry::HvMeasureConditions conditions;
};
