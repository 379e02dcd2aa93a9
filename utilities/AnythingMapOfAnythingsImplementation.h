#pragma once

#include "utilities/Anything.h"
#include "utilities/AnythingImplementationBase.h"
#include "utilities/Map.h"

namespace Utilities {

// A map of Anythings; every Anything that shares this body sees its changes.
class AnythingMapOfAnythingsImplementation : public AnythingImplementationBase {
public:
    explicit AnythingMapOfAnythingsImplementation(const Map<String, Anything>& value);
    ~AnythingMapOfAnythingsImplementation() override;
    // Assign through AnythingImplementationBase&: the implicit operator would reach the
    // failing one of the base.
    AnythingMapOfAnythingsImplementation& operator=(const AnythingMapOfAnythingsImplementation&) = delete;

    Diagnostics::String GetValueString() const override;
    bool operator==(const AnythingImplementationBase& other) const override;
    AnythingImplementationBase& operator=(const AnythingImplementationBase& other) override;
    Map<String, Anything>& AsMap() override;

private:
    Map<String, Anything> value;
};

}
