#include "utilities/File.h"

#include <stdexcept>

#include "utilities/Directory.h"
#include "utilities/PathForm.h"
#include "utilities/platform/File_PC.h"

namespace Utilities {

SmartPointer<File> File::Create(const String& path)
{
    if (path.IsEmpty()) {
        throw std::invalid_argument("the filename specified was either 0 or empty!!");
    }
    return SmartPointer<File>(new File_PC(PathForm::ToNeutral(path)));
}

File::~File() = default;

}
