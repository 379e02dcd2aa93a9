#include "driver/InterruptLatch.h"

#include <chrono>
#include <thread>

#include "utilities/platform/LockDirectory.h"

namespace DeviceDriver {

namespace {

constexpr char countZero = '0';
constexpr char countOne = '1';
constexpr std::chrono::milliseconds retryStep{1};

}

InterruptLatch::InterruptLatch(const Utilities::String& name)
    : countFile(Utilities::LockDirectory::LockFilePath(name.ToStdString())),
      holdersFile(Utilities::LockDirectory::LockFilePath(name.ToStdString() + "-holders"))
{
    countFile.Lock();
    if (holdersFile.LockShared()) {
        countFile.WriteCount(countOne);
    }
    countFile.Unlock();
}

bool InterruptLatch::Take(std::uint32_t timeoutMs)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    while (!Change(countOne, countZero)) {
        if (std::chrono::steady_clock::now() >= deadline) {
            return false;
        }
        std::this_thread::sleep_for(retryStep);
    }
    return true;
}

bool InterruptLatch::Release()
{
    return Change(countZero, countOne);
}

bool InterruptLatch::Change(char from, char to)
{
    countFile.Lock();
    const bool changed = ReadCount() == from && countFile.WriteCount(to);
    countFile.Unlock();
    return changed;
}

// A file that no holder has written yet holds the initial count.
char InterruptLatch::ReadCount()
{
    return countFile.ReadCount().value_or(countOne);
}

}
