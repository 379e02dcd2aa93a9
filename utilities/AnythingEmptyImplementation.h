#pragma once

#include "utilities/AnythingImplementationBase.h"

namespace Utilities {

// No value at all: the only body that is not valid. Two empty bodies are equal.
class AnythingEmptyImplementation : public AnythingImplementationBase {
public:
    AnythingEmptyImplementation() = default;
    ~AnythingEmptyImplementation() override;
    // Assign through AnythingImplementationBase&: the implicit operator would reach the
    // failing one of the base.
    AnythingEmptyImplementation& operator=(const AnythingEmptyImplementation&) = delete;

    Diagnostics::String GetValueString() const override;
    bool operator==(const AnythingImplementationBase& other) const override;
    AnythingImplementationBase& operator=(const AnythingImplementationBase& other) override;
    bool IsValid() const override;
};

}
