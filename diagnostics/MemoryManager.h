#pragma once

#include <cstdint>

namespace Diagnostics {

struct BlockRecord;

// Source of the blocks of Diagnostics::String. Allocate hands out a record with one reference;
// Free is called once the last reference of a record is gone.
class MemoryManager {
public:
    virtual ~MemoryManager();

    virtual BlockRecord* Allocate(uint32_t size) = 0;
    virtual void Free(BlockRecord* record);
};

}
