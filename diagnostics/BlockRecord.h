#pragma once

#include <atomic>
#include <cstdint>

namespace Diagnostics {

class MemoryManager;

// One block of characters handed out by a MemoryManager. The count is atomic because a text
// may be copied to and released on another thread than the one whose pool it came from.
struct BlockRecord {
    std::atomic<uint32_t> referenceCount{0};
    uint32_t capacity = 0;
    char* data = nullptr;
    MemoryManager* owner = nullptr;
};

}
