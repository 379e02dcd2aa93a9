#pragma once

#include "utilities/Anything.h"
#include "utilities/Component.h"
#include "utilities/List.h"
#include "utilities/Map.h"
#include "utilities/SmartPointer.h"
#include "utilities/String.h"

namespace HviManager {

// The instrument's key and its connection, asked for by polling: each question answers what
// changed since the last one.
class InstrumentButtons_V1 : public Utilities::Component {
public:
    using ButtonList = Utilities::List<Utilities::String>;
    using ButtonStates = Utilities::Map<Utilities::String, Utilities::Anything>;

    virtual Utilities::SmartPointer<ButtonList> GetAvailableButtons() = 0;
    virtual Utilities::SmartPointer<ButtonList> GetSelection() = 0;
    virtual void SetSelection(const Utilities::SmartPointer<ButtonList>& selection) = 0;
    // A null list wants every button; an empty map means that nothing happened.
    virtual ButtonStates GetButtonStates(const Utilities::SmartPointer<ButtonList>& buttons) = 0;
};

}
