#pragma once

#include "diagnostics/LogItem.h"

namespace Diagnostics {

// The return from a function, with the returned value in braces when one was reported.
class ReturnLogItem : public LogItem {
public:
    ReturnLogItem(const FunctionName& function, const void* objectAddress, unsigned long depth, const String& returned);

    void GetKindText(String& line) const override;
    bool HasDetails() const override;
    void AppendDetails(String& line) const override;

private:
    String returned;
};

}
