#include "utilities/Directory.h"

#include "utilities/PathForm.h"
#include "utilities/platform/Directory_PC.h"

namespace Utilities {

SmartPointer<Directory> Directory::Create(long kind, const String& path)
{
    return SmartPointer<Directory>(new Directory_PC(kind, PathForm::ToNeutral(path)));
}

bool Directory::Exists(const String& path)
{
    return Directory_PC::IsDirectory(PathForm::ToNeutral(path));
}

Directory::~Directory() = default;

}
