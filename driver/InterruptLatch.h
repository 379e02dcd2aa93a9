#pragma once

#include <cstdint>

#include "utilities/String.h"
#include "utilities/platform/LockableFile.h"

namespace DeviceDriver {

// A named semaphore of count 0 or 1, shared by every process that makes one of the same name:
// the count lies in a file of the lock directory, read and changed under a file lock. Like a system
// semaphore it starts at 1 for the first holder and lives as long as any holder: every holder
// keeps a shared lock on a second file, so that the first one can tell that it is alone.
class InterruptLatch {
public:
    // Raises ExceptionResourceNotAvailable when the files can't be had.
    explicit InterruptLatch(const Utilities::String& name);

    // Lowers the count from 1 to 0; false when it stayed 0 for timeoutMs.
    bool Take(std::uint32_t timeoutMs);
    // Raises the count from 0 to 1; false when it is at 1 already.
    bool Release();

private:
    // Reads the count and, if it is `from`, writes `to`; true when it did. A count that can't be
    // written is no change, so that no two holders both believe they took the latch.
    bool Change(char from, char to);
    char ReadCount();

    Utilities::LockableFile countFile;
    // Every holder keeps a shared lock on it while it lives.
    Utilities::LockableFile holdersFile;
};

}
