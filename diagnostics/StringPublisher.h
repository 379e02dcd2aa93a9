#pragma once

#include "diagnostics/Publisher.h"
#include "diagnostics/String.h"

namespace Diagnostics {

// A publisher that takes each item as its line of text.
class StringPublisher : public Publisher {
public:
    void Publish(const LogItem& item) final;
    virtual void Publish(const String& line) = 0;

protected:
    using Publisher::Publisher;
};

}
