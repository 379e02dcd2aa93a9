#include "diagnostics/DiagnosticsFilter.h"

#include <cstring>

#include "utilities/Exception.h"
#include "utilities/File.h"
#include "utilities/SmartPointer.h"

namespace Diagnostics {

namespace {

constexpr char packageFilterName[] = "PackageDiagnosticsFilter.txt";
constexpr char classFilterName[] = "ClassDiagnosticsFilter.txt";
constexpr char showOnlyMark[] = "{ShowOnly}";
constexpr unsigned long longestName = 254;

}

DiagnosticsFilter::DiagnosticsFilter() : loaded(false), showOnly(false) { }

bool DiagnosticsFilter::IsTraced(const char* package, const char* className)
{
    if (!loaded) {
        Load();
    }
    const bool listed = IsListed(packages, package) || IsListed(classes, className);
    return showOnly ? listed : !listed;
}

void DiagnosticsFilter::Load()
{
    loaded = true;
    const bool packagesShowOnly = ReadNames(packageFilterName, packages);
    const bool classesShowOnly = ReadNames(classFilterName, classes);
    showOnly = packagesShowOnly || classesShowOnly;
}

// The mark's line stays in the list as a name. A blank line names nothing.
bool DiagnosticsFilter::ReadNames(const char* fileName, Vector<String>& names)
{
    const Utilities::SmartPointer<Utilities::File> file = Utilities::File::Create(fileName);
    if (!file->CanAccess(false)) {
        return false;
    }
    bool marked = false;
    try {
        file->Open(false);
        while (!file->IsAtEnd()) {
            const String name(file->ReadLine().SubString(0, longestName).CString());
            if (name.IsEmpty()) {
                continue;
            }
            marked = marked || std::strstr(name.CString(), showOnlyMark) != nullptr;
            names.Append(name);
        }
    } catch (const Utilities::Exception&) {
        // A file that fails half-way lists what was read until then.
    }
    return marked;
}

bool DiagnosticsFilter::IsListed(const Vector<String>& names, const char* name)
{
    const String wanted(name);
    for (unsigned long i = 0; i < names.Size(); ++i) {
        if (names[i] == wanted) {
            return true;
        }
    }
    return false;
}

}
