#include "driver/InterruptLatch.h"

#include <chrono>
#include <thread>

#include "utilities/ExceptionMultithreading.h"
#include "utilities/ExceptionResourceNotAvailable.h"
#include "utilities/platform/LockDirectory.h"

namespace DeviceDriver {

namespace {

constexpr char countZero = '0';
constexpr char countOne = '1';
constexpr std::chrono::milliseconds retryStep{1};

// The files are the latch's resources, so their failure is one of a resource.
Utilities::LockableFile OpenLatchFile(const std::string& name)
{
    try {
        return Utilities::LockableFile(Utilities::LockDirectory::LockFilePath(name));
    } catch (const Utilities::ExceptionMultithreading& failure) {
        throw Utilities::ExceptionResourceNotAvailable(
            Utilities::String("Interrupt latch not available: ") + *failure.Text());
    }
}

}

InterruptLatch::InterruptLatch(const Utilities::String& name)
    : countFile(OpenLatchFile(name.ToStdString())), holdersFile(OpenLatchFile(name.ToStdString() + "-holders"))
{
    countFile.Lock();
    if (holdersFile.LockShared()) {
        countFile.WriteByte(countOne);
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
    const bool changed = ReadCount() == from && countFile.WriteByte(to);
    countFile.Unlock();
    return changed;
}

// A file that no holder has written yet holds the initial count.
char InterruptLatch::ReadCount()
{
    return countFile.ReadByte().value_or(countOne);
}

}
