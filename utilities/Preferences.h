#pragma once

#include "diagnostics/String.h"
#include "utilities/Component.h"
#include "utilities/String.h"

namespace Utilities {

// The component "Preferences": named settings, each a text addressed by a section and a key.
class Preferences : public Component {
public:
    ~Preferences() override;

    virtual Diagnostics::String GetValueString() const;

    // The setting, or defaultValue when the key or the whole store is missing. Never fails.
    virtual String Get(const String& section, const String& key, const String& defaultValue) = 0;
    // Stores the setting; a store that can't be written is passed over without a failure.
    virtual void Set(const String& section, const String& key, const String& value) = 0;
};

}
