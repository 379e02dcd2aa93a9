#pragma once

#include "utilities/Anything.h"
#include "utilities/AnythingImplementationBase.h"
#include "utilities/Vector.h"

namespace Utilities {

// A vector of Anythings; every Anything that shares this body sees its changes.
class AnythingVectorOfAnythingsImplementation : public AnythingImplementationBase {
public:
    explicit AnythingVectorOfAnythingsImplementation(const Vector<Anything>& value);
    ~AnythingVectorOfAnythingsImplementation() override;
    // Assign through AnythingImplementationBase&: the implicit operator would reach the
    // failing one of the base.
    AnythingVectorOfAnythingsImplementation& operator=(const AnythingVectorOfAnythingsImplementation&) = delete;

    Diagnostics::String GetValueString() const override;
    bool operator==(const AnythingImplementationBase& other) const override;
    AnythingImplementationBase& operator=(const AnythingImplementationBase& other) override;
    Vector<Anything>& AsVector() override;

private:
    Vector<Anything> value;
};

}
