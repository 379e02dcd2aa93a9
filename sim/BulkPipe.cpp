#include "sim/BulkPipe.h"

#include <algorithm>

namespace OrbelSim {

BulkPipe::BulkPipe(Cable& cable, Faults& faults, TransferCounters& counters, const SimClock& clock)
    : cable(cable), faults(faults), counters(counters), clock(clock)
{
}

TransferResult BulkPipe::Read(Lock& lock, std::condition_variable& changed, std::uint32_t connection,
    std::uint32_t length, std::uint32_t timeoutMs, std::uint32_t requestId)
{
    const auto deadline =
        timeoutMs == 0 ? SimClock::Clock::time_point::max() : clock.Now() + std::chrono::milliseconds(timeoutMs);
    while (true) {
        ConnectionState* live = cable.Live(connection);
        if (!live) {
            return {TransferStatus::NoDevice, {}, "the instrument is unplugged"};
        }
        if (TakeCancel(*live, requestId)) {
            return {TransferStatus::Cancelled, {}, "cancelled while waiting for data"};
        }
        auto wakeAt = deadline;
        if (live->pending) {
            const PendingData& data = *live->pending;
            const std::size_t want = std::min<std::size_t>(length, data.bytes.size() - data.delivered);
            auto readyAt = clock.Now();
            for (const auto& [end, at] : data.readiness) {
                if (want == 0 || end >= data.delivered + want) {
                    readyAt = at;
                    break;
                }
            }
            if (want == 0 || readyAt <= clock.Now()) {
                return Deliver(*live, length);
            }
            wakeAt = std::min(deadline, readyAt);
        }
        if (clock.Now() >= deadline) {
            return counters.Refuse(TransferStatus::Timeout, "no data within " + std::to_string(timeoutMs) + " ms");
        }
        changed.wait_until(lock, wakeAt);
    }
}

bool BulkPipe::TakeCancel(ConnectionState& connection, std::uint32_t requestId)
{
    return requestId != 0 && connection.cancelledBulkReads.erase(requestId) != 0;
}

bool BulkPipe::Cancel(std::uint32_t connection, const std::vector<std::uint32_t>& requestIds)
{
    ConnectionState* found = cable.Find(connection);
    if (!found) {
        return false;
    }
    found->cancelledBulkReads.insert(requestIds.begin(), requestIds.end());
    counters.bulkInCancelled += requestIds.size();
    return true;
}

TransferResult BulkPipe::Deliver(ConnectionState& connection, std::uint32_t length)
{
    PendingData& data = *connection.pending;
    std::size_t want = std::min<std::size_t>(length, data.bytes.size() - data.delivered);
    const bool cut = want > 0 && faults.Take(FaultKind::ShortRead);
    if (cut) {
        want /= 2;
    }
    TransferResult result;
    result.data.assign(data.bytes.begin() + static_cast<std::ptrdiff_t>(data.delivered),
        data.bytes.begin() + static_cast<std::ptrdiff_t>(data.delivered + want));
    data.delivered += want;
    result.status = want == length ? TransferStatus::Ok : TransferStatus::Short;
    if (cut) {
        result.note = "fault short-read";
    }
    const bool exhausted = data.delivered == data.bytes.size();
    if (cut || (exhausted && (!data.scan || want < length))) {
        connection.pending.reset();
    }
    return result;
}

} // namespace OrbelSim
