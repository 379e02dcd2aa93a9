#pragma once

#include <memory>

#include "utilities/MutexImplementation.h"
#include "utilities/platform/SystemMutex.h"

namespace Utilities {

// The lock of a Mutex on POSIX. A named lock is the process's one SystemMutex of its lock file,
// which also holds a flock, so that other processes are kept out and get the lock back at once
// when its holder dies. An unnamed lock is a SystemMutex of its own.
class MutexImplementation_PC : public MutexImplementation {
public:
    MutexImplementation_PC() = default;
    MutexImplementation_PC(const MutexImplementation_PC&) = delete;
    MutexImplementation_PC& operator=(const MutexImplementation_PC&) = delete;

    // Lets go once if the calling thread holds the lock; another thread's hold is left alone.
    ~MutexImplementation_PC() override;

    // Raises ExceptionMultithreading when the lock file of a name can't be had.
    void Create(const String& name) override;
    bool Lock(unsigned long timeoutMs) override;

    // A thread that doesn't hold the lock releases nothing.
    void Unlock() override;

private:
    SystemMutex& Object() const;

    std::shared_ptr<SystemMutex> systemMutex;
};

}
