#include "diagnostics/FunctionName.h"

namespace Diagnostics {

FunctionName::FunctionName(const char* package, const char* className, const char* function) : name(package)
{
    name += "::";
    if (className != nullptr && className[0] != '\0') {
        name += className;
        name += "::";
    }
    name += function;
}

}
