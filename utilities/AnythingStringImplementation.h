#pragma once

#include "utilities/AnythingImplementationBase.h"
#include "utilities/String.h"

namespace Utilities {

// A text of its own.
class AnythingStringImplementation : public AnythingImplementationBase {
public:
    explicit AnythingStringImplementation(const String& value);
    ~AnythingStringImplementation() override;
    // Assign through AnythingImplementationBase&: the implicit operator would reach the
    // failing one of the base.
    AnythingStringImplementation& operator=(const AnythingStringImplementation&) = delete;

    Diagnostics::String GetValueString() const override;
    bool operator==(const AnythingImplementationBase& other) const override;
    AnythingImplementationBase& operator=(const AnythingImplementationBase& other) override;
    const String& AsString() const override;

private:
    String value;
};

}
