#pragma once
// The framing of the virtual instrument's cable: how USB transfers travel over the Unix-domain
// stream socket <ORBEL_SIM_DIR>/<serial>.sock. One socket connection is one opened instrument
// (its four pipes). Version 1.
//
// Every integer of a frame is big-endian, like everything else on this instrument's wire.
//
// Request frame, host to instrument: a 24-byte header, then `body length` bytes.
//   offset size field
//   0      4    magic 0x4F42534D ("OBSM")
//   4      1    version, 1
//   5      1    kind (TransferKind below)
//   6      2    reserved, 0
//   8      4    request id: chosen by the host, echoed in the answer; answers may come out of order
//   12     4    time-out in milliseconds; only a bulk read uses it: how long the instrument may take
//               to deliver the data; 0 waits without limit
//   16     4    transfer length: control, the payload length (the bytes sent for direction 0, the
//               bytes expected back for direction 1); bulk read, the bytes requested; bulk write,
//               the bytes sent; 0 for the other kinds
//   20     4    body length, at most 1 MiB (maxBody)
//   24     ...  body: control, the 10-byte ControlRequest followed, for direction 0 only, by the
//               payload; bulk write, the data; every other kind, nothing
//
// Answer frame, instrument to host: a 16-byte header, then `body length` bytes.
//   0      4    magic 0x4F42534D ("OBSM")
//   4      1    version, 1
//   5      1    kind of the request answered
//   6      1    status (TransferStatus below)
//   7      1    reserved, 0
//   8      4    request id of the request answered
//   12     4    body length
//   16     ...  body: control of direction 1, the answer payload; bulk read and interrupt read, the
//               bytes delivered; otherwise nothing
//
// Kinds:
//   1 control       vendor control transfer on pipe 0; answered at once
//   2 bulk read     bulk-in pipe: measurement blocks, scan packets, EEPROM bytes
//   3 bulk write    bulk-out pipe: EEPROM bytes after request 195, then the two 0x00 bytes
//   4 interrupt read  interrupt pipe: blocks until the measurement key is pressed (8 bytes), the
//                   cable is pulled, the host cancels it, or the connection closes. At most one may
//                   be outstanding per connection; a second one is stalled.
//   5 cancel        ends the outstanding interrupt read, which is answered with status 5; the cancel
//                   frame itself is answered with status 0
//   6 cancel bulk reads  ends every bulk read sent before it and not yet answered, the one being
//                   served and those waiting their turn; each is answered with status 5, the frame
//                   itself with status 0
//   7 descriptors   the instrument's USB descriptors, answered at once: the 18-byte device
//                   descriptor followed by the whole configuration descriptor (UsbDescriptors.h),
//                   for a bridge that shows the instrument as a USB device
// Control and bulk frames of one connection are served one after the other in the order sent;
// an interrupt read and the cancels are served beside them at any time. A cancel always reaches
// the requests sent before it, however soon it follows them.
//
// Statuses:
//   0 ok          the transfer completed with its full length
//   1 stall       the instrument refused: unknown request code, wrong direction or request type,
//                 wrong payload length, EEPROM range past the end, bulk-out data that no request
//                 announced, a malformed frame
//   2 timeout     the instrument did not complete within the time (a bulk read past its time-out, or
//                 an injected fault); nothing was consumed, except that a faulted control transfer is
//                 lost
//   3 short       a bulk read completed with fewer bytes than requested (the body holds them, maybe
//                 none): the end of a scan, more requested than the instrument had to send, or an
//                 injected short read
//   4 no device   the cable is gone; the instrument closes the connection after this answer
//   5 cancelled   an interrupt read or a bulk read ended by a cancel frame
//
// A frame whose magic or version is wrong can't be resynchronised: it is answered with a stall
// (request id 0) and the connection is closed. A frame with a body larger than maxBody likewise.
// A well-formed frame of an unknown kind, or whose body doesn't match its kind, is answered with a stall.
//
// The 8 bytes of an interrupt packet: byte 0 is 1 (key event), byte 1 is 1 (the measurement key),
// bytes 2-3 count the presses since power-on, the rest are 0. The host isn't meant to read them.
//
// Beside the device socket lies the control socket <serial>.ctl of the orbel-sim program
// (CommandChannel.h); enumeration lists only names ending in ".sock".

#include <cstdint>
#include <optional>
#include <vector>

namespace OrbelSim {

enum class TransferKind : std::uint8_t {
    Control = 1,
    BulkRead = 2,
    BulkWrite = 3,
    InterruptRead = 4,
    Cancel = 5,
    CancelBulkReads = 6,
    Descriptors = 7
};

enum class TransferStatus : std::uint8_t { Ok = 0, Stall = 1, Timeout = 2, Short = 3, NoDevice = 4, Cancelled = 5 };

struct RequestHeader {
    std::uint8_t kind = 0;
    std::uint32_t requestId = 0;
    std::uint32_t timeoutMs = 0;
    std::uint32_t transferLength = 0;
    std::uint32_t bodyLength = 0;
};

struct AnswerHeader {
    std::uint8_t kind = 0;
    TransferStatus status = TransferStatus::Ok;
    std::uint32_t requestId = 0;
    std::uint32_t bodyLength = 0;
};

class WireFrame {
public:
    static constexpr std::uint32_t magic = 0x4F42534D;
    static constexpr std::uint8_t version = 1;
    static constexpr std::size_t requestHeaderSize = 24;
    static constexpr std::size_t answerHeaderSize = 16;
    static constexpr std::uint32_t maxBody = 1u << 20;
    static constexpr std::size_t controlRequestSize = 10;

    static std::vector<std::uint8_t> EncodeRequest(const RequestHeader& header, const std::vector<std::uint8_t>& body);
    // Empty when magic, version or body length are wrong: such a stream can't be followed further.
    static std::optional<RequestHeader> DecodeRequestHeader(const std::uint8_t* bytes);
    static std::vector<std::uint8_t> EncodeAnswer(const AnswerHeader& header, const std::vector<std::uint8_t>& body);
    static std::optional<AnswerHeader> DecodeAnswerHeader(const std::uint8_t* bytes);

    static void PutU16(std::vector<std::uint8_t>& out, std::uint16_t value);
    static void PutU32(std::vector<std::uint8_t>& out, std::uint32_t value);
    static std::uint16_t GetU16(const std::uint8_t* bytes);
    static std::uint32_t GetU32(const std::uint8_t* bytes);
};

} // namespace OrbelSim
