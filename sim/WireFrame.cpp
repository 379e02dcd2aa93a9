#include "sim/WireFrame.h"

namespace OrbelSim {

void WireFrame::PutU16(std::vector<std::uint8_t>& out, std::uint16_t value)
{
    out.push_back(static_cast<std::uint8_t>(value >> 8));
    out.push_back(static_cast<std::uint8_t>(value));
}

void WireFrame::PutU32(std::vector<std::uint8_t>& out, std::uint32_t value)
{
    PutU16(out, static_cast<std::uint16_t>(value >> 16));
    PutU16(out, static_cast<std::uint16_t>(value));
}

std::uint16_t WireFrame::GetU16(const std::uint8_t* bytes)
{
    return static_cast<std::uint16_t>((bytes[0] << 8) | bytes[1]);
}

std::uint32_t WireFrame::GetU32(const std::uint8_t* bytes)
{
    return (static_cast<std::uint32_t>(GetU16(bytes)) << 16) | GetU16(bytes + 2);
}

std::vector<std::uint8_t> WireFrame::EncodeRequest(const RequestHeader& header, const std::vector<std::uint8_t>& body)
{
    std::vector<std::uint8_t> out;
    out.reserve(requestHeaderSize + body.size());
    PutU32(out, magic);
    out.push_back(version);
    out.push_back(header.kind);
    PutU16(out, 0);
    PutU32(out, header.requestId);
    PutU32(out, header.timeoutMs);
    PutU32(out, header.transferLength);
    PutU32(out, static_cast<std::uint32_t>(body.size()));
    out.insert(out.end(), body.begin(), body.end());
    return out;
}

std::optional<RequestHeader> WireFrame::DecodeRequestHeader(const std::uint8_t* bytes)
{
    if (GetU32(bytes) != magic || bytes[4] != version) {
        return std::nullopt;
    }
    RequestHeader header;
    header.kind = bytes[5];
    header.requestId = GetU32(bytes + 8);
    header.timeoutMs = GetU32(bytes + 12);
    header.transferLength = GetU32(bytes + 16);
    header.bodyLength = GetU32(bytes + 20);
    if (header.bodyLength > maxBody) {
        return std::nullopt;
    }
    return header;
}

std::vector<std::uint8_t> WireFrame::EncodeAnswer(const AnswerHeader& header, const std::vector<std::uint8_t>& body)
{
    std::vector<std::uint8_t> out;
    out.reserve(answerHeaderSize + body.size());
    PutU32(out, magic);
    out.push_back(version);
    out.push_back(header.kind);
    out.push_back(static_cast<std::uint8_t>(header.status));
    out.push_back(0);
    PutU32(out, header.requestId);
    PutU32(out, static_cast<std::uint32_t>(body.size()));
    out.insert(out.end(), body.begin(), body.end());
    return out;
}

std::optional<AnswerHeader> WireFrame::DecodeAnswerHeader(const std::uint8_t* bytes)
{
    if (GetU32(bytes) != magic || bytes[4] != version) {
        return std::nullopt;
    }
    AnswerHeader header;
    header.kind = bytes[5];
    header.status = static_cast<TransferStatus>(bytes[6]);
    header.requestId = GetU32(bytes + 8);
    header.bodyLength = GetU32(bytes + 12);
    if (header.bodyLength > maxBody) {
        return std::nullopt;
    }
    return header;
}

} // namespace OrbelSim
