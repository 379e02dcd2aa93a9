#pragma once

#include "utilities/AnythingImplementationBase.h"

namespace Utilities {

// A long integer.
class AnythingLongImplementation : public AnythingImplementationBase {
public:
    explicit AnythingLongImplementation(long value);
    ~AnythingLongImplementation() override;
    // Assign through AnythingImplementationBase&: the implicit operator would reach the
    // failing one of the base.
    AnythingLongImplementation& operator=(const AnythingLongImplementation&) = delete;

    Diagnostics::String GetValueString() const override;
    bool operator==(const AnythingImplementationBase& other) const override;
    AnythingImplementationBase& operator=(const AnythingImplementationBase& other) override;
    long AsLong() const override;

private:
    long value;
};

}
