#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace DeviceDriver {

// The host's end of the framing on the virtual instrument's cable, the Unix-domain stream socket
// that orbel-sim listens on. A request frame is a 24-byte header and a body; an answer frame a
// 16-byte header and a body. Every integer is big-endian, as on the instrument's own wire.
//
// Request header: magic "OBSM", version 1, kind, 2 reserved bytes, request id, time-out in ms
// (bulk read only; 0 waits without limit), transfer length, body length.
// Answer header: magic, version, kind, status, 1 reserved byte, request id, body length.
// Answers carry the id of their request and may come out of order.
class VirtualWireFrame {
public:
    enum class Kind : std::uint8_t {
        Control = 1,
        BulkRead = 2,
        BulkWrite = 3,
        InterruptRead = 4,
        Cancel = 5,
        CancelBulkReads = 6
    };
    enum class Status : std::uint8_t { Ok = 0, Stall = 1, Timeout = 2, Short = 3, NoDevice = 4, Cancelled = 5 };

    struct Request {
        Kind kind = Kind::Control;
        std::uint32_t requestId = 0;
        std::uint32_t timeoutMs = 0;
        std::uint32_t transferLength = 0;
    };

    struct AnswerHeader {
        Kind kind = Kind::Control;
        Status status = Status::Ok;
        std::uint32_t requestId = 0;
        std::uint32_t bodyLength = 0;
    };

    static constexpr std::uint32_t Magic = 0x4F42534D;
    static constexpr std::uint8_t Version = 1;
    static constexpr std::size_t RequestHeaderSize = 24;
    static constexpr std::size_t AnswerHeaderSize = 16;
    static constexpr std::uint32_t MaxBody = 1u << 20;

    static std::vector<std::uint8_t> Encode(const Request& request, const std::uint8_t* body, std::size_t bodyLength);
    // Empty when the magic, the version or the body length is wrong: the stream can't be followed.
    static std::optional<AnswerHeader> DecodeAnswerHeader(const std::uint8_t* bytes);

private:
    static void PutU32(std::vector<std::uint8_t>& out, std::uint32_t value);
    static std::uint32_t GetU32(const std::uint8_t* bytes);
};

}
