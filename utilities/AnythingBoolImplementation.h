#pragma once

#include "utilities/AnythingImplementationBase.h"

namespace Utilities {

// A boolean.
class AnythingBoolImplementation : public AnythingImplementationBase {
public:
    explicit AnythingBoolImplementation(bool value);
    ~AnythingBoolImplementation() override;
    // Assign through AnythingImplementationBase&: the implicit operator would reach the
    // failing one of the base.
    AnythingBoolImplementation& operator=(const AnythingBoolImplementation&) = delete;

    Diagnostics::String GetValueString() const override;
    bool operator==(const AnythingImplementationBase& other) const override;
    AnythingImplementationBase& operator=(const AnythingImplementationBase& other) override;
    bool AsBool() const override;

private:
    bool value;
};

}
