#include "driver/platform/VirtualWireFrame.h"

namespace DeviceDriver {

void VirtualWireFrame::PutU32(std::vector<std::uint8_t>& out, std::uint32_t value)
{
    out.push_back(static_cast<std::uint8_t>(value >> 24));
    out.push_back(static_cast<std::uint8_t>(value >> 16));
    out.push_back(static_cast<std::uint8_t>(value >> 8));
    out.push_back(static_cast<std::uint8_t>(value));
}

std::uint32_t VirtualWireFrame::GetU32(const std::uint8_t* bytes)
{
    return (static_cast<std::uint32_t>(bytes[0]) << 24) | (static_cast<std::uint32_t>(bytes[1]) << 16) |
        (static_cast<std::uint32_t>(bytes[2]) << 8) | bytes[3];
}

std::vector<std::uint8_t> VirtualWireFrame::Encode(
    const Request& request, const std::uint8_t* body, std::size_t bodyLength)
{
    std::vector<std::uint8_t> frame;
    frame.reserve(RequestHeaderSize + bodyLength);
    PutU32(frame, Magic);
    frame.push_back(Version);
    frame.push_back(static_cast<std::uint8_t>(request.kind));
    frame.push_back(0);
    frame.push_back(0);
    PutU32(frame, request.requestId);
    PutU32(frame, request.timeoutMs);
    PutU32(frame, request.transferLength);
    PutU32(frame, static_cast<std::uint32_t>(bodyLength));
    frame.insert(frame.end(), body, body + bodyLength);
    return frame;
}

std::optional<VirtualWireFrame::AnswerHeader> VirtualWireFrame::DecodeAnswerHeader(const std::uint8_t* bytes)
{
    if (GetU32(bytes) != Magic || bytes[4] != Version) {
        return std::nullopt;
    }
    AnswerHeader header;
    header.kind = static_cast<Kind>(bytes[5]);
    header.status = static_cast<Status>(bytes[6]);
    header.requestId = GetU32(bytes + 8);
    header.bodyLength = GetU32(bytes + 12);
    if (header.bodyLength > MaxBody) {
        return std::nullopt;
    }
    return header;
}

}
