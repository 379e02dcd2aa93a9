#include "diagnostics/MemoryManager.h"

namespace Diagnostics {

MemoryManager::~MemoryManager() = default;

void MemoryManager::Free(BlockRecord*) { }

}
