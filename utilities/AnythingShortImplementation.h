#pragma once

#include "utilities/AnythingImplementationBase.h"

namespace Utilities {

// A short integer.
class AnythingShortImplementation : public AnythingImplementationBase {
public:
    explicit AnythingShortImplementation(short value);
    ~AnythingShortImplementation() override;
    // Assign through AnythingImplementationBase&: the implicit operator would reach the
    // failing one of the base.
    AnythingShortImplementation& operator=(const AnythingShortImplementation&) = delete;

    Diagnostics::String GetValueString() const override;
    bool operator==(const AnythingImplementationBase& other) const override;
    AnythingImplementationBase& operator=(const AnythingImplementationBase& other) override;
    short AsShort() const override;

private:
    short value;
};

}
