#pragma once

#include "diagnostics/LogItem.h"

namespace Diagnostics {

// The entry into a function, with its parameter list.
class CallLogItem : public LogItem {
public:
    CallLogItem(const FunctionName& function, const void* objectAddress, unsigned long depth, const String& parameters);

    void GetKindText(String& line) const override;
    bool HasDetails() const override;
    void AppendDetails(String& line) const override;

private:
    String parameters;
};

}
