#pragma once

#include "diagnostics/String.h"
#include "utilities/Anything.h"
#include "utilities/Component.h"
#include "utilities/String.h"

namespace GUI {

// Delivers the instrument's events ("MeasurementKey", "Connection") to whoever subscribed to
// them. A host or a plug-in registers one under the component name "MessageService"; without
// one, events have nowhere to go.
class MessageService : public Utilities::Component {
public:
    using Callback = void (*)(const Utilities::String& name, const Utilities::Anything& value);

    ~MessageService() override;

    virtual Diagnostics::String GetValueString() const = 0;
    // Delivers one event to the subscribers of the name.
    virtual void Post(const Utilities::String& name, const Utilities::Anything& value) = 0;
    virtual void Subscribe(const Utilities::String& name, Callback callback) = 0;
    // The callback gets no events of any name any more.
    virtual void Unsubscribe(Callback callback) = 0;
};

}
