// The answers of a virtual instrument as the module's end of the cable reads them. The input is
// a run of answer frames, each a 16-byte header and the body its length field claims (cut short
// where the input ends). A stand-in instrument on the other end of a socket pair answers each
// request of the module with the next frame, its request id set to the request's so that the
// frame reaches the waiting transfer; when the input is used up it pulls the cable.
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <thread>
#include <vector>

#include "driver/platform/VirtualConnection.h"
#include "driver/platform/VirtualWireFrame.h"

namespace {

using Frame = DeviceDriver::VirtualWireFrame;

constexpr std::uint32_t waitMs = 20;
constexpr std::size_t requestIdOffset = 8;
constexpr std::size_t requestBodyLengthOffset = 20;
constexpr std::size_t answerBodyLengthOffset = 12;

std::uint32_t WordAt(const std::uint8_t* bytes)
{
    return static_cast<std::uint32_t>(bytes[0]) << 24 | static_cast<std::uint32_t>(bytes[1]) << 16 |
        static_cast<std::uint32_t>(bytes[2]) << 8 | bytes[3];
}

bool ReadExact(int socket, std::uint8_t* data, std::size_t size)
{
    while (size > 0) {
        const ssize_t got = ::read(socket, data, size);
        if (got <= 0) {
            return false;
        }
        data += got;
        size -= static_cast<std::size_t>(got);
    }
    return true;
}

class StandInInstrument {
public:
    StandInInstrument(int socket, const std::uint8_t* data, std::size_t size) : socket(socket), data(data), size(size)
    {
    }

    // Until the module hangs up or the input is used up.
    void Serve()
    {
        std::array<std::uint8_t, Frame::RequestHeaderSize> header{};
        while (ReadExact(socket, header.data(), header.size())) {
            std::vector<std::uint8_t> body(
                std::min<std::uint32_t>(WordAt(header.data() + requestBodyLengthOffset), Frame::MaxBody));
            if (!ReadExact(socket, body.data(), body.size()) || !Answer(header.data() + requestIdOffset)) {
                break;
            }
        }
        ::shutdown(socket, SHUT_RDWR);
    }

private:
    bool Answer(const std::uint8_t* requestId)
    {
        if (size - used < Frame::AnswerHeaderSize) {
            return false;
        }
        std::vector<std::uint8_t> answer(data + used, data + used + Frame::AnswerHeaderSize);
        used += Frame::AnswerHeaderSize;
        std::copy_n(requestId, 4, answer.begin() + requestIdOffset);
        const std::size_t bodyLength =
            std::min<std::size_t>(WordAt(answer.data() + answerBodyLengthOffset), size - used);
        answer.insert(answer.end(), data + used, data + used + bodyLength);
        used += bodyLength;
        // The module may have hung up already: no SIGPIPE for that.
        return ::send(socket, answer.data(), answer.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(answer.size());
    }

    const int socket;
    const std::uint8_t* const data;
    const std::size_t size;
    std::size_t used = 0;
};

// Every kind of transfer the driver makes, each once.
void UseTheConnection(DeviceDriver::VirtualConnection& connection)
{
    connection.Greet(waitMs);
    std::array<std::uint8_t, 10> request{0xC0, 2, 0, 0, 201, 0, 0, 0, 0, 0};
    std::array<std::uint8_t, 64> buffer{};
    connection.ControlTransfer(request.data(), buffer.data(), 8, waitMs);
    request[0] = 0x40;
    connection.ControlTransfer(request.data(), buffer.data(), 8, waitMs);
    connection.BulkRead(buffer.data(), 64, waitMs);
    connection.BulkWrite(buffer.data(), 16, waitMs);
    std::array<std::uint8_t, 64> second{};
    const auto first = connection.SubmitBulkRead(buffer.data(), 32, waitMs);
    const auto next = connection.SubmitBulkRead(second.data(), 32, waitMs);
    connection.AwaitBulkRead(first, waitMs);
    connection.CancelBulkReads();
    connection.AwaitBulkRead(next, waitMs);
}

}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    int sockets[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, sockets) != 0) {
        return 0;
    }
    StandInInstrument instrument(sockets[1], data, size);
    std::thread serving([&instrument] { instrument.Serve(); });
    {
        DeviceDriver::VirtualConnection connection("sim:fuzz", sockets[0]);
        UseTheConnection(connection);
    }
    serving.join();
    ::close(sockets[1]);
    return 0;
}
