#include "diagnostics/ExceptionDiagnostic.h"

namespace Diagnostics {

ExceptionDiagnostic::ExceptionDiagnostic(const String& text) : text(text) { }

ExceptionDiagnostic::ExceptionDiagnostic(const char* first, const char* second, const char* third, const char* fourth)
    : text(first)
{
    text += " ";
    text += second;
    text += ": ";
    text += third;
    text += ", ";
    text += fourth;
}

}
