#include "driver/ScanFifo.h"

#include <new>

namespace DeviceDriver {

bool ScanFifo::Push(const std::uint8_t* bytes, std::uint32_t size)
{
    finished = false;
    try {
        packets.emplace_back(bytes, bytes + size);
    } catch (const std::bad_alloc&) {
        return false;
    }
    return true;
}

bool ScanFifo::Pop(Packet& packet)
{
    if (packets.empty()) {
        return false;
    }
    packet = std::move(packets.front());
    packets.pop_front();
    return true;
}

void ScanFifo::Clear()
{
    packets.clear();
    finished = false;
}

}
