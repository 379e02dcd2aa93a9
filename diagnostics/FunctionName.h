#pragma once

#include "diagnostics/String.h"

namespace Diagnostics {

// The full name of a traced function: package, class and function, joined by "::"; a free
// function has no class between them.
class FunctionName {
public:
    FunctionName(const char* package, const char* className, const char* function);

    const String& Name() const { return name; }

private:
    String name;
};

}
