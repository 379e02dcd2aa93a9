#include "control/FloatArrayArgument.h"

namespace Control {

namespace {

bool HasElements(SAFEARRAY* array, long count)
{
    LONG lower = 0;
    LONG upper = -1;
    return ::SafeArrayGetDim(array) == 1 && SUCCEEDED(::SafeArrayGetLBound(array, 1, &lower)) &&
        SUCCEEDED(::SafeArrayGetUBound(array, 1, &upper)) && upper - lower + 1 == count;
}

}

float* FloatArrayArgument::Elements(const VARIANT* argument, long count)
{
    if (argument == nullptr || V_VT(argument) != expectedType || V_ARRAYREF(argument) == nullptr) {
        return nullptr;
    }
    SAFEARRAY* array = *V_ARRAYREF(argument);
    if (array == nullptr || !HasElements(array, count)) {
        return nullptr;
    }
    return static_cast<float*>(array->pvData);
}

}
