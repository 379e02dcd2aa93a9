#include "diagnostics/FixBlockSizeMemoryManager.h"

#include <cstdint>

namespace Diagnostics {

namespace {

thread_local FixBlockSizeMemoryManager* poolOfThisThread = nullptr;
thread_local bool poolOfThisThreadRetired = false;

}

// Hands the pool of an ending thread over to its last blocks.
class FixBlockSizeMemoryManager::Retirement {
public:
    ~Retirement()
    {
        FixBlockSizeMemoryManager* pool = poolOfThisThread;
        poolOfThisThread = nullptr;
        poolOfThisThreadRetired = true;
        pool->Retire();
    }
};

BlockRecord* FixBlockSizeMemoryManager::AllocateForThisThread()
{
    if (poolOfThisThread == nullptr) {
        if (poolOfThisThreadRetired) {
            return AllocateFromShortLivedPool();
        }
        poolOfThisThread = new FixBlockSizeMemoryManager();
        thread_local Retirement retirement;
    }
    return poolOfThisThread->Allocate(blockSize);
}

// Texts made while the thread is ending, after its own pool was handed over; rare enough that a
// pool for each of them costs nothing that matters.
BlockRecord* FixBlockSizeMemoryManager::AllocateFromShortLivedPool()
{
    FixBlockSizeMemoryManager* pool = new FixBlockSizeMemoryManager();
    BlockRecord* record = pool->Allocate(blockSize);
    pool->Retire();
    return record;
}

FixBlockSizeMemoryManager::FixBlockSizeMemoryManager() = default;

FixBlockSizeMemoryManager::~FixBlockSizeMemoryManager() = default;

BlockRecord* FixBlockSizeMemoryManager::Allocate(uint32_t)
{
    for (uint32_t tried = 0; tried < recordCount; ++tried) {
        if (records[cursor].referenceCount.load(std::memory_order_acquire) == 0) {
            return ClaimRecord(cursor);
        }
        cursor = (cursor + 1) % recordCount;
    }
    return AllocateOverflowRecord();
}

void FixBlockSizeMemoryManager::Free(BlockRecord* record)
{
    if (!IsPoolRecord(record)) {
        delete[] record->data;
        delete record;
    }
    ReleaseHolder();
}

BlockRecord* FixBlockSizeMemoryManager::ClaimRecord(uint32_t index)
{
    BlockRecord& record = records[index];
    if (record.data == nullptr) {
        record.data = blocks[index];
        record.capacity = blockSize;
        record.owner = this;
    }
    record.referenceCount.store(1, std::memory_order_relaxed);
    holders.fetch_add(1, std::memory_order_relaxed);
    return &record;
}

BlockRecord* FixBlockSizeMemoryManager::AllocateOverflowRecord()
{
    BlockRecord* record = new BlockRecord;
    record->data = new char[blockSize];
    record->capacity = blockSize;
    record->owner = this;
    record->referenceCount.store(1, std::memory_order_relaxed);
    holders.fetch_add(1, std::memory_order_relaxed);
    return record;
}

bool FixBlockSizeMemoryManager::IsPoolRecord(const BlockRecord* record) const
{
    const auto address = reinterpret_cast<uintptr_t>(record);
    return address >= reinterpret_cast<uintptr_t>(records) &&
        address < reinterpret_cast<uintptr_t>(records + recordCount);
}

void FixBlockSizeMemoryManager::Retire()
{
    ReleaseHolder();
}

void FixBlockSizeMemoryManager::ReleaseHolder()
{
    if (holders.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        delete this;
    }
}

}
