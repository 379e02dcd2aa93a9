#pragma once

#include "utilities/AnythingImplementationBase.h"

namespace Utilities {

// A double; two of them compare exactly, so a NaN equals nothing.
class AnythingDoubleImplementation : public AnythingImplementationBase {
public:
    explicit AnythingDoubleImplementation(double value);
    ~AnythingDoubleImplementation() override;
    // Assign through AnythingImplementationBase&: the implicit operator would reach the
    // failing one of the base.
    AnythingDoubleImplementation& operator=(const AnythingDoubleImplementation&) = delete;

    Diagnostics::String GetValueString() const override;
    bool operator==(const AnythingImplementationBase& other) const override;
    AnythingImplementationBase& operator=(const AnythingImplementationBase& other) override;
    double AsDouble() const override;

private:
    double value;
};

}
