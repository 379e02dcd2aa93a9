#pragma once

#include "diagnostics/String.h"
#include "diagnostics/Vector.h"

namespace Diagnostics {

// Which functions are traced, after the files "PackageDiagnosticsFilter.txt" and
// "ClassDiagnosticsFilter.txt" in the working directory: one name a line, read at the first
// question. A listed package or class is hidden, unless a line holds "{ShowOnly}": then only the
// listed ones are shown. A missing or unreadable file lists nothing.
class DiagnosticsFilter {
public:
    DiagnosticsFilter();

    bool IsTraced(const char* package, const char* className);

private:
    void Load();
    // Appends the names of the file; gives whether one of its lines asks for show-only mode.
    static bool ReadNames(const char* fileName, Vector<String>& names);
    static bool IsListed(const Vector<String>& names, const char* name);

    bool loaded;
    bool showOnly;
    Vector<String> packages;
    Vector<String> classes;
};

}
