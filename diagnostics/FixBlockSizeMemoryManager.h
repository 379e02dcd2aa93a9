#pragma once

#include "diagnostics/BlockRecord.h"
#include "diagnostics/MemoryManager.h"

#include <atomic>
#include <cstdint>

namespace Diagnostics {

// A pool of 128 blocks of 256 bytes inside the object. Each thread allocates from a pool of its
// own; a text may still travel to other threads and be released there. The pool lives until its
// thread has ended and the last of its blocks is released, so no text ever points into a dead
// pool. Should all 128 records be busy, a block comes from the heap rather than sharing a busy
// record, which would let two texts write into one block.
class FixBlockSizeMemoryManager : public MemoryManager {
public:
    static constexpr uint32_t recordCount = 128;
    static constexpr uint32_t blockSize = 256;

    // A block from the pool of the calling thread.
    static BlockRecord* AllocateForThisThread();

    FixBlockSizeMemoryManager(const FixBlockSizeMemoryManager&) = delete;
    FixBlockSizeMemoryManager& operator=(const FixBlockSizeMemoryManager&) = delete;

    BlockRecord* Allocate(uint32_t size) override;
    void Free(BlockRecord* record) override;

private:
    class Retirement;

    // Created only on the heap, with its creator as the first holder.
    FixBlockSizeMemoryManager();
    ~FixBlockSizeMemoryManager() override;

    static BlockRecord* AllocateFromShortLivedPool();

    BlockRecord* ClaimRecord(uint32_t index);
    BlockRecord* AllocateOverflowRecord();
    bool IsPoolRecord(const BlockRecord* record) const;
    void Retire();
    void ReleaseHolder();

    BlockRecord records[recordCount];
    uint32_t cursor = 0;
    char blocks[recordCount][blockSize];
    // The owning thread plus every block that is out.
    std::atomic<uint32_t> holders{1};
};

}
