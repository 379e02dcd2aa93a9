#include "utilities/DllLoaderBase.h"

namespace Utilities {

DllLoaderBase::~DllLoaderBase() = default;

}
