#pragma once

#include <optional>
#include <string>

namespace DeviceDriver {

// A file of an interrupt latch in the lock directory, locked by the system for every process
// that opens the same file, with room for a count of one byte.
class LatchFile {
public:
    // Opens the file, made if missing. Raises ExceptionResourceNotAvailable when it can't be.
    explicit LatchFile(const std::string& path);
    ~LatchFile();
    LatchFile(const LatchFile&) = delete;
    LatchFile& operator=(const LatchFile&) = delete;

    // Waits for an exclusive lock.
    void Lock();
    void Unlock();
    // Takes a shared lock; true when no other process had one.
    bool LockShared();
    // Empty when nothing has been written yet.
    std::optional<char> ReadCount();
    bool WriteCount(char count);

private:
    int descriptor;
};

}
