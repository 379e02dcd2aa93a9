#pragma once

#include <windows.h>

#include <oaidl.h>

namespace Control {

// The check of an array that a host passes for a float array of the exported functions: the
// VARIANT must be exactly VT_BYREF | VT_ARRAY | VT_R4 (24580), its array not null, of one
// dimension and of exactly the expected count of elements. The lower bound isn't looked at.
class FloatArrayArgument {
public:
    static constexpr VARTYPE expectedType = VT_BYREF | VT_ARRAY | VT_R4;

    // The host's own elements, for the exported function to read or write in place; null when
    // the check fails.
    static float* Elements(const VARIANT* argument, long count);
};

}
