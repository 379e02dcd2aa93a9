#include "driver/platform/VirtualPlatform.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "driver/platform/SimSocket.h"
#include "driver/platform/VirtualConnection.h"

namespace DeviceDriver {

namespace {

const char* const virtualPathPrefix = "sim:";
// How long an instrument may take to take a new connection as its own.
constexpr std::uint32_t GreetingTimeoutMs = 2000;

// Shorter serials are smaller numbers: sorting by length first gives the numeric order.
bool SerialBefore(const std::string& left, const std::string& right)
{
    return left.size() != right.size() ? left.size() < right.size() : left < right;
}

}

VirtualPlatform::VirtualPlatform(const Utilities::String& directory) : directory(directory) { }

Utilities::String VirtualPlatform::DefaultDirectory()
{
    return Utilities::String(SimSocket::DefaultDirectory());
}

bool VirtualPlatform::Serves(const Utilities::String& path) const
{
    return HasPrefix(path, virtualPathPrefix);
}

std::vector<Utilities::String> VirtualPlatform::EnumerateDevices()
{
    const std::string folder = Directory();
    std::vector<std::string> serials;
    for (const std::string& serial : SimSocket::Serials(folder)) {
        if (IsSerial(serial) && SimSocket::Answers(folder, serial)) {
            serials.push_back(serial);
        }
    }
    std::sort(serials.begin(), serials.end(), SerialBefore);
    std::vector<Utilities::String> paths;
    paths.reserve(serials.size());
    for (const std::string& serial : serials) {
        paths.emplace_back(virtualPathPrefix + serial);
    }
    return paths;
}

UsbResult VirtualPlatform::Open(const Utilities::String& path, std::unique_ptr<UsbConnection>& connection)
{
    connection.reset();
    const std::string text = path.ToStdString();
    const std::string serial = Serves(path) ? text.substr(std::strlen(virtualPathPrefix)) : std::string();
    if (!IsSerial(serial)) {
        return UsbResult::Failure(EINVAL);
    }
    int error = 0;
    const int socket = SimSocket::Connect(Directory(), serial, error);
    if (socket < 0) {
        return UsbResult::Failure(error);
    }
    auto opened = std::make_unique<VirtualConnection>(path, socket);
    if (!opened->Greet(GreetingTimeoutMs)) {
        return UsbResult::NoDevice();
    }
    connection = std::move(opened);
    return UsbResult::Success(0);
}

std::string VirtualPlatform::Directory() const
{
    return (directory.IsEmpty() ? DefaultDirectory() : directory).ToStdString();
}

// A serial names a file in the directory: no separators, and not one of the directory's own entries.
bool VirtualPlatform::IsSerial(const std::string& serial)
{
    return !serial.empty() && serial != "." && serial != ".." && serial.find('/') == std::string::npos;
}

}
