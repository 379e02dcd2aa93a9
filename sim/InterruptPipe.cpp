#include "sim/InterruptPipe.h"

#include <vector>

namespace OrbelSim {

namespace {

constexpr std::size_t maxQueuedPresses = 16;

} // namespace

InterruptPipe::InterruptPipe(Cable& cable, TransferCounters& counters) : cable(cable), counters(counters) { }

TransferResult InterruptPipe::Read(
    Lock& lock, std::condition_variable& changed, std::uint32_t connection, std::uint32_t requestId)
{
    ConnectionState* live = cable.Live(connection);
    if (!live) {
        return {TransferStatus::NoDevice, {}, "the instrument is unplugged"};
    }
    if (live->interruptWaiting) {
        return counters.Refuse(TransferStatus::Stall, "an interrupt read is outstanding already");
    }
    live->interruptWaiting = true;
    changed.wait(lock, [&] {
        live = cable.Live(connection);
        return !live || !live->interrupts.empty() || live->cancelledInterrupt == requestId;
    });
    if (!live) {
        return {TransferStatus::NoDevice, {}, "the instrument is unplugged"};
    }
    live->interruptWaiting = false;
    if (live->cancelledInterrupt == requestId) {
        live->cancelledInterrupt.reset();
        return {TransferStatus::Cancelled, {}, ""};
    }
    TransferResult result{TransferStatus::Ok, live->interrupts.front(), ""};
    live->interrupts.pop_front();
    keyLatch = false;
    ++counters.interrupts;
    return result;
}

// The read is named, so that a cancel that comes before the read has begun to wait still ends it,
// while one that comes after the read has ended can't end the next.
bool InterruptPipe::Cancel(std::uint32_t connection, std::uint32_t requestId)
{
    ConnectionState* found = cable.Find(connection);
    if (!found) {
        return false;
    }
    found->cancelledInterrupt = requestId;
    return true;
}

void InterruptPipe::Press()
{
    ++counters.presses;
    keyLatch = true;
    const std::vector<std::uint8_t> packet = {1, 1, static_cast<std::uint8_t>(counters.presses >> 8),
        static_cast<std::uint8_t>(counters.presses), 0, 0, 0, 0};
    for (ConnectionState* connection : cable.Present()) {
        if (connection->interrupts.size() < maxQueuedPresses) {
            connection->interrupts.push_back(packet);
        }
    }
}

} // namespace OrbelSim
