#pragma once

#include "utilities/Component.h"
#include "utilities/String.h"

namespace HviManager {

// Questions on the attached instrument; the one interface that must answer when nothing else does.
class InstrumentInfo_V1 : public Utilities::Component {
public:
    // The empty text for a key that isn't known.
    virtual Utilities::String GetInformation(const Utilities::String& key) = 0;
};

}
