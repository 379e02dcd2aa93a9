#pragma once

#include "utilities/File.h"
#include "utilities/SmartPointer.h"

namespace Utilities {

// Brings a module into the process for as long as the loader lives.
class DllLoaderBase {
public:
    DllLoaderBase() = default;
    DllLoaderBase(const DllLoaderBase&) = delete;
    DllLoaderBase& operator=(const DllLoaderBase&) = delete;
    virtual ~DllLoaderBase();

    // False when the module can't be loaded or has no entry point.
    virtual bool Load(SmartPointer<File> file) = 0;
};

}
