#include "driver/platform/LibUsbConnection.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstring>
#include <vector>

#include <libusb.h>

namespace DeviceDriver {

namespace {

using Transfer = std::unique_ptr<libusb_transfer, decltype(&libusb_free_transfer)>;

Transfer NewTransfer()
{
    return Transfer(libusb_alloc_transfer(0), &libusb_free_transfer);
}

void LIBUSB_CALL MarkCompleted(libusb_transfer* transfer)
{
    *static_cast<int*>(transfer->user_data) = 1;
}

// The ControlRequest: byte 0 direction, 1 request type (2 vendor), 2 recipient, 4 request code,
// 6-7 value and 8-9 index in host order.
std::uint8_t RequestType(const std::uint8_t* request)
{
    const std::uint8_t direction = request[0] == UsbConnection::DirectionIn ? LIBUSB_ENDPOINT_IN : LIBUSB_ENDPOINT_OUT;
    return static_cast<std::uint8_t>(direction | ((request[1] & 0x03) << 5) | (request[2] & 0x1F));
}

// A buffer that libusb can't take: missing, or longer than its lengths go.
bool Unusable(const void* buffer, std::uint32_t length)
{
    return (length > 0 && buffer == nullptr) || length > INT_MAX;
}

std::uint16_t HostOrderWord(const std::uint8_t* bytes)
{
    std::uint16_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

}

LibUsbConnection::LibUsbConnection(const Utilities::String& path, std::shared_ptr<libusb_context> context,
    libusb_device_handle* handle, int interfaceNumber, const Endpoints& endpoints)
    : UsbConnection(path), context(std::move(context)), handle(handle), interfaceNumber(interfaceNumber),
      endpoints(endpoints)
{
}

LibUsbConnection::~LibUsbConnection()
{
    libusb_release_interface(handle, interfaceNumber);
    libusb_close(handle);
}

UsbResult LibUsbConnection::ControlTransfer(
    const std::uint8_t* request, std::uint8_t* payload, std::uint32_t length, std::uint32_t timeoutMs)
{
    if (request == nullptr || (length > 0 && payload == nullptr)) {
        return UsbResult::Failure(EINVAL);
    }
    if (length > UINT16_MAX) {
        return UsbResult::Failure(EMSGSIZE);
    }
    const bool in = request[0] == DirectionIn;
    std::vector<unsigned char> buffer(LIBUSB_CONTROL_SETUP_SIZE + length);
    libusb_fill_control_setup(buffer.data(), RequestType(request), request[4], HostOrderWord(request + 6),
        HostOrderWord(request + 8), static_cast<std::uint16_t>(length));
    if (!in) {
        std::copy(payload, payload + length, buffer.begin() + LIBUSB_CONTROL_SETUP_SIZE);
    }
    const Transfer transfer = NewTransfer();
    if (!transfer) {
        return UsbResult::Failure(ENOMEM);
    }
    libusb_fill_control_transfer(transfer.get(), handle, buffer.data(), nullptr, nullptr, timeoutMs);
    const UsbResult result = Run(transfer.get(), false);
    if (result.Succeeded() && in) {
        std::copy_n(libusb_control_transfer_get_data(transfer.get()), result.Transferred(), payload);
    }
    return result;
}

UsbResult LibUsbConnection::BulkRead(std::uint8_t* buffer, std::uint32_t length, std::uint32_t timeoutMs)
{
    if (Unusable(buffer, length)) {
        return UsbResult::Failure(EINVAL);
    }
    const Transfer transfer = NewTransfer();
    if (!transfer) {
        return UsbResult::Failure(ENOMEM);
    }
    libusb_fill_bulk_transfer(
        transfer.get(), handle, endpoints.bulkIn, buffer, static_cast<int>(length), nullptr, nullptr, timeoutMs);
    return Run(transfer.get(), false);
}

// The transfer goes to libusb at once; a second one submitted behind it waits its turn on the
// endpoint, so the bus is never idle between the two.
LibUsbConnection::ReadTicket LibUsbConnection::SubmitBulkRead(
    std::uint8_t* buffer, std::uint32_t length, std::uint32_t timeoutMs)
{
    auto read = std::make_unique<Submitted>();
    if (Unusable(buffer, length)) {
        read->refusal = LIBUSB_ERROR_INVALID_PARAM;
    } else if ((read->transfer = libusb_alloc_transfer(0)) == nullptr) {
        read->refusal = LIBUSB_ERROR_NO_MEM;
    } else {
        libusb_fill_bulk_transfer(read->transfer, handle, endpoints.bulkIn, buffer, static_cast<int>(length),
            MarkCompleted, &read->completed, timeoutMs);
    }
    std::lock_guard<std::mutex> lock(mutex);
    if (read->transfer != nullptr) {
        read->refusal = libusb_submit_transfer(read->transfer);
        if (read->refusal == 0) {
            underWay.insert(read->transfer);
        }
    }
    const ReadTicket ticket = ++lastTicket;
    submitted[ticket] = std::move(read);
    return ticket;
}

UsbResult LibUsbConnection::AwaitBulkRead(ReadTicket ticket, std::uint32_t waitMs)
{
    std::unique_ptr<Submitted> read;
    {
        std::lock_guard<std::mutex> lock(mutex);
        const auto found = submitted.find(ticket);
        if (found == submitted.end()) {
            return UsbResult::Failure(EINVAL);
        }
        read = std::move(found->second);
        submitted.erase(found);
    }
    const Transfer owned(read->transfer, &libusb_free_transfer);
    if (read->refusal != 0) {
        return ErrorResult(read->refusal);
    }
    const bool late = HandleEventsUntil(read->completed, read->transfer, waitMs);
    std::lock_guard<std::mutex> lock(mutex);
    underWay.erase(read->transfer);
    return late ? UsbResult::Timeout() : Outcome(read->transfer);
}

void LibUsbConnection::CancelBulkReads()
{
    std::lock_guard<std::mutex> lock(mutex);
    for (const auto& [ticket, read] : submitted) {
        if (read->refusal == 0) {
            libusb_cancel_transfer(read->transfer);
        }
    }
}

// Past `waitMs` (0: no limit) the transfer is cancelled, and waited for until libusb lets it go;
// true if it was given up so.
bool LibUsbConnection::HandleEventsUntil(int& completed, libusb_transfer* transfer, std::uint32_t waitMs)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(waitMs);
    bool cancelled = false;
    bool late = false;
    while (completed == 0) {
        timeval step{0, 100000};
        const int handled = libusb_handle_events_timeout_completed(context.get(), &step, &completed);
        late = late || (waitMs != 0 && completed == 0 && std::chrono::steady_clock::now() >= deadline);
        if (!cancelled && ((handled != 0 && handled != LIBUSB_ERROR_INTERRUPTED) || late)) {
            libusb_cancel_transfer(transfer);
            cancelled = true;
        }
    }
    return late && transfer->status == LIBUSB_TRANSFER_CANCELLED;
}

UsbResult LibUsbConnection::BulkWrite(const std::uint8_t* data, std::uint32_t length, std::uint32_t timeoutMs)
{
    if (Unusable(data, length)) {
        return UsbResult::Failure(EINVAL);
    }
    const Transfer transfer = NewTransfer();
    if (!transfer) {
        return UsbResult::Failure(ENOMEM);
    }
    // libusb takes one buffer type for both directions; it doesn't write to an outgoing one.
    libusb_fill_bulk_transfer(transfer.get(), handle, endpoints.bulkOut, const_cast<std::uint8_t*>(data),
        static_cast<int>(length), nullptr, nullptr, timeoutMs);
    return Run(transfer.get(), false);
}

UsbResult LibUsbConnection::InterruptRead(std::uint8_t* buffer, std::uint32_t length)
{
    if (Unusable(buffer, length)) {
        return UsbResult::Failure(EINVAL);
    }
    const Transfer transfer = NewTransfer();
    if (!transfer) {
        return UsbResult::Failure(ENOMEM);
    }
    libusb_fill_interrupt_transfer(
        transfer.get(), handle, endpoints.interruptIn, buffer, static_cast<int>(length), nullptr, nullptr, 0);
    return Run(transfer.get(), true);
}

void LibUsbConnection::Cancel()
{
    std::lock_guard<std::mutex> lock(mutex);
    interruptCancelled = true;
    for (libusb_transfer* transfer : underWay) {
        libusb_cancel_transfer(transfer);
    }
}

// The transfer is submitted under the mutex, so that a Cancel either finds it under way or leaves
// its mark for an interrupt read that is about to start.
UsbResult LibUsbConnection::Run(libusb_transfer* transfer, bool interrupt)
{
    int completed = 0;
    transfer->user_data = &completed;
    transfer->callback = MarkCompleted;
    {
        std::lock_guard<std::mutex> lock(mutex);
        if (interrupt && interruptCancelled) {
            interruptCancelled = false;
            return UsbResult::Cancelled();
        }
        const int submitted = libusb_submit_transfer(transfer);
        if (submitted != 0) {
            return ErrorResult(submitted);
        }
        underWay.insert(transfer);
    }
    while (completed == 0) {
        const int handled = libusb_handle_events_completed(context.get(), &completed);
        if (handled != 0 && handled != LIBUSB_ERROR_INTERRUPTED) {
            libusb_cancel_transfer(transfer);
        }
    }
    std::lock_guard<std::mutex> lock(mutex);
    underWay.erase(transfer);
    if (interrupt && transfer->status == LIBUSB_TRANSFER_CANCELLED) {
        interruptCancelled = false;
    }
    return Outcome(transfer);
}

UsbResult LibUsbConnection::Outcome(const libusb_transfer* transfer)
{
    switch (transfer->status) {
    case LIBUSB_TRANSFER_COMPLETED:
        return UsbResult::Success(static_cast<std::uint32_t>(transfer->actual_length));
    case LIBUSB_TRANSFER_TIMED_OUT:
        return UsbResult::Timeout();
    case LIBUSB_TRANSFER_CANCELLED:
        return UsbResult::Cancelled();
    case LIBUSB_TRANSFER_STALL:
        return UsbResult::Failure(EPIPE);
    case LIBUSB_TRANSFER_NO_DEVICE:
        return UsbResult::NoDevice();
    case LIBUSB_TRANSFER_OVERFLOW:
        return UsbResult::Failure(EOVERFLOW);
    default:
        return UsbResult::Failure(EIO);
    }
}

UsbResult LibUsbConnection::ErrorResult(int libusbError)
{
    switch (libusbError) {
    case LIBUSB_ERROR_INVALID_PARAM:
        return UsbResult::Failure(EINVAL);
    case LIBUSB_ERROR_ACCESS:
        return UsbResult::Failure(EACCES);
    case LIBUSB_ERROR_NO_DEVICE:
        return UsbResult::NoDevice();
    case LIBUSB_ERROR_NOT_FOUND:
        return UsbResult::Failure(ENXIO);
    case LIBUSB_ERROR_BUSY:
        return UsbResult::Failure(EBUSY);
    case LIBUSB_ERROR_TIMEOUT:
        return UsbResult::Timeout();
    case LIBUSB_ERROR_OVERFLOW:
        return UsbResult::Failure(EOVERFLOW);
    case LIBUSB_ERROR_PIPE:
        return UsbResult::Failure(EPIPE);
    case LIBUSB_ERROR_INTERRUPTED:
        return UsbResult::Failure(EINTR);
    case LIBUSB_ERROR_NO_MEM:
        return UsbResult::Failure(ENOMEM);
    case LIBUSB_ERROR_NOT_SUPPORTED:
        return UsbResult::Failure(EOPNOTSUPP);
    default:
        return UsbResult::Failure(EIO);
    }
}

}
