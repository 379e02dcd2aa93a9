#pragma once

#include "diagnostics/String.h"

namespace Diagnostics {

// A failure of the tracer itself: a broken assertion, or an index outside one of its Vectors.
// It stands apart from the system's exception family, so that the tracer needs nothing of it.
class ExceptionDiagnostic {
public:
    explicit ExceptionDiagnostic(const String& text);
    // The text of an assertion: first, " ", second, ": ", third, ", " and fourth.
    ExceptionDiagnostic(const char* first, const char* second, const char* third, const char* fourth);

    const String& Text() const { return text; }

private:
    String text;
};

}
