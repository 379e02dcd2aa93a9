#pragma once

#include <cstdint>
#include <deque>
#include <vector>

namespace DeviceDriver {

// The packets of one scan, oldest first, with the mark that the instrument has ended the strip.
// Filled and emptied by one thread, one after the other.
class ScanFifo {
public:
    using Packet = std::vector<std::uint8_t>;

    ScanFifo() = default;
    ScanFifo(const ScanFifo&) = delete;
    ScanFifo& operator=(const ScanFifo&) = delete;

    // Clears the finished mark. False when the packet can't be stored.
    bool Push(const std::uint8_t* bytes, std::uint32_t size);
    // False when the FIFO is empty.
    bool Pop(Packet& packet);
    // Discards every packet, for a strip that failed.
    void Clear();

    void SetFinished() { finished = true; }
    bool IsFinished() const { return finished; }

private:
    std::deque<Packet> packets;
    bool finished = false;
};

}
